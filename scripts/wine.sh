#!/usr/bin/env bash
# Runs a Windows program under wine, for CTest and the test runner. ZOTDAM_WINEPREFIX names the wine prefix. Programs
# that run at the same time need separate prefixes, because all programs of a wine server share its named objects.
#   scripts/wine.sh program.exe [argument...]
folder=$PWD
source "$(dirname "$0")/common.sh"
make_prefix
cd "$folder" || exit
wine "$@"
