#!/usr/bin/env bash
# What quorix and quorix-tools write, read by the programs that it is written for.
#
#   check_files.sh QUORIX TOOLS GENOME [OPTION]...
#
# QUORIX and TOOLS are the two programs, GENOME is a FASTA file whose records have different first
# words, and OPTIONs are those of the search. Each check is said in one line; the first that fails ends
# the script with status 1. bedtools, bgzip, tabix, gt, samtools and python3 with jsonschema are needed.
set -euo pipefail

quorix=$(readlink -f -- "$1")
tools=$(readlink -f -- "$2")
genome=$(readlink -f -- "$3")
here=$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")
readonly quorix tools genome here
readonly options=("${@:4}")
# Debian's own one has the packages that Debian installs.
python=/usr/bin/python3
[ -x "$python" ] || python=python3
readonly python

current=''

# check TEXT: says what is looked at next.
check() {
  current=$1
  printf '%s\n' "$1"
}

# same WHAT FILE FILE
same() {
  cmp -- "$2" "$3" >&2 || {
    diff -- "$2" "$3" | head -n 10 >&2
    printf 'not the same: %s\n' "$1" >&2
    return 1
  }
}

# not_empty FILE: a comparison of nothing with nothing says nothing.
not_empty() { [ -s "$1" ] || { printf '%s is empty\n' "$1" >&2 && return 1; }; }

convert() { "$tools" convert --to "$@" genome.report; }

write_files() {
  check "a report, a masked copy, and the report in every format"
  cp -- "$genome" genome.fa
  "$quorix" "${options[@]}" --maskX --reportUnit 0 genome.fa genome.report >console 2>&1
  convert bed -o genome.bed
  convert gff3 -o genome.gff3
  convert tsv -o genome.tsv
  convert jsonl -o genome.jsonl
  convert bedgraph --window 1000 -o genome.bedgraph
  grep --invert-match '^#' genome.bed >rows.bed
  not_empty rows.bed
  samtools faidx genome.fa
  cut --fields=1,2 genome.fa.fai >genome.sizes
}

check_bedtools() {
  check "bedtools sort has the order of --sort position"
  convert bed --sort position | tail -n +2 | cut --fields=1-3 >ours
  LC_ALL=C bedtools sort -i genome.bed | cut --fields=1-3 >theirs
  same "sorted places" ours theirs

  check "bedtools getfasta has the bases that tsv shows"
  tail -n +2 genome.tsv | cut --fields=17 | tr --delete '-' | tr '[:lower:]' '[:upper:]' >ours
  bedtools getfasta -tab -fi genome.fa -bed rows.bed | cut --fields=2 | tr '[:lower:]' '[:upper:]' >theirs
  same "bases" ours theirs

  check "bedtools coverage has the shares of bedgraph"
  bedtools makewindows -g genome.sizes -w 1000 >windows.bed
  LC_ALL=C bedtools coverage -a windows.bed -b rows.bed | awk '{ print $1, $2, $3, $NF }' >theirs
  tr '\t' ' ' <genome.bedgraph >ours
  # Six digits are printed there, seven here.
  paste --delimiters=' ' ours theirs | awk '
    $1 != $5 || $2 != $6 || $3 != $7 || ($4 - $8) ^ 2 > 1e-12 { print; wrong = 1 }
    END { exit wrong || NR == 0 }'
  same "number of windows" <(wc -l <ours) <(wc -l <theirs)

  check "bedtools intersect finds every repeat of a record in that record"
  awk '{ print $1 "\t0\t" $2 }' genome.sizes >records.bed
  bedtools intersect -u -f 1 -a rows.bed -b records.bed >theirs
  same "repeats" rows.bed theirs
}

# merged_bases KEY: reads rows by position, and prints the key and how many bases lie in one of them.
merged_bases() {
  bedtools merge -i - | awk -v key="$1" '{ count += $3 - $2 } END { if (NR > 0) print key, count }'
}

check_stats() {
  local key
  check "bedtools merge has the bases of stats, for every record, every unit length, and in total"
  "$tools" stats --to tsv genome.report >genome.stats
  awk -F '\t' 'NR > 1 && $1 != "unit" && $6 > 0 { print $1 == "record" ? $2 : $1 == "total" ? $1 : $4, $7 }' \
    genome.stats | LC_ALL=C sort >ours
  LC_ALL=C sort --key=1,1 --key=2,2n rows.bed >sorted.bed
  {
    merged_bases total <sorted.bed
    while read -r key; do
      awk -F '\t' -v key="$key" '$1 == key' sorted.bed | merged_bases "$key"
    done < <(cut --fields=1 genome.sizes)
    while read -r key; do
      awk -F '\t' -v key="$key" '$7 == key' sorted.bed | merged_bases "$key"
    done < <(cut --fields=7 rows.bed | sort --unique)
  } | LC_ALL=C sort >theirs
  not_empty ours
  same "bases" ours theirs
}

