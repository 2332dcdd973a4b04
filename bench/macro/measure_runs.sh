#!/usr/bin/env bash
# Measures whole runs of the release program, beside the plain engine and alone, and prints Markdown
# tables of their time and memory:
#
#   bench/macro/measure_runs.sh [--rows PATTERN] [--runs N] [--limit SECONDS] [--output FILE] [--base PROGRAM] [FOLDER]
#
# FOLDER holds the genomes that some rows need, one unpacked FASTA file each; a row whose file is
# missing is marked as skipped. All other inputs are generated.
#
#   --rows PATTERN    only the rows whose names match the extended regular expression
#   --runs N          prints the median of N runs; the default is 3
#   --limit SECONDS   a run that takes longer is ended, and its row says so; the default is 120
#   --output FILE     also writes the tables to FILE; the default is build-bench/macro.md
#   --base PROGRAM    another build of the program: the rows show the ratio of the processor seconds of
#                     both, which run in turn, and neither the plain engine nor another program is
#                     measured
#
# Seconds are wall time from start to end of the process, with the report written to a file; memory
# is the maximum of the peaks. An input that takes the program less than 0.2 seconds is repeated until
# it takes longer. The plain engine runs once: on the same file if that takes it at most a minute,
# otherwise on fewer copies or a shorter slice; times are compared per base. On what both have
# searched, both must have written the same.
#
# The name of a generated input is its arguments of quorix_generate. A verdict is open where a run over
# the limit hides it.
#
# The status is 1 if outputs differ or a program fails. A missed target only shows in its row.
set -euo pipefail
export LC_ALL=C # decimal points

source "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/../../scripts/usage.sh"

is_number() { [[ $1 =~ ^[1-9][0-9]*$ ]]; }

# Names are relative to the caller's folder, so they become absolute before the script leaves it.
is_usable=true
folder='' output='' pattern='' base='' runs=3 limit=120
while [ $# -gt 0 ]; do
  if [[ $1 == -* && $# -eq 1 ]]; then
    is_usable=false
    break
  fi
  case $1 in
    --rows) pattern=$2 && shift 2 ;;
    --runs) runs=$2 && shift 2 ;;
    --limit) limit=$2 && shift 2 ;;
    --output) output=$(readlink -m -- "$2") && shift 2 ;;
    --base) base=$(readlink -m -- "$2") && shift 2 ;;
    *)
      if [ -n "$folder" ] || [ ! -d "$1" ]; then
        is_usable=false
      fi
      folder=$(readlink -m -- "$1")
      shift
      ;;
  esac
done
cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/../.."
if [ -n "$base" ] && [ ! -x "$base" ]; then is_usable=false; fi
if [ "$is_usable" = false ] || ! is_number "$runs" || ! is_number "$limit"; then
  refuse_arguments
fi
output=${output:-$PWD/build-bench/macro.md}
readonly folder pattern base runs limit output

scripts/setup.sh bench
cmake --preset bench >&2
cmake --build --preset bench --parallel "$(nproc)" >&2

scratch=$(mktemp --directory)
readonly scratch
trap 'rm -rf -- "$scratch"' EXIT

# shellcheck source=bench/macro/measuring.sh
. bench/macro/measuring.sh
# shellcheck source=bench/macro/rows.sh
. bench/macro/rows.sh

begin_output
if [ -n "$base" ]; then
  # shellcheck source=bench/macro/pairs.sh
  . bench/macro/pairs.sh
  beside_another_build
else
  against_the_plain_engine
  alone
  limits_of_the_machine
  another_method
fi
[ "$failures" -eq 0 ] || { echo "$failures rows have failed." >&2 && exit 1; }
