# What the scripts of this folder share: the packages, the build and the wine prefix. Sourced, not run.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

preset=release
build=build/$preset

# One prefix for the whole build folder: a new one takes some 700 MB.
export WINEPREFIX="$PWD/build/wine"
export WINEDEBUG="${WINEDEBUG:--all}"
export WINEDLLOVERRIDES='mscoree,mshtml,winemenubuilder.exe='
# Without a UTF-8 locale, wine cannot name files in every script.
export LC_ALL=C.UTF-8

say() { printf '== %s\n' "$*" >&2; }

# Installs those of the given Debian packages that are missing.
install_packages() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    say "Installing ${missing[*]}"
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
        "${missing[@]}" >/dev/null
}

install_toolchain() {
    install_packages cmake ninja-build g++-mingw-w64-x86-64-posix g++-mingw-w64-x86-64-win32 \
        googletest libcli11-dev nlohmann-json3-dev wine wine64
}

# Builds the given targets, or all; silent unless something fails.
build_targets() {
    say "Building ($preset)"
    local log=$build/build.log
    mkdir -p "$build"
    if ! { cmake --preset "$preset" && cmake --build "$build" ${1:+--target "$@"}; } >"$log" 2>&1; then
        cat "$log" >&2
        exit 1
    fi
}

# When the commit was made that is checked out, in seconds; now, where there is no repository.
commit_time() { git log -1 --format=%ct 2>/dev/null || date +%s; }

make_prefix() {
    [ ! -f "$WINEPREFIX/system.reg" ] || return 0
    say "Making the wine prefix"
    wineboot --init >/dev/null 2>&1
    wineserver --wait
}
