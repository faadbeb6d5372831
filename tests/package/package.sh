#!/usr/bin/env bash
# Builds the packages and checks that a second build in another folder produces the same bytes, that the files are
# correct and installed in the right folders, and that independent projects build and run with them. The last line
# counts the checks; the exit code is 0 if all of them have passed.
source "$(dirname "$0")/../support/checks.sh"
install_packages libxml2-utils llvm msitools openssl osslsigncode wixl

# Checks whether the command fails.
fails() { ! "$@"; }

tool() { "x86_64-w64-mingw32-$1" "${@:2}"; }

export SOURCE_DATE_EPOCH
SOURCE_DATE_EPOCH=$(commit_time)
check 'the packages are made' scripts/package.sh
make_prefix
version=$(project_version)
package=ZOTDam-$version-win64
installer=ZOTDam-$version-x64.msi
nupkg=ZOTDam.$version.nupkg

# ---- A second build ------------------------------------------------------------------------------------------------

# It is kept. If the sources have not changed since, as their times tell, the next run compiles nothing.
second="$PWD/build/a second build"
rm -rf "$second/source"
mkdir -p "$second/source"
documents=(CHANGELOG.md CONTRIBUTING.md README.md SECURITY.md docs examples)
cp -a CMakeLists.txt LICENSE THIRD-PARTY-NOTICES.txt "${documents[@]}" \
    client cmake debug include package samples schemas src "$second/source"

build_again() {
    cmake -S "$second/source" -B "$second/build" -G Ninja --toolchain "$second/source/cmake/mingw-w64.cmake" \
        -DCMAKE_BUILD_TYPE=Release -DZOTDAM_BUILD_TESTS=OFF -DZOTDAM_BUILD_EXAMPLES=OFF &&
        cmake --build "$second/build" &&
        package/pdb.py "$second/build/bin/ZOTDam.pdb" --map "$second/build=/ZOTDam/$build" &&
        package/pdb.py "$second/build/bin/zotdamctl.pdb" --map "$second/build=/ZOTDam/$build" &&
        package/record.py --build "$second/build" --version "$version" --commit "$(commit_name)" &&
        TZ=UTC cpack --config "$second/build/CPackConfig.cmake" -B "$second/build"
}

# The second build runs in the background while the checks that do not need it run.
rm -f "$build/reproduced.sha256"
say 'Building in another folder'
build_again >"$folder/second.log" 2>&1 &
second_build=$!

# ---- The programs --------------------------------------------------------------------------------------------------

exports() { printf '%s\n' AddFunctionDefault GetCommandInfo GetCommonSetting GetDiffFuncList GetFuncCount \
    GetFuncCurValue GetFunctionBase GetFunctionBaseUnSupported GetFunctionInfo GetParameter GetParameterDefault \
    GetSpecScheme InitCommonSetting ResetDefault SetCommonSetting SetParameter TEVGetParam ZOTDamExit; }

for program in ZOTDam.dll zotdamctl.exe; do
    tool objdump -p "$build/bin/$program" >"$folder/$program.headers"
done
exports_of_dll() { llvm-readobj --coff-exports "$build/bin/ZOTDam.dll" | sed -n 's/^  Name: //p'; }
imports_of_dll() { sed -n 's/^\tDLL Name: //p' "$folder/ZOTDam.dll.headers"; }
functions_of() { tool nm "$1" | sed -n 's/^[0-9a-f]* T \([^_].*\)/\1/p'; }
has_flag() { grep -x "[[:space:]]*$2" "$folder/$1.headers"; }
has_no_time() { grep '^Time/Date.*1970$' "$folder/$1.headers"; }
has_no_debug_information() { ! tool objdump -h "$build/bin/$1" | grep '\.debug_'; }
has_at_most() { [ "$(stat -c %s "$1")" -le "$2" ]; }
names_its_symbols() {
    tool objcopy --dump-section .gnu_debuglink="$folder/link" "$build/bin/$1" "$folder/copy" &&
        grep -a "^$1\.debug" "$folder/link"
}

# Prints the source file that the debug information names for the address of a function.
source_of() {
    local address line
    address=$(tool nm "$build/bin/ZOTDam.dll.debug" | sed -n "s/ T $1\$//p")
    line=$(tool addr2line -e "$build/bin/ZOTDam.dll.debug" "$address")
    realpath -m "${line%:*}"
}

