#!/usr/bin/env bash
# Runs every export on a large number of randomly generated and damaged data files, and counts them. A round uses one
# seed and at least one file of each of the four kinds. The default is 25,000 rounds, starting with seed 0:
#     scripts/fuzz.sh [ROUNDS [FIRST_SEED]]
# A failure is reported with its seed, and its input files are copied to build/fuzz.
source "$(dirname "$0")/common.sh"

rounds=${1:-25000}
first=${2:-0}

install_toolchain
build_targets stress_tests

# The rounds write many small files, which are kept in memory if possible.
work=$(mktemp -d -p "$([ -w /dev/shm ] && echo /dev/shm || echo "$PWD/build")" zotdam-fuzz.XXXXXX)
trap 'rm -rf "$work"' EXIT
mkdir "$work/inputs"
export ZOTDAM_TEST_FILES=$work
make_prefix

say "Fuzzing: $rounds rounds from seed $first"
begin=$(date +%s)
log=$build/fuzz.log
exit_code=0
ZOTDAM_FUZZ_ROUNDS=$rounds ZOTDAM_FUZZ_SEED=$first \
    ZOTDAM_FUZZ_FOLDER='T:\inputs' \
    wine "$build/bin/stress_tests.exe" --gtest_filter='FuzzTest.*' 2>&1 |
    tee "$log" | grep --line-buffered FIGURE || exit_code=$?
seconds=$(($(date +%s) - begin))

# Requires the line of the passed test, because wine may return any exit code for a program that crashes.
if [ "$exit_code" -ne 0 ] || ! tr -d '\r' <"$log" | grep -q '^\[  PASSED  \] 1 test\.$'; then
    rm -rf build/fuzz
    cp -r "$work/inputs" build/fuzz
    cat "$log"
    say "Failed; the files are in build/fuzz"
    exit 1
fi
inputs=$(tr -d '\r' <"$log" | sed -n 's/^\[  FIGURE  \] inputs: //p')
echo "$inputs inputs in $rounds rounds, none failed; $seconds s, $((rounds / (seconds > 0 ? seconds : 1))) seeds/s"