# check_index KIND FILE: rows of a region by the index and by reading all.
check_index() {
  local record length first last
  read -r record length < <(sort --key=2,2nr genome.sizes | head -n 1)
  first=$((length / 4)) last=$((length / 2))
  bgzip --force --keep "$2"
  tabix --force --preset "$1" "$2.gz"
  tabix "$2.gz" "$record:$first-$last" >theirs
  not_empty theirs
  awk -F '\t' -v kind="$1" -v record="$record" -v first="$first" -v last="$last" '
    /^#/ { next }
    { start = kind == "bed" ? $2 + 1 : $4; end = kind == "bed" ? $3 : $5 }
    $1 == record && start <= last && end >= first' "$2" >ours
  same "the rows of $record:$first-$last" ours theirs
}

check_indexes() {
  check "bgzip and tabix index the BED and the GFF3"
  check_index bed genome.bed
  check_index gff genome.gff3

  check "quorix and quorix-tools read what bgzip wrote"
  bgzip --keep genome.fa
  "$quorix" "${options[@]}" --maskX --reportUnit 0 genome.fa.gz other.report >console 2>&1
  sed 's/genome\.fa\.gz/genome.fa/; s/other\.report/genome.report/' other.report >theirs
  same "report" genome.report theirs
  same "masked copy" genome.fa.masked genome.fa.gz.masked
  bgzip --keep --stdout genome.report >report.gz
  "$tools" convert --to bed report.gz >theirs
  same "bed" genome.bed theirs
}

check_gff3() {
  check "gt gff3validator takes the GFF3"
  gt gff3validator genome.gff3 >/dev/null
  grep --invert-match '^#' genome.gff3 | cut --fields=1,4,5 |
    "$python" -c 'import sys, urllib.parse; print(urllib.parse.unquote(sys.stdin.read()), end="")' >ours
  awk '{ print $1 "\t" $2 + 1 "\t" $3 }' rows.bed >theirs
  same "places in GFF3 and BED" ours theirs
}

check_masked() {
  check "samtools faidx reads the masked copy, whose repeats are masked"
  mv genome.fa.masked masked.fa
  samtools faidx masked.fa
  cut --fields=1,2 masked.fa.fai >theirs
  same "records and lengths" genome.sizes theirs
  "$python" -B "$here/compare_masked.py" genome.fa masked.fa rows.bed
}

check_json() {
  check "jsonschema takes the JSON lines, which say what the tsv says"
  "$python" -B "$here/check_json_lines.py" "$here/../../tools/formats/repeat.schema.json" \
    genome.jsonl genome.tsv
}

check_catalogues() {
  check "the loci of the catalogues are repeats, and their motifs the bases of the genome"
  local catalogue
  local -a chosen
  # Records with other names are refused.
  mapfile -t chosen < <(cut --fields=1 genome.sizes | grep --invert-match '[;=,]' | sed 's/^/--sequence=/')
  mkdir catalogues
  for catalogue in expansionhunter gangstr hipstr longtr straglr trgt vamos; do
    convert "$catalogue" "${chosen[@]}" -o "catalogues/$catalogue" 2>>left_out
  done
  convert tsv "${chosen[@]}" -o chosen.tsv
  "$python" -B "$here/check_catalogues.py" genome.fa chosen.tsv catalogues

  check "bedtools reads the catalogues that are BED, all of whose places are repeats"
  for catalogue in straglr trgt; do
    bedtools intersect -u -f 1 -r -a "catalogues/$catalogue" -b rows.bed >theirs
    same "$catalogue" "catalogues/$catalogue" theirs
  done
}

main() {
  local program
  for program in bedtools bgzip tabix gt samtools "$python"; do
    command -v "$program" >/dev/null || {
      printf '%s is needed; scripts/setup.sh test installs it\n' "$program" >&2
      exit 1
    }
  done
  folder=$(mktemp --directory)
  # shellcheck disable=SC2154  # the status is that of the end
  trap 'status=$?; rm -r -- "$folder"; [ "$status" -eq 0 ] || printf "FAILED: %s\n" "$current" >&2' EXIT
  cd -- "$folder"

  write_files
  check_bedtools
  check_stats
  check_indexes
  check_gff3
  check_masked
  check_json
  check_catalogues
}

main