exports >"$folder/exports"
check 'ZOTDam.dll has the eighteen exports' lists exports_of_dll <"$folder/exports"
check 'ZOTDam.dll imports system DLLs only' lists imports_of_dll <<'NAMES'
KERNEL32.dll
OLEAUT32.dll
RPCRT4.dll
SHLWAPI.dll
USER32.dll
msvcrt.dll
ole32.dll
NAMES
check 'ZOTDam.dll has 220 KB at most' has_at_most "$build/bin/ZOTDam.dll" 225280
for program in ZOTDam.dll zotdamctl.exe; do
    for flag in NX_COMPAT DYNAMIC_BASE HIGH_ENTROPY_VA; do
        check "$program: $flag" has_flag "$program" "$flag"
    done
    check "$program: no time of the build" has_no_time "$program"
    check "$program: no debug information" has_no_debug_information "$program"
    check "$program: names the file of its symbols" names_its_symbols "$program"
done
check 'the debug information tells where a function is written' \
    lists source_of GetFuncCount <<<'/ZOTDam/src/module/Exports.cpp'
# The replaced functions of the compiler's runtime: the linker must take them from the library's own source.
for function in __cxa_get_globals __cxa_get_globals_fast _ZN9__gnu_cxx27__verbose_terminate_handlerEv; do
    check "ZOTDam.dll replaces $function" lists source_of "$function" <<<'/ZOTDam/src/module/Runtime.cpp'
done
check 'the import library for mingw has the eighteen exports' \
    lists functions_of "$build/src/libZOTDam.dll.a" <"$folder/exports"

# Prints the symbols in the format that MSVC's librarian writes.
short_imports_of() { llvm-readobj "$1" | sed -n '/^Format: COFF-import-file/,/^$/s/^Symbol: \([^_].*\)/\1/p'; }

check 'the import library for MSVC has the eighteen exports in the short format' \
    lists short_imports_of "$build/ZOTDam.lib" <"$folder/exports"

# ---- The folders of an installation --------------------------------------------------------------------------------

installation="$folder/an installation"
component() {
    cmake --install "$build" --prefix "$folder/$1" --component "$1" >/dev/null
    find "$folder/$1" -type f -printf '%P\n'
}
entries_of_zip() { cmake -E tar tf "$1" | sed -n "s,^$package/\(.*[^/]\)$,\1,p"; }

find samples -type f >"$folder/runtime.txt"
cat >>"$folder/runtime.txt" <<'NAMES'
BUILDINFO
LICENSE
THIRD-PARTY-NOTICES.txt
ZOTDam.spdx.json
bin/ZOTDam.dll
bin/zotdamctl.exe
NAMES
find debug -type f >"$folder/development.txt"
cat >>"$folder/development.txt" <<'NAMES'
include/ZOTDam.h
include/ZOTDamClient.h
include/ZOTDamTypes.h
lib/ZOTDam.lib
lib/cmake/ZOTDam/ZOTDamConfig.cmake
lib/cmake/ZOTDam/ZOTDamConfigVersion.cmake
lib/libZOTDam.dll.a
schemas/StringTable.xsd
schemas/Types.xsd
schemas/ZOTBase.xsd
schemas/ZOTDefault.xsd
schemas/ZOTPowercfg.xsd
schemas/export.schema.json
schemas/zotdamctl.schema.json
NAMES
find "${documents[@]}" -type f >"$folder/documentation.txt"
cat >"$folder/symbols.txt" <<'NAMES'
bin/ZOTDam.dll.debug
bin/zotdamctl.exe.debug
bin/ZOTDam.pdb
bin/zotdamctl.pdb
NAMES
cat "$folder"/{runtime,development,documentation}.txt >"$folder/package.txt"

for name in runtime development documentation symbols; do
    check "the files of the component $name" lists component "$name" <"$folder/$name.txt"
done
check "the files of $package.zip" lists entries_of_zip "$build/$package.zip" <"$folder/package.txt"
check "the files of $package-symbols.zip" lists entries_of_zip "$build/$package-symbols.zip" <"$folder/symbols.txt"

unpack() { mkdir "$installation" && (cd "$installation" && cmake -E tar xf "$1"); }
is_installed_as_packed() {
    cmake --install "$build" --prefix "$folder/all" && cp -r "$folder/symbols/." "$installation/$package" &&
        diff -r "$folder/all" "$installation/$package"
}

check "$package.zip can be unpacked" unpack "$PWD/$build/$package.zip"
for part in symbols record nuget installer; do
    # shellcheck source=/dev/null
    source "tests/package/$part.sh"
done
check 'an installation has what the packages have' is_installed_as_packed

# ---- Other projects ------------------------------------------------------------------------------------------------

