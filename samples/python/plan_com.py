"""plan_com.py <geometry file>: plans an indexing from a 64-bit Python with pywin32 (pip install pywin32).

The tests of this component do not run it, because they have no Python on Windows.

pywin32 calls every method through the dispatch interface, as CalculateMove requires: through the component's own
interface it throws its failure code as a C++ exception, which Python cannot catch. Therefore do not use comtypes for
CalculateMove.
"""

import math
import os
import sys

import pythoncom
import win32com.client

POINT = ("XPosition", "YPosition", "ZPosition")
ARC = ("XOrigin", "YOrigin", "ZOrigin", "iRotationVector", "jRotationVector", "kRotationVector", "RotationAngle")
MOVES = (
    ("ApproachUnLockLever", POINT),
    ("EngageWithUnLockLever", POINT),
    ("UnLock", ARC),
    ("DisengageFromUnLockLever", POINT),
    ("RotateToPeg", ARC),
    ("MoveToPegAtSafeZ", POINT),
    ("ApproachPeg", POINT),
    ("EngageWithPeg", POINT),
    ("IntermediateAPosition", ARC),
    ("MoveToBPosition", ARC),
    ("MoveToAPosition", ARC),
    ("DisengageFromPeg", POINT),
    ("DisengageFromPegToSafeZ", POINT),
    ("RotateToLockLever", ARC),
    ("MoveToLockLeverAtSafeZ", POINT),
    ("ApproachLockLever", POINT),
    ("EngageWithLockLever", POINT),
    ("Lock", ARC),
    ("DisengageFromLockLever", POINT),
)


def three_decimals(number):
    return "%.3f" % (math.floor(number * 1000 + 0.5) / 1000)


def show_failure(failure):
    if failure.excepinfo is None:
        print("refused 0x%08X: %s" % (failure.hresult & 0xFFFFFFFF, failure.strerror))
    else:
        print("refused 0x%08X: %s" % (failure.excepinfo[5] & 0xFFFFFFFF, failure.excepinfo[2]))


def show_current_position(head):
    a, b = head.GetCurrentHeadPosition()
    print("position", three_decimals(a), three_decimals(b))


def show_plan(plan):
    for number, (name, fields) in enumerate(MOVES, start=1):
        move = getattr(plan, name)
        print(number, name, *(three_decimals(getattr(move, field)) for field in fields))


def main(geometry_file):
    head = win32com.client.gencache.EnsureDispatch("QMV.QMVCalculator.1")
    # The component would look for a relative name in the Windows folder.
    head.LoadHeadGeometryFromFile(os.path.abspath(geometry_file))
    head.SetCurrentHeadPosition(0, 0)
    try:
        head.CalculateMove(50, 90)  # 50 is not a multiple of 15
    except pythoncom.com_error as failure:
        show_failure(failure)
    show_current_position(head)
    plan = head.CalculateMove(45, 90)
    show_current_position(head)
    show_plan(plan)


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(2)
    try:
        main(sys.argv[1])
    except pythoncom.com_error as failure:
        show_failure(failure)
        sys.exit(1)
