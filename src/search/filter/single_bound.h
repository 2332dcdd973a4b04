#pragma once

/// @file
/// Upper bound of the score that a seed or repeat can reach, by dynamic programming.
///
/// What it promises. An extension makes one edit after the other, each chosen by a costly
/// look-ahead. Here all its paths are followed at once: the table holds, for every count of bases
/// read and of unit characters used, the highest score with which any path of matches and edits
/// arrives there. An edit must leave the score above minus the unit length, so a state at or below
/// that is dead. A seed is rejected if no state reaches the minimum score.
///
/// Why it is sound. An extension takes one of these paths, under rules that are no laxer: it may
/// only edit where a base differs, only within the score reduction limit, and it stops at a long
/// run of N's, which here scores 0 a base. The extension to the left begins with the best score of
/// the one to the right, and a path with a higher score on entry has every choice of one with less;
/// so the table to the left begins with the best value of the table to the right.
///
/// States with the same sum of the two counts form a row, ordered by their difference. A row needs
/// only the two rows before it and is computed by a few vector operations. Values are scores
/// counted from the floor, as unsigned bytes or 16-bit numbers: 0 is dead, and saturating
/// subtraction lets a state die.
///
/// What the values rely on:
///
/// - No value is cut off before it counts: the highest number stands for itself and all above it,
///   and no target is higher, so a value that saturates has met its target. Hence a penalty may be
///   cut off at that number, too: it kills every value that has not met the target.
/// - States with negative counts are never alive, whatever letters they are compared with: a match
///   adds to living states alone, and only states with counts of 0 or more follow the first one.
/// - A row has a fixed number of lanes. Counts differ by one more after an edit of one kind, so a
///   path leaves the lanes only from the first or last of them, and up to there its value is
///   followed. `best` of these two lanes remembers that for all rows: if both are 0, no path has
///   ever left, so none can have come back either. How many lanes there are is a matter of speed.

#include <cstddef>
#include <cstdint>
#include <optional>

#include "search/filter/bound_work.h"
#include "search/rules/scoring_rules.h"

namespace quorix {

/// A seed or repeat that is to grow: what of it matters here.
struct GrowingRepeat {
  const char* start;       ///< first base
  const char* end;         ///< one past the last base
  const char* unit_begin;  ///< the unit is [unit_begin, unit_end), without N's
  const char* unit_end;
  std::int64_t right_phase;  ///< unit character that the base at `end` has to match, from 0
  std::int64_t left_phase;   ///< unit character that the base before `start` has to match
  std::int64_t score;
};

/// The text that may be read, and the rules of scoring.
struct GrowthRules {
  const char* text_begin;
  const char* text_end;
  ScoringRules scoring;
};

struct ScoreTable;

class CScoreBound {
 public:
  /// Chooses the instructions of this processor.
  CScoreBound();

  /// False only if no extension of `repeat` to the right and then to the left reaches `min_score`.
  /// Near the ends of the text, and where the table would get too large, the answer is true.
  /// REQUIRES: the repeat lies in the text, its phases in its unit; its score is above minus the
  /// unit length.
  [[nodiscard]] bool may_reach(const GrowingRepeat& repeat, const GrowthRules& rules,
                               std::int64_t min_score);

  [[nodiscard]] const BoundWork& work() const { return work_; }

 private:
  std::optional<std::int64_t> (*fill_table_)(const ScoreTable& table, bool is_narrow,
                                             std::ptrdiff_t lane_count, BoundWork& work);
  BoundWork work_;
};

}  // namespace quorix
