"""Finds tandem repeats in DNA.

    >>> import quorix
    >>> repeats = quorix.find_repeats("TTACACACACACGG")
    >>> repeats.starts, repeats.ends, repeats.units
    (array([2]), array([12]), array(['AC'], dtype=object))

The repeats are those that the program ``quorix`` reports for a record with these bases under the same
settings, in the order of its report. Positions are offsets into the text, 0-based and half-open.
"""

from __future__ import annotations

import operator
from typing import Iterator, Literal, NamedTuple

import numpy
from numpy.typing import NDArray

from quorix import _native
from quorix._native import SettingsError, TextError

__all__ = ["Repeat", "Repeats", "SettingsError", "TextError", "find_repeats", "__version__"]

__version__ = _native.version()

Mode = Literal["exact", "extendExact", "imperfect"]
NInPerfection = Literal["mismatch", "neutral", "match"]
UnitForm = Literal["found", "rotation", "both strands"]
Detail = Literal["figures", "edits", "alignment"]

_MODES = ("exact", "extendExact", "imperfect")
_N_IN_PERFECTION = ("mismatch", "neutral", "match")
_UNIT_FORMS = ("found", "rotation", "both strands")
_DETAILS = ("figures", "edits", "alignment")


class Repeat(NamedTuple):
    """One repeat."""

    start: int
    end: int
    unit: str
    unit_length: int
    normalized_length: int
    score: int
    perfection: float
    mismatches: int
    insertions: int
    deletions: int
    n_count: int
    #: (position in the text, kind): "M" mismatch, "I" inserted base, "D" unit character missing
    #: just before the base. Empty unless asked for.
    edits: list[tuple[int, str]]
    #: Bases, marks and unit; None unless asked for.
    alignment: tuple[str, str, str] | None


class Repeats:
    """The repeats of a text, as arrays with one entry a repeat, ordered by start, then by end.

    ``len``, an index and iteration see them one by one, as ``Repeat``.
    """

    #: First base.
    starts: NDArray[numpy.int64]
    #: One after the last base.
    ends: NDArray[numpy.int64]
    #: Units as ``str``, in the form that was asked for.
    units: NDArray[numpy.object_]
    unit_lengths: NDArray[numpy.int64]
    #: Bases, less the inserted and plus the missing ones: what is compared with the minimum length.
    normalized_lengths: NDArray[numpy.int64]
    scores: NDArray[numpy.int32]
    #: Share of matches in percent; NaN if nothing is left to count.
    perfections: NDArray[numpy.float64]
    mismatches: NDArray[numpy.int64]
    insertions: NDArray[numpy.int64]
    deletions: NDArray[numpy.int64]
    #: N's that count as unknown.
    n_counts: NDArray[numpy.int64]
    #: The edits of repeat i are those from ``edit_offsets[i]`` to ``edit_offsets[i + 1]`` of the next
    #: two arrays.
    edit_offsets: NDArray[numpy.int64]
    edit_positions: NDArray[numpy.int64]
    #: b"M", b"I" or b"D".
    edit_kinds: NDArray[numpy.bytes_]

    def __init__(self, found: _native.Found) -> None:
        self.starts = found.starts
        self.ends = found.ends
        units = found.units
        self.units = numpy.empty(len(units), dtype=object)
        self.units[:] = units
        self.unit_lengths = found.unit_lengths
        self.normalized_lengths = found.normalized_lengths
        self.scores = found.scores
        self.perfections = found.perfections
        self.mismatches = found.mismatches
        self.insertions = found.insertions
        self.deletions = found.deletions
        self.n_counts = found.n_counts
        self.edit_offsets = found.edit_offsets
        self.edit_positions = found.edit_positions
        self.edit_kinds = found.edit_kinds.view("S1")
        self._alignments = found.alignments

    def __len__(self) -> int:
        return len(self.starts)

    def __getitem__(self, index: int) -> Repeat:
        if not -len(self) <= index < len(self):
            raise IndexError("no repeat has this index")
        place = index % len(self)
        return Repeat(
            int(self.starts[place]),
            int(self.ends[place]),
            str(self.units[place]),
            int(self.unit_lengths[place]),
            int(self.normalized_lengths[place]),
            int(self.scores[place]),
            float(self.perfections[place]),
            int(self.mismatches[place]),
            int(self.insertions[place]),
            int(self.deletions[place]),
            int(self.n_counts[place]),
            self._edits(place),
            self._alignments[place] if self._alignments else None,
        )

    def __iter__(self) -> Iterator[Repeat]:
        return (self[place] for place in range(len(self)))

    def _edits(self, place: int) -> list[tuple[int, str]]:
        edits = slice(int(self.edit_offsets[place]), int(self.edit_offsets[place + 1]))
        kinds = [kind.decode() for kind in self.edit_kinds[edits].tolist()]
        return list(zip(self.edit_positions[edits].tolist(), kinds))


