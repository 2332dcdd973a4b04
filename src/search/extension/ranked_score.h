#pragma once

/// @file
/// The kinds of edits, and scores that remember the first edit on the way to them.

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace quorix {

/// The number of edits: a mismatch, an inserted base and a deleted unit character, in the order in
/// which they are preferred.
inline constexpr std::size_t kEditKinds = 3;

/// None of them.
inline constexpr std::size_t kNoEdit = kEditKinds;

/// Something for each kind of edit.
template <class Value>
using ByEdit = std::array<Value, kEditKinds>;

/// A score and the first edit on the way to it, as one number: of equal scores that of the
/// preferred edit is higher.
using RankedScore = std::int64_t;

/// One point of score: a power of two with room for the edits.
inline constexpr RankedScore kPoint = 4;
inline constexpr RankedScore kNoScore = std::numeric_limits<RankedScore>::min();

/// Returns `score`, in points, and `edit`, an index in the order of preference, as one number.
[[nodiscard]] inline RankedScore ranked(std::int64_t score, std::size_t edit) {
  return score * kPoint + static_cast<RankedScore>(kEditKinds - 1 - edit);
}
/// Returns its score, in points.
[[nodiscard]] inline std::int64_t score_of(RankedScore ranked_score) {
  return ranked_score >> 2U;
}
/// Returns its first edit, as an index in the order of preference.
[[nodiscard]] inline std::size_t first_edit_of(RankedScore ranked_score) {
  return kEditKinds - 1 - static_cast<std::size_t>(ranked_score & 3);
}

}  // namespace quorix
