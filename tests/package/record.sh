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

# Prints the packages of which the bill says that their code is in the program.
linked_packages() {
    python3 - "$bill" "$1" <<'PROGRAM'
import json, sys
document = json.load(open(sys.argv[1], encoding='utf-8'))
names = {package['SPDXID']: package['name'] for package in document['packages']}
for item in document['relationships']:
    if item['relationshipType'] == 'STATIC_LINK' and item['spdxElementId'] == 'SPDXRef-' + sys.argv[2]:
        print(names[item['relatedSpdxElement']])
PROGRAM
}
links() { linked_packages "$1" | grep -x "$2"; }
names_package() { recorded_packages | grep "^$1 "; }

# Validates a bill of the programs in $unpacked.
validate_bill() { python3 tests/package/sbom_test.py "$1" "$unpacked"; }
damage_bill() { sed "$1" "$bill" >"$folder/damaged.json" && fails validate_bill "$folder/damaged.json"; }

# Prints the linked packages for whose source package THIRD-PARTY-NOTICES.txt has no row.
packages_without_notice() {
    local package
    for package in $(linked_packages ZOTDam.dll) $(linked_packages zotdamctl.exe); do
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
check 'each linked package has a notice' lists packages_without_notice </dev/null
check 'the client contains winpthreads, as the notices say' has_winpthreads zotdamctl.exe
check 'the DLL does not contain winpthreads, as the notices say' fails has_winpthreads ZOTDam.dll
check 'the headers are those of a pinned version' package/check_headers.sh "$build/client/include"
check 'a changed header is detected' change_header
