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

# One validator for all outputs: its start takes longer than a command.
coproc validator { exec python3 tests/json/validate.py; }

# matches DEFINITION: validates the output of the last command.
matches() {
    local answer
    echo "$1 $folder/output.json" >&"${validator[1]}"
    read -r answer <&"${validator[0]}"
    echo "$answer"
    [ "$answer" = valid ]
}

# is_valid EXIT_CODE DEFINITION ARGUMENTS...
is_valid() {
    local expected=$1 definition=$2 exit_code=0
    shift 2
    echo "$definition" >>"$folder/definitions.txt"
    zotdamctl "$@" --json >"$folder/output.json" || exit_code=$?
    cat "$folder/output.json"
    [ "$exit_code" -eq "$expected" ] && matches "$definition"
}

# succeeds DEFINITION ARGUMENTS...: checks the output of a command that succeeds.
succeeds() { check "${*:2}" is_valid 0 "$@"; }

# is_error EXIT_CODE KIND ARGUMENTS...
is_error() { is_valid "$1" error "${@:3}" && grep -q "\"kind\": *\"$2\"" "$folder/output.json"; }

# fails KIND ARGUMENTS...: checks the output of a command that fails.
fails() { check "$1: ${*:2}" is_error 1 "$@"; }

# ---- Commands that only show something -----------------------------------------------------------------------------

succeeds count count
succeeds functions functions
succeeds base base
succeeds spec-schemes spec-schemes
succeeds params params balanced
succeeds params params balanced --default
succeeds current current balanced
succeeds commands commands balanced
succeeds diff diff balanced power-saver
succeeds diff diff balanced power-saver --ac
succeeds list list
succeeds aliases aliases
succeeds setting-get setting get LowBatteryWarning
succeeds setting-list setting list
succeeds doctor doctor
succeeds doctor doctor "$installation/data/ZOTBase.xml"
succeeds report report --output "$folder/report.html"
succeeds completion completion bash
succeeds help help

# ---- Commands that change something --------------------------------------------------------------------------------

succeeds backup backup "$folder/backup.xml"
succeeds export export "$folder/export.json"
succeeds set set balanced 1 0 0
succeeds setacvalueindex setacvalueindex balanced 1 1
succeeds setdcvalueindex setdcvalueindex balanced 1 1
succeeds setting-set setting set LowBatteryWarning 20
succeeds import import "$folder/export.json" --dry-run
succeeds import import "$folder/export.json"
succeeds forget forget balanced
succeeds forget forget balanced
succeeds restore restore "$folder/backup.xml"
succeeds reset reset
succeeds setting-init setting init
succeeds adopt adopt --all

# ---- Errors --------------------------------------------------------------------------------------------------------

check 'usage: an unknown command' is_error 2 usage unknown
check 'usage: doctor with a file and a language' is_error 2 usage doctor "$user_settings" --language de-DE
fails unknown-function functions 999
fails unknown-setting setting get Unknown
fails invalid-value set balanced 1 999 0
fails missing-file import "$folder/none.json"
fails unreadable-file restore "$folder/export.json"
fails not-stored report --output "$folder/none/report.html"

# ---- Findings ------------------------------------------------------------------------------------------------------

sed -i 's,Flag="1",Flag="x",' "$installation/ZOTDefault.xml"
check 'doctor with findings' is_valid 1 doctor doctor
echo '<OrloPowerCfg>' >"$user_settings"
rm "$installation/data/ZOTBase.xml"
check 'doctor with files that cannot be examined' is_valid 2 doctor doctor

# ---- The schema ----------------------------------------------------------------------------------------------------

# The schema accepts one definition for each command, and one for errors. The output of each has been checked above.
all_are_checked() {
    python3 tests/json/validate.py --list >"$folder/defined.txt"
    sort -u "$folder/definitions.txt" | lists cat "$folder/defined.txt"
}
check 'each definition is checked' all_are_checked

is_rejected() { ! matches "$1"; }
echo '{"findings": [{"file": "a"}]}' >"$folder/output.json"
check 'a finding without its fields is rejected' is_rejected doctor
echo '{"findings": [], "other": 1}' >"$folder/output.json"
check 'an unknown key is rejected' is_rejected doctor

report_checks
