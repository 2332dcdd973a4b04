// The single pass that nothing in the program calls: at every base all unit lengths, and no marks
// but one allowed start for each unit length.

#include <limits>
#include <list>

#include "report/sat_pool.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using OlderExactSearch = testing::CSearchSettings;
using testing::CSearchedSequence;
using testing::Words;

Words older_exact_repeats_of(std::string_view bases) {
  CSearchedSequence sequence(bases);
  sequence.search.exact_search();
  return sequence.exact();
}

TEST_F(OlderExactSearch, finds_a_repeat_once) {
  EXPECT_EQ(older_exact_repeats_of("TTACACACACGG"), Words{"[2,10) AC@2 score 6"});
}

TEST_F(OlderExactSearch, keeps_what_meets_the_active_thresholds_exactly) {
  require_score(6);
  require_length(8);
  EXPECT_EQ(older_exact_repeats_of("ACACACAC"), Words{"[0,8) AC@0 score 6"});
  reset();
  require_score(7);
  EXPECT_EQ(older_exact_repeats_of("ACACACAC"), Words{});
  reset();
  require_length(9);
  EXPECT_EQ(older_exact_repeats_of("ACACACAC"), Words{});
}

TEST_F(OlderExactSearch, finds_nothing_in_a_sequence_of_no_base_or_one) {
  require_score(0);
  for (const char* const bases : {"", "A", "N"}) EXPECT_EQ(older_exact_repeats_of(bases), Words{});
}

TEST_F(OlderExactSearch, needs_a_base_after_the_first_unit) {
  require_score(0);
  search_units_of(3);
  EXPECT_EQ(older_exact_repeats_of("ACG"), Words{});
  EXPECT_EQ(older_exact_repeats_of("ACGA"), Words{"[0,4) ACG@0 score 1"});
}

TEST_F(OlderExactSearch, finds_a_run_of_one_base_with_no_longer_unit) {
  search_units_from_to(1, 3);
  EXPECT_EQ(older_exact_repeats_of("AAAAAAAA"), Words{"[0,8) A@0 score 7"});
  reset();
  search_units_from_to(2, 3);
  EXPECT_EQ(older_exact_repeats_of("AAAAAAAA"), Words{});
}

TEST_F(OlderExactSearch, skips_the_multiples_of_a_unit_in_a_repeat) {
  // With units of four it would score 8.
  search_units_from_to(2, 4);
  EXPECT_EQ(older_exact_repeats_of("ACACACACACAC"), Words{"[0,12) AC@0 score 10"});
  reset();
  search_units_of(4);
  EXPECT_EQ(older_exact_repeats_of("ACACACACACAC"), Words{"[0,12) ACAC@0 score 8"});
}

// Units of three are no multiple of two and start anywhere; the list stays in the order found.
TEST_F(OlderExactSearch, leaves_its_repeats_unsorted) {
  require_score(0);
  search_units_from_to(2, 3);
  EXPECT_EQ(older_exact_repeats_of("ACAC"), (Words{"[0,4) AC@0 score 2", "[0,3) ACA@0 score 0"}));
}

// AC ends at 8, so the next unit of two may reach 9 at the earliest: it starts at 7.
TEST_F(OlderExactSearch, lets_the_next_unit_end_one_base_after_a_repeat) {
  search_units_of(2);
  EXPECT_EQ(older_exact_repeats_of("ACACACACGCGCGCG"),
            (Words{"[0,8) AC@0 score 6", "[7,15) CG@7 score 6"}));
}

// Minimum scores are 1, 3 and 5. At 0, AA bars units of one, two and three bases from ending before
// 3, and AAC, which extends over all, bars units of three from ending before 13. At 3 the next AA
// bars them from ending before 6 only: had that been taken for units of three, AAC would be
// reported again.
TEST_F(OlderExactSearch, never_lowers_an_allowed_start) {
  global_min_score = 1;
  global_min_score_a = -1;
  global_min_score_bx = 2.0F;
  search_units_from_to(1, 3);
  EXPECT_EQ(older_exact_repeats_of("AACAACAACAAC"),
            (Words{"[0,2) A@0 score 1", "[0,12) AAC@0 score 9", "[3,5) A@3 score 1",
                   "[6,8) A@6 score 1", "[9,11) A@9 score 1"}));
}

TEST_F(OlderExactSearch, takes_no_unit_with_an_N_in_it_and_leaves_none_at_the_ends) {
  search_units_of(2);
  require_score(2);
  EXPECT_EQ(older_exact_repeats_of("NNACACNACACNN"),
            (Words{"[2,6) AC@2 score 2", "[7,11) AC@7 score 2"}));
}

TEST_F(OlderExactSearch, finds_nothing_of_unit_length_0) {
  search_units_from_to(0, 2);
  EXPECT_EQ(older_exact_repeats_of("AAAAAAAA"), Words{"[0,8) A@0 score 7"});
  reset();
  search_units_from_to(0, 0);
  EXPECT_EQ(older_exact_repeats_of("AAAAAAAA"), Words{});
}

TEST_F(OlderExactSearch, is_soon_done_with_unit_lengths_that_no_sequence_has) {
  require_score(3);
  search_units_from_to(5, std::numeric_limits<std::uint32_t>::max());
  EXPECT_EQ(older_exact_repeats_of("ACGTTACG"), Words{"[0,8) ACGTT@0 score 3"});
  EXPECT_EQ(older_exact_repeats_of(""), Words{});
}

TEST_F(OlderExactSearch, takes_records_from_the_end_of_the_pool_and_gives_its_spare_one_back) {
  CSearchedSequence sequence("ACACACACT");
  for (Csat* const record : {sat_alloc.acquire(sequence.at(0), sequence.at(1)),
                             sat_alloc.acquire(sequence.at(0), sequence.at(1))}) {
    sat_alloc.release(record);
  }
  std::list<Csat*> expected = sat_alloc.spare_records();
  Csat* const used = expected.back();
  sequence.search.exact_search();
  // The last one is tried with a unit of one base and then kept with AC; the next one is tried in
  // vain.
  EXPECT_EQ(sequence.search.exact_sat_list.sat_list, std::list<Csat*>{used});
  expected.pop_back();
  EXPECT_EQ(sat_alloc.spare_records(), expected);
}

}  // namespace
}  // namespace quorix
