#!/usr/bin/env bash
# Compares the program with the plain engine on every FASTA file of a folder, byte for byte: exit
# status, report from the first record on, and masked sequences.
#
#   scripts/compare_with_plain.sh FOLDER
#
# One line of output is one comparison: a file in one mode with one set of options. Any difference
# is named, the reports that differ are kept, and the script fails at the end.
set -euo pipefail

source "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/usage.sh"
if [ $# -ne 1 ] || [ ! -d "$1" ]; then refuse_arguments; fi
folder=$(readlink -f -- "$1")
readonly folder
cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/.."
jobs=$(nproc)
readonly jobs

# Each option that the search or the report depends on is away from its default at least once.
readonly option_sets=(
  ''
  '-m -2 -g -2 -R 20 --outputFormat 0 --reportUnit 1'
  '-r 2 -N 0 -D -f 12 --printRepeatSeqMode 1 --reportUnit 0'
  '-u 2 -U 9 -m -3 -g -4 --NsAsMissense --NPerfectionMode 1 --printRepeatSeqMode 0'
  '-s 12 --minScore_a -3 --minScore_b 2.5 -l 15 --minLength_a 4 --minLength_b 1.5 -N 9'
  '--maskX --outputFormat 2 --NPerfectionMode 2 --firstSeq 1 --lastSeq 2'
)
# Long units cost much time, so they are for small files alone.
readonly small_file_options='-u 1 -U 20'
readonly small_file_bytes=60000

# compare FILE MODE OPTIONS: the line of one comparison; status 1 if there is a difference.
compare() {
  local place status=0 plain_status=0 options differences=()
  read -r -a options <<<"-M $2 $3"
  place=$(mktemp --directory "$scratch/XXXXXX")
  # The program names the masked file after its input, so the input goes by a name in our place.
  ln -s -- "$1" "$place/input"
  build/quorix "${options[@]}" -- "$place/input" "$place/report" 2>"$place/progress" || status=$?
  build-dev/tests/reference/quorix_plain "${options[@]}" -- "$place/input" "$place/plain" ||
    plain_status=$?

  # Neither the head of the report nor its last line are the plain engine's business.
  sed -n -e '/^>/,$p' "$place/report" |
    sed -e '${/^## Finished successfully\. ##$/d}' >"$place/blocks"
  [ "$status" -eq "$plain_status" ] || differences+=("exit status $status, not $plain_status")
  cmp -s "$place/blocks" "$place/plain" || differences+=('report')
  if [[ $3 == *--maskX* ]]; then
    cmp -s "$place/input.masked" "$place/plain.masked" || differences+=('masked file')
  fi

  if [ ${#differences[@]} -eq 0 ]; then
    printf 'same  %s  %s  (%s bytes)\n' "$(basename -- "$1")" "${options[*]}" \
      "$(stat --format=%s "$place/plain")"
    rm -rf -- "$place"
  else
    printf 'DIFFERENT  %s  %s  (%s), see %s\n' "$(basename -- "$1")" "${options[*]}" \
      "${differences[*]}" "$place"
    return 1
  fi
}
export -f compare

# Prints file, mode and options of every comparison, each with a NUL after it.
list_comparisons() {
  local file mode options
  find "$folder" -maxdepth 1 -type f \( -name '*.fa' -o -name '*.fasta' \) -print0 |
    sort --zero-terminated | while IFS= read -r -d '' file; do
    for mode in exact extendExact imperfect; do
      for options in "${option_sets[@]}"; do
        printf '%s\0%s\0%s\0' "$file" "$mode" "$options"
      done
      [ "$(stat --format=%s -- "$file")" -ge "$small_file_bytes" ] ||
        printf '%s\0%s\0%s\0' "$file" "$mode" "$small_file_options"
    done
  done
}

scripts/setup.sh test
for preset in release dev; do
  cmake --preset "$preset" >&2
done
cmake --build --preset release --parallel "$jobs" >&2
cmake --build --preset dev --parallel "$jobs" --target quorix_plain >&2

scratch=$(mktemp --directory)
export scratch
# shellcheck disable=SC2016  # the arguments are the inner shell's
list_comparisons |
  xargs --null --no-run-if-empty --max-args=3 --max-procs="$jobs" bash -c 'compare "$@"' compare ||
  { echo "There are differences." >&2 && exit 1; }
rmdir -- "$scratch"
