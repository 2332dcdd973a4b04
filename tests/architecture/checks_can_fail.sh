#!/usr/bin/env bash
# Plants faults into copies of the source trees and fails unless the checks beside this file find
# every one of them, and nothing in the copy without a fault.
#
#   checks_can_fail.sh SOURCE_FOLDER TOOLS_FOLDER BENCH_FOLDER PLAIN_PROGRAM
#
# PLAIN_PROGRAM is one that does hold the plain engine.
set -euo pipefail

[ $# -eq 4 ] ||
  { echo 'usage: checks_can_fail.sh SOURCE_FOLDER TOOLS_FOLDER BENCH_FOLDER PLAIN_PROGRAM' >&2 && exit 2; }
checks=$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")
source_folder=$1
tools_folder=$2
bench_folder=$3
plain_program=$4
readonly checks source_folder tools_folder bench_folder plain_program

scratch=$(mktemp --directory)
readonly copy="$scratch/src" tools_copy="$scratch/tools" bench_copy="$scratch/bench"
trap 'rm -rf -- "$scratch"' EXIT
failures=0

fresh_copy() {
  rm -rf -- "$copy"
  cp -R -- "$source_folder" "$copy"
}

# plant FILE LINE: puts the line at the end of a file of the copy.
plant() { printf '%s\n' "$2" >>"$copy/$1"; }

# expect_finding TEXT CHECK ARGUMENT...: the check must fail, and say the text. CHECK is a file beside
# this one, or a path.
expect_finding() {
  local output status=0 check="$checks/$2"
  [[ $2 != /* ]] || check=$2
  output=$("$check" "${@:3}" 2>&1) || status=$?
  if [ "$status" -ne 1 ] || [[ $output != *"$1"* ]]; then
    printf 'not found by %s (status %s): %s\n%s\n' "$2" "$status" "$1" "$output"
    failures=$((failures + 1))
  fi
}

# expect_include_finding FILE LINE TEXT: the planted line must be found, in these words.
expect_include_finding() {
  fresh_copy
  plant "$1" "$2"
  expect_finding "$3" check_include_layers.sh "$copy"
}

fresh_copy
"$checks/check_include_layers.sh" "$copy"
"$checks/check_file_lengths.sh" "$copy"

# The same for the tools, which may use libraries of the program.
expect_tools_finding() { # FILE LINE TEXT
  rm -rf -- "$tools_copy"
  cp -R -- "$tools_folder" "$tools_copy"
  printf '%s\n' "$2" >>"$tools_copy/$1"
  expect_finding "$3" check_include_layers.sh "$source_folder" "$tools_copy"
}

"$checks/check_include_layers.sh" "$source_folder" "$tools_folder"
"$checks/check_file_lengths.sh" "$tools_folder"
expect_tools_finding io/line_reader.h '#include "tools/report/repeat.h"' \
  'tools/io may not include "tools/report/repeat.h"'
expect_tools_finding report/repeat.h '#include "tools/formats/format_writer.h"' \
  'tools/report may not include "tools/formats/format_writer.h"'
expect_tools_finding formats/format_writer.h '#include "tools/commands/convert_command.h"' \
  'tools/formats may not include "tools/commands/convert_command.h"'
expect_tools_finding report/report_reader.cpp '#include "search/search_controller.h"' \
  'tools/report may not include "search/search_controller.h"'
expect_tools_finding report/report_reader.cpp '#include <zlib.h>' \
  '<zlib.h> may not be included here'
expect_include_finding driver/run.h '#include "tools/io/errors.h"' \
  '"tools/io/errors.h" is no file written from the source folder'

# The same for the benchmarks.
expect_bench_finding() { # FILE LINE TEXT
  rm -rf -- "$bench_copy"
  cp -R -- "$bench_folder" "$bench_copy"
  printf '%s\n' "$2" >>"$bench_copy/$1"
  expect_finding "$3" check_bench_includes.sh "$bench_copy"
}

"$checks/check_bench_includes.sh" "$bench_folder"
"$checks/check_file_lengths.sh" "$bench_folder"
expect_bench_finding macro/generate.cpp '#include "sequence/dna_string.h"' \
  '"sequence/dna_string.h" may not be included here'
expect_bench_finding macro/stopwatch.cpp '#include <benchmark/benchmark.h>' \
  '"benchmark/benchmark.h" may not be included here'
expect_bench_finding macro/read_only.cpp '  #  include "search/rules/score.h"' \
  '"search/rules/score.h" may not be included here'
expect_bench_finding micro/search_bench.cpp '#include "reference/plain_engine.h"' \
  '"reference/plain_engine.h" may not be included here'
expect_bench_finding micro/search_bench.cpp '#include "search/../driver/run.h"' \
  '"search/../driver/run.h" may not be included here'
expect_bench_finding micro/report_bench.cpp '#include <gtest/gtest.h>' \
  '"gtest/gtest.h" may not be included here'

# One include against the table for each folder.
expect_layer_finding() { # FILE HEADER
  expect_include_finding "$1" "#include \"$2\"" "${1%/*} may not include \"$2\""
}
expect_layer_finding settings/settings.cpp console/clock.h
expect_layer_finding sequence/file.h settings/settings.h
expect_layer_finding console/console_texts.h report/csat.h
expect_layer_finding console/console_texts.cpp settings/settings.h
expect_layer_finding report/csat.cpp console/clock.h
expect_layer_finding search/bits/bit_set.h search/rules/score.h
expect_layer_finding search/bits/base_planes.cpp settings/settings.h
expect_layer_finding search/rules/score.h search/bits/bit_set.h
expect_layer_finding search/filter/seed_filter.h search/scan/anchor_seq.h
expect_layer_finding search/filter/run_sieve.cpp report/csat.h
expect_layer_finding search/extension/extender.cpp search/scan/seed_scan.h
expect_layer_finding search/extension/look_ahead.h search/search_controller.h
expect_layer_finding search/scan/seed_scan.h search/modes/search_context.h
expect_layer_finding search/modes/exact_search.cpp search/search_controller.h
expect_layer_finding search/search_controller.h driver/command_line.h
expect_layer_finding driver/run.h search/modes/exact_search.h
expect_include_finding search/rules/score.h '  #  include "driver/command_line.h"' \
  'search/rules may not include "driver/command_line.h"'
expect_include_finding driver/run.h '#include "driver/main.cpp"' '"driver/main.cpp" is no header'
expect_include_finding search/filter/run_sieve.cpp '#include <hwy/highway.h>' \
  '<hwy/highway.h> may not be included here'

# A table with an arrow that points up, to the side or nowhere.
expect_table_finding() { # FOLDER MORE TEXT
  fresh_copy
  sed "s|^$1 .*|& $2|; s|^$1\$|& $2|" "$checks/check_include_layers.sh" >"$scratch/check_table.sh"
  chmod +x "$scratch/check_table.sh"
  expect_finding "$3" "$scratch/check_table.sh" "$copy"
}
expect_table_finding search/bits search/rules 'search/bits names search/rules, which is not below it'
expect_table_finding search/scan search/modes 'search/scan names search/modes, which is not below it'
expect_table_finding sequence sequence 'sequence names sequence, which is not below it'
expect_table_finding report attic 'report names attic, which is not below it'

expect_include_finding driver/run.cpp '#include "exit_status.h"' \
  '"exit_status.h" is no file written from the source folder'
expect_include_finding driver/run.cpp '#include "driver/../console/clock.h"' \
  'is no file written from the source folder'
expect_include_finding driver/run.cpp '#include <tclap/CmdLine.h>' \
  '<tclap/CmdLine.h> may not be included here'
expect_include_finding report/csat.cpp '#include <zlib.h>' '<zlib.h> may not be included here'

# A circle of two files and one of three, inside a layer, where every single step is allowed.
expect_include_finding sequence/faststring.h '#include "sequence/dna_string.h"' \
  'these files include each other'
expect_include_finding search/rules/score.h '#include "search/rules/score.h"' 'these files include each other'
fresh_copy
plant search/rules/score.h '#include "search/rules/thresholds.h"'
plant search/rules/thresholds.h '#include "search/rules/unit_range.h"'
plant search/rules/unit_range.h '#include "search/rules/score.h"'
expect_finding 'these files include each other' check_include_layers.sh "$copy"

fresh_copy
mkdir "$copy/attic"
plant attic/old.cpp '#include "settings/settings.h"'
expect_finding 'attic/old.cpp:1: no layer is known' check_include_layers.sh "$copy"

fresh_copy
seq 500 >"$copy/search/long.cpp"
"$checks/check_file_lengths.sh" "$copy"
seq 501 >"$copy/search/long.cpp"
expect_finding 'search/long.cpp: 501 lines, more than 500' check_file_lengths.sh "$copy"

readonly documents="$scratch/documents"
mkdir "$documents"
printf '# First part\n\n[here](#first-part), [there](other.md#its-first-part)\n' >"$documents/one.md"
printf '# Its first part\n' >"$documents/other.md"
"$checks/check_document_links.sh" "$documents"
printf '[wrapped\nlink](missing.md)\n' >>"$documents/other.md"
expect_finding 'other.md: missing.md leads to no file' check_document_links.sh "$documents"
printf '# Its second part\n' >"$documents/other.md"
expect_finding 'one.md: other.md#its-first-part leads to no heading' check_document_links.sh "$documents"

expect_finding 'holds the plain engine' check_shipped_symbols.sh "$plain_program"
cp -- "$plain_program" "$scratch/stripped"
strip -- "$scratch/stripped"
expect_finding 'has no symbols of the program' check_shipped_symbols.sh "$scratch/stripped"

printf 'int main() { return 0; }\n' | c++ -x c++ -no-pie -Wl,-z,norelro -o "$scratch/soft" -
for lack in 'any address' 'read-only relocations' 'before the start' 'guards' 'know sizes'; do
  expect_finding "$lack" check_hardening.sh "$scratch/soft"
done
printf 'int main() { return 0; }\n' | c++ -x c++ -z execstack -o "$scratch/soft" -
expect_finding 'a stack without code' check_hardening.sh "$scratch/soft"

if [ "$failures" -ne 0 ]; then
  printf '%s planted faults were not found\n' "$failures"
  exit 1
fi
