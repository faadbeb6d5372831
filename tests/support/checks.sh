# What scripts share that check something and count it. Sourced, not run; what the scripts of the project share comes
# with it. The script ends with report_checks.
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/common.sh"

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
passed=0
failed=0

# check TITLE COMMAND...: counts whether the command succeeds, whose output is the reason if it does not.
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

report_checks() {
    echo "$passed passed, $failed failed"
    [ "$failed" -eq 0 ]
}
