# shellcheck shell=bash disable=SC2034,SC2154 # the variables are shared with the other files
# Runs the rows of bench/macro/rows.sh with another build of the program instead of the plain engine:
# both run in turn on the same input, so that a change of the speed of the machine affects both. Times
# are processor seconds, which depend less on what else runs. Sourced after rows.sh, with the other
# program in `base`.

compare() { pair "$1" "$3" "$4"; }
run_alone() { pair "$1" "$2" "$3"; }
gap_of_Ns() {
  pair gap/200 '-M imperfect' 'gap 200000 200 1'
  pair gap/20M '-M imperfect' 'gap 200000 20000000 1'
}

# pair NAME OPTIONS INPUT: prints a row with the median of the ratios of neighbouring runs.
pair() {
  local name=$1 options words run ratios='' base_times='' program_times='' verdict=same
  local base_seconds program_seconds
  is_wanted "$name" || return 0
  read -r -a options <<<"$2"
  read -r -a words <<<"$3"
  if ! make_input "${words[@]}"; then
    row "$name" "skipped: no ${words[1]}" '' '' '' '' '' ''
    return 0
  fi
  choose_copies "$made" "${options[@]}"
  for ((run = 0; run < runs; ++run)); do
    measure_in_turn "$((run % 2))"
    ratios+=$(calculate "$program_seconds / $base_seconds")$'\n'
    base_times+=$base_seconds$'\n'
    program_times+=$program_seconds$'\n'
  done
  # The head of a report names its file.
  if ! cmp -s <(sed -n '/^>/,$p' "$scratch/report") <(sed -n '/^>/,$p' "$scratch/base_report"); then
    verdict='OUTPUTS DIFFER'
    fail "$name: $verdict"
  fi
  row "$name" "$(format_input "$copies" "$2" "${words[@]}")" "$(median_of "$base_times")" \
    "$(median_of "$program_times")" "$(median_of "$ratios")" \
    "$(extreme_of "$ratios" 1)" "$(extreme_of "$ratios" '$')" "$verdict"
}

# measure_in_turn ORDER: runs both programs on `searched`, the base first if the order is 0.
measure_in_turn() {
  local turn
  for turn in "$1" "$((1 - $1))"; do
    if [ "$turn" = 0 ]; then
      measure 1 "$base" "${options[@]}" -- "$searched" "$scratch/base_report"
      base_seconds=$processor_seconds
    else
      measure 1 "$quorix" "${options[@]}" -- "$searched" "$scratch/report"
      program_seconds=$processor_seconds
    fi
    [ "$outcome" = 0 ] || fail "$name: ended with $outcome"
  done
}

# median_of LINES: prints the median with three decimals.
median_of() {
  sort --numeric-sort <<<"${1%$'\n'}" |
    awk '{ s[NR] = $1 } END { printf "%.3f", (s[int((NR + 1) / 2)] + s[int(NR / 2) + 1]) / 2 }'
}

# extreme_of LINES 1|$: prints the minimum or the maximum, with three decimals.
extreme_of() {
  printf '%.3f' "$(sort --numeric-sort <<<"${1%$'\n'}" | sed -n "$2p")"
}

beside_another_build() {
  begin_table "Beside another build, $runs pairs of runs" row input 'processor seconds of the other' \
    'processor seconds' ratio lowest highest reports
  begin_table() { :; } # one table for all rows
  against_the_plain_engine
  alone
}
