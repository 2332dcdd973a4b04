#!/usr/bin/env bash
# Prints a Markdown table of one search on one thread and on several:
#
#   scripts/measure_threads.sh THREADS INPUT [OPTION OF QUORIX]...
#
# The rows are quorix, and quorix-tools search with 1 and with THREADS threads, which run in turn. Each
# has the least seconds of seven runs, those on the clock and those of all processors, and the largest
# peak memory. Reports that differ are an error. Seconds on the clock need a machine with THREADS
# processors that does nothing else.
set -euo pipefail
export LC_ALL=C # decimal points

readonly run_count=7

source "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/usage.sh"
if [ $# -lt 2 ] || [[ ! $1 =~ ^[0-9]+$ ]] || [ ! -f "$2" ]; then refuse_arguments; fi
readonly thread_count=$1
input=$(readlink -f -- "$2")
readonly input
shift 2
cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/.."

scripts/setup.sh measure
cmake --preset release >&2
cmake --build --preset release --parallel "$(nproc)" >&2

scratch=$(mktemp --directory)
readonly scratch
trap 'rm -rf -- "$scratch"' EXIT

# measure ROW COMMAND [WORD]...: one run, whose figures join those of the row.
measure() {
  local row=$1
  shift
  /usr/bin/time --format='%e %U %S %M' --output="$scratch/$row" --append \
    "$@" -- "$input" "$scratch/$row.report" 2>"$scratch/messages" || {
    cat "$scratch/messages" >&2
    return 1
  }
  # Only the first lines, which name the report, may differ.
  grep -v '^#' "$scratch/$row.report" | cmp - "$scratch/expected" >&2
}

build/quorix "$@" -- "$input" "$scratch/first" 2>"$scratch/messages"
grep -v '^#' "$scratch/first" >"$scratch/expected"
for ((run = 0; run < run_count; ++run)); do
  measure 1 build/quorix "$@"
  measure 2 build/quorix-tools search -t 1 "$@"
  measure 3 build/quorix-tools search -t "$thread_count" "$@"
done

printf '| program | clock, s | processors, s | peak MiB |\n|---|---:|---:|---:|\n'
readonly names=('' quorix 'search -t 1' "search -t $thread_count")
for row in 1 2 3; do
  awk -v name="${names[row]}" '
    NR == 1 || $1 < clock { clock = $1 }
    NR == 1 || $2 + $3 < used { used = $2 + $3 }
    $4 > peak { peak = $4 }
    END { printf "| %s | %.2f | %.2f | %.1f |\n", name, clock, used, peak / 1024 }' "$scratch/$row"
done
