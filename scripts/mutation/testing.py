"""Builds the copy of the tree that is mutated, and runs the tests against one mutant of it."""

import json
import os
import pathlib
import platform
import re
import resource
import shutil
import signal
import subprocess
import time

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
MEMORY_LIMIT = 10 << 30  # bytes that a mutant may reserve
# One kind of vector instructions instead of five, to build faster.
VECTOR_FLAGS = (["-march=haswell", "-ffp-contract=off", "-DHWY_COMPILE_ONLY_STATIC"]
                if platform.machine() == "x86_64" else [])
PROPERTY = {"RC_PARAMS": "seed=20261121 max_success=200"}

# What can see a mutant, the quickest first: program, arguments, environment.
KERNEL = ("unit/search/kernel/quorix_kernel_test", [], {})
SEARCH = ("unit/search/quorix_search_test", [], {})
SEQUENCE = ("unit/sequence/quorix_sequence_test", [], {})
REPORT = ("unit/report/quorix_report_test", [], {})
DRIVER = ("unit/driver/quorix_driver_test", [], {})
SETTINGS = ("unit/settings/quorix_settings_test", [], {})
RANDOM = ("differential/quorix_random_test", ["--cases=6000", "--seed=1"], {})
FILTER = ("differential/quorix_seed_filter_test", ["--cases=600", "--seed=1"], {})
READER = ("differential/quorix_reader_test", [], {})
LOOK_AHEAD = ("differential/quorix_look_ahead_test", [], {})
GROWTH = ("differential/quorix_long_growth_test", ["--cases=250", "--seed=1"], {})
OLDER = ("differential/quorix_older_searches_test", [], {})
EXHAUSTIVE = ("differential/quorix_exhaustive_test", [], {})
LAWS = ("property/quorix_property_test", [], PROPERTY)
TESTS = {
    "src/search/kernel": [KERNEL, SEARCH, FILTER, RANDOM],
    "src/search": [SEARCH, LOOK_AHEAD, RANDOM, FILTER, KERNEL, GROWTH, OLDER],
    "src/sequence": [SEQUENCE, READER, DRIVER, KERNEL, SEARCH],
    "src/report": [REPORT, SEARCH, RANDOM, DRIVER],
    "src/settings": [SETTINGS, DRIVER],
    "src/driver": [DRIVER, SETTINGS],
}
# What is seen from outside of the program alone: the end-to-end cases are run, too.
OUTER_ROOMS = ("src/settings", "src/driver")
# What only those that are left over are shown to.
SLOW_TESTS = [("differential/quorix_random_test", ["--cases=60000", "--seed=2"], {}), LAWS,
              EXHAUSTIVE]


def room_of(file):
    return max((room for room in TESTS if file.startswith(room + "/")), key=len)


def own_tests(file):
    """A filter for the tests that stand beside a file, or None."""
    suites = set()
    for test in (ROOT / "tests").rglob(f"{pathlib.Path(file).stem}*_test.cpp"):
        suites.update(re.findall(r"^(?:TEST|TEST_F)\((\w+),", test.read_text(), re.MULTILINE))
    return ":".join(f"{suite}.*" for suite in sorted(suites)) or None


