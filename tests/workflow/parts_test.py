"""Tests of the parts of the workflow that need no Snakemake: parts_test.py PROJECT_FOLDER [TEST]..."""

import gzip
import io
import itertools
import pathlib
import random
import sys
import tempfile
import unittest
import unittest.mock

import genomes

PROJECT = pathlib.Path(sys.argv.pop(1)).resolve()
sys.path.insert(0, str(PROJECT / "workflow/scripts"))
import fasta  # noqa: E402
import ranges  # noqa: E402
import settings  # noqa: E402
import unpack  # noqa: E402


def scan_in_chunks(data, size):
    scanner = fasta.Scanner()
    for begin in range(0, len(data), size):
        scanner.feed(data[begin : begin + size])
    records = scanner.finish()
    return list(records.begins), list(records.bases)


class ScannerTest(unittest.TestCase):
    def test_records_begin_at_the_begin_of_a_line(self):
        text = b" \n# no > record\n\t>a > b\nAC-G*T \n>\r\n>c\rNN>NN\r>d\n\n>e"
        # Of the third record the > within a line is counted by nobody; the search refuses it.
        begins = [text.index(header) for header in (b">a", b">\r", b">c", b">d", b">e")]
        expected = (begins, [4, 0, 4, 0, 0])
        for size in range(1, len(text) + 1):
            self.assertEqual(scan_in_chunks(text, size), expected, size)

    def test_what_has_no_records_is_refused(self):
        for text in (b"", b"\n \n", b"# comment", b"#", b"ACGT\n>a\n", b" A"):
            with self.subTest(text=text), self.assertRaises(fasta.NotFasta):
                scan_in_chunks(text, 4)


class IndexTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.path = pathlib.Path(folder.name, "genome.fa")

    def read(self):
        found = fasta.read_index(self.path)
        return found and (list(found.begins), list(found.bases))

    def test_a_complete_index_says_what_reading_the_text_does(self):
        for seed in range(20):
            text = genomes.records(seed, 1 + seed, 200) + genomes.record("empty", "") * (seed % 2)
            text = text[:-1] if seed % 4 == 2 else text  # the last line may lack its end
            genomes.write(self.path, text)
            genomes.write_index(self.path)
            self.assertEqual(self.read(), scan_in_chunks(text.encode(), 1000), seed)

    def test_an_index_of_another_text_is_not_used(self):
        text = genomes.records(1, 4, 200)
        lines = text.splitlines(keepends=True)
        genomes.write(self.path, text)
        genomes.write_index(self.path)
        self.assertIsNotNone(self.read())
        index = self.path.with_name("genome.fa.fai")
        for changed in (text + "A", text[:-2], text + ">more\n", "".join(lines[3:]), "\n" + text,
                        text.replace(">record3", "\n>record3"), text.replace(">record2", "Arecord2"),
                        text.replace(">record2", ">r\rcord2")):
            genomes.write(self.path, changed)
            index.touch()
            self.assertIsNone(self.read(), changed)

    def test_rubbish_is_not_used(self):
        genomes.write(self.path, genomes.records(1, 2))
        for rubbish in (b"", b"\n", b"a\tb\n", b"a\t1\t2\t3\n", b"a\t-1\t-2\t-3\t-4\n", b"\xff\0", b"a\t5\t3\t0\t0\n"):
            self.path.with_name("genome.fa.fai").write_bytes(rubbish)
            self.assertIsNone(self.read(), rubbish)


class RangesTest(unittest.TestCase):
    def test_the_largest_range_is_as_small_as_it_can_be(self):
        draw = random.Random(1)
        for _ in range(300):
            lengths = [draw.choice([0, 1, draw.randint(0, 50)]) for _ in range(draw.randint(1, 8))]
            count = draw.randint(1, 9)
            begins = ranges.split(lengths, count)
            self.assertEqual(begins, sorted(set(begins)))
            self.assertEqual(begins[0], 0)
            self.assertLessEqual(len(begins), count)

            def largest(cuts):
                edges = [0, *cuts, len(lengths)]
                return max(sum(lengths[begin:end]) for begin, end in zip(edges, edges[1:]))

            least = min(largest(cuts) for size in range(min(count, len(lengths)))
                        for cuts in itertools.combinations(range(1, len(lengths)), size))
            self.assertEqual(largest(begins[1:]), least, (lengths, count))

    def test_ranges_cover_the_text_and_survive_their_table(self):
        text = "# a comment\n" + genomes.records(2, 20)
        scanner = fasta.Scanner()
        scanner.feed(text.encode())
        records = scanner.finish()
        rows = ranges.make_ranges(records, len(text), 6, 1)
        self.assertEqual((rows[0].begin, rows[0].first, rows[-1].end, rows[-1].last), (0, 1, len(text), 20))
        for one, two in zip(rows, rows[1:]):
            self.assertEqual((one.end, one.last + 1, one.number + 1), (two.begin, two.first, two.number))
        self.assertEqual([row.is_last for row in rows], [False] * (len(rows) - 1) + [True])
        self.assertEqual(sum(row.bases for row in rows), sum(records.bases))
        self.assertEqual(max(row.longest for row in rows), max(records.bases))
        with tempfile.TemporaryDirectory() as folder:
            table = pathlib.Path(folder, "ranges.tsv")
            ranges.write_table(table, rows)
            self.assertEqual(ranges.read_table(table), rows)

    def test_small_genomes_have_fewer_ranges(self):
        records = fasta.Records()
        for begin in range(10):
            records.add(begin * 100, 50)
        counts = [len(ranges.make_ranges(records, 1000, 8, bases)) for bases in (1, 100, 250, 251, 10**9)]
        self.assertEqual(counts, [5, 5, 2, 1, 1])


