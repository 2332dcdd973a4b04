#pragma once

/// @file
/// The bound of search/filter/single_bound.h for seeds side by side.
///
/// Seeds of one unit length at neighbouring bases read neighbouring bases and use neighbouring unit
/// characters. So where many of them are to be bounded, as in and around diverged repeats, the same
/// cell of all their tables is one vector, and no cell is computed that is dead for all of them.
///
/// Each lane is the table of one seed and stays apart from the others, so what the score bound says
/// of its values holds here: they saturate at or above the target alone. A row has no fixed lanes
/// but a range of differences that grows and shrinks with its living cells:
///
/// - A cell that lives follows a living cell at the same difference two rows before, or one beside
///   it in the last row. So the cells from one beside the range of the last row, and from that of
///   the row before, are all that can live.
/// - Rows share their memory with the third row after them, so beyond the range that was filled a
///   row has old values. The next two rows read at most two differences beyond it, and there it is
///   cleared. For the lower end (the upper one mirrors it) let f(r) be the lowest difference filled
///   in row r, and a(r) >= f(r) that of its lowest living cell, beyond all others if there is none:
///   f(r) = min(a(r-1) - 1, a(r-2)), so f(r) <= a(r-1) - 1 for every r. Row r reads row r-1 from
///   f(r) - 1 = min(a(r-1) - 2, a(r-2) - 1) on, which is f(r-1) - 2 or more. It reads row r-2 from
///   f(r) on; there a(r-2) >= f(r-2), and a(r-1) - 1 >= f(r-1) - 1 = min(a(r-2) - 2, a(r-3) - 1),
///   which is f(r-2) - 2 or more. How far a(r) lies above f(r) does not matter, so the range may
///   shrink by any amount and grow again.
///
/// A table that is given up, at the ends of the text or for its size, is open for the seeds that
/// still have a living cell in the last two rows; the others have their highest value already.

#include <cstdint>

#include "search/filter/single_bound.h"

namespace quorix {

struct SeedBatch;

class CBatchBound {
 public:
  /// Seeds in one batch.
  static constexpr int kSeeds = 32;

  /// Chooses the instructions of this processor.
  CBatchBound();

  /// Bit k is clear only if bit k of `asked` is, or if no extension of the seed of `unit_length` at
  /// `first + k` to the right and then to the left reaches `min_score`. Near the ends of the text,
  /// and where the tables would get too large, bits stay set. The bit of a unit with an N means
  /// nothing. REQUIRES: unit_length >= 1, the units that are asked for lie in the text.
  [[nodiscard]] std::uint32_t may_reach(const char* first, std::int64_t unit_length,
                                        std::uint32_t asked, const GrowthRules& rules,
                                        std::int64_t min_score);

  [[nodiscard]] const BoundWork& work() const { return work_; }

 private:
  std::uint32_t (*sift_batch_)(const SeedBatch& batch, BoundWork& work);
  BoundWork work_;
};

}  // namespace quorix
