#!/usr/bin/env bash
# Runs a Windows program under wine, as CTest and the test runner do. ZOTDAM_WINEPREFIX names the wine prefix: programs
# that run at the same time need one each, since all programs of a wine server share its named objects.
#   scripts/wine.sh program.exe [argument...]
folder=$PWD
source "$(dirname "$0")/common.sh"
make_prefix
cd "$folder" || exit
wine "$@"
