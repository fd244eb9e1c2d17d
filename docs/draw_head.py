#!/usr/bin/env python3
"""Draws docs/head.svg: the ideal head and the 19 moves of one indexing, from above and from the side.

    qmv40 pole --geometry HEAD.ini --json > pole.json
    qmv40 move --geometry HEAD.ini --from 0,0 --to 45,90 --json | docs/draw_head.py pole.json > docs/head.svg
"""
import json
import math
import sys

PHASES = [  # first move, last move, colour, what happens
    (1, 4, "#c0392b", "1-4  push the lever to unlock, rise"),
    (5, 8, "#2471a3", "5-8  round to the peg, engage"),
    (9, 11, "#1e8449", "9-11  turn the head: A, B, A"),
    (12, 14, "#7d3c98", "12-14  off the peg, round to the lever"),
    (15, 19, "#b9770e", "15-19  push the lever to lock"),
]
# name, index of the axes to the right and up, centre
VIEWS = [("from above", 0, 1, 215, 205), ("from the side, +X towards you", 1, 2, 675, 230)]
SCALE = 4.6  # pixels per millimetre


def turned(point, arc, fraction):
    """`point` after `fraction` of an arc. Arcs are left-handed, hence the minus."""
    origin = [arc["XOrigin"], arc["YOrigin"], arc["ZOrigin"]]
    u = [arc["iRotationVector"], arc["jRotationVector"], arc["kRotationVector"]]
    angle = -math.radians(arc["RotationAngle"]) * fraction
    v = [p - o for p, o in zip(point, origin)]
    along = sum(a * b for a, b in zip(u, v))
    across = [u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]]
    return [o + math.cos(angle) * a + math.sin(angle) * c + (1 - math.cos(angle)) * along * b
            for o, a, c, b in zip(origin, v, across, u)]


def paths(moves):
    """Each move as the points that the machine passes, the first one where the move before ended."""
    here = None
    for number, move in enumerate(moves.values(), 1):
        if "RotationAngle" in move:
            steps = [turned(here, move, i / 40) for i in range(41)]
        else:
            there = [move["XPosition"], move["YPosition"], move["ZPosition"]]
            steps = [here or there, there]
        here = steps[-1]
        yield number, steps


def main():
    with open(sys.argv[1]) as file:
        pole = list(json.load(file)["poleSpherePosition"].values())
    moves = {move["name"]: move["record"] for move in json.load(sys.stdin)["plans"][0]["moves"]}
    out = ['<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 900 500" font-family="sans-serif" font-size="13">',
           '<rect width="900" height="500" fill="#ffffff"/>']
    for phase, (_, _, colour, _) in enumerate(PHASES):
        out.append(f'<marker id="a{phase}" viewBox="0 0 8 8" refX="7" refY="4" markerWidth="9" markerHeight="9" '
                   f'markerUnits="userSpaceOnUse" orient="auto"><path d="M0 0L8 4L0 8z" fill="{colour}"/></marker>')
    for name, right, up, cx, cy in VIEWS:
        def paper(point):
            return cx + SCALE * (point[right] - pole[right]), cy - SCALE * (point[up] - pole[up])

        def mark(offset, radius, style, label="", dx=8, dy=-6):
            x, y = paper([p + o for p, o in zip(pole, offset)])
            out.append(f'<circle cx="{x:.1f}" cy="{y:.1f}" r="{radius}" {style}/>')
            if label:
                out.append(f'<text x="{x + dx:.1f}" y="{y + dy:.1f}" fill="#555">{label}</text>')

        out.append(f'<text x="{cx}" y="28" text-anchor="middle" font-size="16">{name}</text>')
        mark((0, 0, 0), 36, 'fill="#e5e8e8" stroke="#99a3a4"')
        mark((0, 0, 0), 3, 'fill="#333"', "head centre", -32, 20)
        for side in (1, -1):  # lever centre and ball: the built-in dimensions of the head
            centre, ball = (side * 30.3, 0, -32.25), -4.3
            ends = [paper([p + o for p, o in zip(pole, (centre[0], y, centre[2] + ball))]) for y in (-19.3, 19.3)]
            out.append('<line x1="%.1f" y1="%.1f" x2="%.1f" y2="%.1f" stroke="#ccd1d1" stroke-width="7"/>'
                       % (*ends[0], *ends[1]))
            mark((centre[0], -19.3, centre[2] + ball), 6, 'fill="#99a3a4"',
                 "locked" if side == -1 else "", -18, 22)
            mark((centre[0], 19.3, centre[2] + ball), 6, 'fill="#fff" stroke="#99a3a4" stroke-width="2"',
                 "unlocked" if side == -1 else "", -24, -12)
        for number, steps in paths(moves):
            phase = next(i for i, (first, last, _, _) in enumerate(PHASES) if first <= number <= last)
            points = [paper(step) for step in steps]
            length = sum(math.dist(a, b) for a, b in zip(points, points[1:]))
            if length < 4:  # pixels: perpendicular to the paper, or nearly
                continue
            track = " ".join(f"{x:.1f},{y:.1f}" for x, y in points)
            out.append(f'<polyline points="{track}" fill="none" stroke="{PHASES[phase][2]}" stroke-width="2" '
                       f'marker-end="url(#a{phase})"/>')
            x, y = points[len(points) // 2] if len(points) > 2 else [(a + b) / 2 for a, b in zip(*points)]
            out.append(f'<text x="{x + 6:.1f}" y="{y - 5:.1f}" font-size="11" fill="{PHASES[phase][2]}">{number}</text>')
    for line, (_, _, colour, text) in enumerate(PHASES):
        out.append(f'<text x="{60 + 290 * (line % 3)}" y="{462 + 22 * (line // 3)}" fill="{colour}">{text}</text>')
    out.append("</svg>")
    print("\n".join(out))


main()
