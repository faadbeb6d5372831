#!/usr/bin/env bash
# Validates the JSON output of the commands against schemas/zotdamctl.schema.json. The last line counts the checks; the
# exit code is 0 if all of them have passed.
source "$(dirname "$0")/../support/checks.sh"

install_toolchain
install_packages python3 python3-jsonschema
build_targets zotdamctl
make_prefix

cp -r samples/. "$folder"
installation="$folder/Program Files/Orlo/QUEN Power Management"
user_settings="$folder/ProgramData/Orlo Corporation/QUEN Power Management/ZOTPowercfg.xml"

zotdamctl() {
    wine "$build/bin/zotdamctl.exe" --program-files "$folder/Program Files" --program-data "$folder/ProgramData" "$@"
}

# is_valid EXIT_CODE DEFINITION ARGUMENTS...
is_valid() {
    local expected=$1 definition=$2 exit_code=0
    shift 2
    zotdamctl "$@" --json >"$folder/output.json" || exit_code=$?
    cat "$folder/output.json"
    [ "$exit_code" -eq "$expected" ] &&
        PYTHONDONTWRITEBYTECODE=1 python3 tests/json/validate.py "$definition" "$folder/output.json"
}

# succeeds DEFINITION ARGUMENTS...: checks the output of a command that succeeds.
succeeds() { check "${*:2}" is_valid 0 "$@"; }

succeeds doctor doctor
succeeds doctor doctor "$installation/data/ZOTBase.xml"
succeeds report report --output "$folder/report.html"

# ---- Findings ------------------------------------------------------------------------------------------------------

sed -i 's,Flag="1",Flag="x",' "$installation/ZOTDefault.xml"
check 'doctor with findings' is_valid 1 doctor doctor
echo '<OrloPowerCfg>' >"$user_settings"
rm "$installation/data/ZOTBase.xml"
check 'doctor with files that cannot be examined' is_valid 2 doctor doctor

# ---- The schema ----------------------------------------------------------------------------------------------------

is_rejected() { ! PYTHONDONTWRITEBYTECODE=1 python3 tests/json/validate.py "$1" "$folder/output.json"; }
echo '{"findings": [{"file": "a"}]}' >"$folder/output.json"
check 'a finding without its fields is rejected' is_rejected doctor
echo '{"findings": [], "other": 1}' >"$folder/output.json"
check 'an unknown key is rejected' is_rejected doctor

report_checks
