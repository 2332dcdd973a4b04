// Mode "extendExact": exact repeats found with lax thresholds, then extended over edits.

#include <iterator>
#include <limits>
#include <list>
#include <string_view>

#include "report/sat_pool.h"
#include "unit/search/recorded_stream.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using ExtendExactSearch = testing::CSearchSettings;
using testing::CRecordedStandardError;
using testing::CSearchedSequence;
using testing::Words;

Words extended_repeats_of(std::string_view bases) {
  const CRecordedStandardError silent;
  CSearchedSequence sequence(bases);
  sequence.search.search_exact_and_extend_to_imperfect_repeats();
  EXPECT_TRUE(sequence.search.exact_sat_list.sat_list.empty());
  return sequence.imperfect();
}

TEST_F(ExtendExactSearch, tells_its_two_steps_on_standard_error_as_they_begin) {
  int arrival_count = 0;
  const CRecordedStandardError standard_error([&] { ++arrival_count; });
  CSearchedSequence sequence("ACACACAC");
  sequence.search.search_exact_and_extend_to_imperfect_repeats();
  EXPECT_EQ(standard_error.received(),
            "  Searching for exact repeats.\n"
            "  Extend exact to imperfect repeats.\n");
  EXPECT_EQ(arrival_count, 2);
}

// ACACAC scores 4: enough for a seed, not for the user, so it closes nothing and seeds at each base
// that a unit of it starts at. All extend over the G to the same repeat, 4 - 2 + 5. CACAC is no
// seed.
TEST_F(ExtendExactSearch, keeps_every_phase_of_a_seed_below_the_users_thresholds) {
  set_penalties(-2, -2);
  search_units_of(2);
  EXPECT_EQ(extended_repeats_of("ACACACGCACAC"),
            (Words{"[0,12) AC@0 score 7 mis 1 6M", "[0,12) CA@1 score 7 mis 1 6M",
                   "[0,12) AC@2 score 7 mis 1 6M", "[0,12) CA@3 score 7 mis 1 6M",
                   "[0,12) AC@4 score 7 mis 1 6M"}));
}

TEST_F(ExtendExactSearch, leaves_it_to_the_overlap_removal_to_choose_among_the_phases) {
  set_penalties(-2, -2);
  search_units_of(2);
  const CRecordedStandardError silent;
  CSearchedSequence sequence("ACACACGCACAC");
  sequence.search.search_exact_and_extend_to_imperfect_repeats();
  global_remove_mostly_hidden = false;
  sequence.search.remove_hidden(sequence.search.imperfect_sat_list);
  EXPECT_EQ(sequence.imperfect().size(), 5U);
  global_remove_mostly_hidden = true;
  sequence.search.remove_hidden(sequence.search.imperfect_sat_list);
  EXPECT_EQ(sequence.imperfect(), Words{"[0,12) AC@0 score 7 mis 1 6M"});
}

TEST_F(ExtendExactSearch, asks_seeds_for_a_score_of_4_or_their_unit_length) {
  set_penalties(-2, -2);
  search_units_of(2);
  // Three matches on either side of the G.
  EXPECT_EQ(extended_repeats_of("ACACAGACACA"), Words{});
  reset();
  require_score(1);
  search_units_of(5);
  EXPECT_EQ(extended_repeats_of("ACGTTACGT"), Words{});
  EXPECT_EQ(extended_repeats_of("ACGTTACGTT"), Words{"[0,10) ACGTT@0 score 5"});
}

TEST_F(ExtendExactSearch, asks_extended_repeats_for_the_users_score) {
  search_units_of(2);
  EXPECT_EQ(extended_repeats_of("ACACACA"), Words{});
  EXPECT_EQ(extended_repeats_of("ACACACAC"), Words{"[0,8) AC@0 score 6"});
}

TEST_F(ExtendExactSearch, asks_extended_repeats_alone_for_the_users_length) {
  set_penalties(-2, -2);
  search_units_of(2);
  require_length(12);
  EXPECT_EQ(extended_repeats_of("ACACACGCACAC").size(), 5U);
  reset();
  set_penalties(-2, -2);
  search_units_of(2);
  require_length(13);
  EXPECT_EQ(extended_repeats_of("ACACACGCACAC"), Words{});
}

