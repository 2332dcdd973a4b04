#!/usr/bin/env bash
# Measures whole runs of the release program, beside the plain engine and alone, and prints Markdown
# tables of what they need:
#
#   bench/macro/run.sh [--rows PATTERN] [--runs N] [--limit SECONDS] [--output FILE] [--base PROGRAM] [FOLDER]
#
# FOLDER holds the genomes that some rows need, one unpacked FASTA file each; a row whose file is
# missing is told as skipped. All other inputs are generated.
#
#   --rows PATTERN    only the rows whose name the extended regular expression finds
#   --runs N          runs whose median is told, 3 if not given
#   --limit SECONDS   a run that takes longer is ended and told as such, 120 if not given
#   --output FILE     where the tables go besides standard output, build-bench/macro.md if not given
#   --base PROGRAM    another build of the program: the rows show the ratio of both, which run in
#                     turn, and neither the plain engine nor another program is measured
#
# Seconds are wall time from start to end of the process with the report written to a file, memory
# is the largest of the peaks. An input that the program is done with in less than 0.2 seconds is
# searched in as many copies as it takes. The plain engine gets the same file if it needs at most
# a minute for it, else as many copies as that allows, or a shorter slice, and is run once; times
# are compared a base. On what both have searched, both must have written the same.
#
# A generated input is named in the words that quorix_generate takes. A verdict is open where a run
# over the limit hides it.
#
# The status is 1 if outputs differ or a program fails; a missed target is told, and no error.
set -euo pipefail
export LC_ALL=C # decimal points

usage() {
  sed -n -e 's/^#   bench/usage: bench/p' bench/macro/run.sh >&2
  exit 2
}

is_number() { [[ $1 =~ ^[1-9][0-9]*$ ]]; }

# Names are relative to the caller's folder: they are made absolute before we leave it.
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
    --base) base=$(readlink -f -- "$2") && shift 2 ;;
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
if [ "$is_usable" = false ] || ! is_number "$runs" || ! is_number "$limit"; then
  usage
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
