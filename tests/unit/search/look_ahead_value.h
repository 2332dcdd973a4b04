#pragma once

/// @file
/// The value of a look-ahead, asked for in both directions.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "unit/search/searched_sequence.h"

namespace quorix::testing {

/// Where a look-ahead begins: after the first unit, whose first character is expected next.
struct LookAheadFrom {
  int score = 0;
  int best_score = 0;
  std::uint8_t level = 1;
  std::size_t limit = std::string_view::npos;  ///< the first base that may not be read
};

/// Returns how far up the score goes to the right in `text`, whose first `unit_length` bases are
/// the unit. Expects the same to the left in the text read backwards.
inline int look_ahead_value(std::string_view text, std::size_t unit_length,
                            LookAheadFrom from = {}) {
  const std::size_t unread = text.size() - std::min(from.limit, text.size());
  CSearchedSequence any("A");
  const CBases bases(text);
  const Csat seed = bases.unit_copy(0, unit_length);
  const int forward = any.search.extend_imperfect_forward_leap_ahead(
      seed.end, seed.unit_pos_right, seed.unit_begin, seed.unit_end, from.score, seed.unit_length(),
      from.level, bases.end() - unread, from.best_score);

  const CBases mirrored(std::string(text.rbegin(), text.rend()));
  const Csat mirrored_seed = mirrored.unit_copy(text.size() - unit_length, unit_length);
  EXPECT_EQ(any.search.extend_imperfect_backward_leap_ahead(
                mirrored_seed.start, mirrored_seed.unit_pos_left, mirrored_seed.unit_begin,
                mirrored_seed.unit_end, from.score, seed.unit_length(), from.level,
                mirrored.before() + unread, from.best_score),
            forward);
  return forward;
}

}  // namespace quorix::testing
