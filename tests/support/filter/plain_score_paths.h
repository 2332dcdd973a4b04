#pragma once

/// @file
/// The highest score of all paths of growth, in plain loops and 64-bit numbers, to hold the bounds
/// of scores against.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "search/rules/scoring_rules.h"

namespace quorix::testing {

/// A growing repeat in words that both sides are made from; positions are offsets.
struct Growth {
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
/// What is read in one direction, at the most.
inline constexpr std::int64_t kMostReach = 1500;

/// What the paths of one direction came to.
struct Outcome {
  std::int64_t best;
  std::int64_t farthest_base;  ///< count of bases read by a state that lives
  std::int64_t widest;         ///< difference of the two counts of one
  bool is_complete;            ///< no path was left off at `kMostReach`
};

/// The highest score at every count of bases read and characters used; an edit has to leave it
/// above minus the unit length.
inline Outcome follow_all_paths(const Growth& growth, bool is_rightward, std::int64_t score) {
  const std::int64_t length = growth.unit_length();
  const auto text_length = static_cast<std::int64_t>(growth.text.size());
  const std::int64_t ahead = is_rightward ? text_length - growth.end : growth.start;
  Outcome outcome{score, 0, 0, true};
  std::vector<std::int64_t> last(kMostReach + 2, kDead);  // by characters, of one base less
  std::vector<std::int64_t> current(kMostReach + 2, kDead);
  // Characters used by a living state of each, at the most.
  std::int64_t farthest_last = 0;
  std::int64_t farthest_former = 0;  // of what `current` held before
  const auto edited = [&](std::int64_t from, std::int64_t penalty) {
    return from != kDead && from - penalty > -length ? from - penalty : kDead;
  };
  for (std::int64_t bases = 0; bases <= ahead; ++bases) {
    bool is_alive = false;
    const std::int64_t position = is_rightward ? growth.end + bases - 1 : growth.start - bases;
    std::int64_t farthest_here = 0;
    for (std::int64_t used = 0; used <= kMostReach; ++used) {
      std::int64_t value = bases == 0 && used == 0 ? score : kDead;
      const auto at = static_cast<std::size_t>(used);
      if (used > farthest_last + 1 && current[at - 1] == kDead) {  // so are all that follow
        std::fill(current.begin() + used, current.begin() + std::max(used, farthest_former + 1),
                  kDead);
        break;
      }
      if (used > 0) value = std::max(value, edited(current[at - 1], growth.scoring.indel_penalty));
      if (bases > 0) value = std::max(value, edited(last[at], growth.scoring.indel_penalty));
      if (bases > 0 && used > 0 && last[at - 1] != kDead) {
        const char base = growth.text[static_cast<std::size_t>(position)];
        const std::int64_t phase =
            is_rightward ? (growth.right_phase + used - 1) % length
                         : ((growth.left_phase - used + 1) % length + length) % length;
        const char character = growth.text[static_cast<std::size_t>(growth.unit_begin + phase)];
        const std::int64_t kept = base == character                            ? last[at - 1] + 1
                                  : base == 'N' && growth.scoring.is_N_neutral ? last[at - 1]
                                                                               : kDead;
        value = std::max({value, kept, edited(last[at - 1], growth.scoring.mismatch_penalty)});
      }
      current[at] = value;
      if (value == kDead) continue;
      is_alive = true;
      farthest_here = used;
      outcome.best = std::max(outcome.best, value);
      outcome.farthest_base = std::max({outcome.farthest_base, bases, used});
      outcome.widest = std::max(outcome.widest, bases > used ? bases - used : used - bases);
      if (used == kMostReach) outcome.is_complete = false;
    }
    if (!is_alive) return outcome;
    std::swap(last, current);
    farthest_former = farthest_last;
    farthest_last = farthest_here;
  }
  return outcome;
}

/// True if no path comes near the ends of the text or needs more room than the table of the score
/// bound has, so that nothing hinders the bound from being exact. `right` and `both` are the
/// outcomes of growing to the right, and then to the left.
inline bool is_in_reach_of_bound(const Growth& growth, const Outcome& right, const Outcome& both) {
  // The width that is made room for: what the score pays for, and half as much again.
  const std::int64_t width =
      (growth.score + growth.unit_length()) * 3 / (2 * growth.scoring.indel_penalty);
  const std::int64_t margin = 256 + std::max(right.farthest_base, both.farthest_base);
  const auto text_length = static_cast<std::int64_t>(growth.text.size());
  return growth.start > margin && growth.end + margin < text_length && width < 250 &&
         std::max(right.widest, both.widest) <= width;
}

}  // namespace quorix::testing
