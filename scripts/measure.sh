#!/usr/bin/env bash
# Prints a Markdown table of what the release program needs for every FASTA file of a folder:
#
#   scripts/measure.sh FOLDER
#
# A row is a file in one of the three modes with default options; small files are searched for
# longer units too. Seconds are the median of three runs, from start to end of the process with the
# report written to a file; memory is the largest of the three peaks.
set -euo pipefail
export LC_ALL=C # decimal points

readonly run_count=3
readonly small_file_bytes=60000

source "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/usage.sh"
if [ $# -ne 1 ] || [ ! -d "$1" ]; then refuse_arguments; fi
folder=$(readlink -f -- "$1")
readonly folder
cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/.."

scripts/setup.sh measure
cmake --preset release >&2
cmake --build --preset release --parallel "$(nproc)" >&2

scratch=$(mktemp --directory)
readonly report="$scratch/report" figures="$scratch/figures" progress="$scratch/progress"
trap 'rm -rf -- "$scratch"' EXIT

# The sum of the lengths that the heads of the records tell.
count_bases() { awk '/^sequence length: / { sum += $3 } END { printf "%d", sum }' "$report"; }

# Lines with a position, a colon, a position and a bar: no line of bases or of a name has that.
count_repeats() { grep -cE '^ *[0-9a-z-]+ +[0-9]+ : +[0-9]+ \|' "$report" || true; }

# measure FILE MODE [OPTION]...: prints the row.
measure() {
  local file=$1 mode=$2 run
  shift 2
  : >"$figures"
  for ((run = 0; run < run_count; ++run)); do
    /usr/bin/time --format='%e %M' --output="$figures" --append \
      build/quorix -M "$mode" "$@" -- "$file" "$report" 2>"$progress" || {
      cat "$progress" >&2
      return 1
    }
  done
  printf '| %s | %s | %s | %s | %s | %s |\n' "$(basename -- "$file")" "$mode${*:+, }$*" \
    "$(count_bases)" "$(count_repeats)" \
    "$(sort --numeric-sort "$figures" | awk '{ s[NR] = $1 } END { print s[int((NR + 1) / 2)] }')" \
    "$(awk '$2 > peak { peak = $2 } END { printf "%.1f", peak / 1024 }' "$figures")"
}

printf '| file | mode | bases | repeats | seconds | peak MiB |\n'
printf '|---|---|---:|---:|---:|---:|\n'
find "$folder" -maxdepth 1 -type f \( -name '*.fa' -o -name '*.fasta' \) -print0 |
  sort --zero-terminated | while IFS= read -r -d '' genome; do
  for mode in exact extendExact imperfect; do
    measure "$genome" "$mode"
  done
  if [ "$(stat --format=%s -- "$genome")" -lt "$small_file_bytes" ]; then
    measure "$genome" imperfect -u 1 -U 20
  fi
done
