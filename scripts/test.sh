#!/usr/bin/env bash
# Builds everything and runs all tests. The last line counts them; the exit code is 0 if all of them have passed.
#     scripts/test.sh [PRESET] [--filter PATTERN] [--list] [--jobs N]
# PRESET      another build than the release: debug, clang, guarded, sanitized, ucrt (only on Debian 13)
# --filter    runs the tests whose names match, as in 'ResetTest.*', or one of the checks in tests/NAME/NAME.sh
# --list      prints the names of the tests and checks, and runs none
# --jobs      how many programs run at the same time (default: the number of processors, at least 2)
case " $* " in
    *' --help '* | *' -h '*)
        sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0"
        exit
        ;;
esac
source "$(dirname "$0")/common.sh"
if [[ ${1:-} == [a-z]* ]]; then
    preset=$1
    build=build/$preset
    shift
fi

# The checks install their packages themselves. While the build runs, this takes almost no extra time.
install_packages_of_checks() {
    local packages
    mapfile -t packages < <(sed -n 's/^install_packages //p' tests/*/*.sh | xargs -n 1 | sort -u)
    install_packages "${packages[@]}"
}

install_toolchain
options=(--build "$build")
case $preset in
    # The build makes the import library for MSVC only if it finds llvm.
    release)
        install_packages python3 llvm
        install_packages_of_checks &
        options+=(--checks)
        ;;
    clang) install_packages python3 clang ;;
    ucrt) install_packages python3 g++-mingw-w64-ucrt64 ;;
    *) install_packages python3 ;;
esac
build_targets
make_prefix
wait

export ZOTDAM_BUILT=$build
say "Running the tests"
scripts/run_tests.py "${options[@]}" "$@"
