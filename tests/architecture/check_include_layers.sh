#!/usr/bin/env bash
# Fails on any include in a source tree that the table of the layers does not allow, and on a table
# with an arrow that points up.
#
#   check_include_layers.sh SOURCE_FOLDER [TOOLS_FOLDER]
#
# TOOLS_FOLDER is a folder with the name `tools`. Its includes are written from the folder around it.
# Looked at are the lines with #include of every .h and .cpp file. A finding is one line of output:
# "file:line: what is wrong".
set -euo pipefail

# The layers from the top down, one line a folder: the folder, and those that its files may include
# from besides their own. A folder may name only folders further down in this table. Every folder of
# the tree has a line.
readonly layers='
tools             tools/command_line
tools/command_line tools/commands tools/search tools/catalogues tools/formats tools/io
tools/commands    tools/catalogues tools/formats tools/merge tools/page tools/summary tools/report tools/io
tools/search      driver search search/modes search/scan search/extension search/filter search/rules search/bits report console sequence settings
tools/catalogues  tools/formats tools/report tools/io
tools/formats     tools/summary tools/report tools/io
tools/merge       tools/report tools/io
tools/page        tools/summary tools/report tools/io
tools/summary     tools/report
tools/report      tools/io report sequence
tools/io          sequence
driver            search report console sequence settings
library           search report console sequence settings
search            search/modes search/scan search/extension search/rules report sequence settings
search/modes      search/scan search/extension search/filter search/rules report console sequence settings
search/scan       search/extension search/filter search/bits report console
search/extension  search/filter search/rules search/bits report settings
search/filter     search/rules search/bits
search/rules      settings
search/bits
report            sequence settings
console
sequence
settings
'

# Headers with a '/' or a '.h' in angle brackets: the system's, for every file, and those of other
# projects, by their beginning, each for the files named with it alone. All else in angle brackets
# is the standard library.
readonly system_headers='fcntl.h sched.h sys/file.h sys/stat.h unistd.h'
readonly third_party_headers='
tclap/  driver/command_line.cpp
quorix/ library/find_repeats.cpp
zlib.h  sequence/inflater.cpp
zlib.h  tools/page/packed_text.cpp
CLI/    tools/command_line/command_line.cpp
CLI/    tools/command_line/convert_options.cpp
CLI/    tools/command_line/html_options.cpp
CLI/    tools/command_line/merge_options.cpp
CLI/    tools/command_line/shared_options.cpp
CLI/    tools/command_line/stats_options.cpp
hwy/    search/filter/batch_bound.cpp
hwy/    search/filter/block_nets.cpp
hwy/    search/filter/chain_sieve.cpp
hwy/    search/filter/dp_cell.h
hwy/    search/filter/group_bound.cpp
hwy/    search/filter/lag_sieve.cpp
hwy/    search/filter/register_rows.h
hwy/    search/filter/single_bound.cpp
'

declare -A may_include=() # folder -> folders, itself included, with a blank before and after each
findings=''
tools_parent=. # where includes of the tools are written from

# Reads the table from its end: whatever a line names has to be known by then.
read_layers() {
  local folder allowed one
  while read -r folder allowed; do
    [ -n "$folder" ] || continue
    for one in $allowed; do
      [ -n "${may_include[$one]-}" ] ||
        findings+="the table of layers: $folder names $one, which is not below it"$'\n'
    done
    [ -z "${may_include[$folder]-}" ] ||
      findings+="the table of layers: $folder has two lines"$'\n'
    may_include[$folder]=" $folder $allowed "
  done <<<"$(tac <<<"$layers")"
}

# list_includes FOLDER PART: prints "file line kind name" for each include below a part of a folder;
# kind is 'own' for "name" and 'system' for <name>. Files are named from the folder.
list_includes() (
  cd -- "$1"
  # shellcheck disable=SC2016  # $0 is awk's
  find "$2" \( -name '*.h' -o -name '*.cpp' \) -print0 | sort --zero-terminated |
    xargs --null awk '
      /^[ \t]*#[ \t]*include/ {
        name = $0
        sub(/^[ \t]*#[ \t]*include[ \t]*/, "", name)
        kind = substr(name, 1, 1) == "<" ? "system" : "own"
        sub(/^["<]/, "", name)
        sub(/[">].*/, "", name)
        file = FILENAME
        sub(/^[.]\//, "", file)
        print file, FNR, kind, name
      }'
)

# report FILE LINE TEXT
report() { findings+="$1:$2: $3"$'\n'; }

# check_own FILE LINE NAME
check_own() {
  local from=${1%/*} to=${3%/*}
  if [[ $3 != */* || $3 == *..* || ( ! -f $3 && ! -f $tools_parent/$3 ) ]]; then
    report "$1" "$2" "\"$3\" is no file written from the source folder"
  elif [[ $3 != *.h ]]; then
    report "$1" "$2" "\"$3\" is no header"
  elif [ -z "${may_include[$from]-}" ] || [ -z "${may_include[$to]-}" ]; then
    report "$1" "$2" "no layer is known for this file or for \"$3\""
  elif [[ ${may_include[$from]} != *" $to "* ]]; then
    report "$1" "$2" "$from may not include \"$3\""
  fi
}

# check_system FILE LINE NAME
check_system() {
  local beginning file
  [[ $3 == */* || $3 == *.h ]] || return 0
  [[ " $system_headers " != *" $3 "* ]] || return 0
  while read -r beginning file; do
    [[ -z $beginning || $3 != "$beginning"* || $1 != "$file" ]] || return 0
  done <<<"$third_party_headers"
  report "$1" "$2" "<$3> may not be included here"
}

# check_circles INCLUDES: no file may include itself, not even transitively.
check_circles() {
  local circle
  # Of a pair of equal names tsort makes nothing, so these are seen to first.
  circle=$(awk '$3 == "own" && $1 == $4 { print $1 }' <<<"$1")
  [ -n "$circle" ] ||
    circle=$(awk '$3 == "own" { print $1, $4 }' <<<"$1" | tsort 2>&1 >/dev/null) || true
  [ -z "$circle" ] || findings+="these files include each other:"$'\n'"$circle"$'\n'
}

main() {
  local includes file line kind name
  [ $# -eq 1 ] || [ $# -eq 2 ] ||
    { echo 'usage: check_include_layers.sh SOURCE_FOLDER [TOOLS_FOLDER]' >&2 && exit 2; }
  [ $# -eq 1 ] || tools_parent=$(readlink -f -- "$2/..")
  cd -- "$(readlink -f -- "$1")"
  includes=$(list_includes . .)
  [ -n "$includes" ] || { echo "no includes found in $1" && exit 1; }
  if [ $# -eq 2 ]; then
    includes+=$'\n'$(list_includes "$tools_parent" tools)
    [[ $includes == *$'\n'tools/* ]] || { echo "no includes found in $2" && exit 1; }
  fi

  read_layers
  while read -r file line kind name; do
    "check_$kind" "$file" "$line" "$name"
  done <<<"$includes"
  check_circles "$includes"

  printf '%s' "$findings"
  [ -z "$findings" ]
}

main "$@"
