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

scratch=$(mktemp -d) || die 'cannot make a folder'
trap 'chmod -R u+rwX "$scratch"; rm -rf "$scratch"' EXIT
run=$scratch/run
mkdir "$scratch/bin" "$run"
ln -s "$program" "$scratch/bin/quorix"
if [ -d "$case_folder/input" ]; then
  cp -R "$case_folder/input/." "$run" || die 'cannot copy the input'
  chmod -R u+rwX "$run"
fi

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

# The regular files below folder $1, each ended by a NUL.
list_files() (
  cd "$1" || exit
  shopt -s globstar dotglob nullglob
  for file in **; do
    if [ -f "$file" ] && [ ! -L "$file" ]; then printf '%s\0' "$file"; fi
  done
)

if $is_accepting; then
  for part in exit stdout stderr; do cp "$scratch/$part" "$case_folder/$part"; done
  kept=$scratch/files
  mkdir "$kept"
  while IFS= read -r -d '' file; do
    [ "$file" != messages ] || continue
    [ -e "$case_folder/files/$file" ] || ! cmp -s "$case_folder/input/$file" "$run/$file" || continue
    mkdir -p "$kept/$(dirname "$file")"
    cp "$run/$file" "$kept/$file"
  done < <(list_files "$run")
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
  if [ ! -f "$2" ]; then
    fail "the case does not say which $1 it expects"
  elif [ ! -f "$3" ]; then
    fail "there is no $1"
  else
    diff -u -a --label "expected $1" --label "actual $1" "$2" "$3" || fail "$1 differs"
  fi
}

for part in exit stdout stderr; do compare "$part" "$case_folder/$part" "$scratch/$part"; done
[ -s "$case_folder/why" ] || fail 'the case has no why'

if [ -d "$case_folder/files" ]; then
  while IFS= read -r -d '' file; do
    compare "file $file" "$case_folder/files/$file" "$run/$file"
  done < <(list_files "$case_folder/files")
fi

if [ -f "$case_folder/absent" ]; then
  while IFS= read -r name || [ -n "$name" ]; do
    if [ -e "$run/$name" ] || [ -L "$run/$name" ]; then fail "there is a file $name"; fi
  done <"$case_folder/absent"
fi

# What is left behind is an input that nobody touched, or expected. "messages" is where cases put
# a standard error that they do not look at.
while IFS= read -r -d '' file; do
  if [ -e "$case_folder/files/$file" ] || [ "$file" = messages ]; then continue; fi
  if [ ! -e "$case_folder/input/$file" ]; then
    fail "the file $file is not expected"
  elif ! cmp -s "$case_folder/input/$file" "$run/$file"; then
    fail "the input $file has changed"
  fi
done < <(list_files "$run")
if [ -d "$case_folder/input" ]; then
  while IFS= read -r -d '' file; do
    [ -f "$run/$file" ] || fail "the input $file is gone"
  done < <(list_files "$case_folder/input")
fi

if $has_failed; then
  if [ -f "$run/messages" ]; then
    printf -- '--- messages\n'
    cat "$run/messages"
  fi
  printf -- '--- cmd of %s\n' "$case_folder"
  cat "$case_folder/cmd"
  exit 1
fi
