#pragma once

/// @file
/// How far up can the score still go from here? An edit of a repeat is chosen by the answer.

#include <cstdint>
#include <vector>

namespace quorix {

/// A place in the alignment of a repeat with its unit.
struct LookAheadState {
  const char* edge;       ///< the base beyond it is read next
  const char* character;  ///< the unit character that base has to match
  std::int64_t score;
  std::int64_t best_score;  ///< the highest score on the way here
  std::uint8_t level;       ///< edits on the way here, counted in 8 bits
};

/// What stays the same during a look-ahead.
struct LookAheadBounds {
  const char* unit_begin;
  const char* unit_end;
  std::int64_t unit_length;
  const char* limit;  ///< see search/direction.h
};

class CLookAhead {
 public:
  /// The highest score that can be met from `from` on, over walks along matches and, between them,
  /// at most `global_maximum_recursion_depth` - `from.level` edits, each of which must leave the
  /// score above `edit_threshold`. Above a depth of 255 only that threshold bounds the edits.
  ///
  /// `Direction` is `Rightward` or `Leftward`. Throws: std::bad_alloc.
  template <class Direction>
  [[nodiscard]] std::int64_t highest_score(const LookAheadState& from,
                                           const LookAheadBounds& bounds);

 private:
  std::vector<LookAheadState> pending_;  ///< empty between calls; kept for its block
};

}  // namespace quorix
