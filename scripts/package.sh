#!/usr/bin/env bash
# Builds the release and creates its packages in build/release: ZOTDam-VERSION-win64.zip with everything that users and
# developers of clients need, ZOTDam-VERSION-win64-symbols.zip with the debug information, the installer
# ZOTDam-VERSION-x64.msi, and the NuGet package ZOTDam.VERSION.nupkg. The last two contain files of the first package.
# The same commit always produces the same packages.
source "$(dirname "$0")/common.sh"

install_toolchain
install_packages llvm msitools python3 wixl
build_targets ZOTDam zotdamctl msvc_import_library

say "Packing"
package/check_headers.sh "$build/client/include" >"$build/package.log"
export SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(commit_time)}
version=$(project_version)
for program in ZOTDam zotdamctl; do
    package/pdb.py "$build/bin/$program.pdb" --map "$PWD/$build=/ZOTDam/$build"
done
package/record.py --build "$build" --version "$version" --commit "$(commit_name)"
TZ=UTC cpack --preset "$preset" >>"$build/package.log" || {
    cat "$build/package.log" >&2
    exit 1
}
sed -n 's/^CPack: - package: \(.*\) generated\.$/\1/p' "$build/package.log"

zip=ZOTDam-$version-win64
unpacked=$(mktemp -d)
trap 'rm -rf "$unpacked"' EXIT
(cd "$unpacked" && cmake -E tar xf "$OLDPWD/$build/$zip.zip")
pack_tree "$unpacked/$zip" "$PWD/$build"
printf '%s\n' "$PWD/$build/"ZOTDam{-"$version"-x64.msi,."$version".nupkg}
