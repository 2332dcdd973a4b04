#pragma once

/// @file
/// Sieve of the seeds of long units over several copies, for many unit lengths.
///
/// An extension reads its unit again and again: copy k of it, from 0, at lags around k + 1 unit
/// lengths. Its characters are cut into blocks of 32 (search/filter/block_nets.h). The seeds of one
/// block of bases, of unit lengths that differ little, are judged together:
///
/// ```
///   text      |  block b  |  b + 1   |   . . .   | block m  |  m + 1  |  m + 2  |
///   seeds          ppp                                eee
///   unit           [p . . . . . . . . . . . . . . . . e)
///              bottom         whole blocks               tail
/// ```
///
/// The bottom is the part of block b from the seed's base on, the tail what the unit has of block m
/// and those after it. To the right an extension reads bottom, whole blocks and tail, and begins
/// again; to the left tail, whole blocks and bottom, each from its last character down.
///
/// What it promises: seeds are rejected only if the sums of the highest nets of the blocks, on
/// either side, stay below the minimum score until they fall to minus the unit length. For whatever
/// path an extension takes,
///
/// 1. what it collects in a block is no more than the highest net of that block over the lags at
///    which it may enter it. A part of a block is bounded by the paths that begin in it, or end
///    in it; a tail may be empty.
/// 2. Its lags: after c characters and with score s on entry it has at most s + c matches. Each
///    indel takes away a penalty g, and the score stays above minus the unit length L; so it has
///    made fewer than (s + c + L) / g indels, and is as many lags away from those of its copy at
///    most.
/// 3. An edit must leave the score above -L, and matches only raise it. So a path whose score is -L
///    or less between two blocks is dead. Of several unit lengths the longest counts.
/// 4. The left side begins with the best score of the right one; with more, a path has every choice
///    of one with less.
///
/// A path that is alive after `kMaxBlockCopies` copies, or whose lags are too long, leaves its
/// seeds undecided. Neutral N's neither match nor cost. The verdict on a unit with an N is
/// meaningless.

#include <cstdint>
#include <vector>

#include "search/bits/bit_set.h"
#include "search/filter/block_nets.h"
#include "search/filter/block_side.h"
#include "search/filter/lag_sieve.h"
#include "search/filter/sieve.h"

namespace quorix {

static_assert(kMinBlockUnit >= kBlockCharacters, "a unit reaches the end of its first block");

/// What a sieve of blocks has done.
struct BlockWork {
  std::uint64_t pieces = 0;  ///< of blocks whose nets were found
  std::uint64_t sides = 0;   ///< of seeds of a block that were followed
};

/// Clears in `seeds[i]` the bits of seeds of length `first_unit_length` + i that cannot extend into
/// a repeat of their minimum score, see search/filter/sieve.h, in the whole text [text,
/// text + length), for units of `kMinBlockUnit` and more. REQUIRES: last unit length < length.
/// Returns the work done. Throws: std::bad_alloc.
BlockWork sift_text_by_blocks(const char* text, std::uint64_t length, const LagRule& rule,
                              std::vector<CBitSet>& seeds);

/// The same for the seeds of one segment alone. Changes no word of bits that has none of them.
/// REQUIRES: the segment begins at a multiple of 64 bases, and ends at one or with the text.
/// Throws: std::bad_alloc.
BlockWork sift_by_blocks(const char* text, std::uint64_t length, const LagRule& rule,
                         const Segment& segment, std::vector<CBitSet>& seeds);

}  // namespace quorix
