"""The engine, as native.cpp defines it."""

import numpy
from numpy.typing import NDArray

class SettingsError(ValueError): ...

class TextError(ValueError):
    position: int

class Found:
    """What a search has found; one entry a repeat, or a list that is empty if it was not asked for."""

    @property
    def starts(self) -> NDArray[numpy.int64]: ...
    @property
    def ends(self) -> NDArray[numpy.int64]: ...
    @property
    def units(self) -> list[str]: ...
    @property
    def unit_lengths(self) -> NDArray[numpy.int64]: ...
    @property
    def normalized_lengths(self) -> NDArray[numpy.int64]: ...
    @property
    def scores(self) -> NDArray[numpy.int32]: ...
    @property
    def perfections(self) -> NDArray[numpy.float64]: ...
    @property
    def mismatches(self) -> NDArray[numpy.int64]: ...
    @property
    def insertions(self) -> NDArray[numpy.int64]: ...
    @property
    def deletions(self) -> NDArray[numpy.int64]: ...
    @property
    def n_counts(self) -> NDArray[numpy.int64]: ...
    @property
    def edit_offsets(self) -> NDArray[numpy.int64]: ...
    @property
    def edit_positions(self) -> NDArray[numpy.int64]: ...
    @property
    def edit_kinds(self) -> NDArray[numpy.uint8]: ...
    @property
    def alignments(self) -> list[tuple[str, str, str]]: ...

def find_repeats(
    text: str | bytes,
    mode: int,
    min_unit_length: int,
    max_unit_length: int,
    min_score: int,
    min_score_offset: int,
    min_score_factor: float,
    min_length: int,
    min_length_offset: int,
    min_length_factor: float,
    mismatch_score: int,
    indel_score: int,
    recursion_depth: int,
    max_score_reduction: int,
    max_successive_n: int,
    n_is_mismatch: bool,
    removes_overlapping: bool,
    n_in_perfection: int,
    unit_form: int,
    detail: int,
) -> Found: ...
def version() -> str: ...