def _code(value: str, names: tuple[str, ...], setting: str) -> int:
    if value not in names:
        raise SettingsError(f"{setting} is one of {', '.join(map(repr, names))}, not {value!r}")
    return names.index(value)


def _whole(value: int, name: str, minimum: int = -(2**31), maximum: int = 2**31 - 1) -> int:
    number = operator.index(value)
    if not minimum <= number <= maximum:
        raise SettingsError(f"{name} is {number}, and not from {minimum} to {maximum}")
    return number


def _length(value: int, name: str) -> int:
    return _whole(value, name, 0, 2**32 - 1)


def find_repeats(
    text: str | bytes,
    *,
    mode: Mode = "imperfect",
    min_unit_length: int = 1,
    max_unit_length: int = 6,
    min_score: int = 6,
    min_score_offset: int = 0,
    min_score_factor: float = 1.0,
    min_length: int = 1,
    min_length_offset: int = 0,
    min_length_factor: float = 0.0,
    mismatch_score: int = -6,
    indel_score: int = -6,
    recursion_depth: int = 5,
    max_score_reduction: int | None = None,
    max_successive_n: int = 4,
    n_is_mismatch: bool = False,
    removes_overlapping: bool = True,
    n_in_perfection: NInPerfection = "mismatch",
    unit_form: UnitForm = "both strands",
    detail: Detail = "edits",
) -> Repeats:
    """Returns the repeats of a text of bases.

    The settings have the names and defaults of ``quorix/quorix.h``. ``max_score_reduction`` is without
    limit if it is None. Letters count as in a FASTA file, in either case; white space, "-" and "*" are
    refused, since positions would not be those of the text.

    Other Python threads run during a search, but one search runs at a time in a process: for several
    cores, search in several processes (``multiprocessing`` with "spawn"). A search cannot be
    interrupted; Ctrl-C takes effect at its end.

    Raises ``SettingsError`` (a ``ValueError``) with the program's reason, ``TextError`` (a
    ``ValueError``) with the ``position`` of the first character that is no base, and ``MemoryError``.
    """
    return Repeats(
        _native.find_repeats(
            text,
            _code(mode, _MODES, "mode"),
            _length(min_unit_length, "min_unit_length"),
            _length(max_unit_length, "max_unit_length"),
            _whole(min_score, "min_score"),
            _whole(min_score_offset, "min_score_offset"),
            float(min_score_factor),
            _whole(min_length, "min_length"),
            _whole(min_length_offset, "min_length_offset"),
            float(min_length_factor),
            _whole(mismatch_score, "mismatch_score"),
            _whole(indel_score, "indel_score"),
            _whole(recursion_depth, "recursion_depth"),
            _whole(
                2**31 - 1 if max_score_reduction is None else max_score_reduction,
                "max_score_reduction",
            ),
            _whole(max_successive_n, "max_successive_n"),
            bool(n_is_mismatch),
            bool(removes_overlapping),
            _code(n_in_perfection, _N_IN_PERFECTION, "n_in_perfection"),
            _code(unit_form, _UNIT_FORMS, "unit_form"),
            _code(detail, _DETAILS, "detail"),
        )
    )
