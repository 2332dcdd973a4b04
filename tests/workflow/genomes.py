"""Generated genomes, and programs that stand in for quorix-tools where one has to fail, wait or write rubbish."""

import gzip
import os
import pathlib
import random
import struct
import textwrap
import zlib
from typing import List

LETTERS = "ACGT"


def random_bases(draw: random.Random, length: int) -> str:
    """Returns random DNA in which arrays of short units lie."""
    parts: List[str] = []
    while sum(map(len, parts)) < length:
        unit = "".join(draw.choices(LETTERS, k=draw.randint(1, 6)))
        parts.append(unit * draw.randint(2, 12))
        parts.append("".join(draw.choices(LETTERS, k=draw.randint(0, 60))))
    return "".join(parts)[:length]


def records(seed: int, count: int, longest: int = 3000) -> str:
    """Returns a FASTA text of `count` records with up to `longest` bases each."""
    draw = random.Random(seed)
    return "".join(record(f"record{number} of {seed}", random_bases(draw, draw.randint(1, longest)))
                   for number in range(1, count + 1))


def record(name: str, bases: str) -> str:
    return f">{name}\n" + "".join(f"{line}\n" for line in textwrap.wrap(bases, 60))


def write(path: pathlib.Path, text: str) -> pathlib.Path:
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text, encoding="ascii", newline="")
    return path


def write_gzip(path: pathlib.Path, text: str) -> pathlib.Path:
    """Writes a text as two members of gzip, the second of which begins within a line."""
    data = text.encode()
    middle = len(data) // 2 + 1
    path.write_bytes(gzip.compress(data[:middle]) + gzip.compress(data[middle:]))
    return path


def bgzf(text: str, with_end_mark: bool = True) -> bytes:
    """Returns a text in the form of bgzip."""
    data = text.encode()
    blocks = [data[begin : begin + 5000] for begin in range(0, len(data), 5000)]
    return b"".join(map(bgzf_block, blocks + ([b""] if with_end_mark else [])))


def bgzf_block(data: bytes) -> bytes:
    packer = zlib.compressobj(wbits=-15)
    body = packer.compress(data) + packer.flush()
    head = b"\x1f\x8b\x08\x04\0\0\0\0\0\xff\x06\0BC\x02\0" + struct.pack("<H", len(body) + 25)
    return head + body + struct.pack("<II", zlib.crc32(data), len(data))


def write_index(path: pathlib.Path) -> None:
    """Writes the index that samtools makes of a genome whose records write() and record() made: it leaves out a
    record whose name was there before."""
    rows, names, offset = [], set(), 0
    for block in path.read_text(encoding="ascii").split(">")[1:]:
        header, _, sequence = block.partition("\n")
        name = header.split(" ")[0]
        length = len(sequence.replace("\n", ""))
        width = min(60, length)
        if name not in names:
            rows.append(f"{name}\t{length}\t{offset + len(header) + 2}\t{width}\t{width + 1 if width else 0}\n")
        names.add(name)
        offset += len(block) + 1
    index = path.with_name(f"{path.name}.fai")
    index.write_text("".join(rows), encoding="ascii")


def stand_in(path: pathlib.Path, tools: str, script: str) -> pathlib.Path:
    """Writes a program that runs a shell script for each search of a range, and then quorix-tools. The script has the
    first record of the range in $first, the folder of the program in $here, and the name of the report in $report."""
    write_program(path, textwrap.dedent("""\
        tools='%s' here=$(dirname -- "$0") first='' report="${!#}"
        for word in "$@"; do
          if [ "$previous" = --firstSeq ]; then first=$word; fi
          previous=$word
        done
        if [ "$1" = search ] && [ -n "$first" ]; then
          echo "$first" >>"$here/searched"
          %s
        fi
        exec "$tools" "$@"
        """) % (tools, script))
    return path


def stand_in_slurm(folder: pathlib.Path) -> None:
    """Writes programs that stand in for sbatch, which runs jobs at once and notes its arguments, for scontrol and for
    sacct. If the folder has a file TIMEOUT, the next search is said to have taken too long."""
    programs = {
        "sbatch": """\
            here=$(dirname -- "$0")
            echo "$*" >>"$here/submitted"
            job=$(wc -l <"$here/submitted")
            if [[ $* == *quorix-search* ]] && rm "$here/TIMEOUT" 2>/dev/null; then
              echo TIMEOUT >"$here/$job.state"
            elif bash "${!#}" >"$here/$job.out" 2>&1; then
              echo COMPLETED >"$here/$job.state"
            else
              echo FAILED >"$here/$job.state"
            fi
            echo "$job"
            """,
        "scontrol": """\
            echo "JobId=$4 JobName=quorix JobState=$(cat "$(dirname -- "$0")/$4.state") Reason=None"
            """,
        "sacct": "exit 1",
    }
    for name, script in programs.items():
        write_program(folder / name, textwrap.dedent(script))


def write_program(path: pathlib.Path, script: str) -> None:
    write(path, f"#!/bin/bash\n{script}\n")
    os.chmod(path, 0o755)
