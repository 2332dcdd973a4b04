"""Compares a genome with its masked copy.

compare_masked.py GENOME MASKED BED: every base in a repeat of the BED file must be X in the masked
copy. Every other one is as it is in the genome (T for U, N for ambiguity letters), or X: repeats whose
unit repeats a shorter one are masked, but print no line. Those must be the smaller part.
"""

import re
import sys

from fasta import read_fasta


def main():
    genome, masked = read_fasta(sys.argv[1]), read_fasta(sys.argv[2])
    if list(genome) != list(masked):
        sys.exit("the masked copy has other records")
    repeats = {record: bytearray(len(bases)) for record, bases in genome.items()}
    with open(sys.argv[3], encoding="latin-1") as rows:
        for row in rows:
            record, start, end = row.split("\t")[:3]
            repeats[record][int(start) : int(end)] = b"\1" * (int(end) - int(start))
    printed = others = 0
    for record, letters in genome.items():
        bases = re.sub("[^ACGT]", "N", letters)
        if len(bases) != len(masked[record]):
            sys.exit(f"record {record} has another length")
        for place, (base, shown, is_repeat) in enumerate(zip(bases, masked[record], repeats[record])):
            if shown != "X" and (is_repeat or shown != base):
                sys.exit(f"record {record}, base {place + 1}: {shown} for {base}")
            printed += is_repeat
            others += shown == "X" and not is_repeat
    if not others < printed:
        sys.exit(f"{others} bases are masked beside the {printed} of printed repeats")


main()
