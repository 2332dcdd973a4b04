"""Builds the copy of the tree that is mutated, and runs the tests against one mutant of it."""

import json
import os
import pathlib
import platform
import re
import shlex
import shutil
import signal
import subprocess
import threading
import time

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
MEMORY_LIMIT = 10 << 20  # KiB that a mutant may reserve
# A mutant that takes so many times the CPU time of the clean program, and so many seconds more, is
# killed by time.
SLOWER, SLACK = 3, 0.5
LIMITED = 'ulimit -S -t "$1"; ulimit -v "$2"; ulimit -c 0; shift 2; exec "$@"'
# One kind of vector instructions instead of five, to build faster: AVX2, of which cryptography is
# held to be a part.
VECTOR_FLAGS = (["-march=haswell", "-maes", "-mpclmul", "-ffp-contract=off",
                 "-DHWY_COMPILE_ONLY_STATIC"]
                if platform.machine() == "x86_64" else [])
# What src/library is compiled with besides.
LIBRARY_FLAGS = [f"-I{ROOT / 'include'}", '-DQUORIX_VERSION=""']
PROPERTY = {"RC_PARAMS": "seed=20261121 max_success=200"}

# What can see a mutant, the quickest first: program, arguments, environment.
FILTER = ("unit/search/quorix_filter_test", [], {})
SEARCH = ("unit/search/quorix_search_test", [], {})
SEQUENCE = ("unit/sequence/quorix_sequence_test", [], {})
REPORT = ("unit/report/quorix_report_test", [], {})
DRIVER = ("unit/driver/quorix_driver_test", [], {})
LIBRARY = ("library/quorix_library_test", [], {})
CONSOLE = ("unit/console/quorix_console_test", [], {})
SETTINGS = ("unit/settings/quorix_settings_test", [], {})
RANDOM = ("differential/quorix_random_test", ["--cases=6000", "--seed=1"], {})
LEFT_SEEDS = ("differential/quorix_seed_filter_test", ["--cases=600", "--seed=1"], {})
READER = ("differential/quorix_reader_test", [], {})
LOOK_AHEAD = ("differential/quorix_look_ahead_test", [], {})
LONG_EXTENSION = ("differential/quorix_long_extension_test", ["--cases=250", "--seed=1"], {})
OLDER = ("differential/quorix_older_searches_test", [], {})
EXHAUSTIVE = ("differential/quorix_exhaustive_test", [], {})
LAWS = ("property/quorix_property_test", [], PROPERTY)
TESTS = {
    "src/search/bits": [FILTER, SEARCH, LEFT_SEEDS, RANDOM],
    "src/search/filter": [FILTER, SEARCH, LEFT_SEEDS, RANDOM],
    "src/search": [SEARCH, LOOK_AHEAD, RANDOM, LEFT_SEEDS, FILTER, LONG_EXTENSION, OLDER],
    "src/sequence": [SEQUENCE, READER, DRIVER, FILTER, SEARCH],
    "src/report": [REPORT, SEARCH, RANDOM, DRIVER],
    "src/console": [CONSOLE, DRIVER],
    "src/settings": [SETTINGS, DRIVER],
    "src/driver": [DRIVER],
    "src/library": [LIBRARY],
}
# What is seen from outside of the program alone: the end-to-end cases are run, too.
OUTER_ROOMS = ("src/settings", "src/console", "src/driver")
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


def programs_for(files, is_slow):
    """The test programs that can see mutants of `files`."""
    tests = [test for file in files for test in TESTS[room_of(file)]]
    return {test[0] for test in tests + (SLOW_TESTS if is_slow else [])}


