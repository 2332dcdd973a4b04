"""Runs the workflow on generated genomes: workflow_test.py PROJECT_FOLDER QUORIX QUORIX_TOOLS [TEST]...

What Snakemake makes of many jobs is compared with the bytes of one run of quorix.
"""

import json
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import unittest.mock

import genomes

PROJECT = pathlib.Path(sys.argv.pop(1)).resolve()
QUORIX = str(pathlib.Path(sys.argv.pop(1)).resolve())
TOOLS = str(pathlib.Path(sys.argv.pop(1)).resolve())
WORKFLOW = PROJECT / "workflow"
PROFILE = WORKFLOW / "profiles/local"


class WorkflowCase(unittest.TestCase):
    """A test in a folder of its own, whose name has blanks."""

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="quorix workflow "))
        self.addCleanup(shutil.rmtree, self.folder)

    def command(self, *words, **settings):
        """Returns the command of a run. Genomes have many small ranges unless the settings say something else."""
        settings = {"quorix_tools": TOOLS, "ranges": 7, "min_range_bases": 1, "threads": 1, **settings}
        (self.folder / "settings.json").write_text(json.dumps(settings))
        return ["snakemake", "--snakefile", str(WORKFLOW / "Snakefile"), "--profile", str(PROFILE), "--nocolor",
                "--cores", "2", "--configfile", "settings.json", *words]

    def run_workflow(self, *words, status=0, **settings):
        """Runs the workflow and returns what it says."""
        done = subprocess.run(self.command(*words, **settings), cwd=self.folder, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
        self.assertEqual(done.returncode, status, done.stdout + self.logs())
        return done.stdout

    def logs(self, name="*"):
        return "".join(log.read_text() for log in sorted(self.folder.glob(f"results/*/logs/{name}.log")))

    def result(self, genome, suffix):
        return self.folder / "results" / genome / f"{genome}{suffix}"

    def expect_one_run(self, path, genome, *options):
        """Expects the report, and with --maskX the masked copy, of one run in the folder of the genome."""
        folder = pathlib.Path(tempfile.mkdtemp(dir=self.folder))
        shutil.copy(path, folder)
        subprocess.run([QUORIX, *options, path.name, f"{genome}.report"], cwd=folder, check=True,
                       stderr=subprocess.DEVNULL)
        self.expect_same(folder / f"{genome}.report", self.result(genome, ".report"))
        if "--maskX" in options:
            self.expect_same(folder / f"{path.name}.masked", self.result(genome, ".masked.fa"))

    def expect_same(self, expected, found):
        self.assertTrue(expected.read_bytes() == found.read_bytes(), f"{found} is not {expected}")

    def searched(self):
        """Returns the first records of the ranges that a stand-in has searched, in this order."""
        return [int(line) for line in (self.folder / "bin/searched").read_text().split()]

    def stand_in(self, script):
        return str(genomes.stand_in(self.folder / "bin/tools", TOOLS, script))

    def left_in_work(self, genome):
        return sorted(file.name for file in (self.folder / "results" / genome / "work").iterdir())

    def ranges(self, genome="genome"):
        rows = (self.folder / f"results/{genome}/work/ranges.tsv").read_text().splitlines()[1:]
        return [[int(value) for value in row.split("\t")] for row in rows]


class BytesTest(WorkflowCase):
    def test_fifty_records_have_the_bytes_of_one_run_and_all_results(self):
        path = genomes.write(self.folder / "the genome.fa", genomes.records(1, 50))
        options = ["-U", "20", "-s", "8", "--flanking", "3"]
        settings = {"genomes": str(path), "options": " ".join(options), "masked": True, "page": True,
                    "tracks": ["bed", "bedgraph", "trgt"], "statistics": ["table", "multiqc"],
                    "filters": "--min-copies 4", "bedgraph_window": 50}
        self.assertIn("ranges", self.run_workflow("--dry-run", **settings))
        self.assertFalse((self.folder / "results").exists())

        self.run_workflow(**settings)
        self.expect_one_run(path, "the genome", "--maskX", *options)
        self.assertEqual(len(self.ranges("the genome")), 7)
        report = self.result("the genome", ".report")
        filtered = ["--min-copies", "4", str(report)]
        for suffix, command in ((".bed", ["convert", "--to", "bed"]), (".trgt.bed", ["convert", "--to", "trgt"]),
                                (".bedgraph", ["convert", "--to", "bedgraph", "--window", "50"]),
                                (".stats.txt", ["stats"]), ("_mqc.json", ["stats", "--to", "multiqc"]),
                                (".html", ["html"])):
            with self.subTest(suffix=suffix):
                expected = subprocess.run([TOOLS, *command, *filtered], check=True, stdout=subprocess.PIPE).stdout
                self.assertTrue(self.result("the genome", suffix).read_bytes() == expected)
        self.assertEqual(self.left_in_work("the genome"), ["divided", "ranges.tsv"])

        self.assertIn("Nothing to be done", self.run_workflow(**settings))

    def test_many_genomes_of_any_form_become_results_of_their_names(self):
        folder = self.folder / "all genomes"
        odd = "# comment > no record\n\n  >first\nACACACACAC-ACAC\r\n>\n>same\nNNNN\n>same\nagagagagaggaga\n>empty at the end"
        paths = {
            "plain": genomes.write(folder / "plain.fasta", genomes.records(2, 9)),
            "packed": genomes.write_gzip(folder / "packed.fa.gz", genomes.records(3, 9)),
            "odd": genomes.write(folder / "odd.fna", odd),
            # One record is longer than all others together.
            "large": genomes.write(folder / "large.fa", genomes.records(4, 3, 300) +
                                   genomes.record("large", genomes.random_bases(genomes.random.Random(5), 50000)) +
                                   genomes.records(6, 3, 300)),
            "carriage": genomes.write(folder / "carriage.fa", genomes.records(7, 5).replace("\n", "\r")),
            "blocks": folder / "blocks.fa.gz",
        }
        paths["blocks"].write_bytes(genomes.bgzf(genomes.records(8, 12)))
        (folder / "notes.txt").write_text("is none of them")
        self.run_workflow(genomes=str(folder))
        for name, path in paths.items():
            with self.subTest(genome=name):
                self.expect_one_run(path, name)
        # More ranges would not end earlier.
        self.assertEqual([row[1:3] for row in self.ranges("large")], [[1, 3], [4, 4], [5, 7]])
        self.assertEqual([row[5:7] for row in self.ranges("odd")], [[14, 14], [4, 4], [14, 14]])

    def test_what_is_no_fasta_fails_alone(self):
        self.assertNotEqual(subprocess.run([QUORIX, "/dev/null"], capture_output=True, check=False).returncode, 0)
        texts = {"empty": "", "bare": "ACGT\n", "late": genomes.records(9, 5) + "AC>GT\n"}
        paths = {name: str(genomes.write(self.folder / f"{name}.fa", text)) for name, text in texts.items()}
        good = genomes.write(self.folder / "good.fa", genomes.records(10, 5))
        cut = self.folder / "cut.fa.gz"
        cut.write_bytes(genomes.bgzf(genomes.records(11, 5), with_end_mark=False))
        self.run_workflow("--retries", "0", status=1, genomes={**paths, "good": str(good), "cut": str(cut)})
        self.expect_one_run(good, "good")
        for name, text in (("empty", "no record begins"), ("bare", "byte 1 should be"),
                           ("late", "might not be a valid fasta file"), ("cut", "end mark of BGZF is missing")):
            with self.subTest(genome=name):
                self.assertFalse(self.result(name, ".report").exists())
                self.assertIn(text, "".join(log.read_text() for log in
                                            (self.folder / f"results/{name}/logs").iterdir()))

    def test_an_index_spares_reading_the_genome_twice(self):
        path = genomes.write(self.folder / "genome.fa", genomes.records(12, 30))
        genomes.write_index(path)
        self.run_workflow(genomes=str(path))
        self.assertIn("index of samtools is used", self.logs("ranges"))
        self.expect_one_run(path, "genome")

    def test_an_index_that_does_not_fit_is_not_used(self):
        twice = genomes.records(13, 3)
        paths = {"doubled": genomes.write(self.folder / "doubled.fa", twice + twice),
                 "old": genomes.write(self.folder / "old.fa", genomes.records(14, 6))}
        for path in paths.values():
            genomes.write_index(path)
        os.utime(paths["old"], (time.time() + 9, time.time() + 9))
        self.run_workflow(genomes={name: str(path) for name, path in paths.items()})
        self.assertEqual(self.logs("ranges").count("the text is read"), 2)
        for name, path in paths.items():
            self.expect_one_run(path, name)

    def test_an_index_that_hides_a_record_is_noticed(self):
        # To samtools the lone carriage return is no end of a line, and what follows are bases.
        path = genomes.write(self.folder / "genome.fa", ">a\nACAC\r>b\n>c\nGTGT\n")
        (self.folder / "genome.fa.fai").write_text("a\t6\t3\t6\t8\nc\t4\t14\t4\t5\n")
        self.run_workflow("--retries", "0", status=1, genomes=str(path))
        self.assertIn("2 records were found where 1 were counted", self.logs("search-0001"))
        self.assertFalse(self.result("genome", ".report").exists())


class FailureTest(WorkflowCase):
    def setUp(self):
        super().setUp()
        self.path = genomes.write(self.folder / "genome.fa", genomes.records(20, 50))

    def test_a_killed_run_resumes_with_what_it_has(self):
        program = self.stand_in('if [ ! -e "$here/go" ] && [ "$first" -gt 20 ]; then sleep 600; fi')
        settings = {"genomes": str(self.path), "quorix_tools": program, "masked": True}
        with subprocess.Popen(self.command(**settings), cwd=self.folder, start_new_session=True,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as run:
            try:
                # Two jobs run at a time, and the first ranges are done when two of the later ones wait.
                work = self.folder / "results/genome/work"
                deadline = time.monotonic() + 120
                while time.monotonic() < deadline and not self.waits_in(work):
                    time.sleep(0.05)
                self.assertTrue(self.waits_in(work))
                done = sorted(part.name for part in work.glob("[0-9]*.report"))
            finally:
                os.killpg(run.pid, signal.SIGKILL)
        before = self.searched()

        (self.folder / "bin/go").touch()
        self.assertIn("--unlock", self.run_workflow(status=1, **settings))  # the lock of the killed run
        self.run_workflow("--unlock", **settings)
        self.run_workflow(**settings)
        self.expect_one_run(self.path, "genome", "--maskX")
        firsts = [row[1] for row in self.ranges()]
        finished = [firsts[int(name.split(".")[0]) - 1] for name in done]
        self.assertTrue(finished)
        again = self.searched()[len(before):]
        self.assertEqual(sorted(again + finished), firsts)
        self.assertEqual(self.left_in_work("genome"), ["divided", "ranges.tsv"])

    def waits_in(self, work):
        return len([folder for folder in work.glob(".0*") if any(folder.iterdir())]) == 2 and \
            any(work.glob("[0-9]*.report")) and sum(first > 20 for first in self.searched()) == 2

    def test_a_job_that_is_killed_runs_again(self):
        # The third range: its job dies with the search unfinished; the search then goes on without it.
        program = self.stand_in('if [ ! -e "$here/$first" ] && [ "$first" -gt 15 ]; then touch "$here/$first"; '
                                'kill -KILL $PPID; fi')
        output = self.run_workflow(genomes=str(self.path), quorix_tools=program)
        self.assertIn("Trying to restart job", output)
        self.expect_one_run(self.path, "genome")
        self.assertEqual(self.left_in_work("genome"), ["divided", "ranges.tsv"])

    def test_a_search_that_is_killed_runs_again(self):
        program = self.stand_in('if [ ! -e "$here/$first" ]; then touch "$here/$first"; kill -KILL $$; fi')
        self.run_workflow(genomes=str(self.path), quorix_tools=program, ranges=3)
        self.expect_one_run(self.path, "genome")
        self.assertEqual(len(self.searched()), 6)

    def test_a_job_that_fails_each_time_ends_the_run(self):
        program = self.stand_in('if [ "$first" -gt 15 ]; then echo Out of luck >&2; exit 7; fi')
        output = self.run_workflow(status=1, genomes=str(self.path), quorix_tools=program, ranges=3)
        self.assertIn("search-0003.log", output)
        self.assertIn("Out of luck", self.logs("search-0003"))
        self.assertIn("ended with status 7", self.logs("search-0003"))
        self.assertEqual(len([first for first in self.searched() if first > 30]), 3)
        self.assertFalse(self.result("genome", ".report").exists())

    def test_a_report_without_its_end_gets_no_name(self):
        # Status 0 alone does not say that a report is complete.
        program = self.stand_in('if [ "$first" -gt 15 ]; then "$tools" "$@" && truncate -s -1 "$report"; exit 0; fi')
        self.run_workflow("--retries", "0", status=1, genomes=str(self.path), quorix_tools=program, ranges=2)
        self.assertIn("lacks its closing line", self.logs("search-0002"))
        self.assertFalse((self.folder / "results/genome/work/0002.report").exists())
        self.assertFalse(self.result("genome", ".report").exists())

    def test_a_part_that_was_cut_later_is_not_merged(self):
        settings = {"genomes": str(self.path), "ranges": 3}
        self.run_workflow("--until", "ranges", **settings)
        self.run_workflow("--notemp", *(f"results/genome/work/000{number}.report" for number in (1, 2, 3)), **settings)
        part = self.folder / "results/genome/work/0002.report"
        status = part.stat()
        data = part.read_bytes()
        part.write_bytes(data[: len(data) // 2])
        os.utime(part, ns=(status.st_atime_ns, status.st_mtime_ns))
        self.run_workflow("--retries", "0", status=1, **settings)
        self.assertIn("0002.report", self.logs("merge"))
        self.assertFalse(self.result("genome", ".report").exists())
        part.unlink()
        self.run_workflow(**settings)
        self.expect_one_run(self.path, "genome")

    def test_a_genome_that_changes_is_searched_again(self):
        settings = {"genomes": str(self.path), "ranges": 3}
        self.run_workflow(**settings)
        genomes.write(self.path, genomes.records(21, 8))
        self.run_workflow(**settings)
        self.expect_one_run(self.path, "genome")
        self.run_workflow(**settings, options="-U 10")
        self.expect_one_run(self.path, "genome", "-U", "10")

    def test_a_genome_that_changes_during_the_run_is_noticed(self):
        settings = {"genomes": str(self.path), "ranges": 3}
        self.run_workflow("--until", "ranges", **settings)
        status = self.path.stat()
        genomes.write(self.path, genomes.records(20, 51))
        os.utime(self.path, ns=(status.st_atime_ns, status.st_mtime_ns))
        self.run_workflow("--retries", "0", status=1, **settings)
        self.assertIn("the genome is longer than it was", self.logs("search-0003"))


class SlurmTest(WorkflowCase):
    """The profile for Slurm, with programs that stand in for Slurm's."""

    def setUp(self):
        super().setUp()
        self.slurm = self.folder / "slurm"
        genomes.stand_in_slurm(self.slurm)

    def run_workflow(self, *words, **settings):
        # With CI Snakemake asks each second what has become of its jobs.
        environment = {"PATH": f"{self.slurm}:{os.environ['PATH']}", "CI": "true"}
        with unittest.mock.patch.dict(os.environ, environment), \
                unittest.mock.patch(f"{__name__}.PROFILE", WORKFLOW / "profiles/slurm"):
            return super().run_workflow(*words, **settings)

    def submitted(self, rule):
        """Returns the arguments of sbatch for jobs of a rule."""
        return [line for line in (self.slurm / "submitted").read_text().splitlines() if f"quorix-{rule} " in line]

    def test_a_job_that_slurm_ends_runs_again_with_more_memory_and_time(self):
        path = genomes.write(self.folder / "the genome.fa", genomes.records(50, 9))
        (self.slurm / "TIMEOUT").touch()  # what becomes of the first search
        self.run_workflow(genomes=str(path), ranges=3, threads=2)
        self.expect_one_run(path, "the genome")
        searches = self.submitted("search")
        self.assertEqual(len(searches), 4)
        for figures, count in (("--cpus-per-task=2 --mem=181M --time=11", 3),
                               ("--cpus-per-task=2 --mem=362M --time=22", 1)):
            self.assertEqual(sum(figures in search for search in searches), count, searches)
        self.assertEqual(len(self.submitted("ranges")), 1)

    def test_small_genomes_of_one_range_are_jobs_in_groups(self):
        folder = self.folder / "small"
        paths = {name: genomes.write(folder / f"{name}.fa", genomes.records(seed, 3))
                 for seed, name in enumerate(("one", "two", "three"), start=40)}
        paths["four"] = genomes.write_gzip(folder / "four.fa.gz", genomes.records(43, 3))
        self.run_workflow("--groups", *(f"{rule}=g" for rule in ("unpack", "ranges", "search", "merge")),
                          "--group-components", "g=4", "--cores", "1", genomes=str(folder), ranges=1)
        for name, path in paths.items():
            self.expect_one_run(path, name)
        self.assertEqual(len((self.slurm / "submitted").read_text().splitlines()), 1)

    def test_status_of_a_job(self):
        script = str(WORKFLOW / "profiles/slurm/job_status.sh")

        def status():
            return subprocess.run([script, "7;cluster"], capture_output=True, text=True, check=True,
                                  env={"PATH": f"{self.slurm}:/usr/bin:/bin"}).stdout.strip()

        for state, expected in (("COMPLETED", "success"), ("RUNNING", "running"), ("PENDING", "running"),
                                ("FAILED", "failed"), ("CANCELLED", "failed"), ("OUT_OF_MEMORY", "failed"),
                                ("NODE_FAIL", "failed"), ("TIMEOUT", "failed")):
            (self.slurm / "7.state").write_text(state)
            self.assertEqual(status(), expected, state)
        # The controller has forgotten the job, and the accounting knows it or does not.
        genomes.write_program(self.slurm / "sleep", ":")
        genomes.write_program(self.slurm / "scontrol",
                              "echo 'slurm_load_jobs error: Invalid job id specified' >&2; exit 1")
        self.assertEqual(status(), "failed")
        for state, expected in (("COMPLETED", "success"), ("CANCELLED by 0", "failed"), ("RUNNING", "running")):
            genomes.write_program(self.slurm / "sacct", f"echo '{state}'")
            self.assertEqual(status(), expected, state)
        # Neither answers.
        genomes.write_program(self.slurm / "scontrol", "echo 'Unable to contact slurm controller' >&2; exit 1")
        genomes.write_program(self.slurm / "sacct", "exit 1")
        self.assertEqual(status(), "running")


class SettingsTest(WorkflowCase):
    def test_wrong_settings_are_refused_at_once(self):
        good = str(genomes.write(self.folder / "good.fa", genomes.records(30, 2)))
        genomes.write(self.folder / "more/good.fa", genomes.records(31, 2))
        (self.folder / "none").mkdir()
        cases = (
            ({}, "'genomes' is a required property"),
            ({"genomes": []}, "genomes: should be a file, a folder, a list"),
            ({"genomes": "missing.fa"}, "missing.fa is no file that can be read"),
            ({"genomes": "none"}, "the folder none has no files"),
            ({"genomes": [good, "more"]}, "both"),
            ({"genomes": {"a/b": good}}, "genome `a/b`: a name has letters"),
            ({"genomes": good, "thread": 3}, "'thread' was unexpected"),
            ({"genomes": good, "threads": 0}, "threads: 0 is less than the minimum of 1"),
            ({"genomes": good, "tracks": ["wig"]}, "tracks.0: 'wig' is not one of"),
            ({"genomes": good, "options": "--maxUnit 3"}, "--maxUnit"),
            ({"genomes": good, "options": "-U '3"}, "No closing quotation"),
            ({"genomes": good, "options": "--lastSeq 3"}, "--lastSeq is set by the workflow"),
            ({"genomes": good, "options": "-P 50"}, "perfection minimum is not implemented"),
            ({"genomes": good, "options": "more.fa"}, "Of more names none is taken"),
            ({"genomes": good, "options": "--version"}, "does not search"),
            ({"genomes": good, "filters": "--min-copies many"}, "--min-copies = many"),
            ({"genomes": good, "quorix_tools": "no such program"}, "no such program is no program"),
        )
        for settings, text in cases:
            with self.subTest(settings=settings):
                self.assertIn(text, self.run_workflow(status=1, **settings))
        self.assertFalse((self.folder / "results").exists())

    def test_settings_may_stand_on_the_command_line(self):
        path = genomes.write(self.folder / "the genome.fa", genomes.records(33, 2))
        self.run_workflow("--config", "page=true", "masked=True", "tracks=bed,gff3", "statistics=[table]", "options=",
                          "genomes=the genome.fa", "filters=--min-copies 3", options="-U 9")
        self.expect_one_run(path, "the genome", "--maskX")
        for suffix in (".html", ".bed", ".gff3", ".stats.txt"):
            self.assertTrue(self.result("the genome", suffix).exists(), suffix)
        output = self.run_workflow("--config", "page=false", "masked=False", "--forceall", genomes="the genome.fa")
        self.assertNotIn("rule page:", output)
        self.expect_one_run(path, "the genome")

    def test_the_example_of_a_checkout_needs_no_settings(self):
        shutil.copytree(WORKFLOW, self.folder / "workflow", ignore=shutil.ignore_patterns("__pycache__"))
        (self.folder / "build").mkdir()
        (self.folder / "build/quorix-tools").symlink_to(TOOLS)
        shutil.copytree(PROJECT / "examples", self.folder / "examples")
        subprocess.run(["snakemake", "--profile", "workflow/profiles/local", "--cores", "1"], cwd=self.folder,
                       check=True, capture_output=True)
        self.expect_one_run(PROJECT / "examples/example.fa", "example")
        self.assertTrue(self.result("example", ".bed").exists())

    def test_lint_finds_nothing_but_what_is_meant(self):
        genomes.write(self.folder / "good.fa", genomes.records(32, 2))
        done = subprocess.run(self.command("--lint", genomes="good.fa"), cwd=self.folder, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        self.assertIn("Lints for rule search", done.stdout)
        found = {line.strip() for line in done.stdout.splitlines() if line.startswith("    * ")}
        # The program is not from conda, and rules that name it as a parameter would search again where it moves.
        self.assertEqual(found, {"* Specify a conda environment or container for each rule.:"} | {
            f"* Shell command directly uses variable {name} from outside of the rule:"
            for name in ("PYTHON", "SCRIPTS", "PROGRAM")})


unittest.main()
