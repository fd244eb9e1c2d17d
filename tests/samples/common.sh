# Sourced by the checks that run Windows programs: a working folder, the commands of Windows, and the required output of
# the samples.
# An unexpected failure names its command.
set -E
trap 'echo "line $LINENO of ${BASH_SOURCE[0]##*/} failed: $BASH_COMMAND" >&2' ERR
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
tree=$1
runner=$root/cmake/${QMV40_WINE:-wine-run}
! grep -q '^CMAKE_TOOLCHAIN_FILE.*i686' "$tree/CMakeCache.txt" || runner=$root/cmake/wine32-run
work=$(mktemp -d)
# The time limit ends programs that hang. It is far above what a program takes on a machine with much else to do.
export WINEPREFIX=${WINEPREFIX:-$tree/wine} WINE_TIME_LIMIT=300 LC_ALL=C.UTF-8
source "$root/tests/samples/sample-text.sh"

# windows <program or command> <argument>...: its output, with line ends converted to LF.
windows() {
    local program=$1 status=0
    [ -f "$program" ] || program=$WINEPREFIX/drive_c/windows/system32/$1.exe
    "$runner" "$program" "${@:2}" >"$work/output" || status=$?
    tr -d '\r' <"$work/output"
    return $status
}

# windows_path <file>: its name for Windows programs.
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

# The script host registers its own types when it first runs. It runs here, before the registry is remembered.
: >"$work/empty.vbs"
(cd "$work" && windows cscript //nologo empty.vbs)

# Marshalling without a registration makes the platform register the interfaces; the next unregistration removes them.
for switches in "/s" "/s /u"; do
    # shellcheck disable=SC2086
    windows regsvr32 $switches "$(windows_path "$tree/bin/CoQMV40Calculator.dll")"
done

cp "$root/samples/head.ini" "$work/"
