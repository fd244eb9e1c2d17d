# Sourced by ./run, ./test, benchmarks/run, and programs in packaging/ and tests/campaigns/.

# ensure_packages <name>...: installs the Debian packages that are missing, and prints their names.
ensure_packages() {
    local missing=()
    for package in "$@"; do
        dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing ${missing[*]}" >&2
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    {
        "${as_root[@]}" apt-get update
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"
    } >"${TMPDIR:-/tmp}/qmv40-packages.log" 2>&1 || {
        echo "Could not install them. The last messages of the package manager:" >&2
        tail -n 20 "${TMPDIR:-/tmp}/qmv40-packages.log" >&2
        return 1
    }
}

# ensure_node: installs node and npm, which build the page of `qmv40 view`. Some packages of node contain npm. Build
# trees that were configured without them are configured again.
ensure_node() {
    command -v npm >/dev/null && return
    ensure_packages nodejs npm && rm -f "$root"/build/*/build.ninja
}

# build_preset <preset> [target]...: configures if necessary, then builds. Prints something only if that fails.
build_preset() {
    local log="$root/build/$1.log"
    mkdir -p "$root/build"
    if ! { [ -f "$root/build/$1/build.ninja" ] || (cd "$root" && cmake --preset "$1"); } >"$log" 2>&1 ||
        ! cmake --build "$root/build/$1" ${2:+--target "${@:2}"} >>"$log" 2>&1; then
        echo "Building '$1' failed; see $log. It ends:" >&2
        tail -n 40 "$log" >&2
        return 1
    fi
}
