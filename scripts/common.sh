# shellcheck shell=bash
# Shared code of the scripts in this folder: the packages, the build and the wine prefix. Sourced, not run.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

preset=release
build=build/$preset
cmake_options=()

# The wine prefix. Programs that run in parallel use separate copies of the first one, which ZOTDAM_WINEPREFIX names.
first_prefix=$PWD/build/wine
export WINEPREFIX="${ZOTDAM_WINEPREFIX:-$first_prefix}"
export WINEDEBUG="${WINEDEBUG:--all}"
export WINEDLLOVERRIDES='mscoree,mshtml,winemenubuilder.exe='
# Without a UTF-8 locale, wine does not support file names in all writing systems.
export LC_ALL=C.UTF-8
export PYTHONDONTWRITEBYTECODE=1

# Linux places the heap of a process at a random address. In about one of 2,000 processes it covers a page that wine
# needs at a fixed address, and the process ends before it runs. Some containers cannot disable the randomisation: there,
# such a start is repeated.
if setarch --addr-no-randomize true 2>/dev/null; then
    fixed_layout=(setarch --addr-no-randomize)
    wine() { "${fixed_layout[@]}" wine "$@"; }
else
    fixed_layout=()
    wine() {
        local errors exit_code
        errors=$(mktemp)
        while
            exit_code=0
            WINEDEBUG=$WINEDEBUG,err+virtual command wine "$@" 2>"$errors" || exit_code=$?
            [ "$exit_code" -eq 1 ] && grep -q 'failed to map the shared user data' "$errors"
        do :; done
        cat "$errors" >&2
        rm "$errors"
        return "$exit_code"
    }
fi

say() { printf '== %s\n' "$*" >&2; }

# Prints those of the given Debian packages that are not installed.
missing_packages() {
    local package
    for package in "$@"; do
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || echo "$package"
    done
}

# Installs the given Debian packages that are not installed yet.
install_packages() {
    [ -n "$(missing_packages "$@")" ] || return 0
    mkdir -p build
    (
        # Scripts that run in parallel install their packages one after another.
        flock 9
        local missing as_root=()
        mapfile -t missing < <(missing_packages "$@")
        [ ${#missing[@]} -gt 0 ] || return 0
        say "Installing ${missing[*]}"
        [ "$(id -u)" -eq 0 ] || as_root=(sudo)
        "${as_root[@]}" apt-get update -qq
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
            "${missing[@]}" >/dev/null
    ) 9>build/packages.lock
}

install_toolchain() {
    install_packages cmake ninja-build g++-mingw-w64-x86-64-posix g++-mingw-w64-x86-64-win32 \
        googletest libcli11-dev nlohmann-json3-dev wine wine64
}

# Builds the given targets, or all of them. Prints the log only if the build fails. The scripts that scripts/test.sh
# runs in parallel skip the build, because a build folder supports only one build at a time.
build_targets() {
    [ "${ZOTDAM_BUILT:-}" != "$build" ] || return 0
    say "Building ($preset)"
    local log=$build/build.log
    mkdir -p "$build"
    if ! { cmake --preset "$preset" -B "$build" "${cmake_options[@]}" &&
        cmake --build "$build" ${1:+--target "$@"}; } >"$log" 2>&1; then
        cat "$log" >&2
        exit 1
    fi
}

project_version() { sed -n 's/^project(ZOTDam VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt; }

# Prints the checked-out commit, with "-dirty" if files have changed, or "unknown" outside a repository.
commit_name() { git describe --always --dirty --abbrev=40 --exclude '*' 2>/dev/null || echo unknown; }

# pack_tree TREE FOLDER: makes the packages that contain the files of the zip, from the unpacked zip.
pack_tree() {
    local version
    version=$(project_version)
    package/msi.py --tree "$1" --version "$version" --output "$2/ZOTDam-$version-x64.msi"
    package/nupkg.py --tree "$1" --version "$version" --output "$2/ZOTDam.$version.nupkg"
}

# Prints the time of the checked-out commit in seconds, or the current time outside a repository.
commit_time() { git log -1 --format=%ct 2>/dev/null || date +%s; }

# Creates the wine prefix if it does not exist. Several scripts may do this at the same time. Drive T: is the folder
# that ZOTDAM_TEST_FILES names.
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
    # The programs that wineboot starts run longer than this function and must not inherit the lock.
    WINEPREFIX=$first_prefix "${fixed_layout[@]}" wineboot --init >/dev/null 2>&1 9>&-
    WINEPREFIX=$first_prefix wineserver --wait
}

# Copies the files that programs write, and links the rest, which takes about 700 MB.
copy_first_prefix() {
    local copy
    copy=$(mktemp -d "$WINEPREFIX.XXXXXX")
    mkdir "$copy/drive_c"
    cp -a "$first_prefix"/{*.reg,.update-timestamp,dosdevices} "$copy"
    cp -a "$first_prefix"/drive_c/{users,ProgramData} "$copy/drive_c"
    ln -s "$first_prefix"/drive_c/{windows,Program*Files*} "$copy/drive_c"
    mv "$copy" "$WINEPREFIX"
}
