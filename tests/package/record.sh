# shellcheck shell=bash
# Checks of BUILDINFO and of the bill of materials, which tests/package/package.sh sources.
# shellcheck disable=SC2154  # package.sh sets the variables

unpacked=$installation/$package
bill=$unpacked/ZOTDam.spdx.json

field() { sed -n "s/^$1: //p" "$unpacked/BUILDINFO"; }
recorded_packages() { sed -n 's/^ //p' "$unpacked/BUILDINFO"; }
installed_packages() {
    recorded_packages | cut -d ' ' -f 1 | xargs dpkg-query -W -f '${Package} ${Version}\n'
}

# related_packages ELEMENT TYPE: prints the packages in the relationships of this type.
related_packages() {
    python3 - "$bill" "$@" <<'PROGRAM'
import json, sys
document = json.load(open(sys.argv[1], encoding='utf-8'))
names = {package['SPDXID']: package['name'] for package in document['packages']}
for item in document['relationships']:
    if item['relationshipType'] == sys.argv[3] and item['spdxElementId'] == 'SPDXRef-' + sys.argv[2]:
        print(names[item['relatedSpdxElement']])
PROGRAM
}
links() { related_packages "$1" STATIC_LINK | grep -x "$2"; }
# The project's own libraries in the bill, and those that the linker read.
linked_libraries() { related_packages "$1" STATIC_LINK | grep '^zotdam_'; }
read_libraries() { sed -n 's,^LOAD src/lib\(zotdam_.*\)\.a\r\{0\,1\}$,\1,p' "$build/bin/$1.map" | sort -u; }

# field_of_package NAME FIELD
field_of_package() {
    python3 -c 'import json, sys
for package in json.load(open(sys.argv[1], encoding="utf-8"))["packages"]:
    if package["name"] == sys.argv[2]: print(package[sys.argv[3]])' "$bill" "$@"
}
first_line_of_licence() {
    python3 -c 'import json, sys
for licence in json.load(open(sys.argv[1], encoding="utf-8"))["hasExtractedLicensingInfos"]:
    if licence["licenseId"] == sys.argv[2]: print(licence["extractedText"].splitlines()[0])' "$bill" "$1"
}
version_in_header() { sed -n "s/^.*$1 \([0-9.]*[0-9]\).*/\1/p" client/CharacterWidths.h; }
names_package() { recorded_packages | grep "^$1 "; }

# Validates a bill of the programs in $unpacked.
validate_bill() { python3 tests/package/sbom_test.py "$1" "$unpacked"; }
damage_bill() { sed "$1" "$bill" >"$folder/damaged.json" && fails validate_bill "$folder/damaged.json"; }

# Prints the linked packages for whose source package THIRD-PARTY-NOTICES.txt has no row.
packages_without_notice() {
    local package
    for package in $({ related_packages ZOTDam.dll STATIC_LINK && related_packages zotdamctl.exe STATIC_LINK; } |
        grep -v '^zotdam_'); do
        case $(dpkg-query -W -f '${source:Package}' "$package") in
            cli11 | nlohmann-json3 | mingw-w64 | gcc-mingw-w64) ;;
            *) echo "$package" ;;
        esac
    done
}
has_winpthreads() { grep -qE '/lib(win)?pthread\.a\(' "$build/bin/$1.map"; }

change_header() {
    mkdir "$folder/headers" && cp -rL "$build/client/include/." "$folder/headers" &&
        echo '// changed' >>"$folder/headers/CLI/CLI.hpp" && fails package/check_headers.sh "$folder/headers"
}

say 'Checking the record of the build'
check 'BUILDINFO names the commit' lists field Commit < <(commit_name)
check 'BUILDINFO names the version' lists field Version <<<"$version"
check 'BUILDINFO names the compiler' lists field Compiler < <(tool g++-posix --version | head -n 1)
check 'BUILDINFO names the linker' lists field Linker < <(tool ld --version | head -n 1)
check 'BUILDINFO names the installed versions of the packages' lists recorded_packages < <(installed_packages)
for name in binutils-mingw-w64-x86-64 g++-mingw-w64-x86-64-posix libcli11-dev nlohmann-json3-dev mingw-w64-common; do
    check "BUILDINFO names $name" names_package "$name"
done

check 'the bill of materials is valid' validate_bill "$bill"
check 'a wrong checksum is detected' damage_bill '0,/checksumValue": "./s//&0/'
check 'an unknown licence is detected' damage_bill 's/BSD-3-Clause/BSD-9-Clause/'
check 'a relationship without an end is detected' \
    damage_bill '0,/SPDXRef-libcli11-dev/s//SPDXRef-other/'
check 'the bill has the code of the compiler in the DLL' links ZOTDam.dll g++-mingw-w64-x86-64-win32
check 'the bill has the parser of the command line in the client' links zotdamctl.exe libcli11-dev
check 'the DLL does not contain the parser of the command line' fails links ZOTDam.dll libcli11-dev
for program in ZOTDam.dll zotdamctl.exe; do
    check "the bill has the static libraries in $program" \
        lists linked_libraries "$program" < <(read_libraries "$program")
done
check 'the bill has the data of utf8proc in the client' lists related_packages zotdamctl.exe CONTAINS <<<utf8proc
check 'the DLL does not contain the data of utf8proc' lists related_packages ZOTDam.dll CONTAINS </dev/null
check 'the data of utf8proc come from the data files of Unicode' \
    lists related_packages utf8proc GENERATED_FROM <<<'Unicode data files'
check 'the bill has the version of utf8proc' \
    lists field_of_package utf8proc versionInfo < <(version_in_header utf8proc)
check 'the bill has the version of Unicode' \
    lists field_of_package 'Unicode data files' versionInfo < <(version_in_header Unicode)
check 'the bill has the licence of the data files of Unicode' \
    lists field_of_package 'Unicode data files' licenseConcluded <<<LicenseRef-Unicode
while read -r licence line; do
    check "the bill has the text of $licence" lists first_line_of_licence "LicenseRef-$licence" <<<"$line"
done <<'LINES'
mingw-w64 Copyright (c) 2009-2016 the mingw-w64 project
libstdcxx Copyright (c) Free Software Foundation, Inc.
Unicode client/CharacterWidths.h contains data of these files in another form. They come
LINES
check 'each linked package has a notice' lists packages_without_notice </dev/null
check 'the client contains winpthreads, as the notices say' has_winpthreads zotdamctl.exe
check 'the DLL does not contain winpthreads, as the notices say' fails has_winpthreads ZOTDam.dll
check 'the headers are those of a pinned version' package/check_headers.sh "$build/client/include"
check 'a changed header is detected' change_header
