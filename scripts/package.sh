#!/usr/bin/env bash
# Builds the release and creates its packages in build/release: ZOTDam-VERSION-win64.zip with everything that users and
# developers of clients need, and ZOTDam-VERSION-win64-symbols.zip with the debug information. The same commit always
# produces the same packages.
source "$(dirname "$0")/common.sh"

install_toolchain
install_packages llvm
build_targets ZOTDam zotdamctl msvc_import_library

say "Packing"
SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(commit_time)} TZ=UTC cpack --preset "$preset" >"$build/package.log" || {
    cat "$build/package.log" >&2
    exit 1
}
sed -n 's/^CPack: - package: \(.*\) generated\.$/\1/p' "$build/package.log"
