// Which of two overlapping repeats goes. Repeats are given as their stretch, the length of their
// unit and their score; only these count.

#include <algorithm>
#include <cstddef>
#include <list>
#include <string>
#include <vector>

#include "report/sat_pool.h"
#include "search/modes/sat_container.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using testing::Words;

struct Stretch {
  std::size_t start;
  std::size_t end;
  std::size_t unit_length;
  int score;
};

class OverlapRemoval : public testing::CSearchSettings {
 protected:
  struct Outcome {
    Words kept;
    Words dropped;  ///< in the order in which the pool got them

    bool operator==(const Outcome&) const = default;
  };

  static std::string in_words(const Csat& sat) {
    return std::to_string(sat.start - kText) + "-" + std::to_string(sat.end - kText);
  }

  static Words in_words(const std::list<Csat*>& records) {
    Words words;
    for (const Csat* const record : records) words.push_back(in_words(*record));
    return words;
  }

  /// What becomes of the repeats, which have to be in order of their stretches.
  static Outcome remove_hidden(const std::vector<Stretch>& stretches) {
    Csat_garbagecollector pool;
    CsatContainer container(&pool);
    for (const auto& [start, end, unit_length, score] : stretches) {
      Csat* const sat = pool.acquire(kText + start, kText + start + unit_length);
      sat->end = kText + end;
      sat->score = score;
      container.sat_list.push_back(sat);
    }
    EXPECT_TRUE(std::is_sorted(container.sat_list.begin(), container.sat_list.end(), lessThan_sat));
    CSearchController::remove_hidden(container);
    return {in_words(container.sat_list), in_words(pool.spare_records())};
  }

  friend void PrintTo(const Outcome& outcome, std::ostream* out) {
    *out << "kept" << ::testing::PrintToString(outcome.kept) << " dropped"
         << ::testing::PrintToString(outcome.dropped);
  }

  static constexpr char kText[100] = {};
};

TEST_F(OverlapRemoval, leaves_an_empty_list_and_a_list_of_one_unchanged) {
  EXPECT_EQ(remove_hidden({}), (Outcome{{}, {}}));
  EXPECT_EQ(remove_hidden({{3, 9, 2, 4}}), (Outcome{{"3-9"}, {}}));
}

TEST_F(OverlapRemoval, keeps_repeats_that_merely_touch) {
  EXPECT_EQ(remove_hidden({{0, 10, 2, 8}, {10, 20, 2, 5}}), (Outcome{{"0-10", "10-20"}, {}}));
  // Even if they have no more than their unit, or less.
  EXPECT_EQ(remove_hidden({{0, 4, 4, 1}, {4, 8, 4, 9}}), (Outcome{{"0-4", "4-8"}, {}}));
  EXPECT_EQ(remove_hidden({{0, 4, 5, 1}, {4, 8, 5, 9}}), (Outcome{{"0-4", "4-8"}, {}}));
}

TEST_F(OverlapRemoval, keeps_repeats_that_are_apart) {
  EXPECT_EQ(remove_hidden({{0, 10, 2, 8}, {11, 20, 2, 9}}), (Outcome{{"0-10", "11-20"}, {}}));
}

TEST_F(OverlapRemoval, drops_a_repeat_inside_a_longer_one_that_scores_more) {
  EXPECT_EQ(remove_hidden({{0, 40, 2, 10}, {20, 30, 2, 9}}), (Outcome{{"0-40"}, {"20-30"}}));
}

TEST_F(OverlapRemoval, drops_a_repeat_around_a_shorter_one_that_scores_more) {
  EXPECT_EQ(remove_hidden({{0, 40, 2, 10}, {20, 30, 2, 11}}), (Outcome{{"20-30"}, {"0-40"}}));
}

TEST_F(OverlapRemoval, drops_the_later_of_two_repeats_of_equal_score) {
  EXPECT_EQ(remove_hidden({{0, 40, 2, 10}, {20, 30, 2, 10}}), (Outcome{{"0-40"}, {"20-30"}}));
  EXPECT_EQ(remove_hidden({{0, 20, 2, 10}, {1, 21, 2, 10}}), (Outcome{{"0-20"}, {"1-21"}}));
}

TEST_F(OverlapRemoval, drops_the_longer_of_two_repeats_of_equal_start_and_score) {
  EXPECT_EQ(remove_hidden({{0, 20, 2, 10}, {0, 30, 2, 10}}), (Outcome{{"0-20"}, {"0-30"}}));
}

TEST_F(OverlapRemoval, compares_scores_as_signed_numbers) {
  EXPECT_EQ(remove_hidden({{0, 20, 2, -1}, {5, 15, 2, 0}}), (Outcome{{"5-15"}, {"0-20"}}));
  EXPECT_EQ(remove_hidden({{0, 20, 2, 0}, {5, 15, 2, -1}}), (Outcome{{"0-20"}, {"5-15"}}));
}

TEST_F(OverlapRemoval, keeps_repeats_that_each_have_a_unit_beside_the_bases_they_share) {
  EXPECT_EQ(remove_hidden({{0, 20, 3, 10}, {17, 40, 4, 30}}), (Outcome{{"0-20", "17-40"}, {}}));
}

