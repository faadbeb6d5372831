#!/usr/bin/env bash
# Builds the DLL and the client with clang and lld in build/codeview, with types and lines for the debuggers of Windows,
# and checks their PDB files.
source "$(dirname "$0")/common.sh"
preset=codeview
build=build/$preset

# check_pdb PROGRAM PDB_FILE SOURCE: checks that the file belongs to the program and has types, and lines of the source.
check_pdb() {
    say "Checking $2"
    python3 tests/package/symbols_test.py "$build/bin/$1" "$build/bin/$2" &&
        llvm-pdbutil dump --types "$build/bin/$2" | grep 'LF_CLASS.*`ZOTDam::' >/dev/null &&
        llvm-pdbutil dump -l "$build/bin/$2" | grep "/ZOTDam/.*/$3" >/dev/null
}

install_toolchain
install_packages clang lld llvm python3
build_targets ZOTDam zotdamctl
check_pdb ZOTDam.dll ZOTDam.pdb src/module/Exports.cpp
check_pdb zotdamctl.exe zotdamctl.pdb client/Main.cpp
ls "$build"/bin/*.{dll,exe,pdb}
