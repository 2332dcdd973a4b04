"""Reads the catalogues of a genome and compares them with the genome and the table of its repeats.

check_catalogues.py GENOME TSV FOLDER: the folder has one file for each catalogue, with its name. The
table has the same records. Every locus must be a repeat of the table. Where that is perfect, the bases
at the place of the locus must be copies of its motif and nothing else.
"""

import json
import pathlib
import sys

from fasta import read_fasta


def read_table(name):
    """Returns the perfections by record, start from 0, end and motif."""
    with open(name, encoding="latin-1") as rows:
        columns = next(rows).rstrip("\n").split("\t")
        table = [dict(zip(columns, row.rstrip("\n").split("\t"), strict=True)) for row in rows]
    return {
        (row["sequence"], int(row["start"]) - 1, int(row["end"]), row["motif"]): row["perfection"]
        for row in table
    }


def read_rows(path, column_count):
    rows = [row.split("\t") for row in path.read_text(encoding="latin-1").splitlines()]
    if any(len(row) != column_count for row in rows):
        sys.exit(f"{path.name}: a row has not {column_count} columns")
    return rows


def trgt_motif(fields):
    """Returns the motif that the fields of a row agree on."""
    (id_key, _), (motifs_key, motifs), (structure_key, structure) = (
        field.split("=") for field in fields.split(";")
    )
    if (id_key, motifs_key, structure_key) != ("ID", "MOTIFS", "STRUC"):
        sys.exit(f"trgt: other fields in {fields}")
    return motifs if structure == f"({motifs})n" else sys.exit(f"trgt: another motif in {fields}")


def read_expansionhunter(path):
    for locus in json.loads(path.read_text(encoding="utf-8")):
        record, place = locus["ReferenceRegion"].split(":")
        start, end = place.split("-")
        yield record, int(start), int(end), locus["LocusStructure"][1:-2]


def read_loci(path):
    """Yields record, start from 0, end and motif of each locus."""
    name = path.name
    if name == "expansionhunter":
        yield from read_expansionhunter(path)
    elif name == "gangstr":
        for record, start, end, _, motif in read_rows(path, 5):
            yield record, int(start) - 1, int(end), motif
    elif name == "hipstr":
        for record, start, end, _, _, locus_id in read_rows(path, 6):
            yield record, int(start) - 1, int(end), locus_id.rsplit("-", 1)[1]
    elif name == "longtr":
        for record, start, end, motif, _ in read_rows(path, 5):
            yield record, int(start) - 1, int(end), motif
    elif name == "straglr":
        for record, start, end, motif in read_rows(path, 4):
            yield record, int(start), int(end), motif
    elif name == "trgt":
        for record, start, end, fields in read_rows(path, 4):
            yield record, int(start), int(end), trgt_motif(fields)
    else:
        for record, start, end, motifs in read_rows(path, 4):
            for motif in motifs.split(","):
                yield record, int(start) - 1, int(end), motif


def check_catalogue(path, genome, table):
    """Returns the number of perfect loci."""
    ends = {}  # of the repeats, for those whose end is cut
    for record, start, end, motif in table:
        ends.setdefault((record, start, motif), []).append(end)
    seen, perfect_count = set(), 0
    for locus in read_loci(path):
        record, start, end, motif = locus
        if path.name == "gangstr":
            uncut = ends.get((record, start, motif), [])
            whole = [one for one in uncut if 0 <= one - end < len(motif)]
            if not whole or (end - start) % len(motif) != 0:
                sys.exit(f"gangstr: {locus} is no repeat of whole copies")
            perfection = table[record, start, whole[0], motif]
        elif locus in table:
            perfection = table[locus]
        else:
            sys.exit(f"{path.name}: {locus} is no repeat")
        if locus in seen:
            sys.exit(f"{path.name}: {locus} is there twice")
        seen.add(locus)
        if path.name == "expansionhunter" and not 1000 <= start < end <= len(genome[record]) - 1000:
            sys.exit(f"expansionhunter: {locus} lacks a flank")
        if perfection == "100.000":
            perfect_count += 1
            copies = motif * ((end - start) // len(motif) + 1)
            if genome[record][start:end] != copies[: end - start]:
                sys.exit(f"{path.name}: {locus} are not the bases of the genome")
    return perfect_count


def main():
    genome, table = read_fasta(sys.argv[1]), read_table(sys.argv[2])
    can_be_hunted = any(not set(record) & set("-:") for record in genome)
    for name in ("expansionhunter", "gangstr", "hipstr", "longtr", "straglr", "trgt", "vamos"):
        path = pathlib.Path(sys.argv[3], name)
        has_loci = check_catalogue(path, genome, table) > 0
        if not has_loci and (can_be_hunted or name != "expansionhunter"):
            sys.exit(f"{name}: no locus is perfect")


main()
