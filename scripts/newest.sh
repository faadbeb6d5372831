#!/usr/bin/env bash
# Builds the client with the newest versions of its header-only libraries, which are packages of Debian's unstable
# release, and runs its tests. The packages of the system do not change. The download takes about 10 MB. At the end, the
# script checks that package/headers.sha256 lists these versions.
source "$(dirname "$0")/common.sh"
build=build/newest
apt=$PWD/$build/apt

# Runs apt-get with the list of unstable instead of those of the system.
apt_of_unstable() {
    apt-get -qq -o Dir::Etc::SourceList="$apt/sources.list" -o Dir::Etc::SourceParts=/dev/null -o Dir::State="$apt" \
        -o Dir::State::Status="$apt/status" -o Dir::Cache="$apt" -o Acquire::Languages=none \
        -o APT::Sandbox::User=root "$@"
}

mirror() {
    # shellcheck disable=SC2016  # apt-get replaces the name
    apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' \
        "Codename: $(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)" | head -n 1
}

# Unpacks the packages into the folder of apt.
fetch_packages() {
    mkdir -p "$apt"/{lists,archives}/partial
    touch "$apt/status"
    echo "deb [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $(mirror) unstable main" >"$apt/sources.list"
    apt_of_unstable update
    (cd "$apt" && apt_of_unstable download libcli11-dev nlohmann-json3-dev)
    local file
    for file in "$apt"/*.deb; do
        say "${file##*/}"
        dpkg-deb --extract "$file" "$apt"
    done
}

install_toolchain
rm -rf "$build"
fetch_packages
cmake_options=("-DZOTDAM_CLI_INCLUDE=$apt/usr/include" "-DZOTDAM_NLOHMANN_INCLUDE=$apt/usr/include")
build_targets client_tests
say "Running the tests"
scripts/wine.sh "$build/bin/client_tests.exe" --gtest_brief=1
package/check_headers.sh "$build/client/include"
