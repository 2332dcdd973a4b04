#!/usr/bin/env python3
"""Runs the tests against mutants of the search, of the reader and of the report.

    scripts/setup.sh mutate
    scripts/mutation/run.py --count=300 --seed=fresh --folders=src/search
    scripts/mutation/run.py --count=500 --seed=1 [--folder=build-mutation] [--draw-only]
    scripts/mutation/run.py --each-file --seed=1    changed constants in each file of src

A mutant is the program with one small change: another operator, comparison or constant, a condition
turned round, a statement left out. Tests that pass with it have not seen the change. Mutants are
drawn at random from all places of the sources; the same seed draws the same ones of the same
sources, and `fresh` stands for one that is drawn and printed. The tests of the room run first, and a
mutant counts as killed at the first one that fails, does not end, or takes several times as long as
it does without the mutant. With --each-file a file whose mutant survives gets another one, up to
--tries of them.

Most mutants are built all at once: each function has a body for each of its mutants, and
QUORIX_MUTANT in the environment tells which one it is to take. What stands outside of functions is
built by itself, while the others are run. Results are written as they come to results.jsonl in the
folder, a finished mutant of the same draw is not run again, and table.md shows them all. A compiler
cache is used if CMAKE_CXX_COMPILER_LAUNCHER names one. It runs on --jobs processors, below
everything else.
"""

import argparse
import collections
import concurrent.futures
import hashlib
import json
import os
import pathlib
import random
import re
import secrets
import sys
import threading

import mutants
import testing

FOLDERS = ["src/search", "src/sequence", "src/report"]
ROUND_STEP = 1000  # more than there are files


def read(file):
    return (testing.ROOT / file).read_text()


def draw(count, seed, folders, stems):
    """Mutants of all files of `folders`, or of those whose names without suffix are among `stems`."""
    chance = random.Random(seed)
    sites = []
    for folder in folders:
        for path in sorted((testing.ROOT / folder).rglob("*")):
            if path.suffix in (".cpp", ".h") and (not stems or path.stem in stems):
                file = str(path.relative_to(testing.ROOT))
                sites += mutants.all_sites(file, path.read_text())
    drawn = [site(chance) for site in chance.sample(sites, min(count, len(sites)))]
    for number, mutant in enumerate(drawn, start=1):
        mutant.number = number
    print(f"{len(drawn)} mutants of {len(sites)} places, seed {seed}", flush=True)
    return drawn


def draw_of_each_file(seed, tries):
    """Mutants of each file of src, at most `tries`, in the order in which they are to be tried:
    other constants first, then other letters of texts, then any other changes. Headers of mere
    declarations have none. The number of a mutant is ROUND_STEP * its try + that of its file."""
    chance = random.Random(seed)
    drawn = []
    files = [path for path in sorted((testing.ROOT / "src").rglob("*"))
             if path.suffix in (".cpp", ".h")]
    for number, path in enumerate(files, start=1):
        file = str(path.relative_to(testing.ROOT))
        made = [site(chance) for site in mutants.all_sites(file, path.read_text(), has_texts=True)]
        chance.shuffle(made)
        made.sort(key=lambda mutant: {"constant": 0, "text": 1}.get(mutant.kind, 2))
        if not made:
            print(f"{file}: nothing to change")
        for round_number, mutant in enumerate(made[:tries]):
            mutant.number = ROUND_STEP * round_number + number
            drawn.append(mutant)
    print(f"{len({mutant.file for mutant in drawn})} files, seed {seed}", flush=True)
    return drawn


def what_changes(mutant):
    """The lines before and after, on one line each."""
    source = read(mutant.file)
    start = source.rfind("\n", 0, mutant.start) + 1
    end = source.find("\n", mutant.end)
    def on_one_line(text):
        return " ".join(text.split())
    return (on_one_line(source[start:end]),
            on_one_line(source[start:mutant.start] + mutant.text + source[mutant.end:end]))


def entry_of(mutant, status, by):
    before, after = what_changes(mutant)
    return {"number": mutant.number, "file": mutant.file, "line": mutant.line,
            "kind": mutant.kind, "status": status, "by": by, "before": before, "after": after}


def suspects(output, owners):
    """The mutants that the compiler speaks of where it tells errors."""
    places = re.findall(r"tree/(src/[\w/.]+):(\d+):", output)
    return {owners[file][int(line) - 1] for file, line in places
            if file in owners and int(line) <= len(owners[file])} - {0}


