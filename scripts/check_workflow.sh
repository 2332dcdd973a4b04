#!/usr/bin/env bash
# Searches every genome of a folder by the workflow, in ranges of records, and compares reports and masked copies
# with what one run writes, byte for byte:
#
#   scripts/check_workflow.sh FOLDER
#
# FOLDER holds FASTA files. Each is searched as it is, beside an index of samtools, and compressed by gzip, under four
# sets of options. Snakemake and samtools are needed (scripts/setup.sh test). Ends with status 1 at the first difference.
set -euo pipefail

source "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/usage.sh"
if [ $# -ne 1 ] || [ ! -d "$1" ]; then refuse_arguments; fi
inputs=$(readlink -f -- "$1")
cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/.."
[ -f build/CMakeCache.txt ] || cmake --preset release >&2
cmake --build --preset release --parallel "$(nproc)" --target quorix quorix-tools >&2
project=$PWD
readonly inputs project

scratch=$(mktemp --directory)
readonly scratch
trap 'rm -rf -- "$scratch"' EXIT

mkdir "$scratch/the genomes"
cd -- "$scratch/the genomes"
for input in "$inputs"/*; do
  [ -f "$input" ] || continue
  name=${input##*/}
  name=${name%.*}
  ln -s -- "$input" "$name.fa"
  cp -- "$input" "$name.indexed.fa"
  samtools faidx "$name.indexed.fa" 2>/dev/null || rm -f "$name.indexed.fa.fai"
  gzip --fast --stdout -- "$input" >"$name.packed.fa.gz"
done

compared=0
for options in '' '-U 50 -s 12' '-M exact --outputFormat 0' '-M extendExact -D --flanking 5'; do
  cd -- "$scratch"
  rm -rf results one_run
  began=$SECONDS
  snakemake --snakefile "$project/workflow/Snakefile" --profile "$project/workflow/profiles/local" \
    --config "genomes=$scratch/the genomes" "options=$options" masked=true threads=1 ranges=5 min_range_bases=1 \
    >log 2>&1 || { cat log && exit 1; }
  printf '"%s": %s s\n' "$options" $((SECONDS - began))
  mkdir one_run
  cd one_run
  read -r -a words <<<"$options"
  for genome in "$scratch/the genomes"/*.fa "$scratch/the genomes"/*.gz; do
    name=${genome##*/}
    name=${name%.gz}
    name=${name%.fa}
    ln -s -- "$genome" .
    "$project/build/quorix" --maskX "${words[@]}" "${genome##*/}" "$name.report" 2>/dev/null
    cmp -- "$name.report" "$scratch/results/$name/$name.report"
    cmp -- "${genome##*/}.masked" "$scratch/results/$name/$name.masked.fa"
    compared=$((compared + 1))
  done
done
ranges=$(cat "$scratch"/results/*/work/ranges.tsv | grep --count '^[0-9]')
indexed=$(grep --files-with-matches 'index of samtools is used' "$scratch"/results/*/logs/ranges.log | wc --lines)
if [ "$compared" -eq 0 ]; then printf 'no inputs in %s\n' "$inputs" && exit 1; fi
printf '%s genomes compared, no difference; %s ranges under each set of options, %s genomes with an index\n' \
  "$compared" "$ranges" "$indexed"
