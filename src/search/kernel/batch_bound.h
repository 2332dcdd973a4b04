#pragma once

/// @file
/// The bound of search/kernel/score_bound.h for seeds side by side.
///
/// Seeds of one unit length at neighbouring bases read neighbouring bases and use neighbouring unit
/// characters. So where many of them are to be looked at, as in and around old repeats, the same
/// cell of all their tables is one vector, and no cell is computed that is dead for all of them.

#include <cstdint>

#include "search/kernel/score_bound.h"

namespace quorix {

struct SeedBatch;

class CBatchBound {
 public:
  /// Seeds in one batch.
  static constexpr int kSeeds = 32;

  /// Chooses the instructions of this processor.
  CBatchBound();

  /// Bit k is clear only if bit k of `asked` is, or if no growth of the seed of `unit_length` at
  /// `first + k` to the right and then to the left reaches `min_score`. Near the ends of the text,
  /// and where the tables would get too large, bits stay set. What is told of a unit with an N
  /// means nothing. REQUIRES: the units that are asked for lie in the text.
  [[nodiscard]] std::uint32_t may_reach(const char* first, std::int64_t unit_length,
                                        std::uint32_t asked, const GrowthRules& rules,
                                        std::int64_t min_score);

  [[nodiscard]] const BoundWork& work() const { return work_; }

 private:
  std::uint32_t (*sift_batch_)(const SeedBatch& batch, BoundWork& work);
  BoundWork work_;
};

}  // namespace quorix
