"""Searches one range of the records of a genome.

Only the bytes of the range are read. They reach `quorix-tools search` through a pipe, after as many empty records as
there are records before the range; so the numbers of the records, and with them the head of the report, are those
of a run on the whole file. In the folder of the job the pipe has the name of the genome, which the head shows too.

All is written into a folder of the job's own. Report and masked copy get their names when the search has succeeded,
so that there is never a part of a report under the name of a whole one. If this program is killed, the search sees
the end of the pipe and may take it for the end of the genome: its report then lies in that folder and is never used.
The folders of killed jobs go with the merge. Until then they stay: a job that a killed run has left in the queue of a
cluster may still work in its own.
"""

import argparse
import os
import pathlib
import shlex
import signal
import subprocess
import sys
import tempfile
from typing import IO, List

import fasta
import ranges

EMPTY_RECORD = b">\n"
CLOSING_LINE = b"\n## Finished successfully. ##\n"


class Failure(Exception):
    """The range could not be searched."""


def copy_range(text: IO[bytes], row: ranges.Range, pipe: IO[bytes]) -> None:
    """Copies a range of the text, and counts its records again: the text may have changed since they were counted,
    and an index of it may be wrong."""
    scanner = fasta.Scanner()
    text.seek(row.begin)
    left = row.end - row.begin
    while left > 0:
        chunk = text.read(min(left, fasta.CHUNK))
        if not chunk:
            raise Failure("the genome is shorter than it was when its records were counted")
        left -= len(chunk)
        scanner.feed(chunk)
        write_all(pipe, chunk)
    if row.is_last and text.read(1):
        raise Failure("the genome is longer than it was when its records were counted")
    records = scanner.finish()
    if len(records.begins) != row.records or (row.first > 1 and records.begins[0] != 0):
        raise Failure(f"{len(records.begins)} records were found where {row.records} were counted; "
                      "the genome has changed, or its .fai index is wrong")


def write_all(pipe: IO[bytes], data: bytes) -> None:
    left = memoryview(data)
    while left:
        left = left[pipe.write(left):]


def run_search(command: List[str], folder: pathlib.Path, text: pathlib.Path, row: ranges.Range) -> None:
    """Runs the search in a folder, with the range as its standard input."""
    with open(text, "rb", buffering=0) as file:
        child = subprocess.Popen(command, cwd=folder, stdin=subprocess.PIPE, bufsize=0)
        assert child.stdin is not None
        try:
            try:
                write_all(child.stdin, EMPTY_RECORD * (row.first - 1))
                copy_range(file, row, child.stdin)
            except BrokenPipeError:
                pass  # the status says why
            child.stdin.close()
            status = child.wait()
        except BaseException:
            child.kill()  # before the pipe ends, which it would take for the end of the genome
            child.wait()
            raise
    if status != 0:
        raise Failure(f"the search ended with status {status}")


def expect_closing_line(report: pathlib.Path) -> None:
    with open(report, "rb") as file:
        file.seek(-len(CLOSING_LINE), os.SEEK_END)
        if file.read() != CLOSING_LINE:
            raise Failure("the report lacks its closing line")


def search(arguments: argparse.Namespace, row: ranges.Range, folder: pathlib.Path) -> None:
    """Searches a range in a folder, and gives the results their names."""
    (folder / arguments.name).symlink_to("/dev/stdin")
    command = [arguments.program, "search", "--threads", str(arguments.threads), *shlex.split(arguments.options)]
    command += ["--maskX"] if arguments.masked else []
    command += ["--firstSeq", str(row.first)]
    # A last range without an end makes the range in the merged head that of a run on all records.
    command += [] if row.is_last else ["--lastSeq", str(row.last)]
    report = f"{arguments.name}.report"  # unlike the names of genome and masked copy
    command += ["--", arguments.name, report]
    run_search(command, folder, arguments.text, row)
    expect_closing_line(folder / report)
    if arguments.masked:
        os.replace(folder / f"{arguments.name}.masked", arguments.masked)
    os.replace(folder / report, arguments.report)


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", required=True, help="quorix-tools")
    parser.add_argument("--text", type=pathlib.Path, required=True, help="uncompressed FASTA file")
    parser.add_argument("--name", required=True, help="of the genome, for the head of the report")
    parser.add_argument("--table", type=pathlib.Path, required=True, help="of the ranges")
    parser.add_argument("--number", type=int, required=True, help="of the range, from 1")
    parser.add_argument("--threads", type=int, required=True)
    parser.add_argument("--options", default="", help="of the search, quoted as for a shell")
    parser.add_argument("--report", type=pathlib.Path, required=True, help="is written")
    parser.add_argument("--masked", type=pathlib.Path, help="is written")
    arguments = parser.parse_args()

    signal.signal(signal.SIGTERM, lambda number, _: sys.exit(128 + number))
    row = ranges.read_table(arguments.table)[arguments.number - 1]
    try:
        with tempfile.TemporaryDirectory(prefix=f".{arguments.number:04}.", dir=arguments.report.parent) as folder:
            search(arguments, row, pathlib.Path(folder))
    except (OSError, Failure, fasta.NotFasta) as error:
        sys.exit(f"{arguments.text}, records {row.first} to {row.last}: {error}")


main()
