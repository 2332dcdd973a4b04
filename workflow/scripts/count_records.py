"""Counts the records of a genome once, and writes the table of the ranges that are searched.

The offsets come from the index of samtools where there is a good one; otherwise the text is read.
"""

import argparse
import os
import pathlib
import sys

import fasta
import ranges


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--text", type=pathlib.Path, required=True, help="uncompressed FASTA file")
    parser.add_argument("--max-ranges", type=int, required=True)
    parser.add_argument("--min-bases", type=int, required=True, help="that a range is worth a job for")
    parser.add_argument("--table", type=pathlib.Path, required=True, help="is written")
    arguments = parser.parse_args()

    try:
        size = os.stat(arguments.text).st_size
        records = fasta.read_index(arguments.text)
        print("The index of samtools", "is used" if records else "is missing, old or not complete: the text is read",
              file=sys.stderr)
        if records is None:
            records = fasta.scan(arguments.text)
    except (OSError, fasta.NotFasta) as error:
        sys.exit(f"{arguments.text}: this is no FASTA file that can be searched: {error}")
    rows = ranges.make_ranges(records, size, arguments.max_ranges, arguments.min_bases)
    ranges.write_table(arguments.table, rows)
    print(f"{len(records.begins)} records of {sum(records.bases)} bases in {len(rows)} ranges", file=sys.stderr)


main()
