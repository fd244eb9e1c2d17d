#!/usr/bin/env python3
"""Draws docs/glossary.svg: the head at A = 0, B = 0 with the drive cup on the pole sphere, and the two captures.

    docs/draw_glossary.py > docs/glossary.svg

Dimensions are the built-in ones, in millimetres from the head's own centre. The sizes of body, swivel and stylus are
invented: they only show what the parts are.
"""
import math

INK, FAINT, BODY, SWIVEL, TILT = "#222222", "#8a9496", "#e5e8e8", "#d3dcdd", "#c3d0d3"
SPHERE, LEVER, CUP, AXIS, SET_A, SET_B = "#c0392b", "#7d3c98", "#0e7c7b", "#2471a3", "#b9770e", "#1e8449"
SCALE = 4.0                  # pixels per millimetre
CENTRE = (370, 250)          # of the left picture: where the head's own centre is
CUP_Y, CUP_Z = 24.0, -11.5   # drive cup from the head's centre, seen from +X
LEVER_Z, BALL_Y, BALL_Z = 32.25, 19.3, 36.55
SPHERE_RADIUS = 5.0
out = []


def paper(y, z):
    return CENTRE[0] + SCALE * y, CENTRE[1] - SCALE * z


def shape(name, style, **values):
    attributes = " ".join(f'{key.replace("_", "-")}="{value:.1f}"' if isinstance(value, float) else f'{key.replace("_", "-")}="{value}"'
                          for key, value in values.items())
    out.append(f"<{name} {attributes} {style}/>")


def box(y0, z0, y1, z1, fill):
    left, top = paper(y0, z1)
    shape("rect", f'fill="{fill}" stroke="{FAINT}"', x=left, y=top, width=SCALE * (y1 - y0), height=SCALE * (z1 - z0))


def line(start, end, colour, extra=""):
    shape("line", f'stroke="{colour}" {extra}', x1=float(start[0]), y1=float(start[1]), x2=float(end[0]), y2=float(end[1]))


def ball(y, z, radius, style):
    x, top = paper(y, z)
    shape("circle", style, cx=x, cy=top, r=SCALE * radius)


def text(x, y, words, colour=INK, anchor="start", size=14, weight="normal"):
    out.append(f'<text x="{x:.1f}" y="{y:.1f}" fill="{colour}" text-anchor="{anchor}" font-size="{size}" font-weight="{weight}">{words}</text>')


def label(words, at, target, colour, anchor="start"):
    """Words with a thin line to what they name."""
    gap = 4 if anchor == "start" else -4
    line((at[0] - gap, at[1] - 5), target, colour, 'stroke-width="0.8"')
    text(at[0], at[1], words, colour, anchor)