class Tree:
    """The copy, its build folder and the tests."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder).resolve()
        self.tree, self.build = self.folder / "tree", self.folder / "build"
        self.tree.mkdir(parents=True, exist_ok=True)
        for name in ("CMakeLists.txt", "cmake", "docs", "include", "src", "tests"):
            for source in [ROOT / name, *(ROOT / name).rglob("*")]:
                copy = self.tree / source.relative_to(ROOT)
                if source.is_dir():
                    copy.mkdir(exist_ok=True)
                else:
                    self._copy(source, copy)
        switch = self.folder / "mutant_switch.h"
        self._copy(HERE / "mutant_switch.h", switch)
        flags = f"-O1 -w -include {shlex.quote(str(switch))} {' '.join(VECTOR_FLAGS)}"
        if not (self.build / "CMakeCache.txt").exists():
            generator = ["-G", "Ninja"] if shutil.which("ninja") else []
            subprocess.run(
                ["cmake", *generator, "-S", self.tree, "-B", self.build, "-DQUORIX_BUILD_TESTS=ON",
                 "-DQUORIX_BUILD_TOOLS=OFF", "-DQUORIX_BUILD_LIBRARY=ON",
                 "-DCMAKE_BUILD_TYPE=Mutation", f"-DCMAKE_CXX_FLAGS={flags}"],
                check=True, stdout=subprocess.DEVNULL)
        self.aside = self.folder / "switched"
        self.limits = {}  # CPU seconds that a test may take, by its command
        self.objects = {}  # of the clean release, by source file
        self.users = {}  # source files, by header
        self.lock = threading.Lock()

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
        command = ["cmake", "--build", self.build, f"-j{os.cpu_count() or 1}", "--target", *targets,
                   "--"]
        command += ["-k0"] if (self.build / "build.ninja").exists() else ["-k"]
        done = subprocess.run(command, capture_output=True, text=True, errors="replace")
        return None if done.returncode == 0 else done.stdout + done.stderr

    def set_aside(self, programs):
        """Copies test programs, so that they can be run while others are built. Returns the folder
        of the copies."""
        aside = self.aside
        shutil.rmtree(aside, ignore_errors=True)
        for program in programs:
            (aside / program).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(self.build / "tests" / program, aside / program)
        shutil.copy(self.build / "quorix", aside / "quorix")
        return aside

    def run(self, command, number, environment, limit):
        """Status (None for one that took too long) and CPU seconds of a command."""
        process = subprocess.Popen(
            ["sh", "-c", LIMITED, "sh", str(int(limit) + 1), str(MEMORY_LIMIT), *command],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            start_new_session=True, cwd=self.folder,
            env={**os.environ, **environment, "QUORIX_MUTANT": str(number),
                 "GTEST_FAIL_FAST": "1"})
        is_stuck = threading.Event()

        def end_run():
            is_stuck.set()
            os.killpg(process.pid, signal.SIGKILL)
        timer = threading.Timer(20 * limit + 10, end_run)  # it waits for something
        timer.start()
        _, wait_status, usage = os.wait4(process.pid, 0)
        timer.cancel()
        process.returncode = status = os.waitstatus_to_exitcode(wait_status)
        seconds = usage.ru_utime + usage.ru_stime
        if status == -signal.SIGXCPU or is_stuck.is_set() or (number != 0 and seconds > limit):
            status = None
        return status, seconds

    def limit_of(self, program, arguments, environment):
        """CPU seconds that a test may take: measured the first time, with the programs set aside."""
        key = (program, *arguments)
        with self.lock:
            if key not in self.limits:
                status, seconds = self.run([self.aside / program, *arguments], 0, environment, 900)
                if status != 0:
                    raise RuntimeError(f"{shlex.join(key)} fails without a mutant")
                self.limits[key] = SLOWER * seconds + SLACK
            return self.limits[key]

    def run_test(self, test, number, own=None, programs=None):
        """The exit status of a test with a mutant, None if it takes too long."""
        program, arguments, environment = test
        if own is not None:
            arguments = [*arguments, f"--gtest_filter={own}"]
        return self.run([(programs or self.build / "tests") / program, *arguments], number,
                        environment, self.limit_of(program, arguments, environment))[0]

    def run_cases(self, number, programs):
        """The end-to-end cases, up to the first that fails: its name or None."""
        for case in sorted((ROOT / "tests/cli/cases").iterdir()):
            if case.name.startswith("memory_that_runs_out"):
                continue  # they limit the memory of a program of another size
            status, _ = self.run([ROOT / "tests/cli/run_case.sh", case, programs / "quorix"],
                                 number, {}, 20)
            if status != 0:
                return case.name
        return None

    def verdict(self, file, number, is_built=True, is_slow=False, programs=None):
        """What became of a mutant, and by which test. `programs` is where the tests are, if not in
        the build folder; a mutant that is not built yet has no number."""
        tests = TESTS[room_of(file)] + (SLOW_TESTS if is_slow else [])
        own = own_tests(file)
        for i, test in enumerate(tests):
            target = pathlib.Path(test[0]).name
            if not is_built and self.make(target) is not None:
                return "not compiling", ""
            filters = [own, None] if i == 0 and own else [None]
            for one in filters:
                status = self.run_test(test, number, one, programs)
                if status != 0:
                    return ("killed" if status is not None else "timeout"), target
        if is_slow or room_of(file) in OUTER_ROOMS:
            if not is_built and self.make("quorix") is not None:
                return "not compiling", ""
            case = self.run_cases(number, programs or self.build)
            if case:
                return "killed", f"cli.{case}"
        return "survived", ""

    def compile(self, plain, user, options):
        """The object file of a source file of the tree in `plain`, or None."""
        done = subprocess.run(["c++", "-std=c++20", "-w", "-Isrc", *LIBRARY_FLAGS, *options, user], cwd=plain,
                              stderr=subprocess.DEVNULL)
        if done.returncode != 0:
            return None
        return (plain / "it.o").read_bytes() if "-c" in options else b""

    def plain_tree(self):
        """A copy of the sources, for this thread."""
        plain = self.folder / f"plain-{threading.get_ident()}"
        shutil.rmtree(plain, ignore_errors=True)
        shutil.copytree(ROOT / "src", plain / "src")
        return plain

    def compiles(self, file, mutated):
        plain = self.plain_tree()
        (plain / file).write_text(mutated)
        options = ["-fsyntax-only", *VECTOR_FLAGS]
        is_compiled = all(self.compile(plain, user, options) is not None
                          for user in self.users_of(file))
        shutil.rmtree(plain)
        return is_compiled

    def is_same_code(self, file, mutated):
        """True if no object file of the program, built as a release is, differs with the mutant."""
        release = ["-O2", "-c", "-o", "it.o"]
        plain = self.plain_tree()
        is_same = True
        for user in self.users_of(file):
            if user not in self.objects:
                shutil.copy(ROOT / file, plain / file)
                self.objects[user] = self.compile(plain, user, release)
            (plain / file).write_text(mutated)
            if self.compile(plain, user, release) != self.objects[user]:
                is_same = False
                break
        shutil.rmtree(plain)
        return is_same

    def users_of(self, file):
        """The source files that a file is part of: itself, or those that include it, at any depth."""
        if file.endswith(".cpp"):
            return [file]
        if file not in self.users:
            self.users[file] = []
            for source in sorted((ROOT / "src").rglob("*.cpp")):
                listed = subprocess.run(["c++", "-std=c++20", "-Isrc", *LIBRARY_FLAGS, "-MM", source], cwd=ROOT,
                                        capture_output=True, text=True, check=True).stdout
                if file in listed.split():
                    self.users[file].append(str(source.relative_to(ROOT)))
        return self.users[file]


def append(path, entry):
    with open(path, "a", encoding="utf-8") as results:
        results.write(json.dumps({**entry, "time": time.strftime("%H:%M:%S")}) + "\n")
