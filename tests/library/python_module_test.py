"""Tests of the Python module: python_module_test.py PROGRAM

The folder of the module is in PYTHONPATH. What it finds has to be what the program reports.
"""

import random
import re
import subprocess
import sys
import tempfile
import threading
import time
import unittest

import numpy
import quorix
from random_cases import MODES, fasta_of, program_options, random_record, random_settings

PROGRAM = sys.argv.pop(1)
ARRAY = "TTACACACACACGG"
LINE = re.compile(
    r"^ *\S+ +(\d+) : +(\d+) \| +(\d+) bp \| +(\d+) BP \| +(-?\d+) pt \| +(\S+) % \| +(\d+) mis \| "
    r"+(\d+) ins \| +(\d+) del \| +(?:(\d+) N \| +)?unit (\S+)$")
SETTINGS = {
    "minUnitLen": ("min_unit_length", int), "maxUnitLen": ("max_unit_length", int),
    "minScore": ("min_score", int), "minScore_a": ("min_score_offset", int),
    "minScore_b": ("min_score_factor", float), "minLength": ("min_length", int),
    "minLength_a": ("min_length_offset", int), "minLength_b": ("min_length_factor", float),
    "mismatchScore": ("mismatch_score", int), "indelScore": ("indel_score", int),
    "recursion": ("recursion_depth", int), "maximum_score_reduction": ("max_score_reduction", int),
    "succN": ("max_successive_n", int),
    "NPerfectionMode": ("n_in_perfection", lambda code: ["mismatch", "neutral", "match"][int(code)]),
    "reportUnit": ("unit_form", lambda code: ["found", "rotation", "both strands"][int(code)]),
}


def reported(report):
    """The repeats of each record of a report, as tuples."""
    records = []
    lines = iter(report.splitlines())
    for line in lines:
        if line.startswith(">"):
            records.append([])
        found = LINE.match(line)
        if not found:
            continue
        first, last, length, normalized, score, perfection, mis, ins, dels, n, unit = found.groups()
        start = int(first) - 1
        edits = [(start + int(place) - 1, kind)
                 for place, kind in re.findall(r"\((\d+),(\w)\)", next(lines))]
        alignment = (next(lines), next(lines), next(lines))
        assert int(length) == int(last) - start
        records[-1].append((start, int(last), unit, int(normalized), int(score), perfection, int(mis),
                            int(ins), int(dels), n and int(n), edits, alignment))
    return records


def found_by_module(bases, settings):
    has_n = not settings.get("n_is_mismatch", False)
    return [(one.start, one.end, one.unit, one.normalized_length, one.score,
             f"{one.perfection:.3f}", one.mismatches, one.insertions, one.deletions,
             one.n_count if has_n else None, one.edits, one.alignment)
            for one in quorix.find_repeats(bases, detail="alignment", **settings)]


class ResultsTest(unittest.TestCase):
    def test_repeats_are_those_of_the_program(self):
        draw = random.Random(20261122)
        counts = {mode: 0 for mode in MODES}
        refusals = 0
        for case in range(90):
            mode = MODES[case % 3]
            records = [random_record(draw) for _ in range(draw.randint(1, 5))]
            drawn, switches = random_settings(draw)
            settings = {SETTINGS[name][0]: SETTINGS[name][1](value) for name, value in drawn.items()}
            settings["mode"] = mode
            settings["n_is_mismatch"] = "NsAsMissense" in switches
            settings["removes_overlapping"] = "dontRemoveMostlyOverlapping" not in switches
            with tempfile.NamedTemporaryFile("w", suffix=".fa") as file:
                file.write(fasta_of(records))
                file.flush()
                run = subprocess.run([PROGRAM, "-M", mode, *program_options(drawn, switches), file.name],
                                     capture_output=True, text=True, check=False)
            with self.subTest(case=case, settings=settings, records=records):
                if run.returncode != 0:
                    with self.assertRaises(quorix.SettingsError) as refused:
                        quorix.find_repeats(records[0], **settings)
                    self.assertIn(f"{refused.exception}\n", run.stderr)
                    refusals += 1
                    continue
                expected = reported(run.stdout)
                self.assertEqual(len(expected), len(records))
                for bases, repeats in zip(records, expected):
                    self.assertEqual(found_by_module(bases, settings), repeats)
                    counts[mode] += len(repeats)
        self.assertGreater(refusals, 0)
        self.assertGreater(min(counts.values()), 20, counts)

    def test_arrays_have_one_entry_a_repeat(self):
        bases = ARRAY + "CCTGCGATAGATAGATGATAGATAGATAGATTCTGCC"
        repeats = quorix.find_repeats(bases)
        self.assertEqual(len(repeats), 2)
        types = {"starts": "int64", "ends": "int64", "unit_lengths": "int64", "scores": "int32",
                 "normalized_lengths": "int64", "perfections": "float64", "mismatches": "int64",
                 "insertions": "int64", "deletions": "int64", "n_counts": "int64", "units": "object"}
        for name, kind in types.items():
            array = getattr(repeats, name)
            self.assertEqual((array.dtype.name, array.shape), (kind, (2,)), name)
        numpy.testing.assert_array_equal(repeats.starts, [2, 19])
        numpy.testing.assert_array_equal(repeats.units == "AC", [True, False])
        numpy.testing.assert_array_equal(repeats.edit_offsets, [0, 0, 1])
        self.assertEqual(repeats.edit_positions.tolist(), [30])
        self.assertEqual(repeats.edit_kinds.tolist(), [b"D"])
        self.assertEqual(repeats[-1].edits, [(30, "D")])
        self.assertEqual(repeats[1], list(repeats)[1])
        self.assertIsNone(repeats[0].alignment)
        with self.assertRaises(IndexError):
            repeats[2]

    def test_arrays_outlive_what_they_were_found_with(self):
        starts = quorix.find_repeats(ARRAY * 500).starts
        filler = [quorix.find_repeats("AC" * 3000).starts for _ in range(20)]
        self.assertEqual(len(starts), 500)
        self.assertTrue((numpy.diff(starts) == len(ARRAY)).all())
        self.assertTrue(all((one == 0).all() for one in filler))

    def test_nothing_is_found_in_an_empty_text(self):
        repeats = quorix.find_repeats("", detail="alignment")
        self.assertEqual((len(repeats), list(repeats), len(repeats.units)), (0, [], 0))

    def test_a_text_is_str_or_bytes(self):
        self.assertEqual(list(quorix.find_repeats(ARRAY)), list(quorix.find_repeats(ARRAY.encode())))
        for text in (bytearray(b"ACGT"), 7, None, ["ACGT"]):
            with self.assertRaisesRegex(TypeError, "the text has to be str or bytes"):
                quorix.find_repeats(text)


