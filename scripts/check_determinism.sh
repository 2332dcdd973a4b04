#!/usr/bin/env bash
# Builds the program with g++ and clang++, without optimisation and with -O3, runs every build on the
# same inputs on every processor that this one can stand for, with read buffers of several lengths,
# in three locales, and from files and pipes, and compares what all of them write, byte for byte:
#
#   scripts/check_determinism.sh [FOLDER]
#
# FOLDER holds more inputs, FASTA files; keep them short, since each is searched about 300 times.
# Builds without optimisation get the beginnings of all inputs alone, the others both. The builds stay
# in build-determinism/. The first run of the first build is what all are compared with.
# Ends with status 1 at the first build that differs.
set -euo pipefail

source "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/usage.sh"
if [ $# -gt 1 ] || { [ $# -eq 1 ] && [ ! -d "$1" ]; }; then refuse_arguments; fi
more_inputs=''
[ $# -eq 0 ] || more_inputs=$(readlink -f -- "$1")
cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/.."
jobs=$(nproc)
readonly more_inputs jobs
readonly builds=build-determinism

scratch=$(mktemp --directory)
readonly scratch
trap 'rm -rf -- "$scratch"' EXIT

# build COMPILER FLAGS FOLDER
build() {
  cmake -S . -B "$3" -DCMAKE_CXX_COMPILER="$1" -DCMAKE_BUILD_TYPE=None -DCMAKE_CXX_FLAGS="$2" \
    -DQUORIX_BUILD_TESTS=ON >&2
  cmake --build "$3" --parallel "$jobs" --target quorix quorix_variant >&2
}

scripts/setup.sh test
tests/determinism/make_inputs.sh "$scratch/inputs"
[ -z "$more_inputs" ] || cp -- "$more_inputs"/* "$scratch/inputs/"
# Builds without optimisation are too slow for more than the beginnings.
mkdir "$scratch/beginnings"
for path in "$scratch/inputs"/*; do
  head --bytes=1500 "$path" >"$scratch/beginnings/beginning_$(basename -- "$path")"
done

# compare INPUTS: the build of `folder`.
compare() {
  printf '%s %s, %s: ' "$compiler" "$flags" "$1"
  tests/determinism/compare_runs.sh "$folder/quorix" \
    "$folder/tests/determinism/quorix_variant" "$scratch/$1" "$scratch/kept"
}

for compiler in g++ clang++; do
  for flags in '-O3 -DNDEBUG' -O0; do
    folder="$builds/$compiler${flags%% *}"
    build "$compiler" "$flags" "$folder"
    compare beginnings
    [ "$flags" = -O0 ] || compare inputs
  done
done
