#pragma once

/// @file
/// The bound of search/kernel/score_bound.h for a group of seeds as one.
///
/// Where a long unit lies beside an array of a shorter one, whole stretches of seeds live for many
/// hundred bases, for hundreds of unit lengths, and come to nothing. Neighbouring seeds of one unit
/// length take nearly the same way then: after as many bases and characters, counted from the first
/// seed, all of them compare the same two bases. So one table follows them together: each seed
/// enters it at its own base, and a state has the highest score that a chain of any of them can
/// have there. If that is too low, all are refuted at once.
///
/// Seeds differ in where their unit wraps, so while it wraps a base may match the character before
/// or behind, which only raises scores. Growth to the left begins with the best forward score of
/// all of them.
///
/// Rows are those of the score bound, as wide as their living states.

#include <cstdint>
#include <vector>

#include "search/kernel/score_bound.h"

namespace quorix {

struct GroupTable;

class CGroupBound {
 public:
  /// Seeds in one group.
  static constexpr int kSeeds = 64;
  /// For shorter units the wraps blur too much.
  static constexpr std::int64_t kShortestUnit = 128;

  /// Chooses the instructions of this processor.
  CGroupBound();

  /// False only if no growth of a seed of `unit_length` at `first + k`, for a bit k that is set in
  /// `asked`, reaches `min_score`, to the right and then to the left. True where the tables would
  /// get too large. What is told of units with N's means nothing.
  /// REQUIRES: kShortestUnit <= unit_length, the units that are asked for lie in the text.
  /// Throws: std::bad_alloc.
  [[nodiscard]] bool may_reach(const char* first, std::int64_t unit_length, std::uint64_t asked,
                               const GrowthRules& rules, std::int64_t min_score);

  [[nodiscard]] const BoundWork& work() const { return work_; }

 private:
  /// Reads bases and characters of growth in one direction into `letters_`.
  void load_letters(const char* first, std::int64_t unit_length, bool is_rightward,
                    const GrowthRules& rules);

  std::int64_t (*fill_group_table_)(const GroupTable& table, BoundWork& work);
  BoundWork work_;
  std::vector<std::uint8_t> letters_;
};

}  // namespace quorix