class UnpackTest(unittest.TestCase):
    def unpack(self, data):
        text = io.BytesIO()
        unpack.unpack(io.BytesIO(data), text)
        return text.getvalue()

    def test_members_are_joined(self):
        text = genomes.records(3, 30).encode()
        self.assertEqual(self.unpack(gzip.compress(text)), text)
        self.assertEqual(self.unpack(gzip.compress(text) + gzip.compress(b"") + gzip.compress(text)), text + text)
        self.assertEqual(self.unpack(gzip.compress(text) + bytes(3_000_000)), text)
        self.assertEqual(self.unpack(genomes.bgzf(text.decode())), text)

    def test_damage_is_refused(self):
        packed = gzip.compress(genomes.records(4, 3).encode())
        for data in (packed[:-1], packed[:30], packed + b"more", packed + b"\0\0more", packed[:40] + b"\0" + packed[41:],
                     packed[:-8] + bytes(8), genomes.bgzf(">a\nACGT\n", with_end_mark=False), packed + packed[:5]):
            with self.subTest(length=len(data)), self.assertRaises(unpack.Damaged):
                self.unpack(data)


class SettingsTest(unittest.TestCase):
    def test_memory_follows_the_longest_record(self):
        self.assertEqual(settings.memory_mb(0, 0, 1, 10), 140)
        self.assertEqual(settings.memory_mb(250_000_000, 250_000_000, 4, 10), 2760)
        # Of other records 32 million bases are read ahead at most.
        self.assertEqual(settings.memory_mb(1_000_000, 2_000_000, 1, 10), 158)
        self.assertEqual(settings.memory_mb(1_000_000, 900_000_000, 1, 10), 406)

    def test_time_follows_the_bases(self):
        self.assertEqual(settings.minutes(0, 200_000), 10)
        self.assertEqual(settings.minutes(4_500_000_000, 200_000), 385)

    def test_the_program_that_came_with_the_workflow_is_the_first(self):
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name).resolve()
            for workflow, program in (("checkout/workflow", "checkout/build/quorix-tools"),
                                      ("prefix/share/quorix/workflow", "prefix/bin/quorix-tools")):
                (folder / workflow).mkdir(parents=True)
                with unittest.mock.patch.dict("os.environ", PATH=str(folder)):
                    with self.assertRaisesRegex(settings.BadSettings, "quorix-tools is no program"):
                        settings.find_program("", str(folder / workflow))
                    (folder / program).parent.mkdir()
                    genomes.write_program(folder / program, ":")
                    self.assertEqual(settings.find_program("", str(folder / workflow)), str(folder / program))
                    genomes.write_program(folder / "another", ":")
                    self.assertEqual(settings.find_program("another", str(folder / workflow)), str(folder / "another"))

    def test_a_tilde_is_the_home(self):
        with tempfile.TemporaryDirectory() as home, unittest.mock.patch.dict("os.environ", HOME=home):
            path = str(genomes.write(pathlib.Path(home, "all/a.fa"), ">a\n"))
            for given in ("~/all", "~/all/a.fa", ["~/all"], {"a": "~/all/a.fa"}):
                self.assertEqual(settings.find_genomes(given), {"a": path})

    def test_names_of_genomes_are_those_of_their_files(self):
        for path, name in (("a/b.fa", "b"), ("b.fasta.gz", "b"), ("b.v1.fna", "b.v1"), ("b.txt", "b.txt"),
                           ("b.gz", "b.gz"), ("the genome.fas.bgz", "the genome")):
            self.assertEqual(settings.name_of(path), name)


unittest.main()
