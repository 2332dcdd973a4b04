#pragma once

/// @file
/// The key of an edit site in the extension cache, and the rule of when a site has one. What the
/// cache is and why the key suffices is in search/extension/extension_cache.h.

#include <algorithm>
#include <cstdint>
#include <limits>

#include "report/csat.h"
#include "search/bits/match_window.h"
#include "search/extension/direction.h"
#include "search/rules/cache_limits.h"
#include "search/rules/score.h"
#include "settings/settings.h"

namespace quorix {

/// What the edit at a site depends on.
struct SiteKey {
  const char* edge;          ///< see search/extension/direction.h
  std::uint64_t unit_code;   ///< see `unit_code_of`, or `place_code_of`
  std::int64_t score_class;  ///< see `score_class_of`

  [[nodiscard]] bool operator==(const SiteKey& other) const = default;
};

/// Returns the code of the unit [unit_begin, unit_end) as it is read from `character` on. It
/// contains the length and the direction, and is the same for all rotations of a unit that have the
/// same character next. REQUIRES: at most `kMaxCachedUnit` characters, no N. O(unit length).
[[nodiscard]] std::uint64_t unit_code_of(const char* character, const char* unit_begin,
                                         const char* unit_end, bool is_rightward);

/// Returns the code of the repeat's unit as the extension reads it next.
template <class Direction>
[[nodiscard]] std::uint64_t unit_code_of(Csat& sat) {
  return unit_code_of(Direction::unit_cursor(sat), sat.unit_begin, sat.unit_end,
                      Direction::kIndex == Rightward::kIndex);
}

/// Returns the min score from which no path of the look-ahead can fall to the drop-off limit,
/// however many of its edits it makes at the larger penalty. Above every score if a path may make
/// any number of edits.
[[nodiscard]] inline std::int64_t min_safe_score(std::int64_t unit_length) {
  if (global_maximum_recursion_depth > kMaxRecursionLimit) {
    return std::numeric_limits<std::int64_t>::max();
  }
  const std::int64_t max_loss =
      std::int64_t{global_maximum_recursion_depth} *
      std::max(-std::int64_t{global_mismatch_score}, -std::int64_t{global_indel_score});
  return max_loss - unit_length + 1;
}

/// Returns the score as a part of the key: all safe scores are one class.
[[nodiscard]] inline std::int64_t score_class_of(std::int64_t score, std::int64_t safe_score) {
  return std::min(score, safe_score);
}

/// Returns 64 bits that depend on all parts of a key. A table takes as many of the upper half as it
/// needs. `position` stands for the edge, so that slots do not depend on addresses; `score_term`
/// for the score class.
[[nodiscard]] inline std::uint64_t mixed_key(std::ptrdiff_t position, std::uint64_t unit_code,
                                             std::int64_t score_term) {
  constexpr std::uint64_t kMixer = 0x9E3779B97F4A7C15U;
  const std::uint64_t unit_and_score = unit_code + static_cast<std::uint64_t>(score_term);
  return (static_cast<std::uint64_t>(position) ^ unit_and_score * kMixer) * kMixer;
}

/// True if the edit at a site depends on nothing but bases, unit and score class, here and at all
/// later sites of the extension: look-aheads make all their edits, and the score reduction limits
/// none of them. The last holds for good once it holds: no later score is above the present or best
/// one and a match at each base that is left, and that sum never rises.
template <class Direction>
[[nodiscard]] bool is_path_forgotten(Csat& sat, const char* limit, std::int64_t best_score) {
  if (sat.recursion_depth != 0) return false;
  const std::int64_t unit_length = sat.unit_length();
  const std::int64_t max_score = std::max<std::int64_t>(sat.score, best_score) +
                                 Direction::bases_beyond(Direction::edge(sat), limit);
  return drop_off_limit(max_score, unit_length) == -unit_length;
}

/// True if the edits of an extension depend on nothing but their keys from here on, and the unit
/// has a code.
template <class Direction>
[[nodiscard]] bool is_cacheable(Csat& sat, const char* limit, std::int64_t best_score) {
  return sat.unit_length() <= kMaxCachedUnit &&
         is_path_forgotten<Direction>(sat, limit, best_score);
}

/// Unit characters that the window of a look-ahead compares with bases, from the next one on.
inline constexpr std::int64_t kWindowCharacters =
    CMatchWindow::kMaxBases + CMatchWindow::kMaxDiagonal;

/// The mark of place codes, above those of units, which have twice the unit length there.
inline constexpr std::uint64_t kPlaceMark = std::uint64_t{0xFF} << 56U;

/// Returns the code of the place of the next unit character in the text, for units without a code.
/// A look-ahead that sees no more than its window, and from a safe score on, chooses by the letters
/// at the edge and at that place alone, whatever unit they belong to, if the unit does not end
/// within the window. REQUIRES: the unit lies in the text.
template <class Direction>
[[nodiscard]] std::uint64_t place_code_of(Csat& sat) {
  const std::ptrdiff_t distance = Direction::edge(sat) - Direction::unit_cursor(sat);
  const std::uint64_t code = static_cast<std::uint64_t>(distance) << 1U |
                             (Direction::kIndex == Rightward::kIndex ? 1U : 0U);
  return kPlaceMark | (code & ~kPlaceMark);
}

/// True if the edit at the edge has a place code as its key, once a look-ahead has seen no more
/// than its window.
template <class Direction>
[[nodiscard]] bool is_place_cacheable(Csat& sat, const char* limit, std::int64_t best_score) {
  return sat.unit_length() > kMaxCachedUnit && sat.score >= min_safe_score(sat.unit_length()) &&
         Direction::characters_left(Direction::unit_cursor(sat), sat.unit_begin, sat.unit_end) >=
             kWindowCharacters &&
         is_path_forgotten<Direction>(sat, limit, best_score);
}

}  // namespace quorix
