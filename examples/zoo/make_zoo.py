#!/usr/bin/env python3
"""Makes the loci of this folder and their reports: one for each kind of repeat.

    make_zoo.py QUORIX [FOLDER]

QUORIX is the program, FOLDER where the files go (this folder if not given). Every base follows from the
recipes below and the seed of the locus, so each run writes the same bytes. No part is copied from a genome.
"""

import os
import subprocess
import sys


class Bases:
    """Random bases from a seed: a xorshift generator, so that they do not depend on the version of Python."""

    def __init__(self, seed):
        self.state = seed * 0x9E3779B97F4A7C15 % 2**64
        for _ in range(8):
            self.draw(2)

    def draw(self, count):
        """Returns a whole number from 0 to count - 1."""
        self.state ^= self.state << 13 & 0xFFFFFFFFFFFFFFFF
        self.state ^= self.state >> 7
        self.state ^= self.state << 17 & 0xFFFFFFFFFFFFFFFF
        return (self.state >> 11) % count

    def unique(self, length):
        """Returns bases with about 40 % of G and C, like most of the human genome."""
        return "".join("AAATTTCCGG"[self.draw(10)] for _ in range(length))

    def worn(self, copy, per_mille):
        """Returns a copy in which so many of 1000 bases are changed, one in eight of these in length."""
        bases = ""
        for base in copy:
            if self.draw(1000) >= per_mille:
                bases += base
            elif self.draw(8) > 0:
                bases += "ACGT".replace(base, "")[self.draw(3)]
            elif self.draw(2) > 0:
                bases += base + "ACGT"[self.draw(4)]
        return bases


def cag_expansion(bases):
    """CAG in an exon, interrupted by CAA in its middle and near its end, and a CCG repeat after it."""
    repeat = "CAG" * 19 + "CAA" + "CAG" * 7 + "CAACAG" + "CCGCCA" + "CCG" * 8 + "CCT" * 2
    return [("expanded_exon", bases.unique(60) + "GCCTTCGAGTCC" + repeat + bases.unique(60))]


def telomere(bases):
    """The end of a chromosome: TTAGGG, with variants where it meets the rest of the chromosome."""
    variants = ("TTAGGG", "TTAGGG", "TGAGGG", "TTAGGG", "TCAGGG", "TTGGGG")
    border = "".join(variants[bases.draw(6)] for _ in range(14))
    return [("chromosome_end", bases.unique(90) + border + "TTAGGG" * 30)]


def poly_a(bases):
    """The tail of an inserted element, with a few changed bases, between two copies of its target site."""
    site = bases.unique(14)
    tail = "A" * 17 + "G" + "A" * 13 + "T" + "A" * 9
    return [("inserted_element", bases.unique(40) + site + bases.unique(50) + tail + site + bases.unique(40))]


def ac_with_indels(bases):
    """Three alleles of one microsatellite: intact, with a base too many, with a base too few."""
    left, right = bases.unique(50), bases.unique(50)
    return [
        ("intact", left + "AC" * 19 + right),
        ("base_inserted", left + "AC" * 11 + "G" + "AC" * 8 + right),
        ("base_missing", left + "AC" * 11 + "A" + "AC" * 7 + right),
    ]


def alpha_satellite(bases):
    """Seven diverged copies of a unit of 171 bases, the first and the last one cut."""
    unit = bases.unique(171)
    copies = [bases.worn(unit, 35) for _ in range(7)]
    array = copies[0][80:] + "".join(copies[1:-1]) + copies[-1][:110]
    return [("centromere", bases.unique(120) + array + bases.unique(120))]


def unknown_bases(bases):
    """N's in a repeat: four are crossed, as many as --succN allows; forty, as in a gap, are not."""
    left, right = bases.unique(40), bases.unique(40)
    return [
        ("four_n", left + "GATA" * 8 + "GANNNNTA" + "GATA" * 6 + right),
        ("gap", left + "GATA" * 8 + "N" * 40 + "GATA" * 6 + right),
    ]


# Name, seed, recipe, options of the search.
LOCI = (
    ("cag_expansion", 1, cag_expansion, ["-s", "12"]),
    ("telomere", 2, telomere, ["-s", "12"]),
    ("poly_a", 3, poly_a, ["-s", "8"]),
    ("ac_with_indels", 4, ac_with_indels, ["-s", "12"]),
    ("alpha_satellite", 5, alpha_satellite, ["-u", "160", "-U", "180"]),
    ("unknown_bases", 6, unknown_bases, ["-s", "12"]),
)


def write_fasta(path, records):
    with open(path, "w", encoding="ascii", newline="\n") as file:
        for name, bases in records:
            file.write(f">{name}\n")
            for start in range(0, len(bases), 60):
                file.write(bases[start : start + 60] + "\n")


def main():
    if len(sys.argv) not in (2, 3) or sys.argv[1].startswith("-"):
        sys.exit(__doc__)
    quorix = os.path.abspath(sys.argv[1])
    os.chdir(sys.argv[2] if len(sys.argv) == 3 else os.path.dirname(os.path.abspath(__file__)))
    for name, seed, recipe, options in LOCI:
        write_fasta(f"{name}.fa", recipe(Bases(seed)))
        run = [quorix, *options, f"{name}.fa", f"{name}.report"]
        subprocess.run(run, check=True, stderr=subprocess.DEVNULL)


if __name__ == "__main__":
    main()
