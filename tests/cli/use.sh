#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Taken in by the scripts here: . use.sh PROGRAM EXAMPLES. Gives them $program, $examples, a scratch folder
# that is the current one, and checks.
set -euo pipefail

# shellcheck disable=SC2034  # for those who take this in
program=$(realpath "$1")
# shellcheck disable=SC2034
examples=$(realpath "$2")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"

fail()
{
    echo "FAIL: $*" >&2
    exit 1
}

# ends STATUS COMMAND...: runs the command with its output in the files out and err of the scratch folder.
ends()
{
    local wanted=$1 status=0
    shift
    "$@" >"$scratch/out" 2>"$scratch/err" || status=$?
    [ "$status" -eq "$wanted" ] || fail "status $status, not $wanted: $* ($(head -c 500 "$scratch/err"))"
}

# says FILE TEXT: the text stands in the file.
says()
{
    grep -qF -- "$2" "$1" || fail "no \"$2\" in: $(head -c 500 "$1")"
}
