# Settings, genomes and names of files, for the other rules.

import os
import sys

from snakemake.exceptions import WorkflowError

SCRIPTS = os.path.join(workflow.basedir, "scripts")
if SCRIPTS not in sys.path:
    sys.path.insert(0, SCRIPTS)

import fasta
import ranges
import settings

try:
    settings.complete(config, os.path.join(workflow.basedir, "schemas", "config.schema.yaml"))
    GENOMES = settings.find_genomes(config["genomes"])
    PROGRAM = settings.find_program(config["quorix_tools"], workflow.basedir)
    settings.check_options(PROGRAM, config)
except settings.BadSettings as error:
    raise WorkflowError(f"The settings are not good: {error}")

# The shell commands name these without `params`, so that a program or workflow that moves to another folder is no
# reason to search again.
PYTHON = sys.executable
FOLDER = os.path.join(config["results"], "{genome}")
WORK = os.path.join(FOLDER, "work")
LOGS = os.path.join(FOLDER, "logs")


wildcard_constraints:
    genome="[^/]+",
    number=r"\d+",
    track="|".join(map(re.escape, settings.TRACKS.values())),
    statistics="|".join(map(re.escape, settings.STATISTICS.values())),


def results_of_all_genomes():
    suffixes = settings.result_suffixes(config)
    return [os.path.join(config["results"], genome, f"{genome}{suffix}") for genome in GENOMES for suffix in suffixes]


def text_of(wildcards):
    """The genome, or what it unpacks to."""
    path = GENOMES[wildcards.genome]
    return os.path.join(WORK, "text.fa").format(genome=wildcards.genome) if fasta.is_gzip(path) else path


def ranges_of(wildcards):
    """The ranges of a genome, once they are known."""
    return ranges.read_table(checkpoints.ranges.get(genome=wildcards.genome).output.table)


def parts_of(suffix):
    """Returns a function for the parts of a genome, in the order of the records."""

    def parts(wildcards):
        pattern = os.path.join(WORK, f"{{number:04}}{suffix}")
        return [pattern.format(genome=wildcards.genome, number=row.number) for row in ranges_of(wildcards)]

    return parts


def search_memory(wildcards, threads, attempt):
    """MB for a range: the longest record counts, and what is read ahead of it."""
    row = ranges_of(wildcards)[int(wildcards.number) - 1]
    return attempt * settings.memory_mb(row.longest, row.bases, threads, config["memory_bytes_per_base"])


def search_minutes(wildcards, attempt):
    row = ranges_of(wildcards)[int(wildcards.number) - 1]
    return attempt * settings.minutes(row.bases, config["bases_per_second"])


def reading_minutes(wildcards, attempt):
    """For jobs that read a genome once."""
    size = os.path.getsize(GENOMES[wildcards.genome])
    return attempt * settings.minutes(size, 10_000_000)
