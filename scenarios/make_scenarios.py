#!/usr/bin/env python3
"""Writes the scenario folders beside this file: simulated captures of heads that do not exist.

Run it after a change of a head below. The same heads always give the same files. It has its own formulas and constants,
not those of the component: rotation matrices and the full pi.

Lengths are in millimetres and angles in degrees; rotations are right-handed. The stylus tip t (its offset from the
head's centre at A = B = 0) is on the pole sphere, whose centre is S. While the head is locked, the machine position is

    S - Rz(mounting angle + B) . R(-X, A) . t

R(-X, A) is a rotation by A about the direction (-1, 0, 0), and Rz a rotation about the vertical. So these positions of
the A set lie on a circle about the A axis, and those of the B set on a circle about the vertical. Both axes pass through
S, which is the head centre of the geometry. Unlocking shifts the head. Points are captured with the head unlocked: the
shift is added to each, and the component subtracts it again.
"""

import json
import math
import random
import statistics
from dataclasses import dataclass, field
from pathlib import Path

FOLDER = Path(__file__).resolve().parent
SETTINGS_KEY = r"HKEY_LOCAL_MACHINE\SOFTWARE\Hollbeck\VRX Software\QMV40Calculator"
DECIMALS = 6  # as a machine writes them; rounding moves a point by at most half a nanometre along each axis


@dataclass
class Scenario:
    name: str
    pole: tuple
    mounting_angle: float = 0.0
    stylus_length: float = 180.0  # straight: the tip is at (0, 0, -length)
    noise: float = 0.0            # standard deviation of each coordinate
    seed: int = 0
    a_set_b: float = 45.0         # in the middle of a quadrant for a head mounted square
    b_set_a: float = 90.0         # the largest circle that B can make
    locked_to_unlocked: tuple = (0.0, 0.0, -1.5)
    settings: dict = field(default_factory=dict)


# In each group X, Y, Z of settings the texts have one length: the component reads no text that is longer than the one
# before it.
SCENARIOS = [
    Scenario("plain", pole=(412.5, -178.25, -655.0)),
    Scenario("turned-30", pole=(-265.75, 320.125, -480.5), mounting_angle=30.0, stylus_length=195.5),
    Scenario("captured-at-b45", pole=(87.325, 640.9, -712.35), mounting_angle=-1.35, noise=0.001, seed=45,
             b_set_a=75.0),
    Scenario("settings-override", pole=(-31.2, -402.6, -590.85), mounting_angle=2.25, stylus_length=172.4,
             locked_to_unlocked=(0.02, -0.03, -1.62),
             settings={
                 "Head Centre To Drive Cup X Offset": "-7.100",
                 "Head Centre To Drive Cup Y Offset": "24.250",
                 "Head Centre To Drive Cup Z Offset": "-11.40",
                 "Head Centre To Lever Centre X Offset": "30.450",
                 "Head Centre To Lever Centre Y Offset": "0.1500",
                 "Head Centre To Lever Centre Z Offset": "-32.20",
                 "Lever Centre To Ball Centre X Offset": "0.0500",
                 "Lever Centre To Ball Centre Y Offset": "-19.40",
                 "Lever Centre To Ball Centre Z Offset": "-4.350",
                 "Locked To Unlocked X Offset": "0.0200",
                 "Locked To Unlocked Y Offset": "-0.030",
                 "Locked To Unlocked Z Offset": "-1.620",
                 "Locked To Unlocked Lever Rotation": "120",
                 "UnLocked To locked Lever Rotation": "131.5",
             }),
]


def about_x(degrees, v):
    c, s = math.cos(math.radians(degrees)), math.sin(math.radians(degrees))
    return (v[0], c * v[1] - s * v[2], s * v[1] + c * v[2])


def about_z(degrees, v):
    c, s = math.cos(math.radians(degrees)), math.sin(math.radians(degrees))
    return (c * v[0] - s * v[1], s * v[0] + c * v[1], v[2])


def captured_point(scenario, a, b, noise):
    # A turn by A about -X is a turn by -A about X.
    tip = about_z(scenario.mounting_angle + b, about_x(-a, (0.0, 0.0, -scenario.stylus_length)))
    return [scenario.pole[i] - tip[i] + scenario.locked_to_unlocked[i] + noise() for i in range(3)]


def noise_source(scenario):
    # random() gives the same numbers in every version of Python; that is not promised for its normal deviates.
    generator = random.Random(scenario.seed)
    normal = statistics.NormalDist()
    return lambda: scenario.noise * normal.inv_cdf(generator.random()) if scenario.noise else 0.0


def number(value, decimals=DECIMALS):
    text = f"{value:.{decimals}f}"
    return text[1:] if float(text) == 0.0 and text.startswith("-") else text


def capture_text(title, rows):
    lines = [f"# {title}", "APosition,BPosition,XPosition,YPosition,ZPosition"]
    for a, b, point in rows:
        lines.append(",".join([number(a, 1), number(b, 1)] + [number(c) for c in point]))
    return "\n".join(lines) + "\n"


def settings_text(settings):
    lines = ["Windows Registry Editor Version 5.00", "", f"[{SETTINGS_KEY}]"]
    lines += [f'"{name}"="{text}"' for name, text in settings.items()]
    return "\n".join(lines) + "\n"


def xyz(v):
    return dict(zip("XYZ", v))


def truth(scenario):
    return {
        "pole": xyz(scenario.pole),
        "mountingAngle": scenario.mounting_angle,
        "stylus": xyz((0.0, 0.0, -scenario.stylus_length)),
        "lockedToUnlocked": xyz(scenario.locked_to_unlocked),
        "noise": scenario.noise,
        "aAxisPointsCapturedAtB": scenario.a_set_b,
        "bAxisPointsCapturedAtA": scenario.b_set_a,
        "settings": scenario.settings,
    }


def write(folder, name, text):
    (folder / name).write_text(text, encoding="utf-8", newline="\n")


def write_scenario(scenario):
    folder = FOLDER / scenario.name
    folder.mkdir(exist_ok=True)
    noise = noise_source(scenario)
    a_rows = [(a, scenario.a_set_b, captured_point(scenario, a, scenario.a_set_b, noise)) for a in range(0, 91, 15)]
    b_rows = [(scenario.b_set_a, b, captured_point(scenario, scenario.b_set_a, b, noise)) for b in range(-180, 181, 30)]
    write(folder, "a-axis.csv", capture_text("A turned, B held; head unlocked; millimetres and degrees", a_rows))
    write(folder, "b-axis.csv", capture_text("B turned, A held; head unlocked; millimetres and degrees", b_rows))
    write(folder, "truth.json", json.dumps(truth(scenario), indent=2) + "\n")
    if scenario.settings:
        write(folder, "settings.reg", settings_text(scenario.settings))


if __name__ == "__main__":
    for each in SCENARIOS:
        write_scenario(each)
