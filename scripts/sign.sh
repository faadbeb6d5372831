#!/usr/bin/env bash
# Signs the packages that scripts/package.sh made, and writes the signed packages to build/release/signed. First the DLL
# and the client are signed. Then the packages are made again with these files, and the installer is signed. Only
# packages that tests/package/package.sh has reproduced are signed.
#     scripts/sign.sh [--timestamp URL] KEY_OPTION...
# --timestamp    a server for timestamps (RFC 3161), so that the signatures remain valid after the certificate expires
# KEY_OPTION     the options of osslsigncode that select the key and the certificate, for example
#                -pkcs12 FILE -readpass FILE, or -certs FILE -key FILE, or the options of a PKCS #11 module
# Resolves the paths before common.sh changes the current folder.
key=()
for argument in "$@"; do
    if [ -f "$argument" ]; then
        argument=$(realpath -- "$argument")
    fi
    key+=("$argument")
done
source "$(dirname "$0")/common.sh"

timestamp=()
if [ "${key[0]:-}" = --timestamp ]; then
    timestamp=(-ts "${key[1]:-}")
    key=("${key[@]:2}")
fi
if [ ${#key[@]} -eq 0 ]; then
    echo "usage: scripts/sign.sh [--timestamp URL] KEY_OPTION..." >&2
    exit 2
fi

install_packages msitools osslsigncode python3 wixl
version=$(project_version)
package=ZOTDam-$version-win64
signed=$PWD/$build/signed

# Signs a file in place.
sign() {
    say "Signing ${1##*/}"
    osslsigncode sign "${key[@]}" "${timestamp[@]}" -h sha256 -n 'ZOTDam for QUEN Power Management' \
        -in "$1" -out "$1.signed" >"$build/sign.log" || {
        cat "$build/sign.log" >&2
        exit 1
    }
    mv "$1.signed" "$1"
}

if ! (cd "$build" && sha256sum --check --quiet --strict reproduced.sha256) >"$build/sign.log" 2>&1; then
    cat "$build/sign.log" >&2
    echo "The packages are not those that tests/package/package.sh has reproduced." >&2
    exit 1
fi

unpacked=$(mktemp -d)
trap 'rm -rf "$unpacked"' EXIT
(cd "$unpacked" && cmake -E tar xf "$OLDPWD/$build/$package.zip")
tree=$unpacked/$package
for program in ZOTDam.dll zotdamctl.exe; do
    sign "$tree/bin/$program"
done

say "Packing"
rm -rf "$signed"
mkdir "$signed"
# The bill of materials contains the checksums of the signed programs.
commit=$(sed -n 's/^Commit: //p' "$tree/BUILDINFO")
package/record.py --build "$build" --version "$version" --commit "$commit" --programs "$tree/bin" --output "$tree"
(cd "$unpacked" && cmake -E tar cf "$signed/$package.zip" --format=zip "$package")
pack_tree "$tree" "$signed"
sign "$signed/ZOTDam-$version-x64.msi"
find "$signed" -type f