class Tree:
    """The copy, its build folder and the tests."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder).resolve()
        self.tree, self.build = self.folder / "tree", self.folder / "build"
        self.tree.mkdir(parents=True, exist_ok=True)
        for name in ("CMakeLists.txt", "cmake", "src", "tests"):
            for source in [ROOT / name, *(ROOT / name).rglob("*")]:
                copy = self.tree / source.relative_to(ROOT)
                if source.is_dir():
                    copy.mkdir(exist_ok=True)
                else:
                    self._copy(source, copy)
        switch = self.folder / "mutant_switch.h"
        self._copy(HERE / "mutant_switch.h", switch)
        flags = f"-O1 -w -include {switch} {' '.join(VECTOR_FLAGS)}"
        if not (self.build / "CMakeCache.txt").exists():
            generator = ["-G", "Ninja"] if shutil.which("ninja") else []
            subprocess.run(
                ["cmake", *generator, "-S", self.tree, "-B", self.build, "-DQUORIX_BUILD_TESTS=ON",
                 "-DCMAKE_BUILD_TYPE=Mutation", f"-DCMAKE_CXX_FLAGS={flags}"],
                check=True, stdout=subprocess.DEVNULL)
        self.limits = {}  # CPU seconds a test may take, by test
        self.own_limits = {}  # the same for the tests of a file alone
        self.objects = {}

    @staticmethod
    def _copy(source, copy):
        if not copy.exists() or copy.read_bytes() != source.read_bytes():
            shutil.copy(source, copy)

    def write(self, file, text):
        """True if the file was another one before."""
        path = self.tree / file
        if path.read_text() == text:
            return False
        path.write_text(text)
        return True

    def restore(self, file):
        self.write(file, (ROOT / file).read_text())

    def make(self, *targets):
        """The output of a build that failed, or None."""
        command = ["cmake", "--build", self.build, "-j1", "--target", *targets, "--"]
        command += ["-k0"] if (self.build / "build.ninja").exists() else ["-k"]
        done = subprocess.run(command, capture_output=True, text=True, errors="replace")
        return None if done.returncode == 0 else done.stdout + done.stderr

    def run(self, command, number, environment, limit):
        """Status (None for one that took too long) and CPU seconds of a command."""
        def set_limits():
            os.setsid()
            resource.setrlimit(resource.RLIMIT_CPU, (limit, limit + 5))
            resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        process = subprocess.Popen(
            command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL, preexec_fn=set_limits, cwd=self.folder,
            env={**os.environ, **environment, "QUORIX_MUTANT": str(number),
                 "GTEST_FAIL_FAST": "1"})
        try:
            status = process.wait(timeout=30 * limit)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()
            status = None
        if status == -signal.SIGXCPU:
            status = None
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        return status, after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime

    def run_test(self, test, number, own=None):
        program, arguments, environment = test
        command = [self.build / "tests" / program, *arguments]
        limits, key = self.limits, (program, *arguments)
        if own is not None:
            command.append(f"--gtest_filter={own}")
            limits, key = self.own_limits, (program, own)
        if number > 0 and key not in limits:
            self.run_test(test, 0, own)
        limit = limits.get(key, 900 if number == 0 else 60)
        status, seconds = self.run(command, number, environment, limit)
        if number == 0:
            if status != 0:
                raise RuntimeError(f"{program} fails without a mutant")
            limits[key] = int(4 * seconds) + 3
        return status

    def run_cases(self, number):
        """The end-to-end cases, up to the first that fails: its name or None."""
        for case in sorted((ROOT / "tests/cli/cases").iterdir()):
            if case.name.startswith("memory_that_runs_out"):
                continue  # they limit the memory of a program of another size
            status, _ = self.run([ROOT / "tests/cli/run_case.sh", case, self.build / "quorix"],
                                 number, {}, 20)
            if status != 0:
                return case.name
        return None

    def verdict(self, file, number, is_built=True, is_slow=False):
        """What became of a mutant, and by which test."""
        tests = TESTS[room_of(file)] + (SLOW_TESTS if is_slow else [])
        own = own_tests(file)
        for i, test in enumerate(tests):
            target = pathlib.Path(test[0]).name
            if not is_built and self.make(target) is not None:
                return "not compiling", ""
            filters = [own, None] if i == 0 and own else [None]
            for one in filters:
                status = self.run_test(test, number, one)
                if status != 0:
                    return ("killed" if status is not None else "timeout"), target
        if is_slow or room_of(file) in OUTER_ROOMS:
            if not is_built and self.make("quorix") is not None:
                return "not compiling", ""
            case = self.run_cases(number)
            if case:
                return "killed", f"cli.{case}"
        return "survived", ""

    def compile(self, file, mutated, options):
        """The object files of all that see `file`, compiled by themselves, or None."""
        plain = self.folder / "plain"
        shutil.copytree(ROOT / "src", plain / "src", dirs_exist_ok=True)
        (plain / file).write_text(mutated)
        objects = []
        for user in [file] if file.endswith(".cpp") else self.users_of(file):
            done = subprocess.run(["c++", "-std=c++20", "-w", "-Isrc", *options, user], cwd=plain,
                                  stderr=subprocess.DEVNULL)
            if done.returncode != 0:
                return None
            objects.append((plain / "it.o").read_bytes() if "-c" in options else user)
        return objects

    def compiles(self, file, mutated):
        return self.compile(file, mutated, ["-fsyntax-only", *VECTOR_FLAGS]) is not None

    def is_same_code(self, file, mutated):
        """True if no object file of the program, built as a release is, differs with the mutant."""
        release = ["-O2", "-c", "-o", "it.o"]
        if file not in self.objects:
            self.objects[file] = self.compile(file, (ROOT / file).read_text(), release)
        return self.compile(file, mutated, release) == self.objects[file]

    def users_of(self, header):
        """The source files that include a header, at any depth."""
        name = header.removeprefix("src/")
        users = []
        for source in sorted((ROOT / "src").rglob("*.cpp")):
            listed = subprocess.run(["c++", "-std=c++20", "-Isrc", "-MM", source], cwd=ROOT,
                                    capture_output=True, text=True, check=True).stdout
            if f"src/{name}" in listed:
                users.append(str(source.relative_to(ROOT)))
        return users


def append(path, entry):
    with open(path, "a", encoding="utf-8") as results:
        results.write(json.dumps({**entry, "time": time.strftime("%H:%M:%S")}) + "\n")
