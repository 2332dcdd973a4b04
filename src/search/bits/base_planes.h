#pragma once

/// @file
/// A DNA text as bit planes: two bits a base and one that marks an N, 64 bases a word.
///
/// With them a handful of word operations finds which of 64 bases equal the base a given lag
/// before. A tandem repeat of unit length L is a run of such bases at lag L.
///
/// An N has the low and high bits of G, so whoever compares planes looks at the N's too. Bases
/// outside the text have clear bits, as an A has; who reads them must be right with any base there.

#include <cstdint>

#include "search/bits/bit_set.h"

namespace quorix {

class CBasePlanes {
 public:
  /// Reads `length` bases, of the letters A, C, G, T and N. Throws: std::bad_alloc.
  CBasePlanes(const char* bases, std::uint64_t length);

  [[nodiscard]] std::uint64_t length() const { return bits_of_Ns_.size(); }

  /// Where the N's are.
  [[nodiscard]] const CBitSet& bits_of_Ns() const { return bits_of_Ns_; }
  [[nodiscard]] bool has_Ns() const { return has_Ns_; }

  /// True if there is an N at a distance of at most 64 bases from [first, last), or some way
  /// farther off: whole words are looked at.
  [[nodiscard]] bool has_N_near(std::uint64_t first, std::uint64_t last) const;

  /// The words of the planes: bit i of word w belongs to base 64 * w + i, and bits after the text
  /// are clear. A, C, T and G have the low and high bits 00, 10, 01 and 11.
  [[nodiscard]] const CBitSet& low_bits() const { return low_bits_; }
  [[nodiscard]] const CBitSet& high_bits() const { return high_bits_; }

  /// Sets bit x of `matches` if base x may equal base x - lag. An N equals every base if
  /// `is_N_wild`, else none. Bits below `lag` are clear. REQUIRES: lag >= 1.
  /// Throws: std::bad_alloc.
  void find_matches(std::uint64_t lag, bool is_N_wild, CBitSet& matches) const;

 private:
  CBitSet low_bits_;
  CBitSet high_bits_;
  CBitSet bits_of_Ns_;
  bool has_Ns_ = false;
};

}  // namespace quorix
