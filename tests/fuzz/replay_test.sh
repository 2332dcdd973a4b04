#!/usr/bin/env bash
# A replay that plays nothing must not pass for one that finds nothing.
#
#   replay_test.sh REPLAY
set -euo pipefail

[ $# -eq 1 ] || { echo 'usage: replay_test.sh REPLAY' >&2 && exit 2; }
scratch=$(mktemp --directory)
readonly replay=$1 scratch
trap 'rm -rf -- "$scratch"' EXIT

# expect STATUS ARGUMENT...
expect() {
  local expected=$1 status=0
  shift
  "$replay" "$@" >"$scratch/output" 2>&1 || status=$?
  [ "$status" -eq "$expected" ] || {
    printf '%s %s: status %d, not %d\n' "$replay" "$*" "$status" "$expected"
    cat "$scratch/output"
    exit 1
  }
}

mkdir "$scratch/empty" "$scratch/full"
printf '>a\nACGT\n' >"$scratch/full/one"
expect 3 "$scratch/empty"
expect 3 "$scratch/missing"
expect 2
expect 2 "$scratch/full" "$scratch/full"
expect 0 "$scratch/full"
