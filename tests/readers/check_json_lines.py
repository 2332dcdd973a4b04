"""Validates JSON lines and compares them with the table of the same repeats.

check_json_lines.py SCHEMA JSONL TSV
"""

import json
import sys

import jsonschema


def cell(repeat, column):
    """What the table shows for a repeat of the JSON lines."""
    value = repeat.get(column)
    if column == "edits" and value is not None:
        return "".join(f"({position},{kind})," for position, kind in value) or "."
    if value is None:
        return "."
    if column in ("copies", "perfection"):
        return float(value)
    return str(value)


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        schema = json.load(file)
    jsonschema.Draft7Validator.check_schema(schema)
    validator = jsonschema.validators.validator_for(schema)(schema)
    count = 0
    with open(sys.argv[2], encoding="utf-8") as lines, open(sys.argv[3], encoding="utf-8") as rows:
        columns = next(rows).rstrip("\n").split("\t")
        for count, (line, row) in enumerate(zip(lines, rows, strict=True), 1):
            repeat = json.loads(line)
            validator.validate(repeat)
            shown = dict(zip(columns, row.rstrip("\n").split("\t"), strict=True))
            for column, text in shown.items():
                expected = cell(repeat, column)
                if isinstance(expected, float):
                    text = float(text)
                if text != expected:
                    sys.exit(f"{sys.argv[2]}:{count}: {column} is {expected}, in the table {text}")
    if count == 0:
        sys.exit("there is no repeat")


main()
