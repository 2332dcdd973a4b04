# shellcheck shell=bash disable=SC2034,SC2154 # the variables are shared with the other files
# The rows of bench/macro/measure_runs.sh: inputs, options and targets. Sourced after measuring.sh, which
# explains `seconds`, `peak`, `outcome` and `made`.

# compare NAME TARGET OPTIONS INPUT [PLAIN_INPUT]: prints a row of the program beside the plain engine.
# An input has the words of `make_input` in one argument.
compare() {
  local name=$1 target=$2 options words=() file plain_file='' cells=() verdict ratio='-' sign=''
  local program_seconds program_outcome program_bases
  is_wanted "$name" || return 0
  read -r -a options <<<"$3"
  read -r -a words <<<"$4"
  if ! make_input "${words[@]}"; then
    row "$name" "skipped: no ${words[1]}" '' '' '' '' '' '' '' "$target" ''
    return 0
  fi
  file=$made
  if [ -n "${5-}" ]; then
    # shellcheck disable=SC2086  # words
    make_input $5
    plain_file=$made
  fi

  measure_program "$file" "${options[@]}"
  count_bases "$searched"
  cells=("$name" "$(format_input "$copies" "$3" "${words[@]}")" "$bases"
    "$(format_seconds "$seconds" "$outcome")" "$(format_speed "$bases" "$seconds" "$outcome")"
    "$(format_memory "$peak")" "$(format_memory_per_base "$peak" "$longest")")
  program_seconds=$seconds program_outcome=$outcome program_bases=$bases

  measure_plain "$file" "$plain_file" "${options[@]}"
  count_bases "$plain_searched"
  cells+=("$(format_seconds "$seconds" "$outcome") ($bases)")
  if [[ $program_outcome != [0o]* || $outcome != [0o]* ]]; then
    verdict='failed'
  elif [ "$program_outcome$outcome" != overover ]; then
    ratio=$(calculate "($seconds / $bases) / ($program_seconds / $program_bases)")
    [ "$program_outcome" = 0 ] || sign='below '
    [ "$outcome" = 0 ] || sign='above '
    verdict=$(judge "$sign" "$ratio" "$target")
    ratio=$sign$(printf '%.1f' "$ratio")
  else
    verdict='open'
  fi

  if [ "$outcome" = 0 ]; then
    if [ "$plain_searched" != "$searched" ] || [ "$program_outcome" != 0 ]; then
      measure 1 "$quorix" "${options[@]}" -- "$plain_searched" "$scratch/report"
    fi
    if [ "$outcome" = over ]; then
      verdict+=', not compared'
    elif ! is_same_report "$scratch/report" "$scratch/plain"; then
      verdict='OUTPUTS DIFFER'
    fi
  fi
  [[ $verdict != failed && $verdict != OUTPUTS* ]] || fail "$name: $verdict"
  row "${cells[@]}" "$ratio" "$target" "$verdict"
}

# judge SIGN RATIO TARGET: prints the verdict. A ratio of which only a bound is known may leave it
# open.
judge() {
  if is_true "$2 >= $3"; then
    if [[ $1 == below* ]]; then echo open; else echo pass; fi
  else
    if [[ $1 == above* ]]; then echo open; else echo fail; fi
  fi
}

# run_alone NAME OPTIONS INPUT [BYTES_A_BASE]: prints a row of the program alone. Its memory may be that
# many bytes for each base of the longest record, and 64 MB.
run_alone() {
  if is_wanted "$1"; then measure_alone "$@"; fi
}

# measure_alone NAME OPTIONS INPUT [BYTES_A_BASE]: prints that row, wanted or not.
measure_alone() {
  local name=$1 options words verdict=''
  read -r -a options <<<"$2"
  read -r -a words <<<"$3"
  make_input "${words[@]}"
  copies=1 searched=$made
  measure "$runs" "$quorix" "${options[@]}" -- "$searched" "$scratch/report"
  count_bases "$searched"
  if [ -n "${4-}" ]; then
    if is_true "$peak * 1024 <= $4 * $longest + 64e6"; then verdict=pass; else verdict=fail; fi
  fi
  if [[ $outcome != [0o]* ]]; then
    verdict=failed
    fail "$name: failed"
  fi
  row "$name" "$(format_input 1 "$2" "${words[@]}")" "$bases" \
    "$(format_seconds "$seconds" "$outcome")" \
    "$(if [ "$outcome" = 0 ]; then calculate "$seconds * 1e6 / $bases"; else echo '-'; fi)" \
    "$(format_memory "$peak")" "$(format_memory_per_base "$peak" "$longest")" \
    "${4:+memory $4 bytes a base and 64 MB}" "$verdict"
}

