#!/usr/bin/env python3
"""Documents whose commands print something else, fail or are missing are noticed."""

import os
import subprocess
import sys
import tempfile

RUNNER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "run_document.py")

# A document and the status of its check.
CASES = (
    ("```console\n$ echo one\none\n```\n", 0),
    ("```console\n$ echo one\ntwo\n```\n", 1),
    ("```console\n$ echo one\n```\n", 1),
    ("```console\n$ true\none\n```\n", 1),
    ("```console\n$ printf 'a\\nb\\nc\\nd\\n'\na\n...\nd\n```\n", 0),
    ("```console\n$ printf 'a\\nb\\nc\\nd\\n'\na\n...\ne\n```\n", 1),
    ("```console\n$ false\n```\n", 1),
    ("```console\n$ false | true\n```\n", 1),
    ("```console\n$ echo one >file\n```\ntext\n```console\n$ cat file kept\none\nkept\n```\n", 0),
    ("```\n$ echo one\none\n```\n", 1),
    ("```console\none\n```\n", 1),
)


def check(text, *options):
    """Returns the status of the check of a text, and the text afterwards."""
    with tempfile.TemporaryDirectory() as folder:
        document = os.path.join(folder, "document.md")
        examples = os.path.join(folder, "examples")
        os.mkdir(examples)
        for name, content in ((document, text), (os.path.join(examples, "kept"), "kept\n")):
            with open(name, "w", encoding="utf-8") as file:
                file.write(content)
        words = [sys.executable, RUNNER, *options, document, examples, folder]
        status = subprocess.run(words, capture_output=True, check=False).returncode
        assert os.listdir(examples) == ["kept"], "the folder of the examples was changed"
        with open(document, encoding="utf-8") as file:
            return status, file.read()


for case, expected in CASES:
    assert check(case) == (expected, case), case
stale = "before\n```console\n$ echo one\ntwo\n```\nafter\n"
assert check(stale, "--accept") == (0, stale.replace("two", "one"))
print(f"{len(CASES)} documents were judged rightly")
