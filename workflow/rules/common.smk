# Settings, genomes and names of files, for the other rules.

import os
import re
import sys

from snakemake.exceptions import WorkflowError

SCRIPTS = os.path.join(workflow.basedir, "scripts")
if SCRIPTS not in sys.path:
    sys.path.insert(0, SCRIPTS)
# An installed workflow belongs to a package, also where root runs it.
sys.dont_write_bytecode = True

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


def parts_of(suffix):
    """Returns a function for the parts of a genome, in the order of the records."""

    def parts(wildcards):
        count = 1
        if config["ranges"] > 1:
            checkpoints.divided.get(genome=wildcards.genome)
            count = len(ranges.read_table(table_of(wildcards)))
        pattern = os.path.join(WORK, f"{{number:04}}{suffix}")
        return [pattern.format(genome=wildcards.genome, number=number) for number in range(1, count + 1)]

    return parts


def table_of(wildcards):
    return os.path.join(WORK, "ranges.tsv").format(genome=wildcards.genome)


def lengths_of(wildcards):
    """The bases of a range, and of its longest record. As long as they are not known, they are as many as the genome
    may have: DNA takes a third of its bytes or more when it is compressed."""
    if os.path.exists(table_of(wildcards)):
        row = ranges.read_table(table_of(wildcards))[int(wildcards.number) - 1]
        return row.bases, row.longest
    path = GENOMES[wildcards.genome]
    size = os.path.getsize(path) * (4 if fasta.is_gzip(path) else 1)
    return size, size


def search_memory(wildcards, threads, attempt):
    """MB for a range: the longest record counts, and what is read ahead of it."""
    bases, longest = lengths_of(wildcards)
    return attempt * settings.memory_mb(longest, bases, threads, config["memory_bytes_per_base"])


def search_minutes(wildcards, attempt):
    bases, _ = lengths_of(wildcards)
    return attempt * settings.minutes(bases, config["bases_per_second"])


def reading_minutes(wildcards, attempt):
    """For jobs that read a genome once."""
    size = os.path.getsize(GENOMES[wildcards.genome])
    return attempt * settings.minutes(size, 10_000_000)
