#pragma once

/// @file
/// How high can the score of a seed rise, at the most?
///
/// Growth makes one edit after the other, each chosen by a costly look-ahead. Here all its paths
/// are followed at once: a table holds, for every count of bases read and of unit characters used,
/// the highest score with which any chain of matches and edits can be there. An edit must leave the
/// score above minus the unit length, so a state at or below that is dead; a hopeless seed runs out
/// of living states after a few dozen bases.
///
/// The bound is sound, since growth takes one of these paths, under rules that are no laxer: it may
/// only edit where a base differs, only within the score reduction limit, and it stops at a long
/// run of N's, which here scores 0 a base. Backward growth starts from the forward result, so the
/// bound of that is what it starts from here.
///
/// States with the same sum of the two counts form a row, ordered by their difference. A row needs
/// only the two before it, so a whole row is computed by a few vector operations, with scores as
/// unsigned bytes counted from the floor: 0 is dead, and saturating subtraction lets a state die.

#include <cstddef>
#include <cstdint>
#include <optional>

#include "search/kernel/bound_work.h"

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
  std::int64_t mismatch_penalty;  ///< 2 or more
  std::int64_t indel_penalty;     ///< 2 or more
  bool is_N_neutral;
};

struct ScoreTable;

class CScoreBound {
 public:
  /// Chooses the instructions of this processor.
  CScoreBound();

  /// False only if no growth of `repeat` to the right and then to the left reaches `min_score`.
  /// Near the ends of the text, and where the table would get too large, the answer is true.
  [[nodiscard]] bool may_reach(const GrowingRepeat& repeat, const GrowthRules& rules,
                               std::int64_t min_score);

  [[nodiscard]] const BoundWork& work() const { return work_; }

 private:
  std::optional<std::int64_t> (*fill_table_)(const ScoreTable& table, bool is_narrow,
                                             std::ptrdiff_t lane_count, BoundWork& work);
  BoundWork work_;
};

}  // namespace quorix