def head():
    text(CENTRE[0], 30, "Seen from +X: +Y to the right, +Z up", anchor="middle", size=16)
    box(-17, 50, 17, 53, BODY)
    box(-27, 16, 27, 50, BODY)           # body, carried by the machine
    box(-20, 9, 20, 16, SWIVEL)          # turns with B
    box(-9, -16, 9, 9, TILT)             # turns with A
    box(-6, -30, 6, -16, TILT)
    line(paper(0, -30), paper(0, -46), INK, 'stroke-width="5"')
    line(paper(0, -46), paper(0, -48), INK, 'stroke-width="5" stroke-dasharray="3 3"')
    ball(0, -50, 2.2, f'fill="{INK}"')
    line(paper(9, CUP_Z), paper(CUP_Y - 6, CUP_Z), CUP, 'stroke-width="10"')
    x, y = paper(CUP_Y, CUP_Z)
    r = SCALE * 6.2
    out.append(f'<path d="M{x:.1f} {y - r:.1f} A{r:.1f} {r:.1f} 0 0 0 {x:.1f} {y + r:.1f}" fill="none" stroke="{CUP}" stroke-width="6"/>')
    ball(CUP_Y, CUP_Z, SPHERE_RADIUS, f'fill="{SPHERE}"')
    line(paper(CUP_Y, CUP_Z - SPHERE_RADIUS), paper(CUP_Y, -62), SPHERE, 'stroke-width="7" stroke-opacity="0.45"')
    line(paper(0, LEVER_Z), paper(BALL_Y, BALL_Z), LEVER, 'stroke-width="6"')
    line(paper(0, LEVER_Z), paper(-BALL_Y, BALL_Z), LEVER, 'stroke-width="3" stroke-opacity="0.4" stroke-dasharray="6 4"')
    ball(0, LEVER_Z, 1.6, f'fill="#fff" stroke="{LEVER}" stroke-width="2"')
    ball(BALL_Y, BALL_Z, 2.5, f'fill="{LEVER}"')
    ball(-BALL_Y, BALL_Z, 2.5, f'fill="#fff" stroke="{LEVER}" stroke-width="2"')
    line(paper(0, 52), paper(0, -58), AXIS, 'stroke-width="1.2" stroke-dasharray="10 4 2 4"')
    ball(0, 0, 1.3, f'fill="#fff" stroke="{AXIS}" stroke-width="2"')
    ball(0, 0, 0.35, f'fill="{AXIS}"')
    label("B axis (swivel)", (400, 66), paper(0, 51.5), AXIS)
    label("lever ball, locked", (510, 98), paper(BALL_Y + 2, BALL_Z), LEVER)
    label("lever ball, unlocked", (230, 98), paper(-BALL_Y - 2, BALL_Z), LEVER, "end")
    label("lever centre", (510, 140), paper(1.5, LEVER_Z), LEVER)
    label("body", (230, 160), paper(-24, 24), FAINT, "end")
    label("swivel, turns with B", (230, 205), paper(-19, 12), FAINT, "end")
    label("machine position, on both axes", (230, 250), paper(-1.3, 0), AXIS, "end")
    text(230, 268, "A axis (tilt), along your view", AXIS, "end")
    label("tilting part, turns with A", (230, 310), paper(-8, -10), FAINT, "end")
    label("drive cup", (510, 240), paper(CUP_Y - 3, CUP_Z + 6), CUP)
    label("pole sphere (the peg)", (510, 300), paper(CUP_Y + 3, CUP_Z), SPHERE)
    text(510, 318, "its centre: the head centre", SPHERE)
    text(510, 334, "of a geometry", SPHERE)
    label("stylus tip (drawn short)", (230, 455), paper(-2, -50), INK, "end")
    x, y = paper(CUP_Y, CUP_Z)
    out.append(f'<path d="M{x + 105:.1f} {y + 70:.1f} h-70" stroke="{INK}" fill="none" marker-end="url(#arrow)"/>')
    text(x + 110, y + 66, "the sphere comes in this way", INK)
    text(x + 110, y + 84, "when the machine moves +Y", INK)


def captures():
    cx, cy, length = 1040, 195, 120
    text(cx, 30, "Where the machine stands while the sphere is measured", anchor="middle", size=16)
    text(cx, 66, "A set: B held, A turned. Seen along the A axis", SET_A, "middle")
    ball_style = f'fill="{SPHERE}"'
    shape("circle", ball_style, cx=float(cx), cy=float(cy + 20), r=9.0)
    text(cx - 14, cy + 25, "pole sphere", SPHERE, "end")
    for a in range(0, 91, 15):
        t = math.radians(a)
        x, y = cx + length * math.sin(t), cy + 20 - length * math.cos(t)
        line((cx, cy + 20), (x, y), FAINT, 'stroke-width="1" stroke-dasharray="2 3"')
        shape("circle", f'fill="{SET_A}"', cx=x, cy=y, r=5.0)
        if a in (0, 90):
            text(x + 10, y - 6, f"A = {a}", SET_A)
    text(cx, 262, "B set: A held at 75 or 90, B turned. Seen from above", SET_B, "middle")
    cy = 385
    shape("circle", ball_style, cx=float(cx), cy=float(cy), r=9.0)
    shape("circle", f'fill="none" stroke="{FAINT}" stroke-dasharray="2 3"', cx=float(cx), cy=float(cy), r=95.0)
    for b in range(0, 360, 30):
        t = math.radians(b)
        shape("circle", f'fill="{SET_B}"', cx=cx + 95 * math.cos(t), cy=cy - 95 * math.sin(t), r=5.0)
    text(cx, 505, "The pole sphere lies on the axes of both circles: the two fits give the head centre.", INK, "middle", 13)


out.append('<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 1340 525" font-family="sans-serif">')
out.append('<rect width="1340" height="525" fill="#ffffff"/>')
out.append(f'<marker id="arrow" viewBox="0 0 8 8" refX="7" refY="4" markerWidth="9" markerHeight="9" orient="auto"><path d="M0 0L8 4L0 8z" fill="{INK}"/></marker>')
head()
captures()
out.append("</svg>")
print("\n".join(out))
