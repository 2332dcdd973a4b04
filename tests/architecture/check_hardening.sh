#!/usr/bin/env bash
# Fails unless a program is built so that a memory error ends it rather than serves an attacker:
# loaded at any address, its tables read-only before it starts, no executable stack, guards on the
# stack, and calls of the C library that know the sizes of their blocks.
#
#   check_hardening.sh PROGRAM
set -euo pipefail

[ $# -eq 1 ] || { echo 'usage: check_hardening.sh PROGRAM' >&2 && exit 2; }

readonly program=$1
sections=$(LC_ALL=C readelf --wide --file-header --program-headers --dynamic --dyn-syms "$program")
failures=0

# expect WHAT PATTERN: a line must have the extended regular expression.
expect() {
  if ! grep --quiet --extended-regexp "$2" <<<"$sections"; then
    printf '%s lacks %s\n' "$program" "$1"
    failures=$((failures + 1))
  fi
}

expect 'a program for any address' 'FLAGS_1.*PIE'
expect 'read-only relocations' 'GNU_RELRO'
expect 'relocations before the start' 'BIND_NOW'
expect 'a stack without code' 'GNU_STACK .* RW '
expect 'guards on the stack' '__stack_chk_fail'
expect 'calls that know sizes' '__[a-z]+printf_chk'
[ "$failures" -eq 0 ]
