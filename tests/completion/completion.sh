#!/usr/bin/env bash
# Lets bash complete words of zotdamctl's command line with the script that zotdamctl writes for it. The last line counts
# the checks; the exit status is 0 when all have passed.
source "$(dirname "$0")/../../scripts/common.sh"

install_toolchain
build_targets ZOTDam zotdamctl
make_prefix

source <(wine "$build/bin/zotdamctl.exe" completion bash)
passed=0
failed=0

# completes TO WORD...: whether the last word is completed to these.
completes() {
    local to=$1
    shift
    COMP_WORDS=(zotdamctl "$@")
    COMP_CWORD=$#
    _zotdamctl || true
    if [ "${COMPREPLY[*]}" = "$to" ]; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        echo "FAILED: \"$*\" gives \"${COMPREPLY[*]}\", not \"$to\""
    fi
}

completes 'count commands completion' co
completes 'set setacvalueindex setdcvalueindex setting' se
completes 'get' setting g
completes 'balanced' params b
completes '--default' params --de
completes 'high-performance' diff balanced h
completes '--program-files --program-data' --pro
completes 'spec-schemes' --json sp
completes 'always' --color al
completes '' --program-files x
completes 'bash' completion b

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
