#!/usr/bin/env bash
# Sets all up, builds the program and prints its reports of examples/*.fa on standard output:
#
#   scripts/run.sh
#
# Messages of setup, build and search go to standard error.
set -euo pipefail

source "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/usage.sh"
[ $# -eq 0 ] || refuse_arguments

cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/.."

scripts/setup.sh run
cmake --preset release >&2
cmake --build --preset release --parallel "$(nproc)" >&2

for genome in examples/*.fa; do
  build/quorix "$genome"
done
