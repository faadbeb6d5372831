#!/usr/bin/env bash
# Checks the formatting, builds everything with clang as the second compiler, and runs clang-tidy.
source "$(dirname "$0")/common.sh"
preset=clang
build=build/$preset

install_toolchain
install_packages clang clang-format clang-tidy

mapfile -t sources < <(git ls-files '*.cpp' '*.h' '*.c')
say "Checking the formatting"
clang-format --dry-run --Werror "${sources[@]}"

build_targets
say "Running clang-tidy"
git ls-files 'src/*.cpp' 'client/*.cpp' | xargs -P "$(nproc)" -n 4 clang-tidy --quiet -p "$build" 2>/dev/null
say "Clean"
