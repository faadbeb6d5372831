#!/usr/bin/env bash
# Checks scripts/run_tests.py on programs that end well, die, hang or do not start. The last line counts the checks; the
# exit status is 0 when all have passed.
cd "$(dirname "$0")/../.." || exit
PYTHONDONTWRITEBYTECODE=1 PYTHONPATH=scripts exec python3 tests/runner/runner_test.py
