#!/usr/bin/env python3
"""What is said about the project beside it agrees with the project: citation, recipe, report forms.

    metadata_test.py PROJECT_FOLDER QUORIX VERSION_TEXT PROJECT_VERSION
"""

import os
import re
import subprocess
import sys

import yaml

project, quorix, version, project_version = sys.argv[1:]
failures = []


def expect(condition, message):
    if not condition:
        failures.append(message)


def text_of(name):
    with open(os.path.join(project, name), encoding="utf-8") as file:
        return file.read()


# The program, the build and the citation have one version.
printed = subprocess.run([quorix, "--version"], capture_output=True, text=True, check=True).stdout
expect(f"version: {version}" in printed or f"version {version}" in printed, f"--version prints {printed!r}")
expect(re.fullmatch(re.escape(project_version) + "[a-z]?", version), f"{version} is no {project_version}")

citation = yaml.safe_load(text_of("CITATION.cff"))
for key in ("cff-version", "message", "title", "authors", "version", "license", "type", "abstract"):
    expect(citation.get(key), f"CITATION.cff has no {key}")
expect(citation["cff-version"] == "1.2.0", "CITATION.cff is of another format")
expect(str(citation["version"]) == version, f"CITATION.cff has version {citation['version']}")
expect(text_of("LICENSE").startswith(citation["license"] + " License\n"), "CITATION.cff has another licence")
holder = re.search(r"Copyright \(c\) \d+ (.*)", text_of("LICENSE")).group(1)
expect([author["name"] for author in citation["authors"]] == [holder], "CITATION.cff has other authors")
released = re.search(rf"^## {re.escape(version)}, (\d{{4}}-\d\d-\d\d)$", text_of("CHANGELOG.md"), re.MULTILINE)
expect(
    str(citation.get("date-released", "")) == (released.group(1) if released else ""),
    "CITATION.cff has another day of release than CHANGELOG.md",
)

recipe = re.search(r'^{% set version = "(.*)" %}$', text_of("packaging/conda/meta.yaml"), re.MULTILINE)
expect(recipe and recipe.group(1) == version, "the recipe of conda has another version")

# A form asks for what makes a report useful, and says what each field is for.
ASKED = {
    "failure.yml": {"version", "system", "command", "input", "messages"},
    "request.yml": {"goal", "tried"},
    "wrong_result.yml": {"version", "command", "input", "actual", "expected"},
}
forms = os.path.join(project, ".github", "ISSUE_TEMPLATE")
expect(sorted(os.listdir(forms)) == sorted(ASKED), "there are other forms")
for name, asked in ASKED.items():
    form = yaml.safe_load(text_of(os.path.join(forms, name)))
    expect(form.get("name") and form.get("description"), f"{name} has no name or description")
    fields = [field for field in form["body"] if field["type"] != "markdown"]
    required = {field["id"] for field in fields if field["validations"]["required"]}
    expect(required == asked, f"{name} requires {sorted(required)}")
    for field in fields:
        expect(field["type"] in ("input", "textarea"), f"{name}: {field['id']} is a {field['type']}")
        expect(field["attributes"].get("label"), f"{name}: {field['id']} has no label")
        expect(field["attributes"].get("description"), f"{name}: {field['id']} has no description")
    for document in re.findall(r"\b[A-Z]+\.md\b", str(form)):
        expect(os.path.exists(os.path.join(project, document)), f"{name} names {document}")

for failure in failures:
    print("FAILED:", failure)
sys.exit(1 if failures else 0)
