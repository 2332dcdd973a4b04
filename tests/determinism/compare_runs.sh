#!/usr/bin/env bash
# Runs a build on the inputs of a folder in every way that must not change what it writes, and
# compares the bytes of report and masked copy with those that are kept, or keeps them if there are
# none yet.
#
#   compare_runs.sh PROGRAM VARIANT INPUTS KEPT
#
# PROGRAM is `quorix`, VARIANT is `quorix_variant` of the same build, KEPT is a folder. The ways are:
# as it is; as on each processor that this one can stand for; with read buffers of several lengths;
# in three locales; from standard input, as a file and as a pipe; from a named pipe; compressed. A
# difference is one line of output, and status 1.
set -euo pipefail

[ $# -eq 4 ] || { echo 'usage: compare_runs.sh PROGRAM VARIANT INPUTS KEPT' >&2 && exit 2; }
program=$(readlink -f -- "$1")
variant=$(readlink -f -- "$2")
inputs=$(readlink -f -- "$3")
mkdir -p -- "$4"
kept=$(readlink -f -- "$4")
readonly program variant inputs kept
readonly lengths=(1 7 64 4096 999999)
readonly locales=(de_DE tr_TR ja_JP)
readonly option_sets=(
  ''
  '-M exact -U 12 --outputFormat 0 --printRepeatSeqMode 1 -f 5'
  '-M extendExact --outputFormat 2 --minScore_b 0.5 -s 10'
  '-u 7 -U 60 --minScore_b 1.5 -D --NPerfectionMode 2'
)

scratch=$(mktemp --directory)
readonly scratch
trap 'rm -rf -- "$scratch"' EXIT
cd "$scratch"

run_count=0
difference_count=0

# make_locales: in the folder of what is kept, so that nobody has to install them.
make_locales() {
  local locale
  mkdir -p "$kept/locales"
  for locale in "${locales[@]}"; do
    [ ! -d "$kept/locales/$locale.UTF-8" ] || continue
    localedef --inputfile="$locale" --charmap=UTF-8 "$kept/locales/$locale.UTF-8" 2>messages ||
      { cat messages >&2 && return 1; }
  done
  [ "$(in_locale de_DE locale decimal_point)" = , ] ||
    { echo 'compare_runs.sh: the locales do not work' >&2 && return 1; }
}

# in_locale LOCALE COMMAND [WORD]...
in_locale() {
  local locale=$1
  shift
  env LOCPATH="$kept/locales" LC_ALL="$locale.UTF-8" "$@"
}

# body FILE: the report without the lines with the names of the files and of the masked copy.
body() {
  sed -e '/^# Input file name:/d' -e '/^# *Write file with masked seq/d' "$1"
}

# differ WAY FILE KEPT_FILE
differ() {
  difference_count=$((difference_count + 1))
  printf '%s, %s, options %s: differs from %s\n' "$1" "$input" "$words" "$3"
}

# check WAY COMMAND [WORD]...: runs the command, which searches in.fa and writes report and masked
# copy, with the options after it.
check() {
  local way=$1 file
  shift
  rm -f report in.fa.masked
  "$@" "${options[@]}" --maskX -- in.fa report 2>messages || { cat messages >&2 && exit 2; }
  run_count=$((run_count + 1))
  for file in report in.fa.masked; do
    if [ ! -f "$kept/$case_name.$file" ]; then
      cp "$file" "$kept/$case_name.$file"
    elif ! cmp -s "$file" "$kept/$case_name.$file"; then
      differ "$way" "$file" "$kept/$case_name.$file"
    fi
  done
}

# check_stream WAY: runs the program on its standard input.
check_stream() {
  "$program" "${options[@]}" -- /dev/stdin >report 2>messages || { cat messages >&2 && exit 2; }
  run_count=$((run_count + 1))
  cmp -s <(body report) <(body "$kept/$case_name.report" | sed '/^# Output file name:/d') ||
    differ "$1" report "$kept/$case_name.report"
}

check_all() {
  local target length locale
  check 'as it is' "$program"
  while IFS= read -r target; do
    check "processor $target" "$variant" "$target" 0
  done < <("$variant" targets)
  for length in "${lengths[@]}"; do
    check "buffer of $length" "$variant" any "$length"
  done
  for locale in "${locales[@]}"; do
    check "locale $locale" in_locale "$locale" "$program"
  done
  check_stream 'standard input from a file' <in.fa
  check_stream 'standard input from a pipe' < <(cat in.fa)
  check_stream 'standard input in pieces of 777' < <(dd if=in.fa bs=777 2>dd.err)
  mv in.fa file.fa
  mkfifo in.fa
  cat file.fa >in.fa &
  check 'named pipe' "$program"
  wait
  rm in.fa
  gzip --stdout file.fa >in.fa
  check 'gzip' "$program"
  check 'gzip, buffer of 7' "$variant" any 7
}

make_locales
for path in "$inputs"/*; do
  input=$(basename -- "$path")
  for words in "${option_sets[@]}"; do
    read -r -a options <<<"$words"
    case_name="$input.${words// /_}"
    cp -- "$path" in.fa
    check_all
  done
done
printf '%d runs, %d differences\n' "$run_count" "$difference_count"
[ "$run_count" -gt 0 ] && [ "$difference_count" -eq 0 ]
