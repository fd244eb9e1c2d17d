# Sourced by the checks of samples on every system: what a sample must print.
fail() {
    echo "$@" >&2
    exit 1
}

# check_plan <file>: the file must be samples/plan.txt, which every sample of one plan prints for samples/head.ini, an
# ideal head mounted square to the machine. The lines below are computed by hand: the lever's locked ball is at the head
# centre plus (30.3, -19.3, -36.55), the engagement at the head centre minus the drive cup, and the arcs tilt by 45 and
# swivel by 90.
check_plan() {
    cmp -s "$root/samples/plan.txt" "$1" || fail "$1 is not samples/plan.txt: $(diff "$root/samples/plan.txt" "$1" | head -20)"
    [ "$(wc -l <"$1")" -eq 22 ] || fail "$1 has not 22 lines: $(cat "$1")"
    while read -r line; do
        grep -qxF -- "$line" "$1" || fail "$1 lacks '$line': $(cat "$1")"
    done <<'LINES'
refused 0x8A00000E: Invalid A Target Angle, value must be a 15 degree interval.
position 0.000 0.000
position 45.000 90.000
2 EngageWithUnLockLever 130.300 180.700 -336.550
8 EngageWithPeg 106.950 176.000 -288.500
10 MoveToBPosition 100.000 200.000 -300.000 0.000 0.000 1.000 -90.000
11 MoveToAPosition 100.000 200.000 -300.000 0.000 -1.000 0.000 -45.000
LINES
}
