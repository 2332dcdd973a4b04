#!/usr/bin/env bash
# Builds the fuzz harnesses and runs them one after the other, from the corpora of the tree and what
# earlier runs have found:
#
#   scripts/fuzz.sh SECONDS [HARNESS]...     each for so long
#   scripts/fuzz.sh --runs N [HARNESS]...    each for so many executions
#   scripts/fuzz.sh --minimise [HARNESS]...  no run: makes the corpora of the tree anew
#
# A run that is to end early is sent SIGUSR1 (`pkill -USR1 args_fuzz`): it still gives its row.
#
# LONGEST_INPUT=BYTES in the environment is taken instead of the longest input of the harnesses:
# short ones run many times as fast.
#
# A harness is one of parse, unpack, search, kernel, report, args and tools; without one all of them are
# meant. The last that a run prints is a Markdown table. It fails if there is a finding: the input of
# each is in build-fuzz/findings/HARNESS, and stays one until it is taken out of there.
#
# What a run finds worth keeping goes to build-fuzz/found/HARNESS. --minimise takes from there and
# from the tree the fewest inputs that meet all edges, and puts them into tests/fuzz/corpus.
set -euo pipefail
export LC_ALL=C

source "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/usage.sh"

readonly all_harnesses=(parse unpack search kernel report args tools)

# Bytes of the longest input: beyond them nothing new can come.
declare -rA max_bytes=([parse]=4200 [unpack]=2000 [search]=330 [kernel]=160 [report]=300 [args]=48
  [tools]=1000)

# Of `args` the library's tables take most of the time whatever the input is; how often an edge is
# taken tells nothing then, and counting costs a fifth. Weighing thousands of inputs by how rare
# their edges are costs a third of the time of `kernel`; `search` keeps as many.
declare -rA own_options=(
  [args]='-use_counters=0 -entropic=0'
  [search]='-entropic=0'
  [kernel]='-entropic=0'
)

# Short memories of what was freed and by whom make a run a third faster. Whoever looks into a
# finding plays it with the defaults.
export ASAN_OPTIONS=${ASAN_OPTIONS-malloc_context_size=0:quarantine_size_mb=1:thread_local_quarantine_size_kb=64}
export UBSAN_OPTIONS=${UBSAN_OPTIONS-print_stacktrace=1}

is_number() { [[ $1 =~ ^[1-9][0-9]*$ ]]; }

# count_files FOLDER
count_files() { find "$1" -type f | wc -l; }

# findings_of HARNESS: inputs that ended a run; slow ones are in its log alone.
findings_of() {
  find "build-fuzz/findings/$1" -type f \
    \( -name 'crash-*' -o -name 'leak-*' -o -name 'timeout-*' -o -name 'oom-*' \) | sort
}

# last_number LOG PATTERN: the number in the last match of the pattern, whose words are dropped.
last_number() {
  { grep --text --only-matching --extended-regexp "$2" "$1" || true; } | tail --lines=1 |
    tr --complement --delete '0-9'
}

# run HARNESS LIMIT: adds the row of the table; status 1 with a finding.
rows=''
run() {
  local harness=$1 limit=$2 status=0 begin=$SECONDS seconds executions findings
  local log=build-fuzz/logs/$harness options
  read -ra options <<<"${own_options[$harness]-}"
  printf '== %s, log in %s\n' "$harness" "$log" >&2
  "build-fuzz/tests/fuzz/${harness}_fuzz" "$limit" "${options[@]}" \
    -max_len="${LONGEST_INPUT-${max_bytes[$harness]}}" -timeout=120 \
    -close_fd_mask=3 -print_final_stats=1 -artifact_prefix="build-fuzz/findings/$harness/" \
    "build-fuzz/found/$harness" "tests/fuzz/corpus/$harness" &>"$log" || status=$?
  seconds=$((SECONDS - begin))
  executions=$(last_number "$log" 'number_of_executed_units: [0-9]+')
  findings=$(findings_of "$harness" | wc -l)
  rows+=$(printf '| %s | %s | %d | %d | %s | %s | %d |' "$harness" "${executions:-0}" "$seconds" \
    $((${executions:-0} / (seconds > 0 ? seconds : 1))) \
    "$(last_number "$log" 'cov: [0-9]+')" "$(last_number "$log" 'corp: [0-9]+')" "$findings")$'\n'
  if [ "$status" -ne 0 ] || [ "$findings" -ne 0 ]; then
    grep --text --extended-regexp 'FINDING|ERROR|runtime error|SUMMARY' "$log" >&2 || tail "$log" >&2
    findings_of "$harness" >&2
    return 1
  fi
}

# minimise HARNESS
minimise() {
  local harness=$1 corpus=tests/fuzz/corpus/$1 kept generated
  kept=$(mktemp --directory)
  generated=$(printf '[0-9a-f]%.0s' {1..40}) # how the fuzzer names an input
  # What has another name was put there by a person, for a reason.
  find "$corpus" -type f -not -name "$generated" -exec cp --target-directory="$kept" -- {} +
  "build-fuzz/tests/fuzz/${harness}_fuzz" -merge=1 -set_cover_merge=1 -use_counters=0 \
    -max_len="${max_bytes[$harness]}" -close_fd_mask=3 \
    "$kept" "$corpus" "build-fuzz/found/$harness" &>"build-fuzz/logs/$harness"
  [ "$(count_files "$kept")" -gt 0 ]
  find "$corpus" -type f -name "$generated" -delete
  find "$kept" -type f -name "$generated" -exec cp --target-directory="$corpus" -- {} +
  rm -rf -- "$kept"
  printf '%s: %d inputs\n' "$harness" "$(count_files "$corpus")"
}

main() {
  local limit='' harnesses=() harness status=0
  case "${1-}" in
    --minimise) shift ;;
    --runs)
      is_number "${2-}" || refuse_arguments
      limit=-runs=$2
      shift 2
      ;;
    *)
      is_number "${1-}" || refuse_arguments
      limit=-max_total_time=$1
      shift
      ;;
  esac
  is_number "${LONGEST_INPUT-1}" || refuse_arguments
  harnesses=("$@")
  [ $# -gt 0 ] || harnesses=("${all_harnesses[@]}")
  for harness in "${harnesses[@]}"; do
    [ -n "${max_bytes[$harness]-}" ] || refuse_arguments
  done

  cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/.."
  scripts/setup.sh fuzz
  cmake --preset fuzz >&2
  cmake --build --preset fuzz --parallel "$(nproc)" >&2
  for harness in "${harnesses[@]}"; do
    mkdir --parents build-fuzz/{found,findings}/"$harness" build-fuzz/logs
  done
  if [ -z "$limit" ]; then
    for harness in "${harnesses[@]}"; do minimise "$harness"; done
    return
  fi

  for harness in "${harnesses[@]}"; do run "$harness" "$limit" || status=1; done
  printf '| harness | executions | seconds | executions/s | edges | inputs kept | findings |\n'
  printf '|---|---:|---:|---:|---:|---:|---:|\n'
  printf '%s' "$rows"
  return "$status"
}

main "$@"
