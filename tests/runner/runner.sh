#!/usr/bin/env bash
# Checks scripts/run_tests.py with programs that succeed, crash, hang or do not start. The last line counts the checks;
# the exit code is 0 if all of them have passed.
cd "$(dirname "$0")/../.." || exit
PYTHONDONTWRITEBYTECODE=1 PYTHONPATH=scripts exec python3 tests/runner/runner_test.py
