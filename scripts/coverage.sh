#!/usr/bin/env bash
# Runs all tests in a build that counts which lines and branches run, prints the tables of src/ and
# fails below the shares that the project asks for:
#
#   scripts/coverage.sh
#
# Branches to what catches an exception are not counted: the compiler makes one of every call.
set -euo pipefail

source "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/usage.sh"
[ $# -eq 0 ] || refuse_arguments

readonly min_lines=98 min_branches=95 # percent

cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/.."
jobs=$(nproc)
readonly jobs

scripts/setup.sh coverage
cmake --preset coverage
cmake --build --preset coverage --parallel "$jobs"
# Counts add up from run to run; those of an older build would not fit the lines.
find build-coverage -name '*.gcda' -delete
ctest --preset coverage --parallel "$jobs"

printf '\n'
gcovr --root . --filter src/ --exclude-throw-branches build-coverage
gcovr --root . --filter src/ --exclude-throw-branches --branches --print-summary \
  --fail-under-line "$min_lines" --fail-under-branch "$min_branches" build-coverage
