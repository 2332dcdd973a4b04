#!/usr/bin/env bash
# Compares what one build writes in every way of compare_runs.sh, on the beginnings of some
# inputs, and sees that a single missing byte is noticed.
#
#   determinism_test.sh PROGRAM VARIANT
set -euo pipefail

[ $# -eq 2 ] || { echo 'usage: determinism_test.sh PROGRAM VARIANT' >&2 && exit 2; }
folder=$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")
scratch=$(mktemp --directory)
readonly folder scratch
trap 'rm -rf -- "$scratch"' EXIT

"$folder/make_inputs.sh" "$scratch/whole"
mkdir "$scratch/inputs"
for name in cr crlf units; do
  head --bytes=4000 "$scratch/whole/$name.fa" >"$scratch/inputs/$name.fa"
done
"$folder/compare_runs.sh" "$1" "$2" "$scratch/inputs" "$scratch/kept"

rm "$scratch"/inputs/{cr,units}.fa
for kept in "$scratch"/kept/crlf.fa.*; do
  head --bytes=-1 "$kept" >"$scratch/spoiled"
  mv "$scratch/spoiled" "$kept"
done
if "$folder/compare_runs.sh" "$1" "$2" "$scratch/inputs" "$scratch/kept" >"$scratch/output"; then
  echo 'a spoiled report went unnoticed'
  exit 1
fi
differences=$(grep --count ': differs from ' "$scratch/output")
echo "$differences differences from spoiled files noticed"
