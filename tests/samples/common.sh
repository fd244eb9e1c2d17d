# Sourced by the checks: a folder to work in, Windows' own commands, and what the samples must print.
# No check ends in silence: a command that fails where none may is named.
set -E
trap 'echo "line $LINENO of ${BASH_SOURCE[0]##*/} failed: $BASH_COMMAND" >&2' ERR
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
tree=$1
runner=$root/cmake/wine-run
! grep -q '^CMAKE_TOOLCHAIN_FILE.*i686' "$tree/CMakeCache.txt" || runner=$root/cmake/wine32-run
work=$(mktemp -d)
# The time limit ends programs that hang. It is far above what a program takes on a machine with much else to do.
export WINEPREFIX=${WINEPREFIX:-$tree/wine} WINE_TIME_LIMIT=300 LC_ALL=C.UTF-8

fail() {
    echo "$@" >&2
    exit 1
}

# windows <program or command> <argument>...: lines end as they do here.
windows() {
    local program=$1 status=0
    [ -f "$program" ] || program=$WINEPREFIX/drive_c/windows/system32/$1.exe
    "$runner" "$program" "${@:2}" >"$work/output" || status=$?
    tr -d '\r' <"$work/output"
    return $status
}

# windows_path <file>: its name as Windows programs see it.
windows_path() { echo "Z:${1//\//\\}"; }

# remember_registry <name>; same_registry <name> <when>: the classes and the programs installed are as they were.
remember_registry() {
    local key
    for key in Classes 'Microsoft\Windows\CurrentVersion\Uninstall'; do
        windows reg export "HKLM\\Software\\$key" "$(windows_path "$work/part.reg")" /y >/dev/null
        iconv -f UTF-16 "$work/part.reg"
    done >"$work/$1.reg"
}
diff_registry() { diff "$work/$1.reg" "$work/now.reg" | head -40; }
same_registry() {
    remember_registry now
    cmp "$work/$1.reg" "$work/now.reg" || fail "the registry is not as it was before, $2: $(diff_registry "$1")"
}

# The script host registers its own types when it first runs; that is no business of the comparison.
: >"$work/empty.vbs"
(cd "$work" && windows cscript //nologo empty.vbs)

# Marshalling without a registration makes the platform note the interfaces; such a note goes with the next unregistering.
for switches in "/s" "/s /u"; do
    # shellcheck disable=SC2086
    windows regsvr32 $switches "$(windows_path "$tree/bin/CoQMV40Calculator.dll")"
done

# An ideal head, square to the machine. Its pole is the head centre.
cat >"$work/head.ini" <<'INI'
[HEADCENTRE]
X=100
Y=200
Z=-300
[SAFEPOSITION]
X=0
Y=0
Z=-265
[AlignmentOffset]
RequiredRotationAroundZ=0
INI

# check_plan <file>: the text of a sample that can show everything. The numbers are worked out by hand: the head centre and
# the lever's locked ball, (30.3, -19.3, -36.55) from it, less the drive cup, and the turns of a tilt by 45 and a swivel by 90.
check_plan() {
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
