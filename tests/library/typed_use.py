"""A use of the module that a checker of types has to accept; mypy reads it, nothing runs it."""

from typing import Optional

import numpy
import quorix
from numpy.typing import NDArray


def longest(text: bytes) -> Optional[quorix.Repeat]:
    repeats = quorix.find_repeats(text, mode="exact", max_unit_length=20, detail="figures")
    lengths: NDArray[numpy.int64] = repeats.ends - repeats.starts
    place = int(lengths.argmax()) if len(repeats) else -1
    return repeats[place] if place >= 0 else None


def positions_of_edits(repeat: quorix.Repeat) -> list[int]:
    return [position for position, kind in repeat.edits if kind != "M"]


def refused_position(error: quorix.TextError) -> int:
    return error.position


quorix.find_repeats("ACGT", mode="fast")  # type: ignore[arg-type]
quorix.find_repeats(["ACGT"])  # type: ignore[arg-type]
