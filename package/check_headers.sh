#!/usr/bin/env bash
# Checks that the header-only libraries in a folder are those of a pinned version. package/headers.sha256 contains a
# checksum of the headers of each version with which the client was tested.
#     package/check_headers.sh FOLDER    the folder that contains CLI/ and nlohmann/
set -euo pipefail
pins=$(dirname "$0")/headers.sha256

for library in CLI nlohmann; do
    checksum=$(cd "$1/$library/" && find . -type f -print0 | LC_ALL=C sort -z | xargs -0 sha256sum | sha256sum)
    if ! grep "^${checksum%% *}  $library " "$pins"; then
        echo "The headers in $1/$library are not those of a version in $pins (checksum ${checksum%% *})." >&2
        exit 1
    fi
done
