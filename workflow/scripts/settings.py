"""The settings of the workflow: what they mean, and whether they are good, before the first job starts."""

import math
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import tempfile
from typing import Any, Dict, List, Union

# Format of `quorix-tools convert`, and what follows the name of the genome in the name of the result.
TRACKS = {
    "bed": ".bed",
    "bedgraph": ".bedgraph",
    "gff3": ".gff3",
    "jsonl": ".jsonl",
    "tsv": ".tsv",
    "expansionhunter": ".expansionhunter.json",
    "gangstr": ".gangstr.bed",
    "hipstr": ".hipstr.bed",
    "longtr": ".longtr.bed",
    "straglr": ".straglr.bed",
    "trgt": ".trgt.bed",
    "vamos": ".vamos.bed",
}
# The same for `quorix-tools stats`.
STATISTICS = {"table": ".stats.txt", "tsv": ".stats.tsv", "json": ".stats.json", "multiqc": "_mqc.json"}

FASTA_SUFFIX = re.compile(r"\.(fa|fasta|fna|fas)(\.gz|\.bgz)?$")
GENOME_NAME = re.compile(r"[A-Za-z0-9_][A-Za-z0-9_.+ -]*")
# Options of the search that are not for the setting `options`, and what they are set by.
OWN_OPTIONS = {
    "--firstSeq": "the workflow itself",
    "--lastSeq": "the workflow itself",
    "--maskX": "the setting `masked`",
    "--threads": "the setting `threads`",
    "-t": "the setting `threads`",
}


class BadSettings(Exception):
    """A setting that cannot be used; the text says which, and why."""


def complete(config: Dict[str, Any], schema: str) -> None:
    """Checks the settings against the schema, and adds the defaults that this names."""
    import jsonschema
    import yaml  # type: ignore

    with open(schema, encoding="utf-8") as file:
        rules = yaml.safe_load(file)
    read_command_line(config, rules["properties"])
    faults = sorted(jsonschema.Draft7Validator(rules).iter_errors(config), key=lambda fault: list(fault.path))
    if faults:
        raise BadSettings("".join(f"\n  {describe(fault)}" for fault in faults))
    for name, rule in rules["properties"].items():
        if "default" in rule:
            config.setdefault(name, rule["default"])


def read_command_line(config: Dict[str, Any], rules: Dict[str, Any]) -> None:
    """Turns texts as --config hands them over into the values that they stand for: `page=true`, `tracks=bed,gff3`,
    and `options=` for no options."""
    for name, value in list(config.items()):
        kind = rules.get(name, {}).get("type")
        if value is None:
            del config[name]  # the default
        elif kind == "boolean" and isinstance(value, str) and value.lower() in ("true", "false"):
            config[name] = value.lower() == "true"
        elif kind == "array" and isinstance(value, str):
            config[name] = value.replace(",", " ").split()


def describe(fault: Any) -> str:
    """Returns a fault of the schema in a line."""
    place = ".".join(map(str, fault.path))
    if fault.validator == "anyOf":
        return f"{place}: {fault.schema['errorMessage']}"
    return f"{place}: {fault.message}" if place else fault.message


def find_genomes(genomes: Union[str, List[str], Dict[str, str]]) -> Dict[str, str]:
    """Returns the path of each genome by its name. What has no name is called after its file."""
    if isinstance(genomes, str):
        genomes = [genomes]
    if isinstance(genomes, dict):
        named = [(name, os.path.expanduser(path)) for name, path in genomes.items()]
    else:
        named = [(name_of(path), path) for given in genomes for path in files_of(os.path.expanduser(given))]
    result: Dict[str, str] = {}
    for name, path in named:
        if not os.path.isfile(path) or not os.access(path, os.R_OK):
            raise BadSettings(f"genome `{name}`: {path} is no file that can be read from {os.getcwd()}")
        if not GENOME_NAME.fullmatch(name):
            raise BadSettings(f"genome `{name}`: a name has letters, digits, blanks and _ . + - "
                              "(give it one of your own: `genomes: {name: path}`)")
        if name in result:
            raise BadSettings(f"genome `{name}`: both {result[name]} and {path} have this name "
                              "(give them names of your own: `genomes: {name: path}`)")
        if "\n" in os.path.basename(path):
            raise BadSettings(f"genome `{name}`: its file has a line feed in its name")
        result[name] = path
    return result


