#!/usr/bin/env bash
# Checks what gdb prints for the types in ZOTDam.h with the pretty printers in debug/. gdb reads the objects from a
# Windows program, which does not run. The last line counts the checks; the exit code is 0 if all of them have passed.
source "$(dirname "$0")/../support/checks.sh"

install_toolchain
install_packages gdb libxml2-utils

build_objects() {
    x86_64-w64-mingw32-g++-posix -std=c++20 -g -Wall -Wextra -Wpedantic -Werror -Iinclude -static \
        tests/debugger/Objects.cpp -o "$folder/objects.exe"
}

# prints EXPRESSION TEXT: checks the text that gdb prints for the value of the expression.
prints() {
    local output
    output=$(gdb -nx -batch -ex 'source debug/zotdam_gdb.py' -ex "output $1" "$folder/objects.exe" 2>&1)
    echo "$output"
    [ "$output" = "$2" ]
}

check 'the objects' build_objects
check 'a list of three records' prints three.object \
    'list of 3 ZOTDam::DisplayItem = {{option = 100, label = "Hell ☼"}, {option = 60, label = "Mittel"}, {option = 20, label = ""}}'
check 'an empty list' prints none.object 'list of 0 ZOTDam::DisplayItem'
check 'a list that is empty by its count' prints noneByCount.object 'list of 0 ZOTDam::DisplayItem'
check 'a map of parameters, in the order of the ids' prints parameters \
    'parameters of 3 functions = {[2] = {ACParamIndex = 0, DCParamIndex = 1}, [7] = {ACParamIndex = 2, DCParamIndex = 3}, [9] = {ACParamIndex = 4, DCParamIndex = 5}}'
check 'an empty map of parameters' prints noParameters 'parameters of 0 functions'
address=$(gdb -nx -batch -ex 'output &nil' "$folder/objects.exe" | grep -o '0x[0-9a-f]*')
check 'a pointer' prints pointer.object "Interface at $address"
check 'a null pointer' prints nullPointer.object 'no Interface'
check 'the views for Visual Studio are well-formed XML' xmllint --noout debug/ZOTDam.natvis

report_checks
