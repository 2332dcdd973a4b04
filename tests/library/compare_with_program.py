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

MODES = ["exact", "extendExact", "imperfect"]
CHOICES = {
    "minUnitLen": ["0", "1", "2", "5"], "maxUnitLen": ["1", "4", "6", "12", "30"],
    "minScore": ["-5", "0", "2", "4", "8"], "minScore_a": ["-4", "2"],
    "minScore_b": ["0", "0.1", "0.5", "1.5"], "minLength": ["0", "2", "12"],
    "minLength_a": ["-3", "4"], "minLength_b": ["0.1", "1", "2.5"],
    "mismatchScore": ["-2", "-3", "-8", "-1"], "indelScore": ["-2", "-4", "-9", "-1"],
    "recursion": ["1", "3", "4", "0"], "maximum_score_reduction": ["0", "5", "20", "2147483647"],
    "succN": ["-1", "0", "1", "7"], "NPerfectionMode": ["0", "1", "2"],
    "reportUnit": ["0", "1", "2"],
}
SWITCHES = ["NsAsMissense", "dontRemoveMostlyOverlapping"]


def random_letters(draw, length):
    return "".join(draw.choices("ACGTN", [5, 5, 5, 5, draw.choice([0, 0, 1])], k=length))


def random_array(draw):
    unit = random_letters(draw, draw.randint(1, draw.choice([3, 8, 25])))
    array = list(unit * draw.randint(2, 30))[:400]
    for _ in range(draw.choice([0, 0, 1, 3, len(array) // 8])):
        place = draw.randrange(len(array))
        array[place] = draw.choice(["", "A", "C", "G", "T", "N", "AC", "NNN"])
    return "".join(array)


def random_record(draw):
    """Up to some thousand letters in either case, with U and ambiguity codes."""
    pieces = [random_array(draw) if draw.random() < 0.5 else random_letters(draw, draw.randint(0, 60))
              for _ in range(draw.choice([0, 1, 5, 12]))]
    bases = "".join(pieces)
    if draw.random() < 0.2:
        bases = bases.replace("T", "u").replace("N", "R")
    return bases.lower() if draw.random() < 0.3 else bases


def random_settings(draw):
    drawn = {name: draw.choice(values) for name, values in CHOICES.items() if draw.random() < 0.3}
    # A refusal is a case as well, but not every second one.
    for name, refused in [("mismatchScore", "-1"), ("indelScore", "-1"), ("recursion", "0")]:
        if drawn.get(name) == refused and draw.random() < 0.8:
            del drawn[name]
    switches = [name for name in SWITCHES if draw.random() < 0.25]
    return drawn, switches


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
            text = "".join(f">record {i} of case {case}\n{bases}\n" for i, bases in enumerate(records))
            file.seek(0)
            file.truncate()
            file.write(text)
            file.flush()
            mode = draw.randrange(3)
            drawn, switches = random_settings(draw)
            options = [word for name, value in drawn.items() for word in (f"--{name}", value)]
            options += [f"--{name}" for name in switches]
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
