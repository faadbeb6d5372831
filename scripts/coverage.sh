#!/usr/bin/env bash
# Runs all tests and tells which lines and branches of src/ they reach: a table, and then each line that they do not
# reach, with the reason that unreached-lines.txt has for it. Fails when a reason is missing, or with fewer than 98 % of
# the lines.
source "$(dirname "$0")/common.sh"
preset=coverage
build=build/$preset

install_packages gcovr
# The compiler's counters hold a handle and some memory of their own in each DLL that was loaded.
export GTEST_FILTER='-LeakTest.*:LoadRoundsTest.*:*/LeakTest.*'
[ ! -d "$build" ] || find "$build" -name '*.gcda' -delete
# Programs that end at the same time would overwrite each other's counters.
scripts/test.sh "$preset" --jobs 1

gcovr --root . --filter src/ --object-directory "$build/src" "$build/src" \
    --gcov-executable x86_64-w64-mingw32-gcov-posix --exclude-throw-branches \
    --fail-under-line 98 --print-summary --json "$build/coverage.json" --txt
scripts/unreached.py "$build/coverage.json" scripts/unreached-lines.txt
