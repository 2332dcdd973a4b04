#!/usr/bin/env bash
# Runs the tests in a browser.
#
#   run.sh FOLDER QUORIX TOOLS [TEST_FILE]...
#   run.sh FOLDER QUORIX TOOLS --script SCRIPT [ARGUMENT]...
#
# The packages of package-lock.json are installed into FOLDER, unless they are there; QUORIX and TOOLS
# are the two programs. Without a TEST_FILE all run. A SCRIPT is a file beside this one. node, npm and Chromium are needed; the variable
# CHROMIUM names one that is not the first of the path.
set -euo pipefail

here=$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")
readonly here
readonly folder=$1
QUORIX=$(readlink -f -- "$2")
QUORIX_TOOLS=$(readlink -f -- "$3")
CHROMIUM=${CHROMIUM-$(command -v chromium || true)}
export QUORIX QUORIX_TOOLS CHROMIUM

for program in node npm "$CHROMIUM"; do
  command -v "$program" >/dev/null || {
    printf '%s is needed; scripts/setup.sh test installs it\n' "${program:-chromium}" >&2
    exit 1
  }
done

# The packages are found from where the tests lie, so these are copied beside them.
mkdir -p -- "$folder"
cp -- "$here"/*.mjs "$here"/package.json "$folder"
cd -- "$folder"
if ! cmp --silent "$here/package-lock.json" node_modules/.from.json; then
  cp -- "$here/package-lock.json" .
  npm ci --ignore-scripts --no-audit --no-fund --loglevel=error
  cp -- package-lock.json node_modules/.from.json
fi

if [ "${4-}" = --script ]; then
  exec node "${@:5}"
elif [ $# -gt 3 ]; then
  exec node --test "${@:4}"
fi
exec node --test
