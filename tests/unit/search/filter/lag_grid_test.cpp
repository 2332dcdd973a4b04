// Where the lag sieve cuts off: what the rules of extension leave a path, counted out.

#include "search/filter/lag_grid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "support/random_dna.h"
#include "unit/search/searched_sequence.h"

namespace quorix::testing {
namespace {

struct Penalties {
  std::int64_t mismatch;
  std::int64_t indel;
};
constexpr Penalties kPenalties[] = {{5, 5}, {5, 6}, {6, 5},  {6, 6},  {7, 7},
                                    {9, 6}, {6, 9}, {30, 7}, {7, 30}, {2147483648, 2147483648}};

LagRule rules_for(std::int64_t unit_length, const Penalties& penalties) {
  return {unit_length, {20}, {penalties.mismatch, penalties.indel, true}};
}

/// The lane of the only unit length.
std::size_t searched_lane(const LagLanes& lanes) {
  std::size_t lane = 0;
  while (lanes.is_searched[lane] == 0) ++lane;
  return lane;
}

/// What a path lives through: its score stays above minus the unit length.
struct PathExtremes {
  std::int64_t min_over_copy;  ///< persistence of a path that uses all characters
  std::int64_t deepest_fall;   ///< of the persistence, at any edit
};

/// Tries all numbers of edits for a path that begins with `score`.
PathExtremes try_edits(std::int64_t unit_length, std::int64_t score, const Penalties& penalties,
                       const LagWeights& weights) {
  PathExtremes extremes{weights.reward * unit_length, 0};
  const std::int64_t room = score + 2 * unit_length;
  const std::int64_t cost = weights.cost;
  for (std::int64_t mismatches = 0; mismatches * (penalties.mismatch + 1) < room; ++mismatches) {
    for (std::int64_t deletions = 0; mismatches + deletions <= unit_length; ++deletions) {
      const std::int64_t matches = unit_length - mismatches - deletions;
      std::int64_t left = score + unit_length + matches - mismatches * penalties.mismatch -
                          deletions * penalties.indel;
      if (left <= 0) break;
      const std::int64_t insertions = (left - 1) / penalties.indel;
      const std::int64_t edits = mismatches + deletions + insertions;
      extremes.min_over_copy =
          std::min(extremes.min_over_copy, weights.reward * matches - cost * edits);
    }
  }
  // Nothing falls deeper than the cheaper edit, again and again.
  const std::int64_t min_penalty = std::min(penalties.mismatch, penalties.indel);
  extremes.deepest_fall = cost * ((score + unit_length - 1) / min_penalty);
  return extremes;
}

TEST(LagGrid, demands_no_more_than_a_living_path_has) {
  for (const Penalties& penalties : kPenalties) {
    for (const std::int64_t unit_length :
         {1, 2, 3, 5, 6, 7, 8, 13, 20, 50, 100, 255, 256, 257, 300, 540, 600, 1000}) {
      const LagRule rules = rules_for(unit_length, penalties);
      const std::string text(static_cast<std::size_t>(unit_length) + 1, 'A');
      const CLagGrid grid(text.data(), text.size(), rules);
      const LagLanes& lanes = grid.lanes(1 - unit_length % 2);
      const std::size_t lane = searched_lane(lanes);
      const std::int64_t demanded = lanes.min_persistence[lane];
      const std::int64_t cap = lanes.persistence_cap[lane];
      for (std::int64_t score = 0; score <= CLagGrid::kMaxGain; ++score) {
        const PathExtremes path = try_edits(unit_length, score, penalties, grid.weights());
        const std::int64_t lent = grid.weights().is_half_enough ? (score + 1) / 2 : score;
        if (demanded > 0) {
          ASSERT_GE(path.min_over_copy + lent, demanded)
              << "unit " << unit_length << " score " << score << " penalties " << penalties.mismatch
              << "," << penalties.indel;
          ASSERT_GE(cap - path.deepest_fall + lent, demanded)
              << "unit " << unit_length << " score " << score << " penalties " << penalties.mismatch
              << "," << penalties.indel;
        }
      }
      // Where a byte does not end, something is demanded: else nothing would be rejected.
      if (unit_length >= 7 && unit_length <= 500) {
        EXPECT_GT(demanded, 0) << unit_length << " penalties " << penalties.mismatch;
      }
      EXPECT_EQ(lanes.gain_cap[lane], std::min<std::int64_t>(unit_length, 255));
      EXPECT_EQ(lanes.min_gain[lane], 20);
    }
  }
}

/// The lag of the first lane of `parity`, found by that of the first unit length.
std::int64_t first_lag_of(const CLagGrid& grid, std::int64_t first_unit) {
  const std::int64_t parity = 1 - first_unit % 2;
  const auto lane = static_cast<std::int64_t>(searched_lane(grid.lanes(parity)));
  return first_unit - parity - 2 * lane;
}

// A lag without a lane is read as 0, which rejects seeds whose paths go through it.
TEST(LagGrid, has_a_lane_for_each_lag_that_a_path_can_pay_for) {
  const std::string text(900, 'A');
  for (const std::int64_t unit_count : {1, 2, 3, 30, 64}) {
    for (std::int64_t first = 1; first <= 200; ++first) {
      for (const std::int64_t indel : {5, 6, 19, 20, 21, 32, 55, 64, 77, 80, 99, 100}) {
        const std::int64_t last = first + unit_count - 1;
        LagRule rules = rules_for(first, {20, indel});
        rules.min_scores.assign(static_cast<std::size_t>(unit_count), 20);
        const CLagGrid grid(text.data(), text.size(), rules);
        // With a gain of up to `kMaxGain` on entry and a match for each character of the copy,
        // a path falls no lower than one above minus the unit length.
        const std::int64_t max_diagonal = (CLagGrid::kMaxGain + 2 * last - 1) / indel;
        const std::int64_t first_lag = first_lag_of(grid, first);
        ASSERT_EQ(first_lag % 2, 1);
        ASSERT_LE(first_lag, std::max<std::int64_t>(first - max_diagonal, 1))
            << "units " << first << " to " << last << ", indels cost " << indel;
        ASSERT_GE(first_lag + 2 * static_cast<std::int64_t>(grid.lane_count()) - 1,
                  last + max_diagonal)
            << "units " << first << " to " << last << ", indels cost " << indel;
      }
    }
  }
}

TEST(LagGrid, costs_less_than_the_penalties) {
  for (const Penalties& penalties : kPenalties) {
    const LagRule rules = rules_for(10, penalties);
    const std::string text(11, 'A');
    const CLagGrid grid(text.data(), text.size(), rules);
    const LagWeights& weights = grid.weights();
    EXPECT_LT(weights.cost, std::min(penalties.mismatch, penalties.indel));
    EXPECT_GE(weights.reward, 1);
    EXPECT_EQ(weights.mismatch, std::min<std::int64_t>(penalties.mismatch, 255));
    EXPECT_EQ(weights.indel, std::min<std::int64_t>(penalties.indel, 255));
  }
}

/// The letters in all lanes of a row: those of the text, and outside of it none of its letters.
void expect_letters_of_row(const CLagGrid& grid, const std::string& text, std::int64_t row,
                           std::int64_t first_lag) {
  const auto length = static_cast<std::int64_t>(text.size());
  for (std::size_t k = 0; k < grid.lane_count(); ++k) {
    const std::int64_t lag =
        first_lag + CLagGrid::parity_of(row) + 2 * static_cast<std::int64_t>(k);
    const std::int64_t high = (row + lag) / 2;
    const std::int64_t low = (row - lag) / 2;
    ASSERT_EQ((row + lag) % 2, 0);
    const std::uint8_t higher = grid.higher_bases(row)[k];
    const std::uint8_t lower = grid.lower_bases(row)[k];
    if (high >= 0 && high < length) {
      ASSERT_EQ(higher, static_cast<std::uint8_t>(text[static_cast<std::size_t>(high)]));
    } else {
      ASSERT_EQ(std::string("ACGTN").find(static_cast<char>(higher)), std::string::npos);
    }
    if (low >= 0 && low < length) {
      ASSERT_EQ(lower, static_cast<std::uint8_t>(text[static_cast<std::size_t>(low)]));
    } else {
      ASSERT_EQ(std::string("ACGTN").find(static_cast<char>(lower)), std::string::npos);
      ASSERT_NE(lower, higher);
    }
  }
}

TEST(LagGrid, lays_the_bases_out_by_rows_and_lanes) {
  RandomEngine engine(11);
  for (const std::uint64_t unit : std::vector<std::uint64_t>{1, 2, 9, 50, 101}) {
    const std::string text = draw_letters(engine, unit + 150, "ACGT");
    const CBases bases(text);
    const LagRule rules = rules_for(static_cast<std::int64_t>(unit), {6, 7});
    CLagGrid grid(bases.begin(), text.size(), rules);
    const auto lane = static_cast<std::int64_t>(
        searched_lane(grid.lanes(1 - static_cast<std::int64_t>(unit) % 2)));
    const auto signed_unit = static_cast<std::int64_t>(unit);
    const std::int64_t first_lag = signed_unit - (1 - signed_unit % 2) - 2 * lane;
    ASSERT_GE(first_lag, 1);
    ASSERT_EQ(grid.row_count(), 2 * static_cast<std::int64_t>(text.size()));
    for (const std::int64_t first_row : {0, 1, 100, 101}) {
      const std::int64_t row_end = first_row + 60;
      grid.load_segment(first_row, row_end);
      EXPECT_FALSE(grid.may_have_neutral_Ns());
      for (std::int64_t row = grid.row_before(first_row) - 2; row <= grid.row_ahead(row_end);
           ++row) {
        ASSERT_NO_FATAL_FAILURE(expect_letters_of_row(grid, text, row, first_lag)) << row;
      }
    }
  }
}

/// The longest unit whose paths may come to `lag`: with a gain of up to `kMaxGain` on entry and
/// all that a copy adds, a path pays for so many indels and is still alive.
std::int64_t longest_unit_at(std::int64_t lag, const LagRule& rules) {
  const auto first = static_cast<std::int64_t>(rules.first_unit_length);
  std::int64_t longest = first;
  for (std::int64_t u = first; u <= static_cast<std::int64_t>(rules.last_unit_length()); ++u) {
    const std::int64_t indels = (CLagGrid::kMaxGain + 2 * u - 1) / rules.scoring.indel_penalty;
    if (u - indels <= lag) longest = u;
  }
  return longest;
}

TEST(LagGrid, caps_gains_at_the_longest_unit_that_comes_to_a_lag) {
  const std::string text(500, 'A');
  for (const Penalties& penalties : kPenalties) {
    LagRule rules = rules_for(61, penalties);
    rules.min_scores.assign(90, 20);
    const CLagGrid grid(text.data(), text.size(), rules);
    // Odd lags have parity 0, so its first lane that is searched is that of 61.
    const std::int64_t first_lag = 61 - 2 * static_cast<std::int64_t>(searched_lane(grid.lanes(0)));
    for (const std::int64_t parity : {0, 1}) {
      for (std::size_t k = 0; k < grid.lane_count(); ++k) {
        const std::int64_t lag = first_lag + parity + 2 * static_cast<std::int64_t>(k);
        EXPECT_EQ(grid.lanes(parity).gain_cap[k], longest_unit_at(lag, rules))
            << "lag " << lag << " penalties " << penalties.mismatch << "," << penalties.indel;
      }
    }
  }
}

TEST(LagGrid, has_room_for_the_rows_of_a_short_text_and_no_more) {
  const CBases bases("ACGTACGTACGTACGTACGTACGT");
  const CLagGrid grid(bases.begin(), 24, rules_for(8, {6, 6}));
  EXPECT_EQ(grid.row_count(), 48);
  EXPECT_EQ(grid.rows_per_segment(), 48);
}

TEST(LagGrid, notices_neutral_Ns) {
  LagRule rules = rules_for(3, {6, 6});
  std::string text(40, 'A');
  text[20] = 'N';
  CLagGrid grid(text.data(), text.size(), rules);
  grid.load_segment(0, grid.row_count());
  EXPECT_TRUE(grid.may_have_neutral_Ns());
  rules.scoring.is_N_neutral = false;
  grid.load_segment(0, grid.row_count());
  EXPECT_FALSE(grid.may_have_neutral_Ns());
}

TEST(LagRows, keep_the_last_three_rows_between_clear_margins) {
  constexpr std::size_t kLanes = 64;
  CLagRows rows(kLanes);
  for (std::uint8_t round = 1; round <= 9; ++round) {
    rows.advance();
    for (std::size_t i = 0; i < kLanes; ++i) {
      rows.gain(0)[i] = round;
      rows.persistence(0)[i] = static_cast<std::uint8_t>(100 + round);
    }
    for (std::uint8_t age = 0; age < std::min<std::uint8_t>(round, 3); ++age) {
      EXPECT_EQ(rows.gain(age)[0], round - age);
      EXPECT_EQ(rows.persistence(age)[kLanes - 1], 100 + round - age);
      EXPECT_EQ(rows.gain(age)[-1], 0);
      EXPECT_EQ(rows.gain(age)[kLanes], 0);
      EXPECT_EQ(rows.persistence(age)[-1], 0);
      EXPECT_EQ(rows.persistence(age)[kLanes], 0);
    }
  }
  rows.clear();
  for (std::size_t age = 0; age < 3; ++age) {
    EXPECT_EQ(rows.gain(age)[5], 0);
    EXPECT_EQ(rows.persistence(age)[5], 0);
  }
}

}  // namespace
}  // namespace quorix::testing
