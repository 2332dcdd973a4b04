#!/usr/bin/env bash
# Splits the records of every input into ranges, and compares what `quorix-tools merge` makes of the
# reports and masked copies of the ranges with what one run writes, byte for byte:
#
#   scripts/check_merge.sh FOLDER
#
# FOLDER holds FASTA files; those with one record are split as well, with a range after it. Each
# search mode runs with output formats 0, 1 and 2; the ranges have 1, 2 and 3 records, and uneven
# numbers of them, some none. Reports are merged from files and from gzip, masked copies with and
# without their report. Ends with status 1 at the first difference.
set -euo pipefail

source "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/usage.sh"
if [ $# -ne 1 ] || [ ! -d "$1" ]; then refuse_arguments; fi
inputs=$(readlink -f -- "$1")
cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/.."
[ -f build/CMakeCache.txt ] || cmake --preset release >&2
cmake --build --preset release --parallel "$(nproc)" --target quorix quorix-tools >&2
quorix=$PWD/build/quorix
tools=$PWD/build/quorix-tools
readonly inputs quorix tools

scratch=$(mktemp --directory)
readonly scratch
trap 'rm -rf -- "$scratch"' EXIT

# run FOLDER OPTION...: searches the input in a folder of its own, since the name of the masked copy
# follows from that of the input.
run() {
  local folder="$scratch/$1"
  shift
  mkdir "$folder"
  ln -s -- "$input" "$folder/input.fa"
  (cd -- "$folder" && "$quorix" --maskX "${settings[@]}" "$@" input.fa report 2>/dev/null)
}

# expect_same WHAT FILE: the file is the one of the whole run.
expect_same() {
  cmp -- "$scratch/whole/$1" "$2" && return
  printf 'FAILED: %s: %s: ranges of %s records: %s\n' "$input" "${settings[*]}" "$sizes" "$1"
  exit 1
}

# merge_ranges SIZE...: ranges of so many records, in turn, up to one that goes on to the last record.
merge_ranges() {
  local first=1 number=0 size parts=() masked=()
  while [ "$first" -le "$record_count" ]; do
    for size in "$@"; do
      number=$((number + 1))
      run "part$number" --firstSeq "$first" --lastSeq $((first + size - 1))
      parts=("../part$number/report" "${parts[@]}") # in any order, such as from the last one on
      masked+=("../part$number/input.fa.masked")
      first=$((first + size))
    done
  done
  number=$((number + 1))
  run "part$number" --firstSeq "$first"
  parts+=("../part$number/report")
  masked+=("../part$number/input.fa.masked")

  mkdir "$scratch/merged"
  (
    cd -- "$scratch/merged"
    "$tools" merge -o report "${parts[@]}"
    "$tools" merge --masked -o masked "${masked[@]}"
    "$tools" merge --masked --report report "${masked[@]}" >checked
    gzip --fast -- "${parts[@]}"
    "$tools" merge "${parts[@]/%/.gz}" -o input.fa
  )
  expect_same report "$scratch/merged/report"
  expect_same input.fa.masked "$scratch/merged/masked"
  expect_same input.fa.masked "$scratch/merged/checked"
  # The name in the head is all that is new.
  sed '0,/^# Output file name: /s/^\(# Output file name:  *\)input\.fa$/\1report/' \
    "$scratch/merged/input.fa" >"$scratch/merged/from_gzip"
  expect_same report "$scratch/merged/from_gzip"
  merge_count=$((merge_count + 1))
  rm -r -- "$scratch"/part* "$scratch/merged"
}

merge_count=0
for input in "$inputs"/*; do
  [ -f "$input" ] || continue
  record_count=$(grep --count --text '^>' -- "$input") || true
  for mode in exact extendExact imperfect; do
    for format in 0 1 2; do
      settings=(--searchMode "$mode" --outputFormat "$format")
      run whole
      for sizes in 1 2 3 '1 3 0 2'; do
        # shellcheck disable=SC2086  # the sizes are words
        merge_ranges $sizes
      done
      rm -r -- "$scratch/whole"
    done
  done
done
if [ "$merge_count" -eq 0 ]; then printf 'no inputs in %s\n' "$inputs" && exit 1; fi
printf '%s merges, no difference\n' "$merge_count"
