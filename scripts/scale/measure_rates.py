#!/usr/bin/env python3
"""Measures what scripts/scale/simulate.py calculates with, and prints it as JSON.

Every genome is searched with the default units and with units of up to 100 bases, read without a search, read
compressed without a search, and its report is measured plain and compressed. Seconds are of processor time, the
least of several runs, without those of a run on an empty record. Memory is that of two records, the genome once and
repeated until it is long: so much for a base, and so much for a run (GNU time is needed). The yeast genome, of which
quorix-tools can merge ranges, gives the rate of that.
"""

import argparse
import gzip
import json
import os
import pathlib
import platform
import subprocess
import sys
import tempfile
import time

GENOMES = {"bacterium": ["ecoli-k12.fa"],
           "human": ["human-chr2-2.3M-softmasked.fa", "human-chr22-1M.fa"],
           "plant": ["thale-1pct.fa"]}
SEVERAL_RECORDS = "yeast-s288c.fa"
# Options, and the bases of the longer record of which the memory is measured.
SEARCHES = {"units 1-6": ([], 64_000_000), "units 1-100": (["-U", "100"], 8_000_000)}
NOTHING = ["--firstSeq", "2000000000"]  # the input is read to its end, and no record is searched
RUNS = 3


def run(command):
    """Processor seconds of a command."""
    process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"status {process.returncode}: {' '.join(map(str, command))}")
    return usage.ru_utime + usage.ru_stime


def peak_memory(command, scratch):
    """Bytes. A process of Python's own counts the memory of Python, from which it was forked."""
    run(["/usr/bin/time", "--format=%M", f"--output={scratch / 'peak'}", *command])
    return int((scratch / "peak").read_text(encoding="ascii")) * 1024


def least_seconds(command, runs=RUNS):
    return min(run(command) for _ in range(runs))


def bases_of(files):
    lines = (line.strip() for file in files for line in file.read_bytes().splitlines())
    return b"".join(line for line in lines if not line.startswith(b">"))


def write_record(file, bases):
    width = 60
    lines = [bases[start:start + width] for start in range(0, len(bases), width)]
    file.write_bytes(b">record\n" + b"\n".join(lines) + b"\n")


def measure_memory(quorix, bases, options, length, scratch):
    """Bytes for a base of the longest record, and for a run."""
    lengths, peaks = [], []
    for copies in (1, -(-length // len(bases))):
        write_record(scratch / "long.fa", bases * copies)
        lengths.append(len(bases) * copies)
        peaks.append(peak_memory([quorix, *options, scratch / "long.fa", scratch / "report"], scratch))
    of_a_base = (peaks[1] - peaks[0]) / (lengths[1] - lengths[0])
    return of_a_base, peaks[0] - of_a_base * lengths[0]


def measure_genome(quorix, files, empty_seconds, scratch):
    genome, packed, report = (scratch / name for name in ("genome.fa", "genome.fa.gz", "report"))
    bases = bases_of(files)
    million = len(bases) / 1e6
    write_record(genome, bases)
    packed.write_bytes(gzip.compress(genome.read_bytes(), 6))
    read_seconds = least_seconds([quorix, *NOTHING, genome, report])
    rates = {
        "bases": len(bases),
        "packed bytes per base": packed.stat().st_size / len(bases),
        "read seconds per Mbp": (read_seconds - empty_seconds) / million,
        "read packed seconds per Mbp":
            (least_seconds([quorix, *NOTHING, packed, report]) - empty_seconds) / million,
        "searches": {},
    }
    for name, (options, length) in SEARCHES.items():
        seconds = least_seconds([quorix, *options, genome, report])
        text = report.read_bytes()
        of_a_base, of_a_run = measure_memory(quorix, bases, options, length, scratch)
        rates["searches"][name] = {
            "seconds per Mbp": (seconds - read_seconds) / million,
            "report bytes per base": len(text) / len(bases),
            "packed report bytes per base": len(gzip.compress(text, 6)) / len(bases),
            "memory bytes per base": of_a_base,
            "memory bytes per run": of_a_run,
        }
    return rates


def measure_merge(quorix, tools, genome, scratch):
    """Seconds for a GB of reports, for two ranges of records."""
    parts = []
    for first, last in [(1, 8), (9, -1)]:
        parts.append(scratch / f"part{first}")
        run([quorix, "--firstSeq", str(first), "--lastSeq", str(last), genome, parts[-1]])
    merged = scratch / "merged"
    seconds = least_seconds([tools, "merge", "-o", merged, *parts])
    return seconds / merged.stat().st_size * 1e9


def processor():
    with open("/proc/cpuinfo", encoding="utf-8") as lines:
        names = [line.split(":", 1)[1].strip() for line in lines if line.startswith("model name")]
    return names[0] if names else platform.machine()


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("quorix", type=pathlib.Path, help="program of a release build")
    parser.add_argument("tools", type=pathlib.Path, help="quorix-tools of a release build")
    parser.add_argument("folder", type=pathlib.Path,
                        help=f"folder with {', '.join([*sum(GENOMES.values(), []), SEVERAL_RECORDS])}")
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        scratch = pathlib.Path(folder)
        write_record(scratch / "empty.fa", b"")
        command = [arguments.quorix, scratch / "empty.fa", scratch / "report"]
        empty_seconds = least_seconds(command, 20)
        rates = {
            "date": time.strftime("%Y-%m-%d", time.gmtime()),
            "processor": processor(),
            "start seconds": empty_seconds,
            "merge seconds per GB": measure_merge(arguments.quorix, arguments.tools,
                                                  arguments.folder / SEVERAL_RECORDS, scratch),
            "genomes": {name: measure_genome(arguments.quorix, [arguments.folder / file for file in files],
                                             empty_seconds, scratch)
                        for name, files in GENOMES.items()},
        }
    print(json.dumps(rates, indent=2))


if __name__ == "__main__":
    main()
