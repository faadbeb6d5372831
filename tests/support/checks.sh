# shellcheck shell=bash
# Functions for scripts that run checks and count them. This file is sourced, not run, and also sources
# scripts/common.sh. The script ends with report_checks.
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/common.sh"

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
passed=0
failed=0

# check TITLE COMMAND...: counts whether the command succeeds. If it fails, its output is the reason.
check() {
    local title=$1
    shift
    if "$@" >"$folder/reason" 2>&1; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        echo "FAILED: $title"
        cat "$folder/reason"
    fi
}

# lists COMMAND...: succeeds if the command prints the lines of the standard input, in any order.
lists() { diff <(LC_ALL=C sort) <("$@" | tr -d '\r' | LC_ALL=C sort); }

report_checks() {
    echo "$passed passed, $failed failed"
    [ "$failed" -eq 0 ]
}
