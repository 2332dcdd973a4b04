#pragma once

/// @file
/// The forms in which one and the same unit can be written.
///
/// A run of ACG is also one of CGA and GAC and, read on the other strand, one of CGT and its
/// rotations. Comparisons are by byte: A < C < G < N < T.

#include <cstdint>
#include <string>

namespace quorix::reference {

/// The alphabetically least rotation of a unit.
struct LeastRotation {
  std::string unit;
  /// True if the unit repeats a shorter one, so that two of its rotations are equal.
  bool is_reducible;
};

/// REQUIRES: `unit` is not empty. Cost O(length^2).
LeastRotation least_rotation(const std::string& unit);

/// A text read backwards in complements; what has no complement becomes '?'.
struct ReverseComplement {
  std::string text;
  /// How many characters have no complement: all but A, C, G, T, N, R, Y, K, M, B, V, D and H.
  std::int64_t unknown_count;
};

ReverseComplement reverse_complement(const std::string& text);

/// True if the unit is p equal blocks for a prime p smaller than its length. A unit of prime length
/// is therefore never reducible here, not even AA or AAAAA.
bool is_reducible_unit(const std::string& unit);

}  // namespace quorix::reference
