#!/usr/bin/env bash
# Completes words of zotdamctl's command line in bash, with the script that zotdamctl generates. The last line counts
# the checks; the exit code is 0 if all of them have passed.
source "$(dirname "$0")/../support/checks.sh"

install_toolchain
build_targets ZOTDam zotdamctl
make_prefix

# shellcheck source=/dev/null
source <(wine "$build/bin/zotdamctl.exe" completion bash)

# completes TO WORD...: checks whether the last word is completed to TO.
completes() {
    local to=$1
    shift
    COMP_WORDS=(zotdamctl "$@")
    COMP_CWORD=$#
    _zotdamctl || true
    echo "${COMPREPLY[*]}"
    [ "${COMPREPLY[*]}" = "$to" ]
}

check 'co' completes 'count commands completion' co
check 'se' completes 'set setacvalueindex setdcvalueindex setting' se
check 'he' completes 'help' he
check 'help ex' completes 'export' help ex
check 'params SCHEME_C' completes 'SCHEME_CURRENT' params SCHEME_C
check 'import --d' completes '--dry-run' import --d
check '--wait 1' completes '' --wait 1
check 'setting g' completes 'get' setting g
check 'params b' completes 'balanced' params b
check 'params --de' completes '--default' params --de
check 'diff balanced h' completes 'high-performance' diff balanced h
check '--pro' completes '--program-files --program-data' --pro
check '--json sp' completes 'spec-schemes' --json sp
check '--color al' completes 'always' --color al
check '--program-files x' completes '' --program-files x
check 'doctor --la' completes '--language' doctor --la
check 'report --out' completes '--output' report --out
check 'report --output -' completes '' report --output -
check 'completion b' completes 'bash' completion b

report_checks
