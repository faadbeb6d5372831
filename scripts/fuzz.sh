#!/usr/bin/env bash
# Runs every export on data files that are made and damaged by chance, for long, and counts them. A round is one seed and
# at least one file of each of the four kinds; without arguments there are 25,000 rounds, from seed 0:
#     scripts/fuzz.sh [ROUNDS [FIRST_SEED]]
# What fails names its seed, and leaves the files that it was given in build/fuzz.
source "$(dirname "$0")/common.sh"

rounds=${1:-25000}
first=${2:-0}

install_toolchain
build_targets endurance_tests

# The rounds write many small files: in memory, where that can be.
work=$(mktemp -d -p "$([ -w /dev/shm ] && echo /dev/shm || echo "$PWD/build")" zotdam-fuzz.XXXXXX)
trap 'rm -rf "$work"' EXIT
mkdir "$work/inputs"
export ZOTDAM_TEST_FILES=$work
make_prefix

say "Fuzzing: $rounds rounds from seed $first"
begin=$(date +%s)
log=$build/fuzz.log
status=0
ZOTDAM_FUZZ_ROUNDS=$rounds ZOTDAM_FUZZ_SEED=$first \
    ZOTDAM_FUZZ_FOLDER='T:\inputs' \
    wine "$build/bin/endurance_tests.exe" --gtest_filter='FuzzTest.*' 2>&1 | tee "$log" | grep --line-buffered FIGURE || status=$?
seconds=$(($(date +%s) - begin))

# A program that dies says nothing of what has passed, whatever status wine gives for it.
if [ "$status" -ne 0 ] || ! tr -d '\r' <"$log" | grep -q '^\[  PASSED  \] 1 test\.$'; then
    rm -rf build/fuzz
    cp -r "$work/inputs" build/fuzz
    cat "$log"
    say "Failed; the files are in build/fuzz"
    exit 1
fi
inputs=$(tr -d '\r' <"$log" | sed -n 's/^\[  FIGURE  \] inputs: //p')
echo "$inputs inputs in $rounds rounds, none failed; $seconds s, $((rounds / (seconds > 0 ? seconds : 1))) seeds/s"