against_the_plain_engine() {
  local file
  begin_table 'Beside the plain engine' row input bases seconds 'Mbp/s' 'peak MiB' \
    'bytes per base of the longest record' 'plain seconds (bases)' ratio 'at least' verdict
  for file in ecoli-k12.fa human-chr22-1M.fa yeast-s288c.fa; do
    compare "short/exact/$file" 15 '-M exact' "genome $file"
    compare "short/extendExact/$file" 12 '-M extendExact' "genome $file"
    compare "short/imperfect/$file" 12 '-M imperfect' "genome $file"
  done

  # Long units cost the plain engine a second for a few hundred bases, so it gets slices.
  local -r human='slice human-chr22-1M.fa'
  compare long/20/human 40 '-U 20' "$human 100000"
  compare long/20/yeast-hardmasked 40 '-U 20' 'genome yeast-chrI-hardmasked.fa'
  compare long/50/human 150 '-U 50' "$human 100000" "$human 50000"
  compare long/50/random 500 '-U 50' 'random 100000 1 1' 'random 30000 1 1'
  compare long/100/human 200 '-U 100' "$human 100000" "$human 10000"
  compare long/100/random 1000 '-U 100' 'random 50000 1 1' 'random 4000 1 1'

  compare satellite/human-cen 100 '-u 160 -U 180' 'genome human-cen-100k.fa' \
    'slice human-cen-100k.fa 8000'
  compare satellite/worm-tr 100 '-u 160 -U 180' 'genome worm-tr-chrII.fa' \
    'slice worm-tr-chrII.fa 5000'
  compare long/500/human 1000 '-U 500' "$human 100000" "$human 1000"

  compare records/small 8 '-M imperfect' 'random 300 1000000 1' 'random 300 100000 1'
}

alone() {
  local size percent
  begin_table 'The program alone' row input bases seconds 'seconds a Mbp' 'peak MiB' \
    'bytes per base of the longest record' 'at most' verdict
  gap_of_Ns
  for size in 1 4 16 64; do
    run_alone "growth/random/${size}M" '-M imperfect' "random ${size}000000 1 1"
  done
  # Telomere and minisatellites, which the plain engine cannot finish.
  run_alone long/500/human-2M '-U 500' 'slice human-chr2-2.3M-softmasked.fa 2000000'
  for percent in 2 10; do
    for size in 100 200 400 800 1600; do
      run_alone "growth/array/$percent/$size" '-u 165 -U 175' "array 171 $size $percent 1"
    done
  done
  for size in 1 2 4 8; do
    run_alone "growth/microsatellites/${size}00k" '-s 100000' "microsatellites ${size}00000 1"
  done
  for size in 10000 20000 40000; do
    run_alone "growth/pure/A/$size" '-s 100000' "pure A $size"
    run_alone "growth/pure/AC/$size" '-s 100000' "pure AC $size"
  done

  run_alone memory/exact '-M exact' 'random 64000000 1 1' 3
  run_alone memory/extendExact '-M extendExact' 'random 64000000 1 1' 8
  run_alone memory/imperfect '-M imperfect' 'random 64000000 1 1' 3
}

# gap_of_Ns: how much more a gap of 20 Mbp costs than one of 200 bases.
gap_of_Ns() {
  local short_seconds short_outcome verdict=fail more='-'
  is_wanted 'gap/200 gap/20M gap/difference' || return 0
  measure_alone gap/200 '-M imperfect' 'gap 200000 200 1'
  short_seconds=$seconds short_outcome=$outcome
  measure_alone gap/20M '-M imperfect' 'gap 200000 20000000 1'
  if [ "$short_outcome$outcome" = 00 ]; then
    more=$(calculate "$seconds - $short_seconds")
    is_true "$more > 0.060" || verdict=pass
  fi
  row gap/difference 'the one less the other' '' "$more" '' '' '' '0.060 s' "$verdict"
}

