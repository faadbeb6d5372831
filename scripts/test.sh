#!/usr/bin/env bash
# Builds everything and runs all tests. The last line counts them; the exit status is 0 when all have passed.
# Another build than the release is named by its preset:
#     scripts/test.sh [debug|clang|guarded|sanitized]
source "$(dirname "$0")/common.sh"
preset=${1:-$preset}
build=build/$preset

install_toolchain
[ "$preset" != clang ] || install_packages clang
build_targets
make_prefix

passed=0
failed=0

# A program that dies before its summary counts as one failure, whatever status wine gives for it.
run_tests() {
    local log=$build/$1.log
    say "Running $1"
    local status=0
    wine "$build/bin/$1.exe" --gtest_brief=1 >"$log" 2>&1 || status=$?
    local ok bad
    ok=$(tr -d '\r' <"$log" | sed -n 's/^\[  PASSED  \] \([0-9]*\) tests\?\.$/\1/p')
    bad=$(tr -d '\r' <"$log" | sed -n 's/^ *\([0-9]*\) FAILED TESTS\?$/\1/p')
    if [ "$status" -ne 0 ] || [ -z "$ok" ]; then
        cat "$log"
        bad=${bad:-1}
    fi
    passed=$((passed + ${ok:-0}))
    failed=$((failed + ${bad:-0}))
}

# What the programs are made of besides the DLL has tests of its own, which count themselves in their last line.
run_script() {
    local log=$build/$1-checks.log
    say "Running $1"
    bash "tests/$1/$1.sh" >"$log" || cat "$log"
    local ok bad
    read -r ok bad < <(sed -n '$s/^\([0-9]*\) passed, \([0-9]*\) failed$/\1 \2/p' "$log") || true
    passed=$((passed + ${ok:-0}))
    failed=$((failed + ${bad:-1}))
}

for program in inside_tests export_tests endurance_tests client_tests; do
    run_tests "$program"
done
if [ "$preset" = release ]; then
    for script in schemas examples completion package; do
        run_script "$script"
    done
fi

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ] && [ "$passed" -gt 0 ]
