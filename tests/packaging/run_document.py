#!/usr/bin/env python3
"""Runs the commands that a document shows, and compares what they print with what it shows.

    run_document.py [--accept] DOCUMENT FOLDER PROGRAMS

Blocks that begin with ```console have commands after "$ ", each followed by its standard output. They
run one after another in a copy of FOLDER, in bash, with the folder PROGRAMS first in PATH. A line "..."
stands for any lines. Standard error is not compared; every command must succeed. With --accept the
document gets the output of the commands that show no "...".
"""

import os
import shutil
import subprocess
import sys
import tempfile


def blocks_of(lines):
    """Returns the first line and the line after the last of each console block, without the fences."""
    blocks, start = [], None
    for number, line in enumerate(lines):
        if line == "```console":
            start = number + 1
        elif line == "```" and start is not None:
            blocks.append((start, number))
            start = None
    return blocks


def commands_of(lines):
    """Returns the commands of a block with the lines that each shows."""
    commands = []
    for line in lines:
        if line.startswith("$ "):
            commands.append((line[2:], []))
        elif not commands:
            raise SystemExit(f"FAILED: a block of commands begins with: {line}")
        else:
            commands[-1][1].append(line)
    return commands


def agrees(shown, printed):
    """Whether the lines that are shown are those that were printed; "..." stands for any lines."""
    if not shown:
        return not printed
    if shown[0] == "...":
        return any(agrees(shown[1:], printed[skipped:]) for skipped in range(len(printed) + 1))
    return bool(printed) and shown[0] == printed[0] and agrees(shown[1:], printed[1:])


def run(command, folder, programs):
    """Returns what a command prints, line by line, or None if it fails."""
    environment = dict(os.environ, LC_ALL="C", PATH=programs + os.pathsep + os.environ["PATH"])
    words = ["bash", "-o", "pipefail", "-c", command]
    result = subprocess.run(
        words, cwd=folder, env=environment, stdin=subprocess.DEVNULL, capture_output=True, check=False
    )
    if result.returncode != 0:
        print(f"FAILED: status {result.returncode}: {command}\n{result.stderr.decode(errors='replace')}")
        return None
    # Blanks at the end of a line are none in a document.
    return [line.rstrip() for line in result.stdout.decode().splitlines()]


def main():
    accepts = sys.argv[1:2] == ["--accept"]
    arguments = sys.argv[1 + accepts :]
    if len(arguments) != 3:
        sys.exit(__doc__)
    document, folder, programs = (os.path.abspath(name) for name in arguments)
    with open(document, encoding="utf-8") as file:
        lines = file.read().splitlines()
    accepted, last, failures, count = [], 0, 0, 0
    with tempfile.TemporaryDirectory() as scratch:
        copy = os.path.join(scratch, "copy")
        shutil.copytree(folder, copy)
        for start, end in blocks_of(lines):
            accepted += lines[last:start]
            last = end
            for command, shown in commands_of(lines[start:end]):
                count += 1
                printed = run(command, copy, programs)
                if printed is None:
                    failures += 1
                elif not agrees(shown, printed) and not accepts:
                    failures += 1
                    print(f"FAILED: $ {command}", "--- shown", *shown, "--- printed", *printed, sep="\n")
                keeps = "..." in shown or printed is None
                accepted += ["$ " + command] + (shown if keeps else printed)
    accepted += lines[last:]
    if accepts:
        with open(document, "w", encoding="utf-8") as file:
            file.write("\n".join(accepted) + "\n")
    if failures or count == 0:
        sys.exit(f"{failures} of {count} commands failed")
    print(f"{count} commands print what is shown")


if __name__ == "__main__":
    main()
