"""Unpacks a genome in gzip's format, also of several members, as BGZF is.

quorix refuses a BGZF file whose last member has text, since its end may be missing. So does this.
"""

import argparse
import os
import pathlib
import sys
import zlib
from typing import BinaryIO

CHUNK = 1 << 20
BGZF_HEADER = 18  # bytes


class Damaged(Exception):
    """The file is not what gzip writes, or not all of it."""


def unpack(packed: BinaryIO, text: BinaryIO) -> None:
    """Writes the text of all members. Raises Damaged and OSError."""
    rest = packed.read(CHUNK)
    is_bgzf, length = False, 0
    while rest := rest or packed.read(CHUNK):
        if is_padding(rest, packed):
            break
        if len(rest) < BGZF_HEADER:
            rest += packed.read(CHUNK)
        is_bgzf = is_bgzf_member(rest)
        member = zlib.decompressobj(wbits=31)
        length = 0
        while not member.eof:
            if not rest:
                raise Damaged("the file ends within a member")
            try:
                out = member.decompress(rest)
            except zlib.error as error:
                raise Damaged(str(error)) from error
            text.write(out)
            length += len(out)
            rest = member.unused_data if member.eof else packed.read(CHUNK)
    if is_bgzf and length > 0:
        raise Damaged("the end mark of BGZF is missing, so the end of the file may be")


def is_padding(rest: bytes, packed: BinaryIO) -> bool:
    """Returns whether only zeros are left, which may follow the last member."""
    if rest[0] != 0:
        return False
    while rest and not rest.strip(b"\0"):
        rest = packed.read(CHUNK)
    if rest:
        raise Damaged("something follows the zeros after the last member")
    return True


def is_bgzf_member(head: bytes) -> bool:
    """Returns whether a member has the field of BGZF at the place where bgzip writes it."""
    return len(head) >= BGZF_HEADER and head[3] & 4 != 0 and head[12:16] == b"BC\x02\x00"


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("packed", type=pathlib.Path)
    parser.add_argument("text", type=pathlib.Path, help="is written")
    arguments = parser.parse_args()
    unfinished = arguments.text.with_name(arguments.text.name + ".new")
    try:
        with open(arguments.packed, "rb") as packed, open(unfinished, "wb") as text:
            unpack(packed, text)
        os.replace(unfinished, arguments.text)
    except (OSError, Damaged) as error:
        unfinished.unlink(missing_ok=True)
        sys.exit(f"{arguments.packed}: cannot be unpacked: {error}")


if __name__ == "__main__":
    main()
