"""Compares the reports of the library and of the program on random records under random settings.

  compare_with_program.py PROGRAM REPORT_BODY [--cases=N] [--seed=N]

PROGRAM is quorix, REPORT_BODY the program of report_body.cpp. Whole reports have to be equal, with
edits and alignments; refusals too. A difference ends the script with status 1.
"""

import argparse
import random
import re
import subprocess
import sys
import tempfile

from random_cases import MODES, fasta_of, program_options, random_record, random_settings

def body_of(report):
    """The report without comment lines, save the feet of records, and without names of classes."""
    lines = [line for line in report.splitlines()
             if not line.startswith("#") or line.startswith("# Analysis of sequence")]
    return [re.sub(r"^ *\S+ (?= *\d+ : )", "", line) for line in lines if line]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("report_body")
    parser.add_argument("--cases", type=int, default=150)
    parser.add_argument("--seed", type=int, default=1)
    arguments = parser.parse_args()
    draw = random.Random(arguments.seed)
    counts = {"repeats": 0, "refusals": 0, **{mode: 0 for mode in MODES}}

    with tempfile.NamedTemporaryFile("w", suffix=".fa") as file:
        for case in range(arguments.cases):
            records = [random_record(draw) for _ in range(draw.randint(1, 4))]
            text = fasta_of(records)
            file.seek(0)
            file.truncate()
            file.write(text)
            file.flush()
            mode = draw.randrange(3)
            drawn, switches = random_settings(draw)
            options = program_options(drawn, switches)
            program = subprocess.run(
                [arguments.program, "-M", MODES[mode], *options, file.name], capture_output=True,
                text=True, check=False)
            library = subprocess.run(
                [arguments.report_body, str(mode), *(f"{n}={v}" for n, v in drawn.items()),
                 *(f"{n}=on" for n in switches)],
                input=text, capture_output=True, text=True, check=False)
            if program.returncode == 0:
                expected, found = body_of(program.stdout), [l for l in library.stdout.splitlines() if l]
                is_equal = expected == found and library.stderr == "" and library.returncode == 0
                counts["repeats"] += sum(line.startswith("Missense") for line in found)
                counts[MODES[mode]] += 1
            else:
                expected, found = program.stderr, library.stderr.strip()
                is_equal = library.returncode == 1 and found != "" and f"{found}\n" in expected
                counts["refusals"] += 1
            if not is_equal:
                sys.exit(f"case {case} of seed {arguments.seed}: {MODES[mode]} {' '.join(options)}\n"
                         f"{text}\nprogram ({program.returncode}):\n{expected}\n\nlibrary:\n{found}")
    print(", ".join(f"{count} {name}" for name, count in counts.items()))
    if min(counts.values()) == 0:
        sys.exit("the cases leave something out")


main()
