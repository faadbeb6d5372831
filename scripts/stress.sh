#!/usr/bin/env bash
# Runs the stress tests at full length and prints their figures. A GoogleTest filter selects some of the tests:
#     scripts/stress.sh ['KilledSaveTest.*']
source "$(dirname "$0")/common.sh"

install_toolchain
build_targets stress_tests
make_prefix

say "Running the stress tests"
ZOTDAM_LONG_RUN=1 wine "$build/bin/stress_tests.exe" --gtest_filter="${1:-*}"
