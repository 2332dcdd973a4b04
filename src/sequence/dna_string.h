#pragma once

/// @file
/// A short DNA text, such as a repeat unit, and its normal forms.
///
/// ACG, CGA and GAC describe the same run ACGACGACG, which the other strand reads as CGT, GTC or
/// TCG. The alphabetically least rotation, of the unit alone or of both strands, makes reports
/// comparable.

#include <cstdint>
#include <string_view>

#include "sequence/faststring.h"

namespace quorix {

class CDnaString : public faststring {
 public:
  CDnaString() = default;
  explicit CDnaString(std::string_view text) { assign(text); }

  /// Becomes a copy of `text`. A block that is too small becomes one byte longer than the text.
  /// REQUIRES: `text` does not lie in this string. Throws: std::bad_alloc.
  void assign(std::string_view text);

  /// Returns the letters, valid until the block grows.
  [[nodiscard]] std::string_view view() const { return {data(), size()}; }

  /// Becomes the reverse complement of `source` by the IUPAC pairs A-T, C-G, N-N, R-Y, K-M, B-V
  /// and D-H. Every other character, S, W, U and lower case included, becomes '?'. Returns the
  /// number of '?'. Cost: O(length). Throws: std::bad_alloc.
  std::int32_t setToReverseComplementOf(const CDnaString& source);

  /// Becomes the least cyclic rotation of `source` in byte order. Returns true if two rotations are
  /// equal, that is, if the source repeats a shorter unit. Cost: O(length).
  ///
  /// It compares two rotations at a time and skips every start that a comparison rules out
  /// (Y. Shiloach, Fast canonization of circular strings, 1981).
  /// REQUIRES: `source` is not empty. Throws: std::bad_alloc.
  bool setToMinAlphaRepModCyclicPermOf(const CDnaString& source);

 private:
  /// Becomes a copy of `source`, which may be this string, in a block sized as `assign` does.
  void become(const CDnaString& source);
};

}  // namespace quorix
