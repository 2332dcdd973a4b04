#pragma once

/// @file
/// Tests whether a repeat unit repeats a shorter one, as ATAT repeats AT.

#include <array>
#include <cstdint>

namespace quorix {

/// Maximum unit length that `primeFactors` has a row for.
inline constexpr int kMaxTabledLength = 10000;

/// Row n holds the distinct prime factors of n that are smaller than n, ascending, then zeros. The
/// row of a prime is all zeros.
using PrimeFactorRow = std::array<std::int32_t, 6>;
extern const std::array<PrimeFactorRow, kMaxTabledLength + 1> primeFactors;

/// Returns true if the unit [begin, end) consists of p > 1 equal blocks for some prime p smaller
/// than its length. A unit of prime length is therefore never reducible here, not even AAAAA; the
/// rotation test of `CDnaString` finds those. Cost: O(length times its distinct prime factors).
[[nodiscard]] bool isReducibleUnit_global(const char* begin, const char* end);

}  // namespace quorix
