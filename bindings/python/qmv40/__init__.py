"""Plans how a coordinate measuring machine turns a motorless indexable probe head.

    import qmv40

    head = qmv40.Calculator()
    head.load("head.ini")               # or head.enter_geometry(a_points, b_points): rows A, B, X, Y, Z
    head.position = (0, 0)              # where the head stands now: A and B in degrees
    plan = head.calculate_move(45, 90)  # raises qmv40.Error with .code, .source and .description
    for move in plan:
        print(move.number, move.name, move.kind, move.record)
"""

from ._calculator import Calculator, Error, version
from ._records import AlignmentPoint, Arc, Move, Plan, Point, Position

__all__ = ["AlignmentPoint", "Arc", "Calculator", "Error", "Move", "Plan", "Point", "Position", "version"]
__version__ = version()
