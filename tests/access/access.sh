#!/usr/bin/env bash
# Checks that "zotdamctl doctor" reports when the user may not replace the user settings file, and that the library then
# behaves as reported. Wine applies the rights of the build machine. The last line counts the checks; the exit code is 0
# if all of them have passed.
source "$(dirname "$0")/../support/checks.sh"

install_toolchain
install_packages python3
build_targets zotdamctl

# A separate prefix, because the wine server must not have rights that the programs do not have.
WINEPREFIX=$folder/prefix
make_prefix
trap 'wineserver --kill; chmod -R u+w "$folder"; rm -rf "$folder"' EXIT

# Without this right, root may access files only as their owner, group and mode permit.
without_override=()
[ "$(id -u)" -ne 0 ] || without_override=(setpriv --bounding-set="-dac_override,-dac_read_search")

cp -r samples/. "$folder"
settings_folder="$folder/ProgramData/Orlo Corporation/QUEN Power Management"
settings="$settings_folder/ZOTPowercfg.xml"

zotdamctl() {
    "${without_override[@]}" "${fixed_layout[@]}" wine "$build/bin/zotdamctl.exe" \
        --program-files "$folder/Program Files" --program-data "$folder/ProgramData" "$@"
}

# finds KIND PROBLEM CONSEQUENCE: checks that this is the only finding.
finds() {
    zotdamctl doctor --json >"$folder/findings.json"
    python3 - "$folder/findings.json" "$@" <<'PYTHON'
import json
import sys

with open(sys.argv[1], encoding='utf-8') as file:
    findings = json.load(file)['findings']
found = [(finding['kind'], finding['problem'], finding['consequence']) for finding in findings]
sys.exit(0 if found == [tuple(sys.argv[2:])] else f'{found}')
PYTHON
}

has_no_findings() { zotdamctl doctor; }
stores() { zotdamctl setting set LowBatteryWarning "$1" && grep -q "LowBatteryWarning=\"$1\"" "$settings"; }
stores_nothing() { ! stores "$1"; }

check 'no finding with all rights' has_no_findings
check 'a save with all rights' stores 21

chmod 555 "$settings_folder"
check 'a folder in which the user may not create files' finds no-write-access \
    'this user may write to the file, but not replace it' \
    'the library writes the file in place; an interrupted save damages it'
check 'a save in place' stores 22

chmod 755 "$settings_folder"
mv "$settings" "$folder/settings.xml"
chmod 555 "$settings_folder"
check 'a missing file that the user may not create' finds no-write-access \
    'this user may not create the file' 'the library stores nothing'
check 'no save of a missing file' stores_nothing 23

# Only root can make another user the owner of a file.
if [ "$(id -u)" -eq 0 ]; then
    chmod 755 "$settings_folder"
    cp "$folder/settings.xml" "$settings"
    chown nobody "$settings"
    check 'a file of another user in a folder of this user' has_no_findings
    chmod 555 "$settings_folder"
    check 'a file of another user' finds no-write-access \
        'this user may neither replace the file nor write to it' 'the library stores nothing'
    check 'no save of a file of another user' stores_nothing 24
fi

report_checks
