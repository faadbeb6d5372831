#!/usr/bin/env bash
# Validates data files against the schemas that match their names. Without arguments, it validates the samples:
#   scripts/validate.sh [file...]
# Resolves the paths before common.sh changes the current folder.
files=()
for file in "$@"; do
    files+=("$(realpath -- "$file")")
done
source "$(dirname "$0")/common.sh"

install_packages libxml2-utils
[ ${#files[@]} -gt 0 ] || mapfile -d '' files < <(find samples -type f -print0 | sort -z)

failed=0
for file in "${files[@]}"; do
    name=$(basename "$file")
    schema=schemas/${name%.xml}.xsd
    case $name in
        ZOTBase.xml | ZOTDefault.xml | ZOTPowercfg.xml | StringTable.xml)
            xmllint --nonet --noout --schema "$schema" "$file" || failed=$((failed + 1))
            ;;
        *)
            say "$file is none of the data files"
            failed=$((failed + 1))
            ;;
    esac
done

echo "$((${#files[@]} - failed)) valid, $failed not valid"
[ "$failed" -eq 0 ]
