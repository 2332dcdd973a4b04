#!/usr/bin/env bash
# The examples are what their script and the program make of them today.
#
#   examples_test.sh PROJECT_FOLDER QUORIX
set -euo pipefail

project=$(readlink -f -- "$1") quorix=$(readlink -f -- "$2")
readonly project quorix
scratch=$(mktemp --directory)
readonly scratch
trap 'rm -rf -- "$scratch"' EXIT

# compare MADE KEPT: fails with the difference.
compare() { diff --recursive --unified=1 --exclude=make_zoo.py -- "$1" "$2" || return 1; }

mkdir -- "$scratch/zoo"
"$project/examples/zoo/make_zoo.py" "$quorix" "$scratch/zoo"
[ "$(find "$scratch/zoo" -name '*.report' | wc -l)" -ge 6 ] || { echo 'FAILED: few loci' && exit 1; }
compare "$scratch/zoo" "$project/examples/zoo" || { echo 'FAILED: examples/zoo is stale' && exit 1; }

cp -- "$project/examples/example.fa" "$scratch"
(cd -- "$scratch" && "$quorix" example.fa example.report 2>/dev/null)
compare "$scratch/example.report" "$project/examples/example.report" ||
  { echo 'FAILED: examples/example.report is stale' && exit 1; }

# The check itself must notice a base that differs.
sed --in-place '2s/^./N/' "$scratch/zoo/poly_a.fa"
if compare "$scratch/zoo" "$project/examples/zoo" >"$scratch/found"; then
  echo 'FAILED: a changed base is not noticed' && exit 1
fi
grep --quiet poly_a.fa "$scratch/found"