class ErrorsTest(unittest.TestCase):
    def test_a_character_that_is_no_base_is_named_with_its_position(self):
        for text, position in [("ACGT\n", 4), ("AC-GT", 2), ("ACGÄ", 3), (b"\x00", 0)]:
            with self.assertRaisesRegex(quorix.TextError, f"no base at position {position}") as error:
                quorix.find_repeats(text)
            self.assertEqual(error.exception.position, position)
            self.assertIsInstance(error.exception, ValueError)

    def test_settings_out_of_range_are_refused(self):
        for settings, reason in [
                ({"recursion_depth": 0}, "the recursion depth must be greater than 0"),
                ({"mismatch_score": -1}, "the mismatch score must be smaller or equal to -2"),
                ({"mode": "fast"}, "mode is one of 'exact', 'extendExact', 'imperfect', not 'fast'"),
                ({"detail": "all"}, "detail is one of"),
                ({"min_unit_length": -1}, "min_unit_length is -1, and not from 0 to 4294967295"),
                ({"min_score": 2**31}, "min_score is 2147483648, and not from"),
                ({"min_score_factor": float("nan")}, "must be a finite number"),
                ({"min_length_factor": 1e300}, "must be a finite number")]:
            with self.assertRaisesRegex(quorix.SettingsError, reason):
                quorix.find_repeats(ARRAY, **settings)
            self.assertEqual(len(quorix.find_repeats(ARRAY)), 1)
        with self.assertRaises(TypeError):
            quorix.find_repeats(ARRAY, min_score=6.5)


class ThreadsTest(unittest.TestCase):
    def test_other_threads_run_during_a_search(self):
        draw = random.Random(1)
        bases = "".join(draw.choices("ACGT", k=400_000))
        settings = {"min_unit_length": 20, "max_unit_length": 90}
        seconds = []

        def search():
            began = time.monotonic()
            quorix.find_repeats(bases, **settings)
            seconds.append(time.monotonic() - began)

        search()  # how long it takes alone
        thread = threading.Thread(target=search)
        ticks = 0
        thread.start()
        while thread.is_alive():
            time.sleep(seconds[0] / 50)
            ticks += 1
        # A search that held the interpreter would let this thread run once, at its end.
        self.assertGreater(ticks, 5)

    def test_searches_of_many_threads_give_what_one_gives(self):
        draw = random.Random(2)
        texts = [random_record(draw) * 3 for _ in range(24)]
        alone = [list(quorix.find_repeats(text, max_unit_length=1 + i % 9))
                 for i, text in enumerate(texts)]
        found = [None] * len(texts)

        def search(i):
            found[i] = list(quorix.find_repeats(texts[i], max_unit_length=1 + i % 9))

        threads = [threading.Thread(target=search, args=(i,)) for i in range(len(texts))]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(found, alone)
        self.assertGreater(sum(map(len, alone)), 20)


if __name__ == "__main__":
    unittest.main()
