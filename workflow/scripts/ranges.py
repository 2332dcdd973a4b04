"""Ranges of whole records, with about the same number of bases in each, and the table that lists them."""

import bisect
import csv
import itertools
import os
from typing import Iterable, List, NamedTuple, Sequence

from fasta import Records


class Range(NamedTuple):
    """Records of a text that one job searches."""

    number: int  # from 1
    first: int  # record, from 1
    last: int  # record, included
    begin: int  # offset of the range in the text, in bytes
    end: int  # offset of what follows it
    bases: int
    longest: int  # bases of the longest record
    is_last: bool  # of the text

    @property
    def records(self) -> int:
        return self.last - self.first + 1


def split(lengths: Sequence[int], count: int) -> List[int]:
    """Returns where each of at most `count` runs of neighbouring records begins (indices, the first is 0).

    The run with the most bases has as few as any split allows. No run is empty.
    """
    ends = [0, *itertools.accumulate(lengths)]

    def runs_within(limit: int) -> List[int]:
        begins = [0]
        while (end := bisect.bisect_right(ends, ends[begins[-1]] + limit) - 1) < len(lengths):
            begins.append(end)
        return begins

    least, enough = max(lengths), ends[-1]
    while least < enough:
        middle = (least + enough) // 2
        if len(runs_within(middle)) <= count:
            enough = middle
        else:
            least = middle + 1
    return runs_within(least)


def make_ranges(records: Records, size: int, max_ranges: int, min_bases: int) -> List[Range]:
    """Returns the ranges of a text of `size` bytes: at most `max_ranges`, and no more than fit if each has
    `min_bases`; there is always one."""
    lengths = records.bases
    count = max(1, min(max_ranges, sum(lengths) // min_bases))
    begins = [*split(lengths, count), len(lengths)]
    result = []
    for number, (begin, end) in enumerate(zip(begins, begins[1:]), start=1):
        is_last = end == len(lengths)
        result.append(
            Range(
                number=number,
                first=begin + 1,
                last=end,
                # What stands before the first record belongs to the first range.
                begin=records.begins[begin] if begin > 0 else 0,
                end=size if is_last else records.begins[end],
                bases=sum(lengths[begin:end]),
                longest=max(lengths[begin:end]),
                is_last=is_last,
            )
        )
    return result


def write_table(path: os.PathLike, ranges: Iterable[Range]) -> None:
    """Writes ranges as a table, which has its name only when it is complete."""
    unfinished = f"{os.fspath(path)}.new"
    with open(unfinished, "w", encoding="ascii") as file:
        rows = csv.writer(file, delimiter="\t", lineterminator="\n")
        rows.writerow(Range._fields)
        rows.writerows(map(int, row) for row in ranges)
    os.replace(unfinished, path)


def read_table(path: os.PathLike) -> List[Range]:
    """Returns the ranges of a table that write_table() wrote."""
    with open(path, encoding="ascii") as file:
        _, *rows = csv.reader(file, delimiter="\t")
    return [Range._make(map(int, row)) for row in rows]
