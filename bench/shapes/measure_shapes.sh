#!/usr/bin/env bash
# Measures the release program on legal inputs on which a finder of repeats may be slow, and on random
# DNA of the same length. Prints a Markdown table, the slowest of each set of options first:
#
#   bench/shapes/measure_shapes.sh [--shapes PATTERN] [--sets PATTERN] [--runs N] [--limit SECONDS] [--output FILE]
#
#   --shapes PATTERN  only the shapes whose names match the extended regular expression
#   --sets PATTERN    only the sets of options that match
#   --runs N          prints the median of N runs; the default is 1
#   --limit SECONDS   how long a run may take; the default is 20
#   --output FILE     also writes the table to FILE; the default is build-bench/shapes.md
#
# Seconds are processor time from start to end of the process, with the report written to a file. A
# shape is searched at doubling lengths, up to the length of the set of options or to where the next
# length could exceed the limit. A row has the last length, and how many times as long it took as half
# of it. A line below each table counts the shapes that took three times as long or more.
# `quorix_shapes list` names the shapes; `quorix_shapes make NAME BASES` prints one.
#
# The status is 1 if a run fails. Slowness is no failure.
set -euo pipefail
export LC_ALL=C # decimal points

readonly killed=137

# Maximum bases, and options. At these lengths random DNA takes some ten milliseconds.
readonly sets='
1000000
2000000 -M exact
500000 -M extendExact
100000 -u 1 -U 20
100000 -U 50
100000 -s 100000
'

source "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/../../scripts/usage.sh"

is_number() { [[ $1 =~ ^[1-9][0-9]*$ ]]; }

is_usable=true
output='' shape_pattern='' set_pattern='' runs=1 max_seconds=20
while [ $# -gt 0 ]; do
  if [ $# -eq 1 ]; then
    is_usable=false
    break
  fi
  case $1 in
    --shapes) shape_pattern=$2 ;;
    --sets) set_pattern=$2 ;;
    --runs) runs=$2 ;;
    --limit) max_seconds=$2 ;;
    --output) output=$(readlink -m -- "$2") ;;
    *) is_usable=false ;;
  esac
  shift 2
done
cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/../.."
if [ "$is_usable" = false ] || ! is_number "$runs" || ! is_number "$max_seconds"; then
  refuse_arguments
fi
output=${output:-$PWD/build-bench/shapes.md}
# Wall time, for measuring.sh: on a busy machine a run gets little of the processor.
readonly limit=$((20 * max_seconds))
readonly shape_pattern set_pattern runs max_seconds output

scripts/setup.sh bench
cmake --preset bench >&2
cmake --build --preset bench --parallel "$(nproc)" --target quorix quorix_generate quorix_shapes \
  quorix_stopwatch >&2

scratch=$(mktemp --directory)
readonly scratch
trap 'rm -rf -- "$scratch"' EXIT

# shellcheck source=bench/macro/measuring.sh
. bench/macro/measuring.sh

declare -A random_seconds=() # by the number of bases

# take FILE: searches the file. Sets `taken`, in processor seconds, and `outcome` as `measure` does.
take() {
  measure "$runs" prlimit --cpu="$max_seconds" "$quorix" "${options[@]}" -- "$1" "$scratch/report"
  [ "$outcome" != "$killed" ] || outcome=over
  taken=$(cut -d ' ' -f 4 "$scratch/figures" | sort --general-numeric-sort |
    awk '{ s[NR] = $1 } END { print s[int((NR + 1) / 2)] }')
}

# take_random LENGTH: the minimum of five runs, since other figures are divided by this small one.
take_random() {
  local run taken
  if [ -n "${random_seconds[$1]-}" ]; then return 0; fi
  "$programs/bench/quorix_generate" random "$1" 1 1 >"$scratch/random.fa"
  : >"$scratch/random_runs"
  for ((run = 0; run < 5; ++run)); do
    take "$scratch/random.fa"
    printf '%s\n' "$taken" >>"$scratch/random_runs"
  done
  random_seconds[$1]=$(sort --general-numeric-sort "$scratch/random_runs" | head -n 1)
}

# measure_shape SHAPE: prints a row of the set of `bases` and `options`, with its ratio before it. The
# length doubles up to `bases`, or until four times the time would exceed the limit.
measure_shape() {
  local halvings=8 length previous='' sign='' growth='-' ratio
  while true; do
    length=$((bases >> halvings))
    "$programs/bench/quorix_shapes" make "$1" "$length" >"$scratch/shape.fa"
    take "$scratch/shape.fa"
    if [[ $outcome != 0 && $outcome != over ]]; then
      fail "$1, ${options[*]}: status $outcome"
    fi
    [ -z "$previous" ] || growth=$(printf '%.1f' "$(calculate "$taken / $previous")")
    if [ "$outcome" != 0 ] || [ "$halvings" -eq 0 ] || is_true "4 * $taken > $max_seconds"; then
      break
    fi
    previous=$taken
    halvings=$((halvings - 1))
  done
  [ "$outcome" = 0 ] || sign='above '
  take_random "$length"
  ratio=$(calculate "$taken / ${random_seconds[$length]}")
  printf '%s\t| %s | %s | %s%.3f | %.3f | %s%.1f | %s |\n' "$ratio" "$1" "$length" "$sign" "$taken" \
    "${random_seconds[$length]}" "$sign" "$ratio" "$growth"
}

measure_set() {
  local shape
  random_seconds=()
  : >"$scratch/rows"
  while IFS= read -r shape; do
    if [[ $shape =~ $shape_pattern ]]; then
      measure_shape "$shape" >>"$scratch/rows"
    fi
  done < <("$programs/bench/quorix_shapes" list)
  begin_table "Options: ${options[*]:-none}" \
    shape bases seconds 'random DNA, seconds' 'times random DNA' 'times half the length'
  while IFS= read -r shape; do
    emit "$shape"
  done < <(sort --general-numeric-sort --reverse "$scratch/rows" | cut -f 2)
  emit ''
  emit "$(awk -F '|' '$7 + 0 >= 3 { ++steep } END { print steep + 0, "of", NR, "shapes took at least " \
    "3 times as long as with half the length." }' "$scratch/rows")"
}

begin_output
while read -r bases words; do
  [ -n "$bases" ] || continue
  read -r -a options <<<"$words"
  if [[ "options: ${words:-none}" =~ $set_pattern ]]; then
    measure_set
  fi
done <<<"$sets"
[ "$failures" -eq 0 ] || { echo "$failures runs have failed." >&2 && exit 1; }
