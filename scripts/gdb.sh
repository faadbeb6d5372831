#!/usr/bin/env bash
# Debugs a program under wine with gdb, which shows call stacks of Windows programs, the sources of the build and the
# types in ZOTDam.h. Also attaches to a running program, by the number that `scripts/wine.sh winedbg --command
# 'info proc'` lists (in hexadecimal, with 0x).
#     scripts/gdb.sh PROGRAM.exe [argument...]
#     scripts/gdb.sh 0xNUMBER
source "$(dirname "$0")/common.sh"

# The debugger of wine starts this script as its gdb.
if [ -n "${ZOTDAM_IN_WINEDBG:-}" ]; then
    exec x86_64-w64-mingw32-gdb -q -ex 'set breakpoint pending on' -ex 'set substitute-path /ZOTDam .' \
        -ex 'source debug/zotdam_gdb.py' "$@"
fi

install_toolchain
install_packages gdb-mingw-w64
make_prefix
export ZOTDAM_IN_WINEDBG=1 WINE_GDB=$PWD/scripts/gdb.sh
wine winedbg --gdb "$@"
