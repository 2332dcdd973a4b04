#!/usr/bin/env bash
# Runs all tests in a build that counts which lines run, prints the table of src/ and fails below
# the share of lines that the project asks for.
set -euo pipefail

readonly least_percent=97

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
gcovr --root . --filter src/ --print-summary --fail-under-line "$least_percent" build-coverage
