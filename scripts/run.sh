#!/usr/bin/env bash
# Builds the library and its command-line client, and runs the client in the wine prefix. With arguments it works on the
# sample installation. Without arguments it runs a short tour, which provisions a machine from the files that the suite
# ships, and then shows and changes its settings.
#   scripts/run.sh [zotdamctl arguments]
source "$(dirname "$0")/common.sh"

install_toolchain
build_targets ZOTDam zotdamctl
make_prefix

drive=$WINEPREFIX/drive_c
installation="$drive/Program Files/Orlo/QUEN Power Management"
user_settings="$drive/ProgramData/Orlo Corporation/QUEN Power Management"

zotdamctl() {
    wine "$build/bin/zotdamctl.exe" "$@"
}

# step TEXT LINES ARGUMENTS...: prints a description of the command and the beginning of its output.
step() {
    local text=$1 lines=$2 output
    shift 2
    output=$(zotdamctl "$@")
    printf '\n# %s\n$ zotdamctl %s\n' "$text" "$*"
    head -n "$lines" <<<"$output"
    [ "$(wc -l <<<"$output")" -le "$lines" ] || echo "..."
}

if [ $# -gt 0 ]; then
    # Files that earlier calls have changed are kept.
    cp -rn samples/. "$drive"
    zotdamctl "$@"
    exit
fi

rm -rf "$user_settings"
cp -r samples/. "$drive"
# The suite ships only the base catalogue and the string tables. The tour creates the other files.
rm "$installation/ZOTDefault.xml" "$user_settings/ZOTPowercfg.xml"
step 'The base catalogue: each function with its options, defaults and commands' 6 base
step 'Provisioning: adopts all functions on this machine' 1 adopt --all
step 'Copies the default settings from the base catalogue' 1 setting init
step 'The functions, with their options when plugged in and on battery' 4 functions
step 'The same in German' 2 functions --language de-DE
step 'The values of the balanced scheme: the defaults of the base catalogue' 7 params balanced
step 'The options that these values select' 5 current balanced
step 'Selects the brightest option when plugged in, and the darkest on battery' 4 set balanced 1=0,4
step 'The commands that apply the balanced scheme' 5 commands balanced
step 'The values of the power saver that differ when plugged in' 12 diff balanced power-saver --ac
step 'The Windows power settings that the suite prescribes for each scheme' 3 spec-schemes
step 'A common setting: the default, because the user has not changed it' 1 setting get LowBatteryWarning
step 'Changes it' 1 setting set LowBatteryWarning 20
step 'Removes all changes of the user' 1 reset
step 'The default applies again' 1 setting get LowBatteryWarning
