"""plan.py <geometry file>: plans an indexing with the package qmv40, on Linux and on Windows."""

import math
import sys

import qmv40


def three_decimals(number):
    return "%.3f" % (math.floor(number * 1000 + 0.5) / 1000)


def show_failure(failure):
    print("refused 0x%08X: %s" % (failure.code, failure.description))


def main(geometry_file):
    with qmv40.Calculator() as head:
        head.load(geometry_file)
        head.position = (0, 0)
        try:
            head.calculate_move(50, 90)  # 50 is not a multiple of 15
        except qmv40.Error as failure:
            show_failure(failure)
        print("position", *map(three_decimals, head.position))
        plan = head.calculate_move(45, 90)
        print("position", *map(three_decimals, head.position))
        for move in plan:
            print(move.number, move.name, *map(three_decimals, move.record))


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(2)
    try:
        main(sys.argv[1])
    except qmv40.Error as failure:
        show_failure(failure)
        sys.exit(1)
