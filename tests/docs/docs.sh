#!/usr/bin/env bash
# Checks that docs/compatibility.md and the comments that refer to it match, that its test files exist, that the offsets
# in docs/clients.md are those of the headers, and that the links and the tests that a page names exist. The last line
# counts the checks; the exit code is 0 if all have passed.
cd "$(dirname "$0")/../.." || exit
PYTHONDONTWRITEBYTECODE=1 exec python3 tests/docs/docs_test.py
