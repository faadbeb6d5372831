#!/usr/bin/env bash
# Checks that THIRD-PARTY-NOTICES.txt contains the licence texts of the packages whose code becomes part of ZOTDam.dll
# and zotdamctl.exe. The last line counts the checks; the exit code is 0 if all of them have passed.
source "$(dirname "$0")/../support/checks.sh"

install_toolchain
install_packages libutf8proc-dev

# Prints the standard input as one line, because the notices may break lines elsewhere.
as_one_line() { tr -s '[:space:]' ' ' | sed 's/^ //; s/ $//'; }

# license PACKAGE NAME: prints the text of a licence from the package's copyright file.
license() {
    awk -v header="License: $2" '
        /^[^ ]/ { inside = $0 == header; next }
        inside { sub(/^ /, ""); print $0 == "." ? "" : $0 }' "/usr/share/doc/$1/copyright"
}

# copyright_of PACKAGE FILE: prints the copyright of a file from the package's copyright file.
copyright_of() {
    sed -n "/^Files: $2\$/,/^License:/s/^Copyright: /Copyright /p" "/usr/share/doc/$1/copyright"
}

runtime_library_exception() {
    sed -n '/^GCC RUNTIME LIBRARY EXCEPTION$/,/^requirements of the license of GCC\.$/p' \
        /usr/share/doc/gcc-mingw-w64-base/copyright
}

# Prints the notices that libstdc++ has from the library on which it is based.
notices_of_stl() {
    local header
    header=$(x86_64-w64-mingw32-g++-posix -print-libgcc-file-name)
    sed -n '/^ \* Copyright (c) 1994$/,/^ \*\/$/s/^ \*\/\{0,1\}//p' "${header%/*}/include/c++/bits/stl_algo.h"
}

# contains COMMAND...: checks whether the notices contain what the command prints.
contains() {
    local text
    text=$("$@" | as_one_line)
    echo "The notices do not contain: $text"
    [ -n "$text" ] && as_one_line <THIRD-PARTY-NOTICES.txt | grep -qF -- "$text"
}

check 'CLI11' contains license libcli11-dev BSD-3-clause
check 'JSON for Modern C++' contains license nlohmann-json3-dev Expat
check 'utf8proc' contains license libutf8proc-dev Expat
check 'the data files of Unicode' contains license libutf8proc-dev Unicode
check 'the data files of Unicode: the copyright' contains copyright_of libutf8proc-dev utf8proc_data.c
for name in ZPL-2.1 public-domain Lucent David-Gay Keith-Marshall expat BSD-3-clause-Lockless; do
    check "mingw-w64: $name" contains license mingw-w64-x86-64-dev "$name"
done
check 'GCC: the exception for runtime libraries' contains runtime_library_exception
check 'GCC: the notices of the containers and algorithms' contains notices_of_stl

# Checks whether the client prints both documents.
client_prints_licences() {
    wine "$build/bin/zotdamctl.exe" --licenses | cmp - <(cat LICENSE && echo && cat THIRD-PARTY-NOTICES.txt)
}

build_targets zotdamctl
make_prefix
check 'the client prints all licences' client_prints_licences

report_checks