mkdir "$folder/consumer"
cat >"$folder/consumer/CMakeLists.txt" <<'PROJECT'
cmake_minimum_required(VERSION 3.25)
project(consumer LANGUAGES CXX)
find_package(ZOTDam 1.0 REQUIRED)
add_executable(consumer main.cpp)
target_compile_features(consumer PRIVATE cxx_std_20)
target_link_libraries(consumer PRIVATE ZOTDam::ZOTDam)
add_custom_command(TARGET consumer POST_BUILD COMMAND_EXPAND_LISTS
  COMMAND ${CMAKE_COMMAND} -E copy_if_different $<TARGET_RUNTIME_DLLS:consumer> $<TARGET_FILE_DIR:consumer>)
PROJECT
cat >"$folder/consumer/main.cpp" <<'PROGRAM'
#include <ZOTDamClient.h>

#include <cstdio>

int main(int, char** folders) {
    SetEnvironmentVariableA("ProgramFiles", folders[1]);
    SetEnvironmentVariableA("ProgramData", folders[2]);
    const ZOTDam::ComScope com;
    std::printf("%u functions\n", ZOTDam::GetFuncCount());
    return ZOTDam::ZOTDamExit() ? 0 : 1;
}
PROGRAM

# build_project SOURCE BUILD: builds a project with the installation alone. Sources are compiled in batches to save
# time; the project's own build compiles each source of the examples separately.
build_project() {
    cmake -S "$1" -B "$2" -G Ninja -DCMAKE_SYSTEM_NAME=Windows -DCMAKE_UNITY_BUILD=ON \
        -DCMAKE_C_COMPILER=x86_64-w64-mingw32-gcc-posix -DCMAKE_CXX_COMPILER=x86_64-w64-mingw32-g++-posix \
        -DCMAKE_EXE_LINKER_FLAGS=-static -DCMAKE_PREFIX_PATH="$installation/$package" &&
        cmake --build "$2"
}

# A project in C only. Its program is the quick start of the package.
mkdir "$folder/consumer in C"
cat >"$folder/consumer in C/CMakeLists.txt" <<'PROJECT'
cmake_minimum_required(VERSION 3.25)
project(consumer LANGUAGES C)
find_package(ZOTDam 1.0 REQUIRED)
get_target_property(headers ZOTDam::Headers INTERFACE_INCLUDE_DIRECTORIES)
add_executable(consumer ${headers}/../examples/quickstart/quickstart.c)
target_link_libraries(consumer PRIVATE ZOTDam::ZOTDam uuid)
PROJECT

# Links the program of the first project with mingw's linker and the import library for MSVC.
link_with_library_for_msvc() {
    mkdir "$folder/msvc" && cp "$build/bin/ZOTDam.dll" "$folder/msvc" &&
        tool g++-posix -static "$folder"/consumer/build/CMakeFiles/consumer.dir/Unity/*.obj \
            "$installation/$package/lib/ZOTDam.lib" -lole32 -o "$folder/msvc/consumer.exe"
}

count_functions() {
    local data="Z:$installation/$package/samples"
    wine "$1" "$data/Program Files" "$data/ProgramData"
}

run_example() {
    cp -r samples "$folder/$1-data" && wine "$folder/examples/$1.exe" "Z:$folder/$1-data"
}

say 'Building other projects'
check 'a project finds and links the library' build_project "$folder/consumer" "$folder/consumer/build"
check 'its program counts the functions' lists count_functions "$folder/consumer/build/consumer.exe" <<<'16 functions'
check 'a program is linked with the import library for MSVC' link_with_library_for_msvc
check 'it counts the functions' lists count_functions "$folder/msvc/consumer.exe" <<<'16 functions'
check 'a project in C finds and links the library' build_project "$folder/consumer in C" "$folder/consumer in C/build"
check 'the examples of the package are built' build_project "$installation/$package/examples" "$folder/examples"
for program in examples_cpp examples_c quickstart_cpp quickstart_c; do
    check "$program runs" run_example "$program"
done

# ---- The results of the second build --------------------------------------------------------------------------------

second_build_succeeds() {
    wait "$second_build" || {
        cat "$folder/second.log"
        return 1
    }
}

say 'Waiting for the second build'
check 'the second build' second_build_succeeds
for file in bin/{ZOTDam.dll,zotdamctl.exe}{,.debug} bin/{ZOTDam,zotdamctl}.pdb \
    ZOTDam.lib src/libZOTDam.dll.a "$package.zip" "$package-symbols.zip"; do
    check "$file is the same" cmp "$build/$file" "$second/build/$file"
done

# scripts/sign.sh signs these packages only.
[ "$failed" -gt 0 ] ||
    (cd "$build" && sha256sum "$package"{,-symbols}.zip "$installer" "$nupkg" >reproduced.sha256)
# shellcheck source=signing.sh
source tests/package/signing.sh

report_checks
