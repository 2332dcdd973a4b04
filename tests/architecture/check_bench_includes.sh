#!/usr/bin/env bash
# Fails on any include of the benchmarks that is not theirs to make.
#
#   check_bench_includes.sh BENCH_FOLDER
#
# The rows below say, for the files of a pattern, what they may include that is not the standard
# library; a file without a row may include nothing else. The generators and the stopwatch know
# nothing of the program, so that any two versions of it get the same inputs and the same clock. The
# plain engine is measured as a program, and linked by no benchmark.
# A finding is one line of output: "file:line: what is wrong".
set -euo pipefail
set -f # the patterns below are for names, not for files

readonly rows='
macro/generate.cpp   macro/generated_fasta.h
macro/read_only.cpp  sequence/*
macro/stopwatch.cpp  sys/* unistd.h
micro/*              sequence/* report/* search/* settings/* console/run_clock.h micro/*
micro/*              support/memory_source.h support/memory_stream.h support/test_record.h
shapes/*             macro/generated_fasta.h shapes/*
micro/*              benchmark/benchmark.h
'

# Prints "file line name" for each include but those of the standard library.
list_includes() {
  # shellcheck disable=SC2016  # $0 is awk's
  find . \( -name '*.h' -o -name '*.cpp' \) -printf '%P\0' | sort --zero-terminated |
    xargs --null awk '
      /^[ \t]*#[ \t]*include/ {
        name = $0
        sub(/^[ \t]*#[ \t]*include[ \t]*/, "", name)
        is_own = substr(name, 1, 1) == "\""
        sub(/^["<]/, "", name)
        sub(/[">].*/, "", name)
        if (is_own || name ~ /\// || name ~ /\.h$/) print FILENAME, FNR, name
      }'
}

# is_allowed FILE NAME
is_allowed() {
  local files names pattern
  [[ $2 != *..* ]] || return 1
  while read -r files names; do
    # shellcheck disable=SC2053  # patterns
    [[ -n $files && $1 == $files ]] || continue
    for pattern in $names; do
      # shellcheck disable=SC2053  # a pattern
      [[ $2 != $pattern ]] || return 0
    done
  done <<<"$rows"
  return 1
}

[ $# -eq 1 ] || { echo 'usage: check_bench_includes.sh BENCH_FOLDER' >&2 && exit 2; }
cd -- "$(readlink -f -- "$1")"
includes=$(list_includes)
[ -n "$includes" ] || { echo "no includes found in $1" && exit 1; }

findings=''
while read -r file line name; do
  is_allowed "$file" "$name" || findings+="$file:$line: \"$name\" may not be included here"$'\n'
done <<<"$includes"
printf '%s' "$findings"
[ -z "$findings" ]
