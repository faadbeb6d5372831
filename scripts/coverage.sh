#!/usr/bin/env bash
# Runs the test programs and reports the lines and branches of src/ that they reach: a table, and then each line that
# they do not reach, with its reason from unreached-lines.txt. Fails if a reason is missing or if less than 98 % of the
# lines are reached.
source "$(dirname "$0")/common.sh"
preset=coverage
build=build/$preset

install_packages gcovr
# The compiler's counters keep a handle and some memory for each loaded DLL, which these tests would report as a leak.
export GTEST_FILTER='-LeakTest.*:LoadRoundsTest.*:*/LeakTest.*'
[ ! -d "$build" ] || find "$build" -name '*.gcda' -delete
# Programs that end at the same time would overwrite each other's counters.
scripts/test.sh "$preset" --jobs 1

gcovr --root . --filter src/ --object-directory "$build/src" "$build/src" \
    --gcov-executable x86_64-w64-mingw32-gcov-posix --exclude-throw-branches \
    --fail-under-line 98 --print-summary --json "$build/coverage.json" --txt
scripts/unreached.py "$build/coverage.json" scripts/unreached-lines.txt
