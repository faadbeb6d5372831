#!/usr/bin/env bash
# Runs the probe under wine and compares its questions and answers with the table in docs/windows.md. The last line
# counts the checks; the exit code is 0 if all of them have passed.
source "$(dirname "$0")/../support/checks.sh"

install_toolchain
build_targets zotdam_probe
make_prefix

version=$(wine --version | sed 's/^wine-\([0-9]*\).*/\1/')

# Prints the rows of the table as "question|Windows|assumed|wine". The last field is empty if the answer is documented,
# or if it applies to another version of wine.
rows_of_page() {
    awk -F ' *[|] *' -v OFS='|' -v version="$version" '
        /^\| `/ && NF == 7 {
            gsub("`", "", $2)
            if ($5 ~ /^[0-9]+: /)
                $5 = index($5, version ": ") == 1 ? substr($5, length(version) + 3) : ""
            print $2, $3, $4, $5
        }' docs/windows.md
}

# Prints the answers of the probe in the same form.
rows_of_probe() {
    sed 's/^.. *\([a-z]*\) *\([^ :]*\): \(.*\); assumed: \(.*\); documented: \(.*\)$/\1|\2|\5|\4|\3/' \
        "$folder/answers" |
        awk -F '|' -v OFS='|' '{ print $2, $3, $4, $1 == "same" ? "" : $5 }'
}

ask() { wine "$build/bin/zotdam_probe.exe" | tr -d '\r' | tee "$folder/answers"; }

check 'the library works with all answers of wine' ask
check "the questions and the answers of wine $version are those of docs/windows.md" \
    lists rows_of_probe < <(rows_of_page)

report_checks
