#!/usr/bin/env bash
# Builds the library and its command-line client, installs the sample data files into the wine prefix, and runs the
# client there. Without arguments it shows the main job: reading and changing the parameters of a power scheme.
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

show() {
    printf '\n$ zotdamctl %s\n' "$*"
    zotdamctl "$@"
}

if [ $# -gt 0 ]; then
    # What earlier calls have changed stays.
    cp -rn samples/. "$drive"
    zotdamctl "$@"
    exit
fi

rm -rf "$user_settings"
cp -r samples/. "$drive"
show count
show params balanced
show set balanced 2 0 2
show params balanced
show params balanced --default
show reset
show params balanced
