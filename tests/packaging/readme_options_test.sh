#!/usr/bin/env bash
# The table of options in the README, from which the man page is made, names the options of the help, and
# the defaults that it states are those in force: giving them changes no byte of the report, nor of the
# settings on the terminal.
#
#   readme_options_test.sh PROJECT_FOLDER QUORIX
set -euo pipefail
export LC_ALL=C

project=$(readlink -f -- "$1") quorix=$(readlink -f -- "$2")
readonly project quorix
scratch=$(mktemp --directory)
readonly scratch
trap 'rm -rf -- "$scratch"' EXIT
failures=0

complain() {
  printf 'FAILED: %s\n' "$1"
  failures=$((failures + 1))
}

cp -- "$project/examples/example.fa" "$scratch"
cd -- "$scratch"
# run OUT [ARGUMENT]...: report and settings, without the times of the progress.
run() {
  "$quorix" "${@:2}" example.fa >"$1" 2>"$1.err" || return
  sed 's/[0-9]*[.:][0-9]*[.:][0-9]* //g' "$1.err" >>"$1"
}

awk -f "$project/packaging/manual/readme_facts.awk" "$project/README.md" |
  awk -F '\t' '$1 == "fact" { print $2 "\t" $3 }' >facts
"$quorix" --help 2>/dev/null | awk -f "$project/packaging/manual/read_help.awk" |
  awk -F '\t' '$1 == "option" { n = split($2, flags, " "); print flags[n] (n > 1 ? " " flags[1] : "") }' |
  sort >in_help
# shellcheck disable=SC2016  # the marks of code are no shell's
sed -n '/^## Options/,/^## /s/^| \(`[^|]*`\) |.*/\1/p' "$project/README.md" | tr -d '`' |
  awk -F ', ' '{ print $NF (NF > 1 ? " " $1 : "") }' | sort >in_readme
diff in_help in_readme || complain 'README (>) and help (<) name different options'

run default
run other -s 7
! cmp --silent default other || complain 'another score changes nothing'
count=0
while IFS=$'\t' read -r option default; do
  case $default in
    '' | off*) continue ;;
    *'('*')') value=${default##*(} && value=${value%)} ;;
    *) value=${default%%[, ]*} ;;
  esac
  if ! run given "$option" "$value"; then
    complain "$option $value is refused"
  elif ! cmp --silent default given; then
    complain "$option is not $value without being given"
    diff default given || true
  fi
  count=$((count + 1))
done <facts
[ "$count" -ge 20 ] || complain "only $count defaults were found"

[ "$failures" -eq 0 ] || exit 1
printf '%s defaults are in force\n' "$count"
