#!/usr/bin/env bash
# Checks the style of all files: C++ and C with clang-format and clang-tidy, shell scripts with shellcheck and shfmt,
# CMake files with cmake-lint, documents with mdl. Builds everything with clang, the second compiler, before clang-tidy.
#     scripts/lint.sh [--fix] [FILE...]
# --fix    first corrects what the tools can correct; findings in CMake files and documents remain
# FILE...  checks only these files, and does not build
source "$(dirname "$0")/common.sh"
preset=clang
build=build/$preset

fix=
processes=$(nproc)
if [ "${1:-}" = --fix ]; then
    # Files share headers, so only one is corrected at a time.
    fix=1
    processes=1
    shift
fi
selected=("$@")
failed=0

# lint PATTERN COMMAND...: runs the command for the selected files whose paths match the regular expression.
lint() {
    local pattern=$1 files
    shift
    mapfile -t files < <(git ls-files --cached --others --exclude-standard -- "${selected[@]}" | grep -E "$pattern")
    [ ${#files[@]} -gt 0 ] || return 0
    say "Running $1"
    "$@" "${files[@]}" || failed=1
}

apply_shellcheck() { shellcheck --format=diff "$@" 2>/dev/null | git apply --allow-empty; }

# Prints the sources that the build compiles. clang-tidy needs the options of the compiler.
compiled_sources() { sed -n "s,^ *\"file\": \"$PWD/\([^\"]*\)\".*,\1,p" "$build/compile_commands.json" | sort; }

run_clang_tidy() {
    if [ ${#selected[@]} -gt 0 ]; then
        cmake --preset "$preset" >/dev/null
    else
        build_targets
    fi
    printf '%s\n' "$@" | sort | comm -12 - <(compiled_sources) |
        xargs --no-run-if-empty -P "$processes" -n 4 clang-tidy --quiet -p "$build" ${fix:+--fix} 2>/dev/null
}

install_toolchain
install_packages git clang clang-format clang-tidy cmake-format ruby-mdl shellcheck shfmt

sources='\.(cpp|h|c)$'
scripts='\.sh$|^\.ci/run$'
if [ -n "$fix" ]; then
    lint "$sources" clang-format -i
    lint "$scripts" shfmt -i 4 -ci -w
    lint "$scripts" apply_shellcheck
fi
lint "$sources" clang-format --dry-run --Werror
lint "$scripts" shfmt -i 4 -ci -d
lint "$scripts" shellcheck
lint '(^|/)CMakeLists\.txt$|\.cmake$' cmake-lint --suppress-decorations
lint '\.md$' mdl --style .mdl.rb
lint "$sources" run_clang_tidy

[ "$failed" -eq 0 ] || exit 1
say "Clean"
