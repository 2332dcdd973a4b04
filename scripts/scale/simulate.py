#!/usr/bin/env python3
"""Simulates three collections of genomes on 10 to 10,000 workers, and prints what they cost.

The rates are measured ones (rates.json, of measure_rates.py); all else is a parameter with a default that --help
shows. Random numbers come from a seed, so the same command prints the same figures. With --plot the speed-up is
drawn (matplotlib is needed).
"""

import argparse
import dataclasses
import functools
import json
import math
import pathlib
import random
import sys

from cluster import PHASES, Disk, Job, run

HERE = pathlib.Path(__file__).resolve().parent
SEARCHES = ("units 1-6", "units 1-100")


@dataclasses.dataclass(frozen=True)
class Collection:
    """Files of genomes. A job searches some of them, or one part of a file that it reads whole."""

    name: str
    kind: str  # of genome, in the rates
    files: int
    mean_bases: float  # of a file
    spread: float  # of their lengths: sigma of a lognormal distribution
    files_per_job: int
    longest_record: float  # bases: what has to fit into memory
    reads_whole: bool = False  # every job reads all files, since they are records of one


COLLECTIONS = (
    Collection("10^6 bacteria", "bacterium", 1_000_000, 4.0e6, 0.4, 200, 1.2e7),
    Collection("10^4 human assemblies", "human", 10_000, 3.0e9, 0.02, 1, 2.5e8),
    Collection("plant of 40 Gbp, ranges of one file", "plant", 12, 40e9 / 12, 0.2, 1, 4.5e9, True),
    Collection("plant of 40 Gbp, a file for each record", "plant", 12, 40e9 / 12, 0.2, 1, 4.5e9),
)


@functools.cache
def draw_lengths(collection, seed):
    """Lengths of the files in bases. Their sum is that of the means."""
    draw = random.Random(seed)
    lengths = [draw.lognormvariate(0.0, collection.spread) for _ in range(collection.files)]
    scale = collection.files * collection.mean_bases / sum(lengths)
    return [length * scale for length in lengths]


def make_jobs(collection, search, rates, arguments):
    """The jobs, those with the most bases first. Who orders them does not know which will be slow. Slowness belongs
    to the job: it is the same for any number of workers."""
    lengths = draw_lengths(collection, arguments.seed)
    draw = random.Random(f"speed of jobs {arguments.seed}")
    genome = rates["genomes"][collection.kind]
    found = genome["searches"][search]
    whole = sum(lengths)
    jobs = []
    for first in range(0, len(lengths), collection.files_per_job):
        part = lengths[first:first + collection.files_per_job]
        bases = sum(part)
        read = whole if collection.reads_whole else bases
        seconds = (read * genome["read packed seconds per Mbp"] + bases * found["seconds per Mbp"]) / 1e6
        seconds += len(part) * rates["start seconds"]
        seconds *= draw.lognormvariate(0.0, arguments.jitter)
        if draw.random() < arguments.straggler_share:
            seconds *= arguments.straggler_factor
        jobs.append((bases, Job(arguments.overhead, read * genome["packed bytes per base"], seconds,
                                bases * found["packed report bytes per base"])))
    return [job for _, job in sorted(jobs, key=lambda one: -one[0])]


def merge_seconds(collection, search, rates):
    """The one job after all others: reports of ranges become one."""
    if not collection.reads_whole:
        return 0.0
    found = rates["genomes"][collection.kind]["searches"][search]
    report = collection.files * collection.mean_bases * found["report bytes per base"]
    return report / 1e9 * rates["merge seconds per GB"]


def simulate(collection, search, rates, arguments):
    """For each number of workers: its Result, and the seconds until all is merged."""
    jobs = make_jobs(collection, search, rates, arguments)
    disk = Disk(arguments.disk, arguments.worker_disk)
    merge = merge_seconds(collection, search, rates)
    return [(result, result.seconds + merge)
            for result in (run(jobs, workers, disk) for workers in [1, *arguments.workers])]


def job_memory(collection, found):
    """Bytes: a run handles one record at a time."""
    return found["memory bytes per run"] + collection.longest_record * found["memory bytes per base"]


def time_text(seconds):
    if seconds < 600:
        return f"{seconds:.0f} s"
    return f"{seconds / 60:.0f} min" if seconds < 7200 else f"{seconds / 3600:,.1f} h"


