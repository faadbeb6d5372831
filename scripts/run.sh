#!/usr/bin/env bash
# Builds the library and its command-line client, installs the sample data files into the wine prefix, and runs the
# client there. Without arguments it gives a short tour: what the library knows, and what it changes.
#   scripts/run.sh [zotdamctl arguments]
source "$(dirname "$0")/common.sh"

install_toolchain
build_targets ZOTDam zotdamctl
make_prefix

drive=$WINEPREFIX/drive_c
user_settings="$drive/ProgramData/Orlo Corporation/QUEN Power Management"

zotdamctl() {
    wine "$build/bin/zotdamctl.exe" "$@"
}

# step TEXT LINES ARGUMENTS...: says what the command shows, and shows the beginning of its output.
step() {
    local text=$1 lines=$2 output
    shift 2
    output=$(zotdamctl "$@")
    printf '\n# %s\n$ zotdamctl %s\n' "$text" "$*"
    head -n "$lines" <<<"$output"
    [ "$(wc -l <<<"$output")" -le "$lines" ] || echo "..."
}

if [ $# -gt 0 ]; then
    # What earlier calls have changed stays.
    cp -rn samples/. "$drive"
    zotdamctl "$@"
    exit
fi

rm -rf "$user_settings"
cp -r samples/. "$drive"
step 'The catalogue: the power-management functions that this machine has' 1 count
step 'Each has options on mains power and on battery, with texts in the language of the user' 4 functions
step 'The same for a user in Germany' 4 functions --language de-DE
step 'The options that the balanced scheme selects: brightness 100 on mains and 40 on battery' 5 current balanced
step 'A change: the dimmest option on battery' 4 set balanced 1 0 4
step 'It is in the user settings, which the defaults complete' 6 params balanced
step 'The commands that carry out the balanced scheme' 5 commands balanced
step 'What the power saver does differently on mains' 20 diff balanced power-saver --ac
step 'A common setting: the one of the user comes before the default' 1 setting get LowBatteryWarning
step 'The user changes it' 1 setting set LowBatteryWarning 20
step 'The defaults return to what the base catalogue prescribes' 1 setting init
step 'The user settings are thrown away' 1 reset
step 'So the default counts again' 1 setting get LowBatteryWarning
