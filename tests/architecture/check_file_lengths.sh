#!/usr/bin/env bash
# Fails if a file of a source tree is so long that it surely does more than one thing.
#
#   check_file_lengths.sh SOURCE_FOLDER
set -euo pipefail

readonly max_lines=500

[ $# -eq 1 ] || { echo 'usage: check_file_lengths.sh SOURCE_FOLDER' >&2 && exit 2; }

# What npm writes is as long as it is.
files=$(find "$1" -type f -size +0 ! -name package-lock.json)
[ -n "$files" ] || { echo "no files found in $1" && exit 1; }

findings=''
while IFS= read -r file; do
  lines=$(wc -l <"$file")
  [ "$lines" -le "$max_lines" ] || findings+="$file: $lines lines, more than $max_lines"$'\n'
done <<<"$files"

printf '%s' "$findings"
[ -z "$findings" ]