def size_text(size):
    power = min(int(math.log10(size) // 3), 4)
    return f"{size / 1000 ** power:.3g} {('B', 'kB', 'MB', 'GB', 'TB')[power]}"


def print_costs(rates, arguments):
    print("| Collection | Search | Bases | Core hours | Memory of a job | Input, packed | Report | Report, packed |")
    print("|---|---|---:|---:|---:|---:|---:|---:|")
    for collection in COLLECTIONS:
        genome = rates["genomes"][collection.kind]
        bases = collection.files * collection.mean_bases
        for search in SEARCHES:
            found = genome["searches"][search]
            jobs = make_jobs(collection, search, rates, arguments)
            hours = (sum(job.compute for job in jobs) + merge_seconds(collection, search, rates)) / 3600
            print(f"| {collection.name} | {search} | {bases:.2g} | {hours:,.1f} "
                  f"| {size_text(job_memory(collection, found))} "
                  f"| {size_text(bases * genome['packed bytes per base'])} "
                  f"| {size_text(bases * found['report bytes per base'])} "
                  f"| {size_text(bases * found['packed report bytes per base'])} |")


def print_runs(collection, search, runs):
    print(f"\n**{collection.name}, {search}**\n")
    print("| Workers | Time | Speed-up | " + " | ".join(phase.capitalize() for phase in PHASES) + " |")
    print("|---:|---:|---:|" + "---:|" * len(PHASES))
    alone = runs[0][1]
    for place, (result, seconds) in enumerate(runs):
        # Of the numbers of workers that are more than there is work for, one is enough.
        if place > 1 and runs[place - 1][0].workers >= result.jobs:
            break
        shares = " | ".join(f"{result.shares[phase]:.0%}".replace("%", " %") for phase in PHASES)
        print(f"| {result.workers:,} | {time_text(seconds)} | {alone / seconds:,.1f} | {shares} |")


def plot(curves, file):
    import matplotlib
    matplotlib.use("svg")
    matplotlib.rcParams.update({"svg.hashsalt": "quorix", "svg.fonttype": "none"})
    from matplotlib import pyplot
    figure, axes = pyplot.subplots(figsize=(8, 5))
    for number, (name, runs) in enumerate(curves):
        workers = [result.workers for result, _ in runs]
        speedups = [runs[0][1] / seconds for _, seconds in runs]
        axes.plot(workers, speedups, marker="o", markersize=3, label=name,
                  color=f"C{number // len(SEARCHES)}", linestyle="-" if number % 2 == 0 else "--")
    axes.plot(workers, workers, color="0.7", linewidth=1, label="as many times as workers")
    axes.set(xscale="log", yscale="log", xlabel="workers", ylabel="speed-up over one worker")
    axes.grid(True, which="major", color="0.9")
    axes.legend(fontsize=7)
    figure.tight_layout()
    figure.savefig(file, format="svg", metadata={"Date": None})


def parsed_arguments():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.ArgumentDefaultsHelpFormatter)
    parser.add_argument("--rates", type=pathlib.Path, default=HERE / "rates.json", help="measured rates")
    parser.add_argument("--workers", type=int, nargs="+", default=[10, 30, 100, 300, 1000, 3000, 10000],
                        help="numbers of workers; one worker is added for comparison")
    parser.add_argument("--disk", type=float, default=20e9, help="bytes per second of the shared disk")
    parser.add_argument("--worker-disk", type=float, default=500e6,
                        help="bytes per second that one worker can read or write")
    parser.add_argument("--overhead", type=float, default=5.0,
                        help="seconds before a job begins, for its scheduling and start")
    parser.add_argument("--jitter", type=float, default=0.1,
                        help="how much jobs differ in speed: sigma of a lognormal distribution")
    parser.add_argument("--straggler-share", type=float, default=0.01, help="share of slow jobs")
    parser.add_argument("--straggler-factor", type=float, default=3.0,
                        help="how many times as long slow jobs compute")
    parser.add_argument("--seed", type=int, default=1, help="of the random numbers")
    parser.add_argument("--plot", type=pathlib.Path, help="SVG file for the plot")
    arguments = parser.parse_args()
    if min(arguments.workers) < 1 or min(arguments.disk, arguments.worker_disk) <= 0:
        parser.error("workers and rates have to be positive")
    return arguments


def main():
    arguments = parsed_arguments()
    try:
        rates = json.loads(arguments.rates.read_text(encoding="utf-8"))
    except OSError as error:
        sys.exit(f"simulate.py: {error}")
    print_costs(rates, arguments)
    curves = []
    for collection in COLLECTIONS:
        for search in SEARCHES:
            runs = simulate(collection, search, rates, arguments)
            print_runs(collection, search, runs)
            curves.append((f"{collection.name}, {search}", runs))
    if arguments.plot:
        plot(curves, arguments.plot)


if __name__ == "__main__":
    main()
