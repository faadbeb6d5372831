#!/usr/bin/env bash
# Builds everything and runs all tests. The last line counts them; the exit status is 0 when all have passed.
#     scripts/test.sh [PRESET] [--filter PATTERN] [--list] [--jobs N]
# PRESET names another build than the release: debug, clang, guarded, sanitized. --filter runs some tests by name, --list
# prints the names, --help tells more.
source "$(dirname "$0")/common.sh"
if [[ ${1:-} == [a-z]* ]]; then
    preset=$1
    build=build/$preset
    shift
fi

install_toolchain
install_packages python3
[ "$preset" != clang ] || install_packages clang
options=(--build "$build")
if [ "$preset" = release ]; then
    install_packages libxml2-utils llvm
    options+=(--checks)
fi
build_targets
make_prefix

export ZOTDAM_BUILT=$build
say "Running the tests"
scripts/run_tests.py "${options[@]}" "$@"