# limits_of_the_machine: times that no program that reads the whole input can beat.
limits_of_the_machine() {
  local copies=1
  begin_table 'Physical limits' row command bases seconds 'Mbp/s' 'peak MiB'
  is_wanted 'limits/cat limits/wc limits/reader' || return 0
  if ! make_input genome yeast-s288c.fa; then
    row limits 'skipped: no yeast-s288c.fa' '' '' '' ''
    return 0
  fi
  local -r genome=$made
  # The slowest of the three has to take long enough; the page cache holds the file by then.
  while true; do
    repeat_file "$genome" "$copies"
    measure 1 "$programs/bench/quorix_read_only" "$made"
    is_true "$seconds < $min_seconds" || break
    copies=$(awk "BEGIN { print int($copies * 1.2 * $min_seconds / $seconds) + 1 }")
  done
  count_bases "$made"
  limit_row limits/cat "cat of yeast x $copies" cat -- "$made"
  limit_row limits/wc "wc -l of yeast x $copies" wc -l -- "$made"
  limit_row limits/reader "our reader alone, yeast x $copies" \
    "$programs/bench/quorix_read_only" "$made"
}

# limit_row NAME TEXT COMMAND [WORD]...
limit_row() {
  local name=$1 text=$2
  shift 2
  is_wanted "$name" || return 0
  measure "$runs" "$@"
  row "$name" "$text" "$bases" "$(format_seconds "$seconds" "$outcome")" \
    "$(format_speed "$bases" "$seconds" "$outcome")" "$(format_memory "$peak")"
}

# another_method: processor seconds beside another method, which finds something else than we do.
another_method() {
  command -v tantan >/dev/null || return 0
  begin_table 'tantan, another method' row input bases seconds 'tantan seconds' ratio
  local max_unit_length genome
  for max_unit_length in 6 50 100 500; do
    beside_tantan 1 "$max_unit_length" slice human-chr22-1M.fa 100000
  done
  for max_unit_length in 50 100; do
    for genome in ecoli-k12.fa yeast-s288c.fa human-chr2-2.3M-softmasked.fa human-chr22-1M.fa; do
      beside_tantan 1 "$max_unit_length" genome "$genome"
    done
  done
  beside_tantan 1 500 slice ecoli-k12.fa 1000000
  beside_tantan 1 500 slice human-chr2-2.3M-softmasked.fa 300000
  beside_tantan 1 500 genome human-chr22-1M.fa
  beside_tantan 1 500 genome human-cen-100k.fa
  beside_tantan 1 500 genome yeast-chrI-hardmasked.fa
  beside_tantan 1 2000 slice ecoli-k12.fa 200000
  beside_tantan 160 180 genome human-cen-100k.fa
}

# beside_tantan MIN_UNIT MAX_UNIT INPUT...: a row of units of that many bases.
beside_tantan() {
  local units="$1-$2" options="-u $1 -U $2" max_unit_length=$2 program_time
  shift 2
  local name="tantan/$units ${*:2}"
  is_wanted "$name" || return 0
  if ! make_input "$@"; then
    row "$name" "skipped: no $2" '' '' '' ''
    return 0
  fi
  local words
  read -r -a words <<<"$options"
  measure_program "$made" "${words[@]}"
  program_time=$processor_seconds
  count_bases "$searched"
  local program_outcome=$outcome
  measure "$runs" tantan -w "$max_unit_length" -f 4 "$searched"
  row "$name" "$(format_input "$copies" "$options" "$@")" "$bases" \
    "$(format_seconds "$program_time" "$program_outcome")" \
    "$(format_seconds "$processor_seconds" "$outcome")" \
    "$(printf %.2f "$(calculate "$program_time / $processor_seconds")")"
}
