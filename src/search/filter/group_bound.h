#pragma once

/// @file
/// The bound of search/filter/single_bound.h for a group of seeds as one.
///
/// Where a long unit lies beside an array of a shorter one, whole stretches of seeds live for many
/// hundred bases, for hundreds of unit lengths, and come to nothing. Neighbouring seeds of one unit
/// length take nearly the same way then: after as many bases and characters, counted from the first
/// seed, all of them compare the same two bases. So one table follows them together: each seed
/// enters it at its own base, and a state has the highest score that a chain of any of them can
/// have there. If that is too low, all are refuted at once.
///
/// What it promises: the table has every path of every seed that is asked for, so if no state
/// reaches the minimum score, none of the seeds can. It relies on three things:
///
/// - Counted from the first seed of the group to enter, character i of the seed that enters k later
///   is character (i - k) modulo the unit length of its unit. The units of both overlap: where i
///   modulo the unit length is k or more, that is the base that the first seed has there as well;
///   otherwise it lies one unit length farther on, since the later seed has not wrapped yet. As k
///   is below `kSeeds`, the first `kSeeds` - 1 characters of each copy after the first one are
///   compared with both bases, which only raises scores. This asks for units of `kSeeds` - 1
///   characters at the least: in shorter ones a seed could wrap twice between two wraps of another.
///   `kShortestUnit` is longer to keep the bound sharp: of a unit of 64, 63 characters would be
///   compared with two bases.
/// - Only states that follow the entry of a seed are alive. So letters that no seed may read,
///   before its entry or outside the text, raise no score; those outside the text match none.
/// - The extension to the left begins with the best score to the right of all seeds, which is no
///   less than that of each.
///
/// Rows are those of the score bound, as wide as their living states. All cells beside those
/// written are 0, since each row clears what the third row before it wrote elsewhere. Values stay
/// below 65535: the target is 60,000 at most and is looked for every 16 rows.

#include <cstdint>
#include <vector>

#include "search/filter/single_bound.h"

namespace quorix {

struct GroupTable;

class CGroupBound {
 public:
  /// Seeds in one group.
  static constexpr int kSeeds = 64;
  /// For shorter units the wraps blur too much: no more than half of the characters may.
  static constexpr std::int64_t kShortestUnit = 128;
  static_assert(kShortestUnit >= kSeeds - 1, "two seeds may be one wrap apart, not two");

  /// Chooses the instructions of this processor.
  CGroupBound();

  /// False only if no extension of a seed of `unit_length` at `first + k`, for a bit k that is set
  /// in `asked`, reaches `min_score`, to the right and then to the left. True where the tables
  /// would get too large. Units with N's may be asked for, but false means nothing for them.
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
