# shellcheck shell=bash disable=SC2034,SC2154 # the variables are shared with the other files
# Makes the inputs of the benchmarks, measures runs and formats their figures. Sourced, with the
# settings of the run in `folder`, `pattern`, `runs`, `limit`, `output` and `scratch`.

readonly min_seconds=0.2 max_plain_seconds=60
readonly programs=build-bench
readonly quorix=$programs/quorix
readonly quorix_plain=$programs/tests/reference/quorix_plain

failures=0
pending_head=''

# emit TEXT: prints lines of a table and appends them to `output`. The head of a table waits for its
# first row.
emit() {
  printf '%s%s\n' "$pending_head" "$1" | tee --append "$output"
  pending_head=''
}

# fail TEXT
fail() {
  failures=$((failures + 1))
  printf '%s\n' "$1" >&2
}

# begin_table TITLE COLUMN...: every column from the third on holds figures.
begin_table() {
  local title=$1 columns lines
  shift
  columns=$(printf ' %s |' "$@")
  lines="|---|---|$(for ((i = 2; i < $#; ++i)); do printf -- '---:|'; done)"
  pending_head=$(printf '\n### %s\n\n|%s\n%s\n.' "$title" "$columns" "$lines")
  pending_head=${pending_head%.}
}

# row CELL...
row() {
  local cells
  cells=$(printf ' %s |' "$@")
  emit "|$cells"
}

# begin_output: prints the machine, compiler, date and commit of the figures.
begin_output() {
  local cpu memory compiler commit
  cpu=$(awk -F ': ' '/^model name/ { print $2; exit }' /proc/cpuinfo)
  memory=$(awk '/^MemTotal/ { printf "%.0f GiB", $2 / 1048576 }' /proc/meminfo)
  compiler=$(awk -F = '/^CMAKE_CXX_COMPILER:/ { print $2 }' "$programs/CMakeCache.txt")
  commit=$(git rev-parse --short HEAD 2>/dev/null || echo unknown)
  [ -z "$(git status --porcelain 2>/dev/null)" ] || commit+=' with changes'
  mkdir -p -- "$(dirname -- "$output")"
  : >"$output"
  emit "${cpu:-unknown CPU}, $(nproc) cores, $memory; $("$compiler" --version | head -n 1); $(date --utc '+%F %R') UTC; commit $commit; medians of $runs runs."
}

is_wanted() { [[ $1 =~ $pattern ]]; }

# calculate EXPRESSION: prints its value by awk, with six decimals.
calculate() { awk "BEGIN { printf \"%.6f\", $1 }"; }

# is_true EXPRESSION
is_true() { awk "BEGIN { exit !($1) }"; }

# make_input KIND WORD...: sets `made` to the name of the input; returns 1 if it needs a genome that
# is missing. Kinds: 'genome NAME', 'slice NAME BASES' and those of quorix_generate.
make_input() {
  local name="$*"
  made="$scratch/${name// /_}.fa"
  case $1 in
    genome | slice)
      if [ -z "$folder" ] || [ ! -f "$folder/$2" ]; then
        return 1
      fi
      ;;
  esac
  if [ "$1" = genome ]; then
    made="$folder/$2"
  elif [ ! -f "$made" ]; then
    if [ "$1" = slice ]; then
      set -- slice "$folder/$2" "$3"
    fi
    "$programs/bench/quorix_generate" "$@" >"$made"
  fi
}

# repeat_file FILE COPIES: sets `made` to the name of a file with that many copies.
repeat_file() {
  local copy
  made=$1
  [ "$2" -gt 1 ] || return 0
  made="$scratch/copies_$2.fa"
  awk 1 "$1" >"$scratch/copy.fa" # with a line feed after the last line too
  for ((copy = 0; copy < $2; ++copy)); do cat "$scratch/copy.fa"; done >"$made"
}

# count_bases FILE: sets `bases`, and `longest` to the bases of the longest record.
count_bases() {
  read -r _ bases longest < <("$programs/bench/quorix_read_only" "$1")
}

