#!/usr/bin/env bash
# Runs the release program through pipes on inputs that are too large for most disks, and prints a
# Markdown table of its time and memory:
#
#   bench/macro/load.sh [--limit SECONDS] [--output FILE] [ROW]...
#
# A ROW is the beginning of a name: "2^32/" selects all rows of that length. Without a ROW all are run,
# one after the other, in about 25 minutes.
#
#   2^31/... 2^32/...  a record of 2^31 + 1 or 2^32 + 1 random bases in one line or in lines of 60,
#                      with exact and diverged repeats planted at both ends and across every power
#                      of two from 2^12 on; a and b differ in their repeats, and a has exact ones
#                      where b has diverged ones
#   records            10^8 records of 10 bases
#   header             two records of 2^20 + 1 bases, each with a header of 100 MB
#   edits/...          words whose repeats have thousands of edits each, all of which are reported
#
#   --limit SECONDS    a run that takes longer is ended and fails; the default is 1500
#   --output FILE      also writes the table to FILE; the default is build-bench/load.md
#
# Every byte of the masked copy is checked, all planted repeats must be in the report with their
# positions, scores and edits, and the peak of the resident memory must stay within the bound that
# docs/reliability.md promises: 3 bytes for each base of the longest record (8 in mode
# extendExact), 2 for each byte of its header, 256 for each of its repeats, 4 for each edit of a
# repeat of more than four, 64 for each edit of the repeat that has most, and 64 MB. Only the rows with
# many edits count them.
#
# The rows of 2^32 bases wait until 15 GB of memory are available. The status is 1 if a row fails.
set -euo pipefail
export LC_ALL=C # decimal points

source "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/../../scripts/usage.sh"

is_usable=true
output='' pattern='' folder='' runs=1 limit=1500
while [ $# -gt 0 ]; do
  case $1 in
    --limit | --output)
      if [ $# -eq 1 ]; then
        is_usable=false
        break
      fi
      if [ "$1" = --limit ]; then limit=$2; else output=$(readlink -m -- "$2"); fi
      shift 2
      ;;
    -*) is_usable=false && shift ;;
    *) pattern+="${pattern:+|}^${1//[\^]/\\^}" && shift ;;
  esac
done
cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/../.."
if [ "$is_usable" = false ] || ! [[ $limit =~ ^[1-9][0-9]*$ ]]; then refuse_arguments; fi
output=${output:-$PWD/build-bench/load.md}
readonly folder pattern runs limit output

scripts/setup.sh bench
cmake --preset bench >&2
cmake --build --preset bench --parallel "$(nproc)" \
  --target quorix quorix_stopwatch quorix_load quorix_shapes >&2

scratch=$(mktemp --directory)
readonly scratch
trap 'rm -rf -- "$scratch"' EXIT

# shellcheck source=bench/macro/measuring.sh
. bench/macro/measuring.sh
readonly quorix_load=$programs/tests/load/quorix_load
# shellcheck source=tests/load/through_pipes.sh
. tests/load/through_pipes.sh

readonly needed_kib=15000000 max_waiting_seconds=600
rows_run=0

# wait_for_memory: waits until there is enough for the largest rows. Returns 1 if there never is.
wait_for_memory() {
  local waited
  for ((waited = 0; waited <= max_waiting_seconds; waited += 5)); do
    awk -v needed="$needed_kib" '/^MemAvailable:/ { exit $2 < needed }' /proc/meminfo && return 0
    sleep 5
  done
  return 1
}

# load_row NAME MODE BYTES_A_BASE RECORDS NAME_LENGTH BASES LINE_LENGTH SEED
load_row() {
  local -r name=$1 mode=$2 bytes_a_base=$3 records=$4 name_length=$5 bases=$6
  local max_repeats verdict=pass max_memory
  is_wanted "$name" || return 0
  rows_run=$((rows_run + 1))
  if is_true "$bases > 4e9" && ! wait_for_memory; then
    row "$name" "$((records * bases))" '' '' '' '' '' '' '' 'no memory for it'
    fail "$name: there is not enough free memory"
    return 0
  fi
  start_pipes "$scratch" "$mode" "${@:4}"
  measure 1 "$quorix" --maskX --searchMode "$mode" -- "$input_pipe" "$report_pipe"
  end_pipes "$outcome"
  read -r _ planted repeats max_repeats _ <<<"${found:-0 0 0 0 0}"
  max_memory=$(calculate "$bytes_a_base * $bases + 2 * $name_length + 256 * $max_repeats + 64e6")
  if [ "$pipes_outcome" != good ]; then
    verdict=$pipes_outcome
  elif is_true "$peak * 1024 > $max_memory"; then
    verdict='too much memory'
  fi
  [ "$verdict" = pass ] || fail "$name: $verdict"
  row "$name" "$((records * bases))" "$(format_seconds "$seconds" "$outcome")" \
    "$(format_speed "$((records * bases))" "$seconds" "$outcome")" \
    "$(format_memory "$peak")" "$(calculate "$max_memory / 1048576" | cut -d . -f 1)" \
    "$(if [ "$records" = 1 ]; then calculate "$peak * 1024 / $bases" | cut -c 1-5; else echo -; fi)" \
    "$planted" "$repeats" "$verdict"
}