TEST_F(ExtendExactSearch, leaves_the_users_thresholds_active) {
  const CRecordedStandardError silent;
  CSearchedSequence sequence("ACACACAC");
  CSearchController::minScores = nullptr;
  CSearchController::minLengths = nullptr;
  sequence.search.search_exact_and_extend_to_imperfect_repeats();
  EXPECT_EQ(CSearchController::minScores, CSearchController::minScores_user.get());
  EXPECT_EQ(CSearchController::minLengths, CSearchController::minLengths_user.get());
}

// Both seeds, ACG at 0 and at 10, extend over the T to 6 - 6 + 9, one to each side.
TEST_F(ExtendExactSearch, keeps_a_repeat_for_each_seed_that_grows_into_it) {
  EXPECT_EQ(extended_repeats_of("ACGACGACGTACGACGACG"),
            (Words{"[0,19) ACG@0 score 9 ins 1 9I", "[0,19) ACG@10 score 9 ins 1 9I"}));
}

// The seed of seven bases, at 8, comes after the runs of A at 1 and at 8. It extends to the left
// over the T, to 13 - 6 + 7, and then starts before them.
TEST_F(ExtendExactSearch, sorts_by_where_the_repeats_start_once_extended) {
  require_score(5);
  search_units_from_to(1, 7);
  EXPECT_EQ(extended_repeats_of("GAAAAAATAAAAAAGAAAAAAGAAAAAA"),
            (Words{"[0,28) AAAAAAG@8 score 14 mis 1 7M", "[1,7) A@1 score 5", "[8,14) A@8 score 5",
                   "[15,21) A@15 score 5", "[22,28) A@22 score 5"}));
}

TEST_F(ExtendExactSearch, gives_back_the_Ns_at_the_ends_of_an_extended_repeat) {
  search_units_of(2);
  EXPECT_EQ(extended_repeats_of("GNACACACACNNG"), Words{"[2,10) AC@2 score 6"});
}

TEST_F(ExtendExactSearch, releases_rejected_seeds_to_the_pool_in_their_order) {
  search_units_of(2);
  require_length(100);
  const CRecordedStandardError silent;
  CSearchedSequence sequence("ACACACAC");
  std::list<Csat*> records;
  for (int i = 0; i < 6; ++i) records.push_back(sat_alloc.acquire(sequence.at(0), sequence.at(1)));
  for (Csat* const record : records) sat_alloc.release(record);

  // The six seeds take their records from the end, the last one first.
  std::list<Csat*> expected = sat_alloc.spare_records();
  expected.resize(expected.size() - 6);
  records.reverse();
  expected.splice(expected.end(), records);
  sequence.search.search_exact_and_extend_to_imperfect_repeats();
  EXPECT_EQ(sequence.imperfect(), Words{});
  EXPECT_EQ(sat_alloc.spare_records(), expected);
}

TEST_F(ExtendExactSearch, moves_accepted_seeds_without_copying_them) {
  const CRecordedStandardError silent;
  CSearchedSequence sequence("ACACACAC");
  sat_alloc.release(sat_alloc.acquire(sequence.at(0), sequence.at(1)));
  Csat* const last = sat_alloc.spare_records().back();
  sequence.search.search_exact_and_extend_to_imperfect_repeats();
  EXPECT_EQ(sequence.search.imperfect_sat_list.sat_list, std::list<Csat*>{last});
}

TEST_F(ExtendExactSearch, finds_nothing_where_there_is_nothing_to_find) {
  for (const char* const bases : {"", "A", "N", "NNNNNNNNNN", "ACGTTGCA"}) {
    EXPECT_EQ(extended_repeats_of(bases), Words{}) << bases;
  }
}

TEST_F(ExtendExactSearch, is_soon_done_with_unit_lengths_that_no_sequence_has) {
  search_units_from_to(2, std::numeric_limits<std::uint32_t>::max());
  EXPECT_EQ(extended_repeats_of("ACACACACT"), Words{"[0,8) AC@0 score 6"});
}

}  // namespace
}  // namespace quorix
