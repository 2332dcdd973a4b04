// The controller of one sequence: its thresholds, its lists, its end.

#include "search/search_controller.h"

#include <cstring>
#include <iterator>
#include <list>
#include <optional>

#include "report/sat_pool.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using SearchController = testing::CSearchSettings;
using SearchThresholds = testing::CSearchSettings;
using testing::CSearchedSequence;

TEST_F(SearchController, knows_its_sequence_and_has_found_nothing_yet) {
  const CSearchedSequence sequence("ACGT", "chr1", 5'000'000'000);
  EXPECT_EQ(sequence.search.sequence_number, 5'000'000'000U);
  EXPECT_EQ(&sequence.search.sequence_record, &sequence.record);
  EXPECT_TRUE(sequence.search.exact_sat_list.sat_list.empty());
  EXPECT_TRUE(sequence.search.imperfect_sat_list.sat_list.empty());
  EXPECT_EQ(sequence.search.exact_sat_list.pool, &sat_alloc);
  EXPECT_EQ(sequence.search.imperfect_sat_list.pool, &sat_alloc);
}

TEST_F(SearchController, ends_the_text_with_a_NUL_without_changing_it) {
  const CSearchedSequence sequence("ACGTN");
  EXPECT_EQ(std::strcmp(sequence.at(0), "ACGTN"), 0);
  EXPECT_EQ(sequence.record.sequence.size(), 5U);
}

TEST_F(SearchController, grows_a_full_block_of_bases_before_it_points_into_it) {
  CSequence_Mol record;
  record.sequence = faststring();
  for (const char base : {'A', 'C', 'A', 'C'}) record.sequence.push_back(base);
  ASSERT_EQ(record.sequence.capacity(), record.sequence.size());
  const CSearchController search(1, record);
  EXPECT_GT(record.sequence.capacity(), record.sequence.size());
  EXPECT_EQ(std::strcmp(record.sequence.data(), "ACAC"), 0);
}

TEST_F(SearchController, returns_imperfect_repeats_and_then_exact_ones_to_the_end_of_the_pool) {
  std::optional<CSearchedSequence> sequence(std::in_place, "ACGTACGT");
  const auto acquire = [&] { return sat_alloc.acquire(sequence->at(0), sequence->at(2)); };
  Csat* const exact_1 = acquire();
  Csat* const exact_2 = acquire();
  Csat* const imperfect_1 = acquire();
  Csat* const imperfect_2 = acquire();
  std::list<Csat*> expected = sat_alloc.spare_records();
  sequence->search.exact_sat_list.sat_list = {exact_1, exact_2};
  sequence->search.imperfect_sat_list.sat_list = {imperfect_1, imperfect_2};

  sequence.reset();
  for (Csat* const record : {imperfect_1, imperfect_2, exact_1, exact_2}) {
    expected.push_back(record);
  }
  EXPECT_EQ(sat_alloc.spare_records(), expected);
}

TEST_F(SearchThresholds, are_the_constant_where_the_factor_is_zero_and_the_offset_lower) {
  global_min_score = 9;
  global_min_score_a = 8;
  global_min_score_bx = 0.0F;
  const CSearchedSequence sequence("A");
  for (std::int64_t length = 0; length <= global_max_unit_length; ++length) {
    EXPECT_EQ((*CSearchController::minScores_user)[length], 9) << length;
  }
}

TEST_F(SearchThresholds, round_a_fractional_product_up) {
  global_min_score = 0;
  global_min_score_bx = 1.5F;
  const CSearchedSequence sequence("A");
  EXPECT_EQ((*CSearchController::minScores_user)[1], 2);
  EXPECT_EQ((*CSearchController::minScores_user)[2], 3);
}

TEST_F(SearchThresholds, of_the_user_come_from_the_score_and_length_settings) {
  global_min_score = 20;
  global_min_score_a = 10;
  global_min_score_bx = 4.0F;
  global_min_length = 30;
  global_min_length_a = 25;
  global_min_length_bx = 2.0F;
  const CSearchedSequence sequence("A");
  EXPECT_EQ((*CSearchController::minScores_user)[2], 20);
  EXPECT_EQ((*CSearchController::minScores_user)[3], 22);
  EXPECT_EQ((*CSearchController::minLengths_user)[2], 30);
  EXPECT_EQ((*CSearchController::minLengths_user)[3], 31);
}

TEST_F(SearchThresholds, for_seeds_are_four_or_the_unit_length_and_no_length) {
  global_min_score = 50;
  global_min_length = 60;
  const CSearchedSequence sequence("A");
  for (std::int64_t length = 0; length <= 4; ++length) {
    EXPECT_EQ((*CSearchController::minScores_intern)[length], 4) << length;
  }
  EXPECT_EQ((*CSearchController::minScores_intern)[5], 5);
  EXPECT_EQ((*CSearchController::minScores_intern)[6], 6);
  EXPECT_EQ((*CSearchController::minScores_intern)[5000], 5000);
  for (const std::int64_t length : {0, 1, 4, 6, 5000}) {
    EXPECT_EQ((*CSearchController::minLengths_intern)[length], 0) << length;
  }
}

TEST_F(SearchThresholds, of_the_user_are_made_the_active_ones_by_every_controller) {
  const CSearchedSequence first("A");
  EXPECT_EQ(CSearchController::minScores, CSearchController::minScores_user.get());
  EXPECT_EQ(CSearchController::minLengths, CSearchController::minLengths_user.get());

  CSearchController::minScores = CSearchController::minScores_intern.get();
  CSearchController::minLengths = CSearchController::minLengths_intern.get();
  const CSearchedSequence second("A");
  EXPECT_EQ(CSearchController::minScores, CSearchController::minScores_user.get());
  EXPECT_EQ(CSearchController::minLengths, CSearchController::minLengths_user.get());
}

TEST_F(SearchThresholds, are_not_computed_again_by_a_second_controller) {
  { const CSearchedSequence first("A"); }
  global_min_score = 40;
  global_min_length = 50;
  const CSearchedSequence second("A");
  EXPECT_EQ((*CSearchController::minScores)[1], 6);
  EXPECT_EQ((*CSearchController::minLengths)[1], 1);
}

TEST_F(SearchThresholds, are_computed_afresh_after_a_reset) {
  { const CSearchedSequence first("A"); }
  EXPECT_EQ(CSearchController::reset_minimum_arrays(), 0);
  EXPECT_EQ(CSearchController::minScores_user, nullptr);
  EXPECT_EQ(CSearchController::minLengths_user, nullptr);
  EXPECT_EQ(CSearchController::minScores_intern, nullptr);
  EXPECT_EQ(CSearchController::minLengths_intern, nullptr);
  EXPECT_EQ(CSearchController::minScores, nullptr);
  EXPECT_EQ(CSearchController::minLengths, nullptr);

  global_min_score = 40;
  global_min_length = 50;
  const CSearchedSequence second("A");
  EXPECT_EQ((*CSearchController::minScores)[1], 40);
  EXPECT_EQ((*CSearchController::minLengths)[1], 50);
  EXPECT_EQ((*CSearchController::minScores_intern)[1], 4);
}

TEST_F(SearchThresholds, may_be_reset_before_there_are_any) {
  EXPECT_EQ(CSearchController::reset_minimum_arrays(), 0);
  EXPECT_EQ(CSearchController::reset_minimum_arrays(), 0);
  EXPECT_EQ(CSearchController::minScores_user, nullptr);
}

TEST_F(SearchThresholds, are_filled_each_by_itself_where_one_is_missing) {
  { const CSearchedSequence first("A"); }
  global_min_score = 40;
  global_min_length = 50;
  CSearchController::minLengths_user.reset();
  const CSearchedSequence second("A");
  EXPECT_EQ((*CSearchController::minScores)[1], 6);
  EXPECT_EQ((*CSearchController::minLengths)[1], 50);
}

}  // namespace
}  // namespace quorix