class Run:
    def __init__(self, options, drawn):
        self.tree = testing.Tree(options.folder)
        self.is_again, self.is_slow = options.again, options.slow
        self.jobs = options.jobs
        self.lock = threading.Lock()
        self.done = {}
        self.results = self.tree.folder / "results.jsonl"
        of_draw = {"draw": hashlib.sha256(repr(
            [(m.number, m.file, *what_changes(m)) for m in drawn]).encode()).hexdigest()[:16]}
        lines = self.results.read_text().splitlines() if self.results.exists() else []
        if lines and json.loads(lines[0]) == of_draw:
            for entry in map(json.loads, lines[1:]):
                self.done[entry["number"]] = entry
        else:
            self.results.write_text(json.dumps(of_draw) + "\n")

    def is_due(self, mutant):
        if self.is_again:
            return mutant.number in self.done and self.done[mutant.number]["status"] == "survived"
        return mutant.number not in self.done

    def tell(self, mutant, status, by=""):
        entry = entry_of(mutant, status, by)
        with self.lock:
            self.done[mutant.number] = entry
            testing.append(self.results, entry)
            print(f"{mutant.number} {mutant.file}:{mutant.line} {status} {by}", flush=True)

    def finish(self, mutant, programs=None):
        """Runs a mutant of those in `programs`, or else the one that the tree is."""
        is_built = programs is not None
        status, by = self.tree.verdict(mutant.file, mutant.number if is_built else -1, is_built,
                                       self.is_slow, programs)
        if status == "survived" and not self.is_again and self.tree.is_same_code(
                mutant.file, mutant.apply(read(mutant.file))):
            status = "equivalent"
        self.tell(mutant, status, by)

    def build_switched(self, chosen, targets):
        """Builds the mutants that are chosen at run time; those that do not compile are reported."""
        left = [mutant for mutant in chosen if mutant.number not in self.done
                or self.done[mutant.number]["status"] != "not compiling"]
        while True:
            owners = {}
            by_file = collections.defaultdict(list)
            for mutant in left:
                by_file[mutant.file].append(mutant)
            for path in sorted((testing.ROOT / "src").rglob("*")):
                file = str(path.relative_to(testing.ROOT))
                if path.is_file() and file not in by_file:
                    self.tree.restore(file)
            for file, of_file in by_file.items():
                text, owners[file] = mutants.with_switches(read(file), of_file)
                self.tree.write(file, text)
            output = self.tree.make(*targets)
            if output is None:
                return left
            suspected = suspects(output, owners)
            wrong = [mutant for mutant in left if mutant.number in suspected
                     and not self.tree.compiles(mutant.file, mutant.apply(read(mutant.file)))]
            if not wrong:
                sys.exit(output[-6000:])
            for mutant in wrong:
                self.tell(mutant, "not compiling")
                left.remove(mutant)

    def run_group(self, group):
        """Mutants of source files, or of headers. Those that are chosen at run time are run by all
        jobs but one, which builds and runs the others one by one, and then helps."""
        todo = [mutant for mutant in group if self.is_due(mutant)]
        if not todo:
            return
        programs = testing.programs_for({mutant.file for mutant in group}, self.is_slow)
        # The command line is built as well: some are seen by end-to-end cases alone.
        targets = [pathlib.Path(program).name for program in sorted(programs)] + ["quorix"]
        switched = [mutant for mutant in
                    self.build_switched([m for m in group if m.body], targets)
                    if self.is_due(mutant)]
        programs = self.tree.set_aside(programs)
        for_all = iter(switched)

        def take_switched():
            while True:
                with self.lock:
                    mutant = next(for_all, None)
                if mutant is None:
                    return
                self.finish(mutant, programs)

        def take_single():
            for mutant in (m for m in todo if not m.body):
                self.finish_single(mutant, [m for m in group if m.body and m.file == mutant.file])
            take_switched()

        with concurrent.futures.ThreadPoolExecutor(self.jobs) as pool:
            for taken in [pool.submit(job) for job in
                          [take_single, *[take_switched] * (self.jobs - 1)]]:
                taken.result()

    def finish_single(self, mutant, switched):
        """Builds and runs a mutant that is made once for all, beside those of its file."""
        switched = [m for m in switched if self.done.get(m.number, {}).get("status")
                    != "not compiling"]
        source = read(mutant.file)
        self.tree.write(mutant.file, mutants.with_switches(source, switched, mutant)[0])
        self.finish(mutant)
        self.tree.write(mutant.file, mutants.with_switches(source, switched)[0])

    def red_files(self):
        """The files of which a change turned a test red."""
        return {entry["file"] for entry in self.done.values()
                if entry["status"] in ("killed", "timeout")}

    def tell_files(self, drawn):
        files, red = {mutant.file for mutant in drawn}, self.red_files()
        print(f"{len(files & red)} of {len(files)} files have a change that turned a test red; "
              "none of these has:", *sorted(files - red), sep="\n    ")

    def table(self, seed):
        """The results in Markdown."""
        counts = collections.defaultdict(collections.Counter)
        for entry in self.done.values():
            for room in (testing.room_of(entry["file"]), "all"):
                counts[room][entry["status"]] += 1
        lines = [f"Seed {seed}.", "",
                 "| Folder | Drawn | Not compiling | Same code | Run | Killed | of them by time "
                 "| Survived | Killed of those run |", "|---|---|---|---|---|---|---|---|---|"]
        for room in [*sorted(testing.TESTS), "all"]:
            of_room = counts[room]
            killed = of_room["killed"] + of_room["timeout"]
            run = killed + of_room["survived"]
            lines.append(
                f"| `{room}` | {of_room.total()} | {of_room['not compiling']} "
                f"| {of_room['equivalent']} | {run} | {killed} | {of_room['timeout']} "
                f"| {of_room['survived']} | {100 * killed / max(run, 1):.1f} % |")
        for status, title in (("survived", "Survivors"), ("equivalent", "The same code")):
            lines += ["", f"{title}:", ""]
            for entry in sorted(self.done.values(), key=lambda e: (e["file"], e["line"])):
                if entry["status"] == status:
                    lines += [f"- {entry['number']}. `{entry['file']}:{entry['line']}`",
                              f"  - before: `{entry['before']}`", f"  - after: `{entry['after']}`"]
        return "\n".join(lines) + "\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--count", type=int, default=480, help="mutants to draw")
    parser.add_argument("--seed", default="1", help="a number, or `fresh` to have it drawn")
    parser.add_argument("--folders", type=lambda names: names.split(","), default=FOLDERS,
                        help="draw of these alone, such as src/search")
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 1)
    parser.add_argument("--nice", type=int, default=10, help="priority: how much is left to everything else")
    parser.add_argument("--files", type=lambda names: names.split(","), default=[],
                        help="draw of these alone, such as edit_cache,path_cache")
    parser.add_argument("--each-file", action="store_true",
                        help="change each file of src until a test fails, constants first")
    parser.add_argument("--tries", type=int, default=6, help="changes of each file at most")
    parser.add_argument("--folder", type=pathlib.Path, help="build-mutation or build-each-file")
    parser.add_argument("--only", choices=[".cpp", ".h"], help="run those in such files alone")
    parser.add_argument("--again", action="store_true", help="run the survivors of an earlier run")
    parser.add_argument("--slow", action="store_true", help="show what is left to slow tests, too")
    parser.add_argument("--numbers", help="run these mutants alone, such as 3,17")
    parser.add_argument("--draw-only", action="store_true", help="print what is drawn, and end")
    options = parser.parse_args()
    options.folder = options.folder or testing.ROOT / (
        "build-each-file" if options.each_file else "build-mutation")
    options.seed = secrets.randbelow(1_000_000) if options.seed == "fresh" else int(options.seed)
    drawn = (draw_of_each_file(options.seed, options.tries) if options.each_file
             else draw(options.count, options.seed, options.folders, options.files))
    if options.draw_only:
        for mutant in drawn:
            print(f"{mutant.number} {mutant.file}:{mutant.line} {mutant.kind}",
                  *what_changes(mutant), sep="\n    ")
        return
    all_drawn = drawn
    if options.numbers:
        chosen = {int(number) for number in options.numbers.split(",")}
        drawn = [mutant for mutant in drawn if mutant.number in chosen]
    os.nice(options.nice)
    run = Run(options, all_drawn)
    rounds = sorted({mutant.number // ROUND_STEP for mutant in drawn}) if options.each_file else [0]
    for round_number in rounds:
        red = run.red_files() if options.each_file else set()
        due = [mutant for mutant in drawn if not options.each_file or (
            mutant.number // ROUND_STEP == round_number
            and (mutant.file not in red or mutant.number in run.done))]
        for suffix in [options.only] if options.only else [".cpp", ".h"]:
            run.run_group([mutant for mutant in due if mutant.file.endswith(suffix)])
            (run.tree.folder / "table.md").write_text(run.table(options.seed))
    print(run.table(options.seed))
    if options.each_file:
        run.tell_files(drawn)


if __name__ == "__main__":
    main()