def files_of(path: str) -> List[str]:
    """Returns the FASTA files of a folder, or the path itself."""
    if not os.path.isdir(path):
        return [path]
    files = [os.path.join(path, name) for name in sorted(os.listdir(path)) if FASTA_SUFFIX.search(name)]
    if not files:
        raise BadSettings(f"genomes: the folder {path} has no files .fa, .fas, .fasta or .fna, plain or with .gz")
    return files


def name_of(path: str) -> str:
    return FASTA_SUFFIX.sub("", os.path.basename(path))


def find_program(name: str, workflow: str) -> str:
    """Returns the full path of quorix-tools. Without a name it is the one that was built or installed together with
    the workflow, or else the first one in PATH."""
    name = os.path.expanduser(name)
    folder = pathlib.Path(workflow).resolve()
    together = [folder.parent / "build" / "quorix-tools"]
    if folder.parent.parent.name == "share":
        together.append(folder.parents[2] / "bin" / "quorix-tools")
    for path in together if not name else []:
        if os.access(path, os.X_OK):
            return str(path)
    found = shutil.which(name or "quorix-tools")
    if found is None:
        raise BadSettings(f"quorix_tools: {name or 'quorix-tools'} is no program that can be run "
                          "(build it, install it, or name its path)")
    return os.path.abspath(found)


def words(text: str) -> List[str]:
    """Returns the words of options, which are quoted as for a shell."""
    try:
        return shlex.split(text)
    except ValueError as error:
        raise BadSettings(f"`{text}`: {error}") from error


def check_options(program: str, config: Dict[str, Any]) -> None:
    """Searches a record without bases, so that a wrong option shows before the first job."""
    options = words(config["options"])
    for option in options:
        if option in OWN_OPTIONS:
            raise BadSettings(f"options: {option} is set by {OWN_OPTIONS[option]}")
    with tempfile.TemporaryDirectory() as folder:
        pathlib.Path(folder, "input").write_text(">record\n", encoding="ascii")
        run("options", folder, [program, "search", "--threads", "1", *options, "--", "input", "report"])
        if not os.path.exists(os.path.join(folder, "report")):
            raise BadSettings(f"options: `{config['options']}` does not search")
        if config["filters"]:
            run("filters", folder, [program, "stats", *words(config["filters"]), "report"])


def run(setting: str, folder: str, command: List[str]) -> None:
    result = subprocess.run(command, cwd=folder, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                            stderr=subprocess.PIPE, text=True, errors="replace", check=False)
    if result.returncode != 0:
        raise BadSettings(f"{setting}: {shlex.join(command[:2])} says:\n{shorten(result.stderr)}")


def shorten(messages: str) -> str:
    """Returns messages of quorix without its greeting and its usage."""
    messages = messages.split("Brief USAGE:")[0]
    return messages.split("fully implemented in this version.")[-1].strip()


def result_suffixes(config: Dict[str, Any]) -> List[str]:
    """Returns what the names of the wanted results of a genome end with."""
    suffixes = [".report"]
    suffixes += [".masked.fa"] if config["masked"] else []
    suffixes += [TRACKS[track] for track in config["tracks"]]
    suffixes += [STATISTICS[form] for form in config["statistics"]]
    suffixes += [".html"] if config["page"] else []
    return suffixes


def format_of(formats: Dict[str, str], suffix: str) -> str:
    return next(name for name, ending in formats.items() if ending == suffix)


def memory_mb(longest: int, bases: int, threads: int, bytes_per_base: int) -> int:
    """Returns the memory that a search needs: its longest record, up to 32 million bases of others that are read
    ahead at 8 bytes each, 40 MB for each thread, and 100 MB for the programs."""
    ahead = min(bases - longest, 32_000_000)
    return 100 + 40 * threads + math.ceil((longest * bytes_per_base + ahead * 8) / 1e6)


def minutes(bases: int, bases_per_second: int) -> int:
    """Returns the time of a job, with ten minutes for a slow start."""
    return 10 + math.ceil(bases / bases_per_second / 60)
