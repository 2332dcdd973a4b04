#!/usr/bin/env bash
# Runs the program on small inputs through pipes, as bench/macro/load.sh does on large ones, and
# then spoils its outputs in one way at a time: the checker has to find each.
#
#   small_load_test.sh PROGRAM QUORIX_LOAD
set -euo pipefail

[ $# -eq 2 ] || { echo 'usage: small_load_test.sh PROGRAM QUORIX_LOAD' >&2 && exit 2; }
readonly program=$1 quorix_load=$2

scratch=$(mktemp --directory)
readonly scratch
trap 'rm -rf -- "$scratch"' EXIT
failures=0

# shellcheck source=tests/load/through_pipes.sh
. "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/through_pipes.sh"

complain() {
  printf 'FAILED: %s\n' "$*"
  failures=$((failures + 1))
}

# expect_outcome OUTCOME FOUND COMMAND MODE PLAN...: a run through pipes, `found` matching a pattern.
expect_outcome() {
  local -r outcome=$1 pattern=$2 command=$3 mode=$4
  local status=0
  start_pipes "$scratch" "${@:4}" 2>"$scratch/log"
  "$command" --maskX --searchMode "$mode" -- "$input_pipe" "$report_pipe" \
    >/dev/null 2>&1 || status=$?
  end_pipes "$status"
  # shellcheck disable=SC2053 # a pattern
  if [ "$pipes_outcome" != "$outcome" ] || [[ $found != $pattern ]]; then
    complain "$*: $pipes_outcome, $found"
    cat "$scratch/log"
  fi
}

# 2^20 + 1 bases have 19 planted repeats: one at the begin, two at each of the 8 powers of two below
# the last, and two at the end. Where 9 are diverged, each is 4 exact ones.
readonly just_above=1048577
expect_outcome good "$just_above 19 *" "$program" imperfect 1 0 $just_above 60 1
expect_outcome good "$just_above 19 *" "$program" imperfect 1 0 $just_above 0 2
expect_outcome good "$just_above 19 *" "$program" extendExact 1 0 $just_above 60 2
expect_outcome good "$just_above 46 *" "$program" exact 1 0 $just_above 0 1
expect_outcome good '100000 0 *' "$program" imperfect 10000 0 10 60 1
expect_outcome good '20000 14 *' "$program" imperfect 2 1000000 10000 60 1

# What the runs through pipes notice of a program that fails, or never opens its files.
expect_outcome 'status 1' '' false imperfect 1 0 5000 60 1
expect_outcome 'wrong output' '' true imperfect 1 0 5000 60 1

# Outputs to spoil, in files.
readonly plan=(2 0 20000 60 5)
"$quorix_load" write "${plan[@]}" >"$scratch/in.fa"
"$program" --maskX -- "$scratch/in.fa" "$scratch/report" >/dev/null 2>&1
readonly report=$scratch/report masked=$scratch/in.fa.masked spoiled=$scratch/spoiled

check() { "$quorix_load" check imperfect "${plan[@]}" "$1" "$2" >"$scratch/log" 2>&1; }

check "$report" "$masked" || complain "outputs as they are: $(cat "$scratch/log")"

# expect_found WHAT TEXT REPORT MASKED: the checker has to fail with the text.
expect_found() {
  local status=0
  if cmp -s "$3" "$report" && cmp -s "$4" "$masked"; then complain "$1: not spoiled"; fi
  check "$3" "$4" || status=$?
  if [ "$status" -ne 1 ] || [[ $(cat "$scratch/log") != *"$2"* ]]; then
    complain "$1: status $status, $(cat "$scratch/log")"
  fi
}

# spoil_masked WHAT TEXT SED_SCRIPT, and the same of the report
spoil_masked() {
  sed -E -e "$3" "$masked" >"$spoiled"
  expect_found "$1" "$2" "$report" "$spoiled"
}
spoil_report() {
  sed -E -e "$3" "$report" >"$spoiled"
  expect_found "$1" "$2" "$spoiled" "$masked"
}

# shellcheck disable=SC2016 # the $ are sed's
{
  spoil_masked 'an X too many' ', not "' '20s/^[ACGT]/X/'
  spoil_masked 'an X missing' ', not "' '0,/X/s/X/A/'
  spoil_masked 'an X moved' ', not "' '0,/X[ACGT]/s/X([ACGT])/\1X/'
  spoil_masked 'another base' ', not "' '100s/A/C/'
  spoil_masked 'a lower case base' ', not "' '100s/A/a/'
  spoil_masked 'a base too many' ', not "' '100s/$/A/'
  spoil_masked 'a line too short' ', not "' '100s/(.)$/\n\1/'
  spoil_masked 'a line missing' ', not "' '100d'
  spoil_masked 'another name' 'another name' '1s/$/1/'
  spoil_masked 'a line too many' 'more lines follow' '$s/$/\nA/'
  head -c -1 "$masked" >"$spoiled"
  expect_found 'the last line feed missing' 'the text ends early' "$report" "$spoiled"
  head -n 200 "$masked" >"$spoiled"
  expect_found 'the second record missing' 'the text ends early' "$report" "$spoiled"

  spoil_report 'another start' 'impossible positions' 's/(nucleotide +)1 :/\12 :/'
  spoil_report 'another score' 'there is no line' 's/ pt( .* 1 del )/0 pt\1/'
  spoil_report 'another edit' 'there is no line' 's/,M\),(\([0-9]+,I\))/,I),\1/'
  spoil_report 'another unit' 'there is no line' 's/(1 del .*unit )A/\1C/'
  spoil_report 'a repeat missing' 'there is no line' '/ 1 del /,+4d'
  spoil_report 'another length' 'sequence length' 's/^sequence length: 20000/&0/'
  spoil_report 'another name' 'another name' 's/^>2/>3/'
  spoil_report 'an alignment too short' 'alignment' '/^Missense/{n;s/.$//}'
  spoil_report 'no closing line' 'the text ends early' '$d'
  spoil_report 'a closing line too many' 'more lines follow' '$p'
  spoil_report 'the first repeat again as the last' 'out of order' \
    '/nucleotide +1 :/,+4H; /^# Analysis/{x;s/^\n//;G}'
}
[ "$failures" -eq 0 ]
