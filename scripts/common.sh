# What the scripts of this folder share: the packages, the build and the wine prefix. Sourced, not run.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

preset=release
build=build/$preset

# The wine prefix. Programs that run side by side have one each, which ZOTDAM_WINEPREFIX names: a copy of the first one.
first_prefix=$PWD/build/wine
export WINEPREFIX="${ZOTDAM_WINEPREFIX:-$first_prefix}"
export WINEDEBUG="${WINEDEBUG:--all}"
export WINEDLLOVERRIDES='mscoree,mshtml,winemenubuilder.exe='
# Without a UTF-8 locale, wine cannot name files in every script.
export LC_ALL=C.UTF-8

# Linux places the heap of a process at random. In about one of 2,000 processes it covers a page that wine needs at a fixed
# address, and the process ends before it runs. Where the random placement cannot be turned off, as in some containers, such
# a start is repeated.
if setarch --addr-no-randomize true 2>/dev/null; then
    fixed_layout=(setarch --addr-no-randomize)
    wine() { "${fixed_layout[@]}" wine "$@"; }
else
    fixed_layout=()
    wine() {
        local errors status
        errors=$(mktemp)
        while
            status=0
            WINEDEBUG=$WINEDEBUG,err+virtual command wine "$@" 2>"$errors" || status=$?
            [ "$status" -eq 1 ] && grep -q 'failed to map the shared user data' "$errors"
        do :; done
        cat "$errors" >&2
        rm "$errors"
        return "$status"
    }
fi

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

# Builds the given targets, or all; silent unless something fails. The scripts that run side by side in scripts/test.sh
# find everything built: one build folder takes one build at a time.
build_targets() {
    [ "${ZOTDAM_BUILT:-}" != "$build" ] || return 0
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

# Makes the wine prefix if it does not exist. Several scripts may do this at the same time. Drive T: is the folder that
# ZOTDAM_TEST_FILES names.
make_prefix() {
    if [ ! -f "$WINEPREFIX/system.reg" ]; then
        mkdir -p build
        (
            flock 9
            [ -f "$first_prefix/system.reg" ] || make_first_prefix
            [ -f "$WINEPREFIX/system.reg" ] || copy_first_prefix
        ) 9>build/wine.lock
    fi
    if [ -n "${ZOTDAM_TEST_FILES:-}" ]; then
        ln -sfn "$ZOTDAM_TEST_FILES" "$WINEPREFIX/dosdevices/t:"
        export ZOTDAM_TEST_FOLDER='T:\'
    fi
}

make_first_prefix() {
    say "Making the wine prefix"
    # The programs that wineboot starts live longer than the lock.
    WINEPREFIX=$first_prefix "${fixed_layout[@]}" wineboot --init >/dev/null 2>&1 9>&-
    WINEPREFIX=$first_prefix wineserver --wait
}

# Copies what programs write and links the rest, which takes some 700 MB.
copy_first_prefix() {
    local copy
    copy=$(mktemp -d "$WINEPREFIX.XXXXXX")
    mkdir "$copy/drive_c"
    cp -a "$first_prefix"/{*.reg,.update-timestamp,dosdevices} "$copy"
    cp -a "$first_prefix"/drive_c/{users,ProgramData} "$copy/drive_c"
    ln -s "$first_prefix"/drive_c/{windows,Program*Files*} "$copy/drive_c"
    mv "$copy" "$WINEPREFIX"
}
