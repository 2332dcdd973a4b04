#!/usr/bin/env bash
# Man pages and completions offer what the programs name in their help, no more and no less, and the
# pages are free of faults. bash and zsh complete as for a user.
#
#   manual_test.sh PROJECT_FOLDER QUORIX TOOLS
set -euo pipefail
export LC_ALL=C

project=$(readlink -f -- "$1") quorix=$(readlink -f -- "$2") tools=$(readlink -f -- "$3")
here=$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")
readonly project quorix tools here
scratch=$(mktemp --directory)
readonly scratch made=$scratch/made
trap 'rm -rf -- "$scratch"' EXIT
failures=0

# expect_same WHAT EXPECTED FOUND
expect_same() {
  local status=0
  diff --unified=0 <(printf '%s\n' "$2") <(printf '%s\n' "$3") >"$scratch/difference" || status=$?
  [ "$status" -ne 0 ] || return 0
  printf 'FAILED: %s: expected (-), found (+)\n' "$1"
  tail -n +3 -- "$scratch/difference"
  failures=$((failures + 1))
}

# help_of NAME [COMMAND]
help_of() {
  if [ "$1" = quorix ]; then "$quorix" --help 2>/dev/null; else "$tools" "${@:2}" --help; fi
}

# The options in the heads of a help on standard input, sorted.
options_of_help() {
  sed -n 's/^   \{0,1\}\(-\)/\1/p' | sed -e 's/   *[A-Z].*//' |
    grep --only-matching --extended-regexp '(^|[ ,])--?[A-Za-z][A-Za-z_-]*' | tr -d ' ,' | sort
}

# The options in the heads of a man page, sorted.
options_of_page() {
  sed -n '/^\.TP/{n;p;}' "$1" | sed 's/\\-/-/g' |
    grep --only-matching --extended-regexp '\\fB--?[A-Za-z][A-Za-z_-]*' | sed 's/^\\fB//' | sort
}

# The longest form of a page name, with blanks, is also what would be typed.
check_page() { # NAME [COMMAND]
  local page=$made/man1/${1}${2+-$2}.1 fault
  if [ ! -s "$page" ]; then
    expect_same "page of $*" 'a page' 'none'
    return
  fi
  expect_same "options in the page of $*" "$(help_of "$@" | options_of_help)" "$(options_of_page "$page")"
  fault=$(mandoc -T lint -- "$page" 2>&1 || true)
  expect_same "mandoc on the page of $*" '' "$fault"
  fault=$(man --warnings --encoding=UTF-8 --local-file -- "$page" 2>&1 >/dev/null || true)
  expect_same "man on the page of $*" '' "$fault"
}

# bash_offers WORD...: what bash offers for the last word, sorted.
bash_offers() {
  bash --norc -c '
    source "$1"
    COMP_WORDS=("${@:2}")
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    function_name=$(complete -p "$2" | sed "s/.*-F \([^ ]*\) .*/\1/")
    "$function_name" 2>/dev/null
    [ ${#COMPREPLY[@]} -eq 0 ] || printf "%s\n" "${COMPREPLY[@]}"
  ' bash "$made/bash/$1" "$@" | sort
}

# zsh_offers TEXT: what zsh offers at the end of the line, sorted.
zsh_offers() { zsh --no-rcs "$here/zsh_offers.zsh" "$made/zsh" "$1" | sort --unique; }

check_shells() { # NAME [COMMAND]
  local options long_options
  options=$(help_of "$@" | options_of_help)
  long_options=$(grep '^--' <<<"$options")
  expect_same "bash on $* -" "$options" "$(bash_offers "$@" - | sed '/^--$/d')"
  expect_same "bash on $* --" "$long_options" "$(bash_offers "$@" -- | sed '/^--$/d')"
  expect_same "zsh on $* --" "$long_options" "$(zsh_offers "$* --")"
}

"$project/packaging/manual/make.sh" "$made" 1.2.3 "$quorix" "$tools"
commands=$("$tools" --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z][a-z-]*\) .*/\1/p' | sort)
[ -n "$commands" ] || { echo 'FAILED: no commands in the help' && exit 1; }

check_page quorix
check_page quorix-tools
check_shells quorix
check_shells quorix-tools
for command in $commands; do
  check_page quorix-tools "$command"
  check_shells quorix-tools "$command"
done
expect_same 'number of pages' $(($(wc -l <<<"$commands") + 2)) "$(find "$made/man1" -type f | wc -l)"
expect_same 'commands in bash' "$commands" "$(bash_offers quorix-tools '')"
expect_same 'commands in zsh' "$commands" "$(zsh_offers 'quorix-tools ')"

# Values: those of a list, files, and nothing where nothing can be guessed.
readonly modes=$'exact\nextendExact\nimperfect'
formats=$(help_of quorix-tools convert | sed -n 's/.*--to .*{\(.*\)}.*/\1/p' | tr ',' '\n' | sort)
[ "$(wc -l <<<"$formats")" -gt 5 ] || { echo 'FAILED: no formats in the help' && exit 1; }
mkdir "$scratch/folder"
cd "$scratch/folder"
: >'genome.fa'
: >'genome.report'
readonly files=$'genome.fa\ngenome.report'
for option in -M --searchMode; do
  expect_same "bash on $option" "$modes" "$(bash_offers quorix "$option" '')"
  expect_same "zsh on $option" "$modes" "$(zsh_offers "quorix $option ")"
done
expect_same 'bash on --to' "$formats" "$(bash_offers quorix-tools convert --to '')"
expect_same 'bash on --to=' "$formats" "$(bash_offers quorix-tools convert --to =)"
expect_same 'bash on --to=b' $'bed\nbedgraph' "$(bash_offers quorix-tools convert --to = b)"
expect_same 'zsh on --to' "$formats" "$(zsh_offers 'quorix-tools convert --to ')"
expect_same 'bash on an input' "$files" "$(bash_offers quorix '')"
expect_same 'zsh on an input' "$files" "$(zsh_offers 'quorix ')"
expect_same 'bash on an output' "$files" "$(bash_offers quorix-tools html -o '')"
expect_same 'zsh on an output' "$files" "$(zsh_offers 'quorix-tools html -o ')"
expect_same 'bash on a report' 'genome.report' "$(bash_offers quorix-tools html genome.r)"
expect_same 'zsh on a report' 'genome.report' "$(zsh_offers 'quorix-tools html genome.r')"
expect_same 'bash on a number' '' "$(bash_offers quorix -U '')"
expect_same 'zsh on a number' '' "$(zsh_offers 'quorix -U ')"

# The check itself must notice an option that is missing, and one too many.
sed --in-place 's/\\fB\\-\\-maskX\\fP/\\fB\\-\\-maskY\\fP/' "$made/man1/quorix.1"
known_failures=$failures
check_page quorix >"$scratch/found"
if [ "$(grep --count -e '^---maskX' -e '^+--maskY' "$scratch/found")" -ne 2 ]; then
  echo 'FAILED: a wrong option in a page is not noticed'
  exit 1
fi

[ "$known_failures" -eq 0 ] || exit 1
printf '%s pages and %s commands agree with the help\n' "$(find "$made/man1" -type f | wc -l)" \
  "$(wc -l <<<"$commands")"
