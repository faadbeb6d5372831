#!/usr/bin/env bash
# Runs the example programs of docs/clients.md, each on a copy of the samples, and checks their output and the files
# that they write. The last line counts the checks; the exit code is 0 if all of them have passed. A preset selects
# another build than the release:
#     tests/examples/examples.sh [debug|guarded|sanitized]
source "$(dirname "$0")/../support/checks.sh"
preset=${1:-$preset}
build=build/$preset

install_toolchain
install_packages python3
build_targets examples_cpp examples_c
make_prefix

# Runs the program of a language. Its output is kept without carriage returns.
run() {
    mkdir "$folder/$1"
    cp -r samples/. "$folder/$1"
    local exit_code=0
    wine "$build/bin/examples_$1.exe" "Z:$folder/$1" >"$folder/$1.raw" 2>"$folder/$1.err" || exit_code=$?
    tr -d '\r' <"$folder/$1.raw" >"$folder/$1.out"
    cat "$folder/$1.err"
    return "$exit_code"
}

prints() { grep -qxF -- "$2" "$folder/$1.out"; }

fails_without_folder() {
    ! wine "$build/bin/examples_$1.exe"
}

check 'docs/clients.md shows the examples as they are' scripts/examples.py --check

for language in cpp c; do
    check "examples_$language ends well" run "$language"
    check "examples_$language without a folder does nothing" fails_without_folder "$language"
    while IFS= read -r line; do
        check "examples_$language prints \"$line\"" prints "$language" "$line"
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

written_files() { find "$folder/cpp" "$folder/c" -name '*.xml' -print0 | xargs -0 scripts/validate.sh; }

check 'both programs print the same' diff "$folder/cpp.out" "$folder/c.out"
check 'both programs write the same' diff -r "$folder/cpp" "$folder/c"
check 'what they write is valid' written_files

report_checks
