"""Tests of the simulation in scripts/scale: simulation_test.py PROJECT_FOLDER"""

import pathlib
import random
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

PROJECT = pathlib.Path(sys.argv.pop(1))
SCALE = PROJECT / "scripts/scale"
sys.path.insert(0, str(SCALE))
from cluster import Disk, Job, run  # noqa: E402

WORKERS = [1, 2, 3, 7, 10, 40, 41, 150]
NARROW = Disk(bytes_per_second=100.0, bytes_per_second_of_a_worker=30.0)
WIDE = Disk(bytes_per_second=1e9, bytes_per_second_of_a_worker=30.0)  # enough for all of them


def random_jobs(seed):
    draw = random.Random(seed)
    return [Job(draw.choice([0.0, 1.0]), draw.uniform(0, 200), draw.lognormvariate(1, 1),
                draw.choice([0.0, draw.uniform(0, 50)])) for _ in range(draw.randint(1, 120))]


def seconds_alone(job, disk):
    return job.overhead + job.compute + (job.read_bytes + job.write_bytes) / disk.rate(1)


class ClusterTest(unittest.TestCase):
    def each_run(self):
        for seed in range(25):
            jobs = random_jobs(seed)
            for disk in (NARROW, WIDE):
                for workers in WORKERS:
                    with self.subTest(seed=seed, disk=disk, workers=workers):
                        yield jobs, disk, run(jobs, workers, disk)

    def test_two_readers_share_the_disk_until_one_is_done(self):
        # Both read 5 bytes a second, until the first has its 10 after 2 s; the other gets its last 10
        # bytes in 1 s.
        disk = Disk(10.0, 10.0)
        result = run([Job(0, 10, 4, 0), Job(0, 20, 1, 0)], 2, disk)
        self.assertAlmostEqual(result.seconds, 6.0)
        self.assertAlmostEqual(result.shares["reading"] * 12, 5.0)
        self.assertAlmostEqual(result.shares["computing"] * 12, 5.0)
        self.assertAlmostEqual(result.shares["idle"] * 12, 2.0)

    def test_a_worker_takes_no_more_than_it_can(self):
        result = run([Job(0, 10, 0, 0), Job(0, 10, 0, 20)], 2, Disk(1000.0, 10.0))
        self.assertAlmostEqual(result.seconds, 3.0)

    def test_jobs_are_taken_in_their_order(self):
        # The third waits for the first worker to be free, at 2 s.
        short, middle, long = (Job(0, 0, seconds, 0) for seconds in (2, 3, 9))
        self.assertAlmostEqual(run([short, long, middle], 2, WIDE).seconds, 9.0)
        self.assertAlmostEqual(run([short, middle, long], 2, WIDE).seconds, 11.0)

    def test_no_work_is_lost_or_added(self):
        for jobs, _, result in self.each_run():
            time = result.workers * result.seconds
            self.assertEqual(result.jobs, len(jobs))
            self.assertAlmostEqual(result.moved_bytes,
                                   sum(job.read_bytes + job.write_bytes for job in jobs), places=4)
            self.assertAlmostEqual(result.shares["computing"] * time, sum(job.compute for job in jobs),
                                   places=4)
            self.assertAlmostEqual(result.shares["overhead"] * time, sum(job.overhead for job in jobs),
                                   places=4)
            self.assertAlmostEqual(sum(result.shares.values()), 1.0)

    def test_one_worker_needs_the_sum_of_all_jobs(self):
        for seed in range(25):
            jobs = random_jobs(seed)
            result = run(jobs, 1, NARROW)
            self.assertAlmostEqual(result.seconds, sum(seconds_alone(job, NARROW) for job in jobs),
                                   places=4)
            self.assertAlmostEqual(result.shares["idle"], 0.0)

    def test_time_keeps_its_bounds(self):
        for jobs, disk, result in self.each_run():
            alone = [seconds_alone(job, disk) for job in jobs]
            moved = sum(job.read_bytes + job.write_bytes for job in jobs)
            # No job is faster than alone, so the speed-up is at most the number of workers.
            self.assertGreaterEqual(result.seconds, sum(alone) / result.workers - 1e-6)
            self.assertGreaterEqual(result.seconds, max(alone) - 1e-6)
            self.assertGreaterEqual(result.seconds, moved / disk.bytes_per_second - 1e-6)
            if disk is WIDE:
                self.assertLessEqual(result.seconds,
                                     sum(alone) / result.workers + max(alone) + 1e-6)

    def test_more_workers_are_never_slower_where_the_disk_is_wide_enough(self):
        # With a shared disk they can be: what two read at once both get late.
        for seed in range(60):
            jobs = random_jobs(seed)
            times = [run(jobs, workers, WIDE).seconds for workers in WORKERS]
            for slower, faster in zip(times, times[1:]):
                self.assertLessEqual(faster, slower + 1e-6)

    def test_a_shared_disk_can_make_more_workers_slower(self):
        # One worker reads 10 and 10 bytes while the other computes; three read at once, and the
        # long job begins late.
        disk = Disk(10.0, 10.0)
        jobs = [Job(0, 10, 10, 0), Job(0, 10, 0, 0), Job(0, 10, 0, 0)]
        self.assertAlmostEqual(run(jobs, 1, disk).seconds, 13.0)
        self.assertAlmostEqual(run(jobs, 2, disk).seconds, 12.0)
        self.assertAlmostEqual(run(jobs, 3, disk).seconds, 13.0)


class ScriptTest(unittest.TestCase):
    def simulate(self, *arguments):
        return subprocess.run([sys.executable, SCALE / "simulate.py", *arguments], check=True,
                              capture_output=True, text=True).stdout

    def test_the_same_seed_gives_the_same_figures(self):
        small = ["--workers", "4", "30"]
        self.assertEqual(self.simulate(*small), self.simulate(*small))
        self.assertNotEqual(self.simulate(*small), self.simulate(*small, "--seed", "2"))

    def test_the_document_has_the_figures_of_today(self):
        document = (PROJECT / "docs/scale.md").read_text(encoding="utf-8").splitlines()
        rows = [row for row in self.simulate().splitlines() if row.startswith(("|", "**"))]
        self.assertGreater(len(rows), 60)
        self.assertEqual([row for row in rows if row not in document], [])

    def test_the_plot_has_a_curve_for_each_collection_and_search(self):
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder) / "plot.svg"
            printed = self.simulate("--workers", "10", "100", "--plot", file)
            titles = [line.strip("*") for line in printed.splitlines() if line.startswith("**")]
            drawn = "".join(xml.etree.ElementTree.parse(file).getroot().itertext())
        self.assertEqual(len(titles), 8)
        for title in titles:
            self.assertIn(title, drawn)


if __name__ == "__main__":
    unittest.main()
