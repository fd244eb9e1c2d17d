"""tour.py <A-axis points> <B-axis points>: from captured points to a tour of the head, step by step.

The two files are CSV with the header APosition,BPosition,XPosition,YPosition,ZPosition: the angles of the unlocked head,
and the machine position while the stylus tip is on the pole sphere. The captures in scenarios/ are such files.
"""

# %% Imports

import csv
import sys

import qmv40

COLUMNS = ("APosition", "BPosition", "XPosition", "YPosition", "ZPosition")
TOUR = [(45, 90), (90, -180), (15, 180), (0, 0)]  # A and B in degrees, in steps of 15


# %% The captured points


def read_points(file_name):
    with open(file_name, newline="") as file:
        lines = (line for line in file if not line.startswith("#"))
        return [[float(row[name]) for name in COLUMNS] for row in csv.DictReader(lines)]


if len(sys.argv) != 3:
    sys.exit(__doc__.strip().splitlines()[0])
a_points, b_points = map(read_points, sys.argv[1:])

# %% The head's geometry

head = qmv40.Calculator()
head.enter_geometry(a_points, b_points)
print("pole sphere at X %.3f  Y %.3f  Z %.3f" % head.pole_sphere())

# %% A plan for every stop of the tour; each begins where the one before ended

head.position = (0, 0)
plans = [head.calculate_move(a, b) for a, b in TOUR]

# %% The table: a line for every move. An arc shows its axis and its angle in degrees

for plan in plans:
    print()
    print("from A %g B %g to A %g B %g" % (plan.origin + plan.target))
    for move in plan:
        numbers = " ".join("%10.4f" % number for number in move.record)
        print("%2d %-26s %-8s %s" % (move.number, move.name, move.kind, numbers))
