#pragma once

/// @file
/// The bases beyond an edge, compared with a unit on many diagonals at once.
///
/// A path of the look-ahead that has made as many insertions as deletions meets the unit characters
/// in step with the bases; each insertion more lets it meet them one base later. So there is one
/// row of matches for every diagonal, the insertions less the deletions, and a run of matches is a
/// run of ones in a row. A row is one word, found from the letters by a few word operations.

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>

#include "search/bits/byte_bits.h"

namespace quorix {

class CMatchWindow {
 public:
  /// Bases that a window holds at most.
  static constexpr std::int64_t kMaxBases = 48;
  /// Diagonals are bounded by this, so that a row of characters fits in a word.
  static constexpr std::ptrdiff_t kMaxDiagonal = 8;
  static_assert(kMaxBases + 2 * kMaxDiagonal <= 64);

  /// Holds no base.
  void clear() { size_ = 0; }

  /// Reads the bases beyond `edge` up to `limit` or the first N, and the unit as it is read on from
  /// `character`. Holds no base if there is an N in the unit. `Direction` is `Rightward` or
  /// `Leftward`.
  template <class Direction>
  void read(const char* edge, const char* limit, const char* character, const char* unit_begin,
            const char* unit_end) {
    size_ = std::min(kMaxBases, Direction::bases_beyond(edge, limit));
    read_bases<Direction>(edge);
    read_unit<Direction>(character, unit_begin, unit_end);
    held_ = ~(~std::uint64_t{0} << static_cast<unsigned>(size_));
  }

  /// The number of bases held: those at offsets below it from the edge.
  [[nodiscard]] std::int64_t size() const { return size_; }

  /// Returns the matches as bits: bit i is set if base i matches on `diagonal`; those of bases that
  /// are not held are clear. REQUIRES: size() != 0, |diagonal| <= kMaxDiagonal.
  [[nodiscard]] std::uint64_t row(std::ptrdiff_t diagonal) const {
    assert(size_ != 0 && -kMaxDiagonal <= diagonal && diagonal <= kMaxDiagonal);
    const auto shift = static_cast<unsigned>(kMaxDiagonal - diagonal);
    return ~((low_ ^ unit_low_ >> shift) | (high_ ^ unit_high_ >> shift)) & held_;
  }

 private:
  static constexpr std::int64_t kWordBits = 64;

  template <class Direction>
  void read_bases(const char* edge) {
    low_ = high_ = 0;
    std::int64_t first = 0;
    for (; first < size_; first += 8) {
      const std::uint64_t bases =
          Direction::eight_bases(Direction::edge_beyond(edge, first), size_ - first);
      low_ |= gather_lowest_bits(bases >> 1U) << static_cast<unsigned>(first);
      high_ |= gather_lowest_bits(bases >> 2U) << static_cast<unsigned>(first);
      const std::uint64_t all_Ns = bases & kNBits;
      if (all_Ns != 0) size_ = std::min(size_, first + std::countr_zero(all_Ns) / 8);
    }
  }

  template <class Direction>
  void read_unit(const char* character, const char* unit_begin, const char* unit_end) {
    const std::int64_t unit_length = unit_end - unit_begin;
    // The row of diagonal 0 begins after `kMaxDiagonal` characters.
    character = Direction::character_beyond(character, unit_length - kMaxDiagonal % unit_length,
                                            unit_begin, unit_end);
    unit_low_ = unit_high_ = 0;
    const std::int64_t count = std::min(unit_length, kWordBits);
    const std::int64_t first_part =
        std::min(count, Direction::characters_left(character, unit_begin, unit_end));
    read_characters<Direction>(character, 0, first_part);
    if (first_part < count) {
      read_characters<Direction>(
          Direction::character_beyond(character, first_part, unit_begin, unit_end), first_part,
          count);
    }
    for (auto copied = static_cast<unsigned>(count); copied < kWordBits; copied *= 2) {
      unit_low_ |= unit_low_ << copied;
      unit_high_ |= unit_high_ << copied;
    }
  }

  /// Reads characters that lie next to each other, from `character` on, to bits `first` to `end`.
  template <class Direction>
  void read_characters(const char* character, std::int64_t first, std::int64_t end) {
    const char* const edge = Direction::edge_before(character);
    for (std::int64_t i = first; i < end; i += 8) {
      const std::uint64_t letters =
          Direction::eight_bases(Direction::edge_beyond(edge, i - first), end - i);
      unit_low_ |= gather_lowest_bits(letters >> 1U) << static_cast<unsigned>(i);
      unit_high_ |= gather_lowest_bits(letters >> 2U) << static_cast<unsigned>(i);
      if ((letters & kNBits) != 0) size_ = 0;
    }
  }

  std::int64_t size_ = 0;
  std::uint64_t held_ = 0;  ///< a bit for each base that is held
  // A, C, T and G differ in two bits of their letters: those of the bases, and those of the
  // characters from `kMaxDiagonal` before the first on.
  std::uint64_t low_ = 0;
  std::uint64_t high_ = 0;
  std::uint64_t unit_low_ = 0;
  std::uint64_t unit_high_ = 0;
};

}  // namespace quorix
