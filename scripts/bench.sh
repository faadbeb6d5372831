#!/usr/bin/env bash
# Measures each export against MSXML code for the same task, on data files of four sizes, and writes the figures to
# docs/performance.md and docs/performance.svg. The arguments are passed to the program: --seconds 5, --sizes 16,100,
# --compare DLL (another version of the library).
source "$(dirname "$0")/common.sh"
preset=bench
build=build/$preset

install_toolchain
build_targets zotdam_bench
make_prefix
commit=$(git describe --always --dirty --exclude '*' 2>/dev/null || echo unknown)

# Keeps the processor awake, because an idle processor takes longer to wake up than most of the measured calls.
nice -n 19 bash -c 'while :; do :; done' &
awake=$!
trap 'kill "$awake"' EXIT

say "Measuring"
wine "$build/bin/zotdam_bench.exe" --json "$build/performance.json" --markdown "$build/performance.md" \
    --chart docs/performance.svg --commit "$commit" "$@" | tr -d '\r'

# The figures are a table, which begins with an empty line.
sed -i '1i\\' "$build/performance.md"

say "Measuring memory"
{
    echo
    echo '| Functions | Peak memory of the process |'
    echo '|--:|--:|'
    for functions in 0 10 100 1000 10000; do
        peak=$(wine "$build/bin/zotdam_bench.exe" --peak-memory "$functions" | tr -d '\r')
        echo "| $functions | $((peak / 1024)) MiB |"
    done
    echo
    echo "(Measured at commit $commit, $(date -u +%F).)"
    echo
    echo '![Cost over size](performance.svg)'
} | tee -a "$build/performance.md"

# Replaces the figures between the two marks in the document.
sed -i -e "/<!-- figures -->/,/<!-- end of figures -->/{//!d}" -e "/<!-- figures -->/r $build/performance.md" \
    docs/performance.md
