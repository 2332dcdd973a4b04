"""Where the records of a FASTA file lie, and how many bases each has.

Positions are offsets in bytes of the uncompressed text, counted from 0. What a record is follows the rules of
quorix: a line ends with a line feed, a carriage return, or both, and a record begins with a line whose first
character is `>`. Before the first record there may be white space and lines that begin with `#`.
"""

import array
import os
import pathlib
import re
from typing import Optional

CHUNK = 1 << 20
_LINE_END = re.compile(rb"[\r\n]")
_NO_WHITE_SPACE = re.compile(rb"[^ \t\n\v\f\r]")
_NO_BASES = b" \t\n\v\f\r-*"  # occupy no position


class NotFasta(Exception):
    """The text has no records, or something before the first one."""


class Records:
    """The records of a text: `begins[i]` is the offset of the header of record i + 1, `bases[i]` its length."""

    def __init__(self) -> None:
        self.begins = array.array("Q")
        self.bases = array.array("Q")

    def add(self, begin: int, bases: int) -> None:
        self.begins.append(begin)
        self.bases.append(bases)


class Scanner:
    """Finds the records of a text that comes in chunks of any size."""

    def __init__(self) -> None:
        self.records = Records()
        self.length = 0  # of the text so far
        self._place = self._before
        self._last = b"\n"  # the character before the chunk

    def feed(self, chunk: bytes) -> None:
        """Takes the next chunk. Raises NotFasta."""
        position = 0
        while position < len(chunk):
            position = self._place(chunk, position)
        self.length += len(chunk)
        self._last = chunk[-1:] or self._last

    def finish(self) -> Records:
        """Returns the records of the text. Raises NotFasta if there are none."""
        if not self.records.begins:
            raise NotFasta("no record begins in it")
        return self.records

    # Each of these consumes a part of the chunk from a position on, and returns where that ends.

    def _before(self, chunk: bytes, position: int) -> int:
        found = _NO_WHITE_SPACE.search(chunk, position)
        if found is None:
            return len(chunk)
        if found.group() == b"#":
            self._place = self._comment
        elif found.group() == b">":
            return self._begin_record(found.start())
        else:
            raise NotFasta(f"byte {self.length + found.start() + 1} should be the `>` of the first record")
        return found.end()

    def _comment(self, chunk: bytes, position: int) -> int:
        return self._rest_of_line(chunk, position, self._before)

    def _header(self, chunk: bytes, position: int) -> int:
        return self._rest_of_line(chunk, position, self._sequence)

    def _rest_of_line(self, chunk: bytes, position: int, following) -> int:
        found = _LINE_END.search(chunk, position)
        if found is None:
            return len(chunk)
        self._place = following
        return found.end()

    def _sequence(self, chunk: bytes, position: int) -> int:
        found = chunk.find(b">", position)
        end = found if found >= 0 else len(chunk)
        self.records.bases[-1] += len(chunk[position:end].translate(None, _NO_BASES))
        if found < 0:
            return end
        if (chunk[found - 1 : found] if found > 0 else self._last) in (b"\n", b"\r"):
            return self._begin_record(found)
        return found + 1  # not allowed there; the search refuses it

    def _begin_record(self, position: int) -> int:
        self.records.add(self.length + position, 0)
        self._place = self._header
        return position + 1


def is_gzip(path: os.PathLike) -> bool:
    """Returns whether a file begins as gzip does, whatever its name."""
    with open(path, "rb") as file:
        return file.read(2) == b"\x1f\x8b"


def scan(path: os.PathLike) -> Records:
    """Returns the records of a plain file, which is read as a whole. Raises NotFasta and OSError."""
    scanner = Scanner()
    with open(path, "rb", buffering=0) as file:
        while chunk := file.read(CHUNK):
            scanner.feed(chunk)
    return scanner.finish()


def read_index(path: os.PathLike) -> Optional[Records]:
    """Returns the records of a plain file from the index of `samtools faidx` beside it (its name and `.fai`).

    Returns None unless the index describes every byte: it must not be older than the file, and each header must
    begin where the sequence before it ends. An index leaves out records of equal names, for instance. Only the
    headers are read.
    """
    path = pathlib.Path(path)
    index = path.with_name(path.name + ".fai")
    try:
        if index.stat().st_mtime_ns < path.stat().st_mtime_ns:
            return None
        with open(index, "rb") as rows, open(path, "rb") as text:
            return _follow_index(rows, text, path.stat().st_size)
    except (OSError, ValueError):
        return None


def _follow_index(rows, text, size: int) -> Optional[Records]:
    records = Records()
    end = 0  # of the records so far
    for row in rows:
        _, *numbers = row.rstrip(b"\n").split(b"\t")
        length, offset, line_bases, line_width = map(int, numbers)
        if offset <= end or line_bases < 1 and length > 0:
            return None
        text.seek(end)
        header = text.read(offset - end)
        ending = b"\r\n" if header.endswith(b"\r\n") else b"\n"
        name = header[: -len(ending)]
        if not header.startswith(b">") or not header.endswith(ending) or _LINE_END.search(name):
            return None
        records.add(end, length)
        rest = length % line_bases if length > 0 else 0
        end = offset + (length // line_bases * line_width if length > 0 else 0)
        if rest > 0:
            end += rest + line_width - line_bases
    # The last line may lack its end.
    last_width = line_width - line_bases if records.begins and records.bases[-1] > 0 else 0
    return records if records.begins and end - last_width <= size <= end else None
