#pragma once

/// @file
/// The highest score of all paths of an extension, in plain loops and 64-bit numbers, to hold the
/// DP bounds against.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "search/rules/scoring_rules.h"

namespace quorix::testing {

/// A repeat to extend, as both the bound and its twin take it; positions are offsets into `text`.
struct PlainRepeat {
  std::string text;
  std::int64_t start;
  std::int64_t end;
  std::int64_t unit_begin;
  std::int64_t unit_end;
  std::int64_t right_phase;
  std::int64_t left_phase;
  std::int64_t score;
  ScoringRules scoring;

  [[nodiscard]] std::int64_t unit_length() const { return unit_end - unit_begin; }
};

inline constexpr std::int64_t kDead = std::numeric_limits<std::int64_t>::min();
/// Max count of bases read, and of characters used, in one direction.
inline constexpr std::int64_t kMaxReach = 1500;

/// What all paths reach, in one direction or in both.
struct Outcome {
  std::int64_t best;
  std::int64_t farthest_base;  ///< count of bases read by a state that lives
  std::int64_t widest;         ///< difference of the two counts of one
  bool is_complete;            ///< no path was cut off at `kMaxReach`
};

/// The highest score at every count of bases read and characters used; an edit has to leave it
/// above minus the unit length.
inline Outcome follow_all_paths(const PlainRepeat& repeat, bool is_rightward, std::int64_t score) {
  const std::int64_t length = repeat.unit_length();
  const auto text_length = static_cast<std::int64_t>(repeat.text.size());
  const std::int64_t ahead = is_rightward ? text_length - repeat.end : repeat.start;
  Outcome outcome{score, 0, 0, true};
  std::vector<std::int64_t> last(kMaxReach + 2, kDead);  // by characters, of one base less
  std::vector<std::int64_t> current(kMaxReach + 2, kDead);
  // Max count of characters used by a living state of each.
  std::int64_t farthest_last = 0;
  std::int64_t farthest_former = 0;  // of what `current` held before
  const auto edited = [&](std::int64_t from, std::int64_t penalty) {
    return from != kDead && from - penalty > -length ? from - penalty : kDead;
  };
  for (std::int64_t bases = 0; bases <= ahead; ++bases) {
    bool is_alive = false;
    const std::int64_t position = is_rightward ? repeat.end + bases - 1 : repeat.start - bases;
    std::int64_t farthest_here = 0;
    for (std::int64_t used = 0; used <= kMaxReach; ++used) {
      std::int64_t value = bases == 0 && used == 0 ? score : kDead;
      const auto at = static_cast<std::size_t>(used);
      if (used > farthest_last + 1 && current[at - 1] == kDead) {  // so are all that follow
        std::fill(current.begin() + used, current.begin() + std::max(used, farthest_former + 1),
                  kDead);
        break;
      }
      if (used > 0) value = std::max(value, edited(current[at - 1], repeat.scoring.indel_penalty));
      if (bases > 0) value = std::max(value, edited(last[at], repeat.scoring.indel_penalty));
      if (bases > 0 && used > 0 && last[at - 1] != kDead) {
        const char base = repeat.text[static_cast<std::size_t>(position)];
        const std::int64_t phase =
            is_rightward ? (repeat.right_phase + used - 1) % length
                         : ((repeat.left_phase - used + 1) % length + length) % length;
        const char character = repeat.text[static_cast<std::size_t>(repeat.unit_begin + phase)];
        const std::int64_t matched = base == character                            ? last[at - 1] + 1
                                     : base == 'N' && repeat.scoring.is_N_neutral ? last[at - 1]
                                                                                  : kDead;
        value = std::max({value, matched, edited(last[at - 1], repeat.scoring.mismatch_penalty)});
      }
      current[at] = value;
      if (value == kDead) continue;
      is_alive = true;
      farthest_here = used;
      outcome.best = std::max(outcome.best, value);
      outcome.farthest_base = std::max({outcome.farthest_base, bases, used});
      outcome.widest = std::max(outcome.widest, bases > used ? bases - used : used - bases);
      if (used == kMaxReach) outcome.is_complete = false;
    }
    if (!is_alive) return outcome;
    std::swap(last, current);
    farthest_former = farthest_last;
    farthest_last = farthest_here;
  }
  return outcome;
}

/// Returns what the paths of `repeat` reach to the right and, from the best of these, to the left.
inline Outcome follow_all_paths(const PlainRepeat& repeat) {
  const Outcome right = follow_all_paths(repeat, true, repeat.score);
  const Outcome left = follow_all_paths(repeat, false, right.best);
  return {left.best, std::max(right.farthest_base, left.farthest_base),
          std::max(right.widest, left.widest), right.is_complete && left.is_complete};
}

/// True if no path comes near the ends of the text or needs more room than the table of the single
/// bound has, so that nothing hinders the bound from being exact. `outcome` is that of both
/// directions.
inline bool is_in_reach_of_bound(const PlainRepeat& repeat, const Outcome& outcome) {
  // The width that is made room for: what the score pays for, and half as much again.
  const std::int64_t width =
      (repeat.score + repeat.unit_length()) * 3 / (2 * repeat.scoring.indel_penalty);
  const std::int64_t margin = 256 + outcome.farthest_base;
  const auto text_length = static_cast<std::int64_t>(repeat.text.size());
  return repeat.start > margin && repeat.end + margin < text_length && width < 250 &&
         outcome.widest <= width;
}

}  // namespace quorix::testing
