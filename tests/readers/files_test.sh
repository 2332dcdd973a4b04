#!/usr/bin/env bash
# What other programs read of a made-up genome: random DNA, microsatellites, diverged arrays with long
# units, a record without repeats and an empty one.
#
#   files_test.sh QUORIX TOOLS GENERATE
set -euo pipefail

readonly generate=$3
genome=$(mktemp)
trap 'rm -- "$genome"' EXIT
{
  printf '>microsatellites of a record with more words\n'
  "$generate" microsatellites 200000 11 | tail -n +2
  printf '>random\n'
  "$generate" random 60000 1 12 | tail -n +2
  printf '>without\nACGGTCATTA\n>empty\n'
  printf '>array23\n'
  "$generate" array 23 30 4 13 | tail -n +2
  printf '>array11|x=1;y,z\n'
  "$generate" array 11 60 10 14 | tail -n +2
} >"$genome"
bash "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/check_files.sh" "$1" "$2" "$genome" -U 24
