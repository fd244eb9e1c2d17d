#!/usr/bin/env python3
"""Draws docs/diagnostics.svg: how well arcs of different length determine a centre, and when the
wrong quadrant is chosen.

    docs/draw_diagnostics.py > docs/diagnostics.svg
"""
import math

WIDTH, HEIGHT = 900, 620
INK, POINT, GOOD, BAD, PALE = "#2c3e50", "#2471a3", "#1e8449", "#c0392b", "#f5e6e3"
MARGIN = 10.0  # beyond the centre, in mm, from which a point counts as on the positive side
STYLUS = 180.0
TILTS = range(0, 91, 15)
out = []


def text(x, y, words, size=13, colour=INK, anchor="middle", weight="normal"):
    out.append(f'<text x="{x:.1f}" y="{y:.1f}" font-size="{size}" fill="{colour}" text-anchor="{anchor}" '
               f'font-weight="{weight}">{words}</text>')


def dot(x, y, radius=3.2, colour=POINT):
    out.append(f'<circle cx="{x:.1f}" cy="{y:.1f}" r="{radius}" fill="{colour}"/>')


def line(x1, y1, x2, y2, colour=INK, width=1.2, dash=""):
    out.append(f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" stroke="{colour}" '
               f'stroke-width="{width}"' + (f' stroke-dasharray="{dash}"' if dash else "") + '/>')


def inverse(m):
    """The inverse of a symmetric 3 x 3 matrix, by cofactors."""
    def minor(i, j):
        rows = [r for k, r in enumerate(m) if k != i]
        a, b = ([v for k, v in enumerate(r) if k != j] for r in rows)
        return (a[0] * b[1] - a[1] * b[0]) * (-1) ** (i + j)
    determinant = sum(m[0][j] * minor(0, j) for j in range(3))
    return [[minor(j, i) / determinant for j in range(3)] for i in range(3)]


def centre_deviations(bearings):
    """Standard deviations of a circle's centre along and across the bisector (bearing 0), for noise of 1."""
    rows = [(math.cos(b), math.sin(b), 1.0) for b in bearings]
    covariance = inverse([[sum(r[i] * r[j] for r in rows) for j in range(3)] for i in range(3)])
    return math.sqrt(covariance[0][0]), math.sqrt(covariance[1][1])


def arc_panel(cx, cy, degrees):
    radius, noise = 75.0, 1.35  # pixels; `noise` is the standard deviation of one point
    spacing = degrees / (7 if degrees == 360 else 6)
    bearings = [math.radians(spacing * (i - 3)) for i in range(7)]
    along, across = centre_deviations(bearings)
    out.append(f'<circle cx="{cx}" cy="{cy}" r="{radius}" fill="none" stroke="#d5d8dc"/>')
    colour = GOOD if along < 5 else BAD
    # The bisector of the arc points up.
    out.append(f'<ellipse cx="{cx}" cy="{cy}" rx="{max(noise * across, 1.2):.1f}" ry="{max(noise * along, 1.2):.1f}" '
               f'fill="{colour}" fill-opacity="0.35" stroke="{colour}"/>')
    for bearing in bearings:
        dot(cx + radius * math.sin(bearing), cy - radius * math.cos(bearing))
    text(cx, cy + radius + 24, f"{degrees}°: {along:.2g} times the noise", colour=colour)


def machine_points(mounting, swivel, tip):
    """Where the machine stands as seen from above, relative to the pole: pole - Rz R(-X, A) tip."""
    turn = math.radians(mounting + swivel)
    for tilt in TILTS:
        a = math.radians(-tilt)
        y = math.cos(a) * tip[1] - math.sin(a) * tip[2]
        yield (-(math.cos(turn) * tip[0] - math.sin(turn) * y), -(math.sin(turn) * tip[0] + math.cos(turn) * y))


def fold_panel(cx, cy, title, mounting, swivel, tip, lines):
    scale, half = 0.62, 125
    out.append(f'<rect x="{cx - half}" y="{cy - half}" width="{2 * half}" height="{2 * half}" fill="#ffffff" stroke="#d5d8dc"/>')
    edge = MARGIN * scale
    # The margin: strips in which a point does not yet count as on the positive side.
    out.append(f'<rect x="{cx}" y="{cy - half}" width="{edge:.1f}" height="{2 * half}" fill="{BAD}" fill-opacity="0.13"/>')
    out.append(f'<rect x="{cx - half}" y="{cy - edge:.1f}" width="{2 * half}" height="{edge:.1f}" fill="{BAD}" fill-opacity="0.13"/>')
    line(cx - half, cy, cx + half, cy, "#aeb6bf")
    line(cx, cy - half, cx, cy + half, "#aeb6bf")
    points = list(machine_points(mounting, swivel, tip))
    beyond_x = any(x > MARGIN for x, _ in points)
    beyond_y = any(y > MARGIN for _, y in points)
    sharp = abs(math.degrees(math.asin(math.sin(math.radians(mounting + swivel)))))
    folded = sharp if beyond_y else 180 - sharp
    folded = (-folded if beyond_x else folded) - swivel
    right = abs(math.remainder(folded - mounting, 360)) < 1e-6
    for x, y in points:
        dot(cx + scale * x, cy - scale * y)
    text(cx, cy - half - 12, title, weight="bold")
    for i, words in enumerate(lines):
        text(cx, cy + half + 20 + 17 * i, words)
    text(cx, cy + half + 20 + 17 * len(lines), f"mounted at {mounting:g}°, found {folded:.4g}°", colour=GOOD if right else BAD,
         weight="bold")
    text(cx + half - 5, cy - 5 - edge, "X", 11, "#85929e", "end")
    text(cx - 5, cy - half + 13, "Y", 11, "#85929e", "end")


def main():
    text(WIDTH / 2, 28, "How well seven points on an arc tell where its centre is", 15, weight="bold")
    for i, degrees in enumerate((360, 180, 90, 30)):
        arc_panel(120 + 220 * i, 150, degrees)
    text(WIDTH / 2, 290, "Which side of the head centre the A points lie on, from above", 15, weight="bold")
    straight = (0.0, 0.0, -STYLUS)
    fold_panel(160, 455, "captured at B = 0", -3.0, 0.0, straight, ["all within 10 mm in X: not seen to be", "on the positive side"])
    fold_panel(450, 455, "captured at B = 45", -3.0, 45.0, straight, ["in the middle of a quadrant"])
    fold_panel(740, 455, "at B = 45, star stylus", -3.0, 45.0, (-30.0, 40.0, -150.0), ["a tip 30 mm off moves the plane", "into another quadrant"])
    print(f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT + 40}" font-family="sans-serif">')
    print(f'<rect width="{WIDTH}" height="{HEIGHT + 40}" fill="#ffffff"/>')
    print("\n".join(out))
    print("</svg>")


if __name__ == "__main__":
    main()
