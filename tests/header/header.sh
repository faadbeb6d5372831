#!/usr/bin/env bash
# Checks that include/ZOTDam.h compiles without warnings in all supported versions of C and C++, with g++, with clang,
# and with clang for the binary interface of MSVC. The assertions in the header verify the layouts. The last line counts
# the checks; the exit code is 0 if all of them have passed.
source "$(dirname "$0")/../support/checks.sh"

install_toolchain
install_packages clang
warnings=(-Wall -Wextra -Wpedantic -Werror)
libraries=$(dirname "$(x86_64-w64-mingw32-g++-posix -print-libgcc-file-name)")/include/c++

# compile VERSION COMPILER...
compile() {
    local version=$1 source=tests/header/Client.cpp
    shift
    [[ $version == *++* ]] || source=tests/header/client.c
    "$@" "-std=$version" "${warnings[@]}" -Iinclude -fsyntax-only "$source"
}

compile_with_gcc() { compile "$1" x86_64-w64-mingw32-g++-posix -x "$2"; }

compile_with_clang() {
    compile "$1" clang -x "$2" --target=x86_64-w64-mingw32 \
        -isystem "$libraries" -isystem "$libraries/x86_64-w64-mingw32"
}

# The folder contains the few declarations of the headers of Windows and of the C++ library that ZOTDam.h uses.
compile_for_msvc() {
    compile "$1" clang -x "$2" --target=x86_64-pc-windows-msvc -nostdlibinc -isystem tests/msvc/include
}

for version in c11 c17 c++14 c++17 c++20; do
    language=c
    [[ $version != *++* ]] || language=c++
    check "$version: gcc" compile_with_gcc "$version" "$language"
    check "$version: clang" compile_with_clang "$version" "$language"
    check "$version: clang for MSVC" compile_for_msvc "$version" "$language"
done

report_checks
