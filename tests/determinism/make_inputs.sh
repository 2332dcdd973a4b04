#!/usr/bin/env bash
# Writes the inputs that builds are compared on into a folder: diverged arrays of units of 1 to 60 bases
# between random bases and N's, in records of several lengths, as several kinds of text.
#
#   make_inputs.sh FOLDER
set -euo pipefail
export LC_ALL=C

[ $# -eq 1 ] || { echo 'usage: make_inputs.sh FOLDER' >&2 && exit 2; }
mkdir -p -- "$1"

# make SEED RECORDS LONGEST_UNIT BASES LINE_LENGTH
make() {
  awk -v seed="$1" -v records="$2" -v longest_unit="$3" -v bases="$4" -v line_length="$5" '
    # Below 2^46 in all steps, so exact in every awk.
    function draw(count) { seed = seed * 16807 % 2147483647; return seed % count }
    function base() { return substr("ACGT", draw(4) + 1, 1) }
    function array(length_left, percent,   unit, i, text, letter) {
      for (i = draw(longest_unit); i >= 0; --i) unit = unit base()
      for (i = 0; length_left > 0; ++i) {
        letter = substr(unit, i % length(unit) + 1, 1)
        if (draw(100) < percent) {
          letter = substr(" " base() "N", draw(3) + 1, 1)
          if (letter == " ") letter = unit base()
        }
        text = text letter
        length_left -= length(letter)
      }
      return text
    }
    BEGIN {
      for (record = 1; record <= records; ++record) {
        text = ""
        while (length(text) < bases) {
          for (i = draw(60); i > 0; --i) text = text base()
          if (draw(10) == 0) text = text substr("NNNNNNNN", 1, draw(8) + 1)
          text = text array(20 + draw(200), draw(4) * 4)
        }
        print ">record " record
        for (start = 1; start <= length(text); start += line_length) {
          print substr(text, start, line_length)
        }
      }
    }'
}

make 1 1 6 8000 70 >"$1/long.fa"
make 2 1 60 6000 1000000 >"$1/units.fa"
make 3 12 6 500 60 | tr ACGT acgt >"$1/small.fa"
make 4 3 12 2000 80 | sed 's/$/\r/' >"$1/crlf.fa"
make 5 3 12 2000 7 | tr '\n' '\r' >"$1/cr.fa"
# After the first megabyte, so that a repeat lies across the end of the read buffer.
{ printf '>gap\n' && head --bytes=999900 /dev/zero | tr '\0' 'N' && echo && make 6 1 6 2000 70 | sed 1d; } >"$1/gap.fa"
