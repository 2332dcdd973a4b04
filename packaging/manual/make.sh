#!/usr/bin/env bash
# Writes the man pages of the programs and their completions for bash and zsh, all from what the
# programs print for --help:
#
#   packaging/manual/make.sh OUT VERSION QUORIX [TOOLS]
#
# QUORIX and TOOLS are the programs; TOOLS may be missing. OUT receives man1/, bash/ and zsh/.
# The pages bear the day of SOURCE_DATE_EPOCH, or today.
set -euo pipefail
export LC_ALL=C

here=$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")
source "$here/../../scripts/usage.sh"
if [ $# -lt 3 ] || [ $# -gt 4 ]; then refuse_arguments; fi

readonly here out=$1 version=$2 quorix=$3 tools=${4-}
readonly tables=$out/tables

if [ -n "${SOURCE_DATE_EPOCH-}" ]; then
  day=$(date --utc --date="@$SOURCE_DATE_EPOCH" +%Y-%m-%d)
else
  day=$(date --utc +%Y-%m-%d)
fi
readonly day

# page NAME TABLE [WORD]...: writes the page NAME, with words for awk.
page() {
  local name=$1 table=$2
  shift 2
  awk -v name="$name" -v version="$version" -v date="$day" "$@" \
    -f "$here/roff.awk" -f "$here/manual_page.awk" "$tables/facts" "$table" >"$out/man1/${name// /-}.1"
}

# completions PROGRAM TABLE...
completions() {
  local program=$1
  shift
  awk -v program="$program" -f "$here/bash_completion.awk" "$@" >"$out/bash/$program"
  awk -v program="$program" -f "$here/zsh_completion.awk" "$@" >"$out/zsh/_$program"
}

# A page of a command that is gone must not stay.
rm -rf -- "$out/man1" "$out/bash" "$out/zsh" "$tables"
mkdir -p -- "$out/man1" "$out/bash" "$out/zsh" "$tables"

awk -f "$here/readme_facts.awk" "$here/../../README.md" >"$tables/facts"
"$quorix" --help 2>/dev/null | awk -f "$here/read_help.awk" >"$tables/quorix"
page quorix "$tables/quorix" -v template="$here/quorix.1.in"
completions quorix "$tables/quorix"
[ -n "$tools" ] || exit 0

"$tools" --help | awk -f "$here/read_help.awk" >"$tables/quorix-tools"
page quorix-tools "$tables/quorix-tools"
mkdir -- "$tables/commands"
awk -F '\t' '$1 == "command" { print $2 "\t" $3 }' "$tables/quorix-tools" |
  while IFS=$'\t' read -r command about; do
    "$tools" "$command" --help 2>/dev/null | awk -f "$here/read_help.awk" >"$tables/commands/$command"
    page "quorix-tools $command" "$tables/commands/$command" -v parent=quorix-tools -v about="$about"
  done
completions quorix-tools "$tables/quorix-tools" "$tables"/commands/*