# edits_row NAME MODE BYTES_A_BASE SHAPE BASES: all repeats are reported, so that they can be counted.
edits_row() {
  local -r name=$1 mode=$2 bytes_a_base=$3 bases=$5
  local repeats edits max_edits verdict=pass max_memory
  is_wanted "$name" || return 0
  rows_run=$((rows_run + 1))
  "$programs/bench/quorix_shapes" make "$4" "$bases" >"$scratch/diverged.fa"
  measure 1 "$quorix" --dontRemoveMostlyOverlapping --printRepeatSeqMode 0 --searchMode "$mode" -- \
    "$scratch/diverged.fa" "$scratch/diverged.report"
  read -r repeats edits max_edits < <(awk -F '|' '/nucleotide .* unit / {
      count = 0
      for (i = 1; i <= NF; ++i) if ($i ~ /^ *[0-9]+ (mis|ins|del) *$/) count += $i + 0
      ++repeats
      if (count > 4) edits += count
      if (count > most) most = count
    } END { print repeats + 0, edits + 0, most + 0 }' "$scratch/diverged.report")
  max_memory=$(calculate "$bytes_a_base * $bases + 256 * $repeats + 4 * $edits + 64 * $max_edits + 64e6")
  if [ "$outcome" != 0 ]; then
    verdict="failed with status $outcome"
  elif [ "$edits" -lt 100000 ]; then
    verdict='too few edits for a verdict'
  elif is_true "$peak * 1024 > $max_memory"; then
    verdict='too much memory'
  fi
  [ "$verdict" = pass ] || fail "$name: $verdict"
  row "$name" "$bases" "$(format_seconds "$seconds" "$outcome")" \
    "$(format_speed "$bases" "$seconds" "$outcome")" "$(format_memory "$peak")" \
    "$(calculate "$max_memory / 1048576" | cut -d . -f 1)" - 0 "$repeats" "$verdict"
}

readonly above_2_31=$((2 ** 31 + 1)) above_2_32=$((2 ** 32 + 1))

# Bash reads a function, and the exit in the line of its call, before the first row, so the script may
# be edited during a run.
main() {
  begin_output
  begin_table 'Load' row bases seconds 'Mbp/s' 'peak MiB' 'at most' 'bytes a base' planted repeats \
    verdict
  load_row header/imperfect imperfect 3 2 100000000 1048577 60 1
  edits_row edits/imperfect imperfect 3 'tribonacci word' 60000
  edits_row edits/extendExact extendExact 8 'AC, 10 % diverged' 100000
  load_row 2^31/line/exact/a exact 3 1 0 "$above_2_31" 0 1
  load_row 2^31/lines/exact/b exact 3 1 0 "$above_2_31" 60 2
  load_row 2^31/line/imperfect/b imperfect 3 1 0 "$above_2_31" 0 2
  load_row 2^31/lines/imperfect/a imperfect 3 1 0 "$above_2_31" 60 1
  load_row 2^31/lines/extendExact/b extendExact 8 1 0 "$above_2_31" 60 2
  load_row 2^32/line/exact/b exact 3 1 0 "$above_2_32" 0 2
  load_row 2^32/lines/exact/a exact 3 1 0 "$above_2_32" 60 1
  load_row 2^32/line/imperfect/a imperfect 3 1 0 "$above_2_32" 0 1
  load_row 2^32/lines/imperfect/b imperfect 3 1 0 "$above_2_32" 60 2
  load_row records/imperfect imperfect 3 100000000 0 10 60 1
  [ "$rows_run" -gt 0 ] || { echo 'There is no such row.' >&2 && exit 1; }
  [ "$failures" -eq 0 ] || { echo "$failures rows have failed." >&2 && exit 1; }
}

main; exit
