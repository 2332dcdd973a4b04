#!/usr/bin/env python3
"""Runs the recipe of the conda package without conda, on the sources of a commit:

    scripts/check_conda.py [COMMIT]

build.sh runs in a folder of its own with PREFIX, CXX, CXXFLAGS and CPU_COUNT, as conda sets them, and then the
test commands of meta.yaml with what was installed. Flags must arrive at the compiler, and none may name a
processor. What `scripts/setup.sh package` installs is needed.
"""

import argparse
import os
import re
import subprocess
import tempfile

import jinja2
import yaml

PROJECT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
MARK = "-DQUORIX_FLAG_OF_CONDA"


def rendered(text):
    """Returns the recipe with the functions of conda replaced by what they stand for."""
    functions = {
        "compiler": lambda language: f"{language}-compiler",
        "stdlib": lambda language: f"{language}-stdlib",
        "pin_subpackage": lambda name, max_pin: f"{name} {max_pin}",
    }
    template = jinja2.Environment(undefined=jinja2.StrictUndefined).from_string(text)
    return yaml.safe_load(template.render(**functions))


def require(condition, message):
    if not condition:
        raise SystemExit(f"check_conda: {message}")


def check_form(recipe, source):
    """A recipe names what builds, what is linked, and what it installs."""
    requirements = recipe["requirements"]
    require("cxx-compiler" in requirements["build"], "the recipe asks for no compiler")
    for package in ("cli11", "libhwy", "tclap", "zlib"):
        require(package in requirements["host"], f"the recipe does not link {package}")
    require(recipe["build"]["number"] == 0 and recipe["build"]["run_exports"], "no number or exports")
    with open(os.path.join(source, "CMakeLists.txt"), encoding="utf-8") as file:
        version = re.search(r"^set\(QUORIX_VERSION_TEXT (.*)\)$", file.read(), re.MULTILINE).group(1)
    require(str(recipe["package"]["version"]) == version, f"the recipe is not of version {version}")
    for name in recipe["about"]["license_file"]:
        require(os.path.exists(os.path.join(source, name)), f"there is no {name}")


def main():
    parser = argparse.ArgumentParser(
        prog="check_conda.py", description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter
    )
    parser.add_argument("commit", nargs="?", default="HEAD", metavar="COMMIT")
    commit = parser.parse_args().commit

    with tempfile.TemporaryDirectory() as scratch:
        source, prefix, work = (os.path.join(scratch, name) for name in ("source", "prefix", "test"))
        for folder in (source, prefix, work):
            os.mkdir(folder)
        archive = subprocess.run(["git", "archive", commit], cwd=PROJECT, stdout=subprocess.PIPE, check=True)
        subprocess.run(["tar", "--extract", "--directory", source], input=archive.stdout, check=True)
        with open(os.path.join(source, "packaging/conda/meta.yaml"), encoding="utf-8") as file:
            recipe = rendered(file.read())
        check_form(recipe, source)

        environment = {
            **os.environ,
            "PREFIX": prefix,
            "SRC_DIR": source,
            "CXX": "g++",
            "CXXFLAGS": f"-O2 -march=nocona -mtune=haswell {MARK}",
            "CPU_COUNT": str(os.cpu_count()),
            "CMAKE_ARGS": f"-DCMAKE_PREFIX_PATH={prefix} -DCMAKE_EXPORT_COMPILE_COMMANDS=ON",
        }
        print("== build.sh", flush=True)
        with open(os.path.join(scratch, "log"), "w+", encoding="utf-8") as log:
            words = ["bash", "-e", os.path.join(source, "packaging/conda/build.sh")]
            status = subprocess.run(words, cwd=source, env=environment, stdout=log, stderr=log, check=False)
            log.seek(0)
            require(status.returncode == 0, "build.sh failed:\n" + log.read()[-4000:])
        with open(os.path.join(source, "build-conda/compile_commands.json"), encoding="utf-8") as file:
            commands = [entry["command"] for entry in yaml.safe_load(file)]
        require(commands and all(MARK in command for command in commands), "CXXFLAGS are not obeyed")
        own_flags = [re.sub(r"-march=nocona -mtune=haswell", "", command, count=1) for command in commands]
        require(not any("-march" in command for command in own_flags), "a flag names a processor")

        for name in recipe["test"]["source_files"]:
            subprocess.run(["cp", "-R", os.path.join(source, name), work], check=True)
        environment["PATH"] = os.path.join(prefix, "bin") + os.pathsep + os.environ["PATH"]
        require(recipe["test"]["commands"], "the recipe tests nothing")
        for command in recipe["test"]["commands"]:
            print("$", command, flush=True)
            status = subprocess.run(
                ["bash", "-o", "pipefail", "-ec", command], cwd=work, env=environment, check=False
            )
            require(status.returncode == 0, f"status {status.returncode}: {command}")
        # The mark that no program understands shows that the check of the commands can fail.
        status = subprocess.run(["quorix", MARK], env=environment, capture_output=True, check=False)
        require(status.returncode != 0, "a wrong command succeeds")
    print("The recipe builds, installs and passes its tests")


if __name__ == "__main__":
    main()