# measure COUNT COMMAND [WORD]...: runs the command COUNT times. Sets `seconds` and `processor_seconds` to
# the medians and `peak` to the maximum of the peaks in KiB. `outcome` becomes 0, the first status other
# than 0, or 'over'.
measure() {
  local count=$1 run
  shift
  : >"$scratch/figures"
  outcome=0
  for ((run = 0; run < count && outcome == 0; ++run)); do
    "$programs/bench/quorix_stopwatch" "$limit" "$@" </dev/null >"$scratch/stdout" \
      2>"$scratch/stderr" 3>"$scratch/result"
    outcome=$(cut -d ' ' -f 3 "$scratch/result")
    cat "$scratch/result" >>"$scratch/figures"
    [[ $outcome = 0 || $outcome = over ]] || tail -n 3 "$scratch/stderr" >&2
  done
  seconds=$(sort --numeric-sort "$scratch/figures" |
    awk '{ s[NR] = $1 } END { print s[int((NR + 1) / 2)] }')
  processor_seconds=$(cut -d ' ' -f 4 "$scratch/figures" | sort --numeric-sort |
    awk '{ s[NR] = $1 } END { print s[int((NR + 1) / 2)] }')
  peak=$(awk '$2 > peak { peak = $2 } END { print peak }' "$scratch/figures")
  # A run that was ended took at least the limit.
  [ "$outcome" != over ] || seconds=$limit
}

# choose_copies FILE OPTION...: searches growing numbers of copies of the file until a run takes the
# minimum time. Sets `copies` and `searched`, the name of the file of copies.
choose_copies() {
  local file=$1
  shift
  rm -f -- "$scratch"/copies_*
  copies=1
  while true; do
    repeat_file "$file" "$copies"
    searched=$made
    measure 1 "$quorix" "$@" -- "$searched" "$scratch/report"
    if [ "$outcome" != 0 ] || is_true "$seconds >= $min_seconds"; then
      break
    fi
    copies=$(awk "BEGIN { print int($copies * 1.2 * $min_seconds / $seconds) + 1 }")
  done
}

# measure_program FILE OPTION...: as `measure`, on the copies that `choose_copies` chooses.
measure_program() {
  choose_copies "$@"
  shift
  if [ "$outcome" = 0 ] && [ "$runs" -gt 1 ]; then
    measure "$runs" "$quorix" "$@" -- "$searched" "$scratch/report"
  fi
}

# format_seconds SECONDS OUTCOME
format_seconds() {
  case $2 in
    0) printf '%.3f' "$1" ;;
    over) printf 'over %s' "$1" ;;
    *) printf 'failed with status %s' "$2" ;;
  esac
}

# format_speed BASES SECONDS OUTCOME: in Mbp per second.
format_speed() {
  if [ "$3" = 0 ]; then
    printf '%.3f' "$(calculate "$1 / $2 / 1e6")"
  else
    printf -- '-'
  fi
}

format_memory() { printf '%.1f' "$(calculate "$1 / 1024")"; }

# format_memory_per_base KIB LONGEST
format_memory_per_base() { printf '%.1f' "$(calculate "$2 == 0 ? 0 : $1 * 1024 / $2")"; }

# format_input COPIES OPTIONS WORD...
format_input() {
  local copies=$1 options=$2 name
  shift 2
  name="${*#genome}"
  [ "$copies" -eq 1 ] || name+=" x $copies"
  printf '%s, %s' "${name# }" "$options"
}

# is_same_report REPORT PLAIN_REPORT: compares them without the head and the last line, which the
# plain engine does not print.
is_same_report() {
  cmp -s <(sed -n -e '/^>/,$p' "$1" | sed -e '${/^## Finished successfully\. ##$/d}') "$2"
}

# measure_plain FILE PLAIN_FILE OPTION...: measures the plain engine on as many copies as its time
# allows. PLAIN_FILE is empty unless it gets another input. Sets `plain_searched`.
measure_plain() {
  local file=${2:-$1} plain_copies
  local other=$2
  shift 2
  plain_searched=$file
  measure 1 "$quorix_plain" "$@" -- "$file" "$scratch/plain"
  if [ "$outcome" != 0 ] || [ -n "$other" ]; then
    return 0
  fi
  plain_copies=$(awk "BEGIN { print int($max_plain_seconds / $seconds) }")
  if [ "$plain_copies" -ge "$copies" ]; then
    plain_searched=$searched
    measure "$runs" "$quorix_plain" "$@" -- "$searched" "$scratch/plain"
  elif [ "$plain_copies" -gt 1 ]; then
    repeat_file "$file" "$plain_copies"
    plain_searched=$made
    measure 1 "$quorix_plain" "$@" -- "$plain_searched" "$scratch/plain"
  fi
}
