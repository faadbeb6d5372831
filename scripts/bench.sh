#!/usr/bin/env bash
# Measures each export against plain MSXML code that does the same, on data files of four sizes, and puts the figures
# into docs/performance.md and docs/performance.svg. What follows the command goes to the program: --seconds 5, --sizes 10,100.
source "$(dirname "$0")/common.sh"
preset=bench
build=build/$preset

install_toolchain
build_targets zotdam_bench
make_prefix

# A processor that has fallen asleep takes longer to wake up than most of what is measured here.
nice -n 19 bash -c 'while :; do :; done' &
trap "kill $!" EXIT

say "Measuring"
wine "$build/bin/zotdam_bench.exe" --json "$build/performance.json" --markdown "$build/performance.md" \
    --chart docs/performance.svg "$@" | tr -d '\r'

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
    echo '![Cost over size](performance.svg)'
} | tee -a "$build/performance.md"

# Between the two marks of the document stands what was measured last.
sed -i -e "/<!-- figures -->/,/<!-- end of figures -->/{//!d}" -e "/<!-- figures -->/r $build/performance.md" docs/performance.md