// Twenty bases with a unit of four: sixteen of them may be shared.
TEST_F(OverlapRemoval, leaves_one_whole_unit_of_the_earlier_repeat_or_drops_one) {
  EXPECT_EQ(remove_hidden({{0, 20, 4, 5}, {5, 60, 1, 9}}), (Outcome{{"0-20", "5-60"}, {}}));
  EXPECT_EQ(remove_hidden({{0, 20, 4, 5}, {4, 60, 1, 9}}), (Outcome{{"0-20", "4-60"}, {}}));
  EXPECT_EQ(remove_hidden({{0, 20, 4, 5}, {3, 60, 1, 9}}), (Outcome{{"3-60"}, {"0-20"}}));
  EXPECT_EQ(remove_hidden({{0, 20, 4, 9}, {3, 60, 1, 5}}), (Outcome{{"0-20"}, {"3-60"}}));
}

TEST_F(OverlapRemoval, leaves_one_whole_unit_of_the_later_repeat_or_drops_one) {
  EXPECT_EQ(remove_hidden({{0, 45, 1, 9}, {30, 50, 4, 5}}), (Outcome{{"0-45", "30-50"}, {}}));
  EXPECT_EQ(remove_hidden({{0, 46, 1, 9}, {30, 50, 4, 5}}), (Outcome{{"0-46", "30-50"}, {}}));
  EXPECT_EQ(remove_hidden({{0, 47, 1, 9}, {30, 50, 4, 5}}), (Outcome{{"0-47"}, {"30-50"}}));
  EXPECT_EQ(remove_hidden({{0, 47, 1, 5}, {30, 50, 4, 9}}), (Outcome{{"30-50"}, {"0-47"}}));
}

TEST_F(OverlapRemoval, lets_a_repeat_drop_several_later_ones) {
  EXPECT_EQ(remove_hidden({{0, 60, 2, 50}, {5, 15, 2, 8}, {20, 30, 2, 8}, {40, 60, 2, 18}}),
            (Outcome{{"0-60"}, {"5-15", "20-30", "40-60"}}));
}

TEST_F(OverlapRemoval, lets_a_repeat_that_has_dropped_one_be_dropped_by_a_later_one) {
  EXPECT_EQ(remove_hidden({{0, 60, 2, 20}, {5, 15, 2, 8}, {20, 50, 2, 28}}),
            (Outcome{{"20-50"}, {"5-15", "0-60"}}));
}

// Each next one scores more and leaves no whole unit of the one before.
TEST_F(OverlapRemoval, drops_a_whole_chain_of_ever_higher_scores) {
  EXPECT_EQ(remove_hidden({{0, 10, 2, 1}, {1, 11, 2, 2}, {2, 12, 2, 3}, {3, 13, 2, 4}}),
            (Outcome{{"3-13"}, {"0-10", "1-11", "2-12"}}));
}

// The first one drops the second, which would have dropped the third.
TEST_F(OverlapRemoval, spares_what_only_a_dropped_repeat_overlaps) {
  EXPECT_EQ(remove_hidden({{0, 20, 2, 18}, {1, 30, 2, 17}, {21, 29, 2, 6}}),
            (Outcome{{"0-20", "21-29"}, {"1-30"}}));
}

// What the dropped repeat had not been compared with yet is compared with those after it.
TEST_F(OverlapRemoval, goes_on_with_the_repeat_after_a_dropped_earlier_one) {
  EXPECT_EQ(remove_hidden({{0, 20, 2, 5}, {1, 20, 2, 9}, {2, 19, 2, 7}, {30, 40, 2, 8}}),
            (Outcome{{"1-20", "30-40"}, {"0-20", "2-19"}}));
}

TEST_F(OverlapRemoval, compares_an_earlier_repeat_with_all_that_start_inside_it) {
  // The second is kept beside the first; the third is inside both and is dropped by the first.
  EXPECT_EQ(remove_hidden({{0, 40, 2, 30}, {30, 80, 2, 40}, {32, 38, 2, 4}}),
            (Outcome{{"0-40", "30-80"}, {"32-38"}}));
}

TEST_F(OverlapRemoval, keeps_the_survivors_in_their_order) {
  EXPECT_EQ(remove_hidden({{0, 10, 2, 8},
                           {1, 9, 2, 6},
                           {12, 30, 3, 15},
                           {12, 31, 6, 13},
                           {40, 50, 2, 8},
                           {48, 70, 4, 18}}),
            (Outcome{{"0-10", "12-30", "40-50", "48-70"}, {"1-9", "12-31"}}));
}

TEST_F(OverlapRemoval, drops_nothing_where_the_setting_says_so) {
  global_remove_mostly_hidden = false;
  EXPECT_EQ(remove_hidden({{0, 40, 2, 10}, {0, 40, 2, 10}, {20, 30, 2, 11}}),
            (Outcome{{"0-40", "0-40", "20-30"}, {}}));
}

TEST_F(OverlapRemoval, puts_dropped_repeats_after_the_spare_ones_of_the_pool) {
  Csat_garbagecollector pool;
  CsatContainer container(&pool);
  Csat* const spare = pool.acquire(kText, kText + 1);
  Csat* const kept = pool.acquire(kText, kText + 8);
  Csat* const dropped = pool.acquire(kText, kText + 9);
  pool.release(spare);
  container.sat_list = {kept, dropped};
  CSearchController::remove_hidden(container);
  EXPECT_EQ(container.sat_list, std::list<Csat*>{kept});
  EXPECT_EQ(pool.spare_records(), (std::list<Csat*>{spare, dropped}));
}

}  // namespace
}  // namespace quorix
