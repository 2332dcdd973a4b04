#!/usr/bin/env python3
"""Plants holes in the filters of seeds, one after the other, and lets the attack look for each.

    scripts/setup.sh mutate
    scripts/plant_holes.py [--folder=build-holes] [--cases=5000] [--only=WORD]
    scripts/plant_holes.py --check      only sees whether the holes still fit the sources

Prints a Markdown table of the holes of tests/soundness/holes.py with the seconds of processor time,
the tight questions and the case at which each was found. Fails if the attack finds a hole where none
is planted, or misses one.
"""

import argparse
import os
import pathlib
import re
import resource
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests/soundness"))
sys.dont_write_bytecode = True
from holes import HOLES  # noqa: E402  (the folder is known only now)

SEARCH = "src/search"


def misfits():
    """The changes whose text does not stand exactly once in its file."""
    for name, changes in HOLES.items():
        for file, before, _ in changes:
            count = (ROOT / SEARCH / file).read_text().count(before)
            if count != 1:
                yield f"{name}: found {count} times in {file}: {before}"


def copy_if_changed(source, copy):
    """With a new time, so that what a run that was ended left planted is built again."""
    copy = pathlib.Path(copy)
    if not copy.exists() or copy.read_bytes() != pathlib.Path(source).read_bytes():
        shutil.copy(source, copy)


class Tree:
    """A copy of the sources, built without assertions, so that the attack alone can see a hole."""

    def __init__(self, folder):
        self.tree, self.build = folder / "tree", folder / "build"
        for name in ("cmake", "src", "tests"):
            shutil.copytree(ROOT / name, self.tree / name, dirs_exist_ok=True,
                            copy_function=copy_if_changed)
        shutil.copy(ROOT / "CMakeLists.txt", self.tree)
        subprocess.run(["cmake", "-S", self.tree, "-B", self.build, "-DQUORIX_BUILD_TESTS=ON",
                        "-DQUORIX_BUILD_TOOLS=OFF",
                        "-DCMAKE_BUILD_TYPE=Release", "-DCMAKE_CXX_FLAGS_RELEASE=-O2 -DNDEBUG"],
                       check=True, stdout=subprocess.DEVNULL)

    def attack(self, changes, cases):
        """Seconds of processor time and the output of the attack with the changes, and its status."""
        for file, before, after in changes:
            path = self.tree / SEARCH / file
            path.write_text(path.read_text().replace(before, after))
        try:
            subprocess.run(["cmake", "--build", self.build, "--target", "quorix_soundness_test",
                            "--parallel", str(os.cpu_count())],
                           check=True, stdout=subprocess.DEVNULL)
        finally:
            for file, _, _ in changes:
                shutil.copy(ROOT / SEARCH / file, self.tree / SEARCH / file)
        before_run = resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime
        done = subprocess.run([self.build / "tests/soundness/quorix_soundness_test",
                               f"--cases={cases}", "--seed=1"],
                              capture_output=True, text=True, errors="replace", check=False)
        seconds = resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime - before_run
        return seconds, done.stdout, done.returncode


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--folder", default="build-holes")
    parser.add_argument("--cases", type=int, default=5000)
    parser.add_argument("--only", default="", help="holes whose name holds this word")
    parser.add_argument("--check", action="store_true")
    options = parser.parse_args()

    faults = list(misfits())
    if faults or options.check:
        print("\n".join(faults) or f"{len(HOLES)} holes fit the sources")
        return 1 if faults else 0

    tree = Tree(pathlib.Path(options.folder).resolve())
    seconds, output, status = tree.attack([], 200)
    if status != 0:
        print(output)
        print("The attack finds a hole where none is planted.")
        return 1
    print(f"Without a hole: 200 cases in {seconds:.1f} seconds, nothing found.\n")
    print("| hole | found | seconds | case | tight questions | by |")
    print("|---|---|---:|---:|---:|---|", flush=True)
    missed = 0
    for name, changes in HOLES.items():
        if options.only not in name:
            continue
        seconds, output, status = tree.attack(changes, options.cases)
        fault = re.search(r"case (\d+) after (\d+) tight questions: ([^(]+) \(", output)
        missed += status == 0
        case, questions, finder = fault.groups() if fault else ("-", "-", "-")
        print(f"| {name} | {'yes' if status else 'NO'} | {seconds:.1f} | {case} | {questions} "
              f"| {finder} |", flush=True)
    print(f"\n{missed} holes were missed.")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
