#!/usr/bin/env bash
# Runs one end-to-end case and compares what the program did with what the case expects; the README
# beside this script says what a case consists of.
#
#   run_case.sh CASE [PROGRAM]            exits with 0 if all is as expected, 1 if not, 2 if misused
#   run_case.sh --accept CASE [PROGRAM]   makes what the program did the expectation
#
# CASE is a folder, or the name of one under cases/. PROGRAM is build/quorix unless it is given.
set -u -o pipefail
umask 022
unset BASH_ENV ENV CDPATH

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

die() {
  printf 'run_case.sh: %s\n' "$1" >&2
  exit 2
}

is_accepting=false
if [ "${1-}" = --accept ]; then
  is_accepting=true
  shift
fi
if [ $# -lt 1 ] || [ $# -gt 2 ]; then die 'usage: run_case.sh [--accept] CASE [PROGRAM]'; fi

case_folder=$1
[ -d "$case_folder" ] || case_folder=$here/cases/$1
[ -d "$case_folder" ] || die "there is no case $1"
case_folder=$(cd "$case_folder" && pwd)
program=$(realpath -e -- "${2-$here/../../build/quorix}") || die 'there is no such program'
[ -f "$case_folder/cmd" ] || die "$case_folder has no cmd"
script=$(<"$case_folder/cmd")

scratch=$(mktemp -d) || die 'cannot make a folder'
trap 'chmod -R u+rwX "$scratch"; rm -rf "$scratch"' EXIT
run=$scratch/run
given=$scratch/given
mkdir "$scratch/bin" "$given"
ln -s "$program" "$scratch/bin/quorix"

# The shared inputs that the commands name, and those of the case.
inputs=()
for file in "$here"/input/*; do
  if [[ $script == *"${file##*/}"* ]]; then inputs+=("$file"); fi
done
if [ -d "$case_folder/input" ]; then inputs+=("$case_folder/input/."); fi
if [ ${#inputs[@]} -gt 0 ]; then
  cp -R "${inputs[@]}" "$given" || die 'cannot copy the input'
  chmod -R u+rwX "$given"
fi
cp -R "$given" "$run"

# The shell starts before its streams are redirected: what it says about a locale that is not
# installed is no output of the case.
(
  cd "$run" || exit
  # shellcheck disable=SC2016  # the script expands its own arguments
  PATH=$scratch/bin:$PATH exec bash -c \
    'exec >"$1" 2>"$2" </dev/null; set -o pipefail; case_script=$3; shift 3; source "$case_script"' \
    bash "$scratch/stdout.raw" "$scratch/stderr.raw" "$case_folder/cmd"
)
echo $? >"$scratch/exit"

# Copies file $1 to $2 with the time field of progress lines masked.
mask_times() {
  local LC_ALL=C line line_end
  local time_field='^[0-9]+\.[0-9][0-9]\.[0-9][0-9] - #'
  # The shell cannot hold a NUL; a stream with one is never what a case expects.
  if [ "$(tr -dc '\0' <"$1" | wc -c)" -ne 0 ]; then
    cp "$1" "$2"
    return
  fi
  while line_end=$'\n'; IFS= read -r line || { line_end=''; [ -n "$line" ]; }; do
    if [[ $line =~ $time_field ]]; then line="HH.MM.SS - #${line:${#BASH_REMATCH[0]}}"; fi
    printf '%s%s' "$line" "$line_end"
  done <"$1" >"$2"
}
for stream in stdout stderr; do mask_times "$scratch/$stream.raw" "$scratch/$stream"; done

# What is below folder $1, folders and links too, each name ended by a NUL.
list_entries() (
  cd "$1" || exit
  shopt -s globstar dotglob nullglob
  for entry in **; do printf '%s\0' "$entry"; done
)

is_regular() { [ -f "$1" ] && [ ! -L "$1" ]; }

if $is_accepting; then
  # What the defaults say needs no file.
  for part in exit stdout stderr; do cp "$scratch/$part" "$case_folder/$part"; done
  [ "$(<"$case_folder/exit")" != 0 ] || rm "$case_folder/exit"
  for part in stdout stderr; do [ -s "$case_folder/$part" ] || rm "$case_folder/$part"; done
  kept=$scratch/files
  mkdir "$kept"
  while IFS= read -r -d '' file; do
    is_regular "$run/$file" && [ "$file" != messages ] || continue
    [ -e "$case_folder/files/$file" ] || ! cmp -s "$given/$file" "$run/$file" || continue
    mkdir -p "$kept/$(dirname "$file")"
    cp "$run/$file" "$kept/$file"
  done < <(list_entries "$run")
  rm -rf "$case_folder/files"
  if [ -n "$(ls -A "$kept")" ]; then cp -R "$kept" "$case_folder/files"; fi
  printf 'accepted %s: read the difference before you keep it\n' "$(basename "$case_folder")"
  exit 0
fi

has_failed=false
fail() {
  printf 'FAILED: %s\n' "$1"
  has_failed=true
}

# compare WHAT EXPECTED ACTUAL
compare() {
  if ! is_regular "$3"; then
    fail "there is no $1"
  else
    diff -u -a --label "expected $1" --label "actual $1" "$2" "$3" || fail "$1 differs"
  fi
}

# A status that the case does not name is 0, and a stream without a file is empty.
echo 0 >"$scratch/default_exit"
: >"$scratch/default_stdout" >"$scratch/default_stderr"
for part in exit stdout stderr; do
  expected=$case_folder/$part
  [ -f "$expected" ] || expected=$scratch/default_$part
  compare "$part" "$expected" "$scratch/$part"
done
[[ $script == '# '[!\ ]* ]] || fail 'the case does not say why'

if [ -d "$case_folder/files" ]; then
  while IFS= read -r -d '' file; do
    [ -d "$case_folder/files/$file" ] || compare "file $file" "$case_folder/files/$file" "$run/$file"
  done < <(list_entries "$case_folder/files")
fi

# What is left behind is an input that nobody touched, or expected. "messages" is where cases put
# a standard error that they do not look at.
while IFS= read -r -d '' entry; do
  if [ -e "$case_folder/files/$entry" ] || [ "$entry" = messages ]; then continue; fi
  if [ ! -e "$given/$entry" ]; then
    fail "$entry is left behind, and not expected"
  elif [ -d "$given/$entry" ]; then
    [ -d "$run/$entry" ] || fail "the input $entry has changed"
  elif ! is_regular "$run/$entry" || ! cmp -s "$given/$entry" "$run/$entry"; then
    fail "the input $entry has changed"
  fi
done < <(list_entries "$run")
while IFS= read -r -d '' entry; do
  [ -e "$run/$entry" ] || fail "the input $entry is gone"
done < <(list_entries "$given")

if $has_failed; then
  if [ -f "$run/messages" ]; then
    printf -- '--- messages\n'
    cat "$run/messages"
  fi
  printf -- '--- cmd of %s\n' "$case_folder"
  cat "$case_folder/cmd"
  exit 1
fi
