#!/usr/bin/env bash
# Fails if a relative link in a Markdown document leads to no file, or to no heading of one.
#
#   check_document_links.sh PROJECT_FOLDER
#
# Folders named build... are left out. An anchor is a heading in lower case, with hyphens for blanks
# and without punctuation.
set -euo pipefail
export LC_ALL=C

[ $# -eq 1 ] || { echo 'usage: check_document_links.sh PROJECT_FOLDER' >&2 && exit 2; }

# anchors FILE: one a line. Blocks of code have no headings.
anchors() {
  awk '/^```/ { in_code = !in_code } !in_code && sub(/^#+ +/, "")' "$1" |
    tr '[:upper:]' '[:lower:]' | sed -e 's/[^a-z0-9 _-]//g' -e 's/ /-/g'
}

# links FILE: the targets of [text](target), one a line.
links() {
  awk '/^```/ { in_code = !in_code } !in_code' "$1" | tr '\n' ' ' |
    { grep --only-matching '\[[^]]*\]([^() ]*)' || true; } | sed -e 's/^.*(//' -e 's/)$//'
}

documents=$(find "$1" -mindepth 1 \( -name 'build*' -o -name .git \) -prune -o -name '*.md' -print | sort)
[ -n "$documents" ] || { echo "no documents found in $1" && exit 1; }

findings='' link_count=0
while IFS= read -r document; do
  while IFS= read -r link; do
    [[ -n $link && $link != *://* && $link != mailto:* ]] || continue
    link_count=$((link_count + 1))
    target=$document
    [[ $link == '#'* ]] || target=$(dirname -- "$document")/${link%%#*}
    if [ ! -e "$target" ]; then
      findings+="$document: $link leads to no file"$'\n'
    elif [[ $link == *'#'* ]] && ! anchors "$target" | grep --quiet --line-regexp -F -- "${link#*#}"; then
      findings+="$document: $link leads to no heading"$'\n'
    fi
  done < <(links "$document")
done <<<"$documents"

[ "$link_count" -gt 0 ] || { echo "no links found in $1" && exit 1; }
printf '%s' "$findings"
[ -z "$findings" ]
