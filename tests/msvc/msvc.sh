#!/usr/bin/env bash
# Checks the headers with the binary interface of MSVC: clang compiles them for MSVC's target, and its linker links a
# client with the import library. The headers of Windows and of the C++ library are small ones in tests/msvc/include.
# The last line counts the checks; the exit code is 0 if all of them have passed.
source "$(dirname "$0")/../support/checks.sh"

install_toolchain
install_packages clang lld llvm
build_targets ZOTDam msvc_import_library
make_prefix

sources=tests/msvc

# compile OPTION...: compiles for MSVC's target. The warnings are those of /W4 that clang has.
compile() {
    clang --target=x86_64-pc-windows-msvc -fms-compatibility-version=19.30 -nostdlibinc \
        -isystem "$sources/include" -I include -I examples/c \
        -Wall -Wextra -Wpedantic -Wshadow-all -Wimplicit-int-conversion -Wshorten-64-to-32 -Werror "$@"
}

# compile_cpp FILE OPTION...: compiles a C++ file to an object of the same name.
compile_cpp() { compile -std=c++20 -O1 -c "$1" -o "$folder/$(basename "$1" .cpp).obj" "${@:2}"; }

# fails_after EXPRESSION: succeeds if the headers do not compile after a change by a sed expression.
fails_after() {
    local change=$1 changed=$folder/changed
    mkdir -p "$changed"
    sed "$change" include/ZOTDam.h >"$changed/ZOTDam.h"
    sed "$change" include/ZOTDamTypes.h >"$changed/ZOTDamTypes.h"
    ! cmp --silent <(cat include/ZOTDam{,Types}.h) <(cat "$changed"/ZOTDam{,Types}.h) &&
        ! compile -std=c++20 -fsyntax-only -iquote "$changed" "$sources/callbacks.cpp"
}

exports() { sed -n 's/^    //p' src/module/ZOTDam.def; }

check 'ZOTDam.h compiles, and its layout assertions hold' compile_cpp "$sources/callbacks.cpp"
check 'a layout assertion detects a larger field' fails_after 's/ label\[ZOTDAM_TEXT_CAPACITY\]/ label[261]/'
check 'a layout assertion detects a field in another place' \
    fails_after 's/^    std::uint64_t count = 0;$/&\n    int more = 0;/'
check 'ZOTDamClient.h compiles, with each of its templates' compile_cpp "$sources/helpers.cpp"
check 'the function pointers of the C examples compile' compile -std=c11 -fsyntax-only "$sources/exports.c"

# ---- Callbacks and names --------------------------------------------------------------------------------------------

# Prints the interfaces whose OnItem a caller finds at offset 0 of the table of the class.
interfaces_with_on_item_first() {
    llvm-nm "$folder/callbacks.obj" | sed -n 's/^.* ??_9\(.*\)@ZOTDam@@$BA@AA$/\1/p'
}

check 'OnItem is the first entry of each table' lists interfaces_with_on_item_first <<'NAMES'
IGetCommandInfoCallback
IGetFunctionBaseCallback
IGetFunctionInfoCallback
IGetParameterCallback
IGetSpecSchemeCallback
NAMES

{
    echo '#include "ZOTDam.h"'
    echo 'extern "C" const void* const addresses[];'
    echo 'const void* const addresses[] = {'
    exports | sed 's/.*/    reinterpret_cast<const void*>(\&ZOTDam::&),/'
    echo '};'
} >"$folder/exports.cpp"

undefined_names() { llvm-nm --undefined-only --format=just-symbols "$folder/exports.obj"; }

check 'all exports are declared' compile_cpp "$folder/exports.cpp"
check 'their names are not decorated' lists undefined_names < <(exports)

# ---- A program ------------------------------------------------------------------------------------------------------

system_libraries=/usr/x86_64-w64-mingw32/lib

link_client() {
    lld-link -nologo -nodefaultlib -subsystem:console -entry:Start -out:"$folder/client.exe" \
        "$folder/client.obj" "$folder/exports.obj" -include:addresses "$build/ZOTDam.lib" \
        "$system_libraries"/lib{kernel32,ole32}.a
}

imports_of_client() {
    llvm-readobj --coff-imports "$folder/client.exe" | tr -d '\r' |
        sed -n '/Name: ZOTDam.dll/,/^}/s/^  Symbol: \([^ ]*\) .*/\1/p'
}

# Prints the number of functions that the client receives from the library.
count_functions() {
    local exit_code=0
    cp -r "$build/bin/ZOTDam.dll" samples/. "$folder"
    (cd "$folder" && wine client.exe) || exit_code=$?
    echo "$exit_code functions"
}

check 'a client compiles' compile_cpp "$sources/client.cpp" -fno-exceptions -fno-rtti
check 'lld-link links it with ZOTDam.lib' link_client
check 'it imports the exports from ZOTDam.dll' lists imports_of_client < <(exports)
check 'it receives all functions' lists count_functions <<<'16 functions'

report_checks
