#!/usr/bin/env bash
# Fails if a program holds a symbol of the plain engine, which belongs to the tests alone.
#
#   check_shipped_symbols.sh PROGRAM
set -euo pipefail

[ $# -eq 1 ] || { echo 'usage: check_shipped_symbols.sh PROGRAM' >&2 && exit 2; }

symbols=$(nm --demangle "$1")
# Nothing could be said of a stripped program.
if ! grep -q 'quorix::read_and_init_parameters(' <<<"$symbols"; then
  echo "$1 has no symbols of the program"
  exit 1
fi
if grep 'quorix::reference' <<<"$symbols"; then
  echo "$1 holds the plain engine"
  exit 1
fi
