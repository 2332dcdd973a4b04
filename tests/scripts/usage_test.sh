#!/usr/bin/env bash
# Every script tells its usage with --help and refuses an argument that it does not take, and does
# nothing else in either case.
#
#   usage_test.sh PROJECT_FOLDER
set -euo pipefail
shopt -s globstar nullglob

[ $# -eq 1 ] || { echo 'usage: usage_test.sh PROJECT_FOLDER' >&2 && exit 2; }
scratch=$(mktemp --directory)
readonly copy="$scratch/project" calls="$scratch/calls"
trap 'rm -rf -- "$scratch"' EXIT
failures=0

# A copy without sources, in which a script that goes on past its arguments cannot do much.
mkdir --parents "$copy/tests" "$scratch/bin"
cp -R -- "$1/scripts" "$1/bench" "$copy"
cp -R -- "$1/tests/soundness" "$copy/tests"
: >"$calls"

# Stands in for the programs with which a script would begin its work.
for name in apt-get cmake ctest dpkg-query git sudo; do
  printf '#!/bin/sh\necho "%s" >>"%s"\n' "$name" "$calls" >"$scratch/bin/$name"
  chmod +x "$scratch/bin/$name"
done
PATH=$scratch/bin:$PATH
export PATH PYTHONDONTWRITEBYTECODE=1

complain() {
  printf 'FAILED: %s: %s\n' "$script" "$1"
  cat -- "$scratch/out" "$scratch/err"
  failures=$((failures + 1))
}

list_project() { (cd -- "$copy" && printf '%s\n' **); }
project=$(list_project)

# call STATUS [ARGUMENT]...: runs `script`, which must end with the status and touch nothing.
call() {
  local expected=$1 status=0
  shift
  # An empty folder to stand in: names are none of a folder or file that is there.
  (cd -- "$scratch/bin" && "$copy/$script" "$@") >"$scratch/out" 2>"$scratch/err" </dev/null ||
    status=$?
  [ "$status" -eq "$expected" ] || complain "status $status after: $*"
  [ ! -s "$calls" ] || complain "begins its work after: $*"
  [ "$(list_project)" = "$project" ] || complain "changes the project after: $*"
  : >"$calls"
}

# expect_usage STREAM: the usage, which names the script, stands there, and nothing on the other.
expect_usage() {
  local other=err
  [ "$1" = out ] || other=out
  grep --quiet --fixed-strings "${script##*/}" "$scratch/$1" || complain "no usage on standard $1"
  [ ! -s "$scratch/$other" ] || complain "something on standard $other"
}

# What has a usage: all that can be executed.
scripts=()
for file in "$copy"/{scripts,bench}/**; do
  if [ -f "$file" ] && [ -x "$file" ]; then scripts+=("${file#"$copy/"}"); fi
done
[ ${#scripts[@]} -gt 0 ] || { echo 'FAILED: no scripts found' && exit 1; }

for script in "${scripts[@]}"; do
  call 0 --help
  expect_usage out
  call 2 --no-such-option
  expect_usage err
done
script=scripts/setup.sh
call 0
expect_usage out
call 2 no_such_purpose
expect_usage err

# The check itself must find a script that goes on.
script=scripts/run.sh
sed --in-place 's/^\[ \$# -eq 0 \].*//; s/^source .*//' "$copy/$script"
call 0 --help >"$scratch/found"
grep --quiet 'begins its work' "$scratch/found" || { echo 'FAILED: finds no work' && exit 1; }
failures=$((failures - $(grep --count '^FAILED' "$scratch/found")))

if [ "$failures" -ne 0 ]; then exit 1; fi
printf '%s scripts tell their usage\n' "${#scripts[@]}"
