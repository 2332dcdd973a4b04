// Runs of perfect copies. Unless a test says otherwise a repeat needs a score of 6, or of its unit
// length if that is more.

#include <limits>
#include <list>
#include <string>

#include "report/sat_pool.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using ExactSearch = testing::CSearchSettings;
using testing::CSearchedSequence;
using testing::exact_repeats_of;
using testing::repeated;
using testing::Words;

/// All repeats that seeds extend to, with each of these seeds: nothing is too poor for the active
/// thresholds, and nothing good enough for the user's, so that no base is ever closed.
Words all_exact_extensions_of(std::string_view bases) {
  global_min_score = std::numeric_limits<int>::max();
  CSearchedSequence sequence(bases);
  const CThresholdTable anything({0, 0, 0.0F}, 0);
  CSearchController::minScores = &anything;
  CSearchController::minLengths = &anything;
  sequence.search.exact_search_2();
  return sequence.exact();
}

TEST_F(ExactSearch, finds_nothing_in_a_sequence_of_no_base_or_one) {
  require_score(0);
  for (const char* const bases : {"", "A", "N"}) EXPECT_EQ(exact_repeats_of(bases), Words{});
}

TEST_F(ExactSearch, finds_nothing_if_the_largest_unit_length_is_0) {
  search_units_from_to(1, 0);
  EXPECT_EQ(exact_repeats_of("AAAAAAAAAAAAAAAAAAAAAAAA"), Words{});
}

TEST_F(ExactSearch, needs_a_base_after_the_first_unit) {
  // In ACAC a unit of two bases starts at 0 and at 1; both extend over all of it.
  search_units_of(2);
  EXPECT_EQ(all_exact_extensions_of("ACAC"), (Words{"[0,4) AC@0 score 2", "[0,4) CA@1 score 2"}));
  reset();
  search_units_of(3);
  EXPECT_EQ(all_exact_extensions_of("ACAC"), Words{"[0,3) ACA@0 score 0"});
  reset();
  search_units_of(4);
  EXPECT_EQ(all_exact_extensions_of("ACAC"), Words{});
}

TEST_F(ExactSearch, never_starts_a_unit_of_one_base_at_the_last_base) {
  search_units_of(1);
  EXPECT_EQ(all_exact_extensions_of("CAG"), (Words{"[0,1) C@0 score 0", "[1,2) A@1 score 0"}));
}

TEST_F(ExactSearch, starts_runs_of_one_base_at_the_first_base_that_is_not_N) {
  search_units_of(1);
  EXPECT_EQ(exact_repeats_of("NNNNAAAAAAAG"), Words{"[4,11) A@4 score 6"});
  reset();
  search_units_of(1);
  EXPECT_EQ(all_exact_extensions_of("NNNNCAG"), (Words{"[4,5) C@4 score 0", "[5,6) A@5 score 0"}));
}

TEST_F(ExactSearch, joins_runs_across_as_many_Ns_as_are_allowed) {
  global_Ns_allowed_in_a_row = 2;
  EXPECT_EQ(exact_repeats_of("ACACNNACAC"), Words{"[0,10) AC@0 score 6 N 2"});
}

TEST_F(ExactSearch, finds_two_repeats_around_a_longer_run_of_Ns) {
  global_Ns_allowed_in_a_row = 2;
  search_units_of(2);
  require_score(2);
  EXPECT_EQ(exact_repeats_of("ACACNNNACAC"), (Words{"[0,4) AC@0 score 2", "[7,11) AC@7 score 2"}));
}

TEST_F(ExactSearch, finds_two_repeats_around_any_N_where_Ns_are_missense) {
  global_treat_Ns_as_missense = true;
  search_units_of(2);
  require_score(2);
  EXPECT_EQ(exact_repeats_of("ACACNNACAC"), (Words{"[0,4) AC@0 score 2", "[6,10) AC@6 score 2"}));
}

TEST_F(ExactSearch, finds_no_repeat_that_starts_or_ends_with_N) {
  EXPECT_EQ(exact_repeats_of("NNACACACACNN"), Words{"[2,10) AC@2 score 6"});
  EXPECT_EQ(exact_repeats_of("NNAAAAAAANN"), Words{"[2,9) A@2 score 6"});
}

TEST_F(ExactSearch, finds_nothing_where_all_bases_are_N) {
  require_score(0);
  EXPECT_EQ(exact_repeats_of("NNNNNNNNNNNN"), Words{});
}

// As a unit, the first N after the A would match all the others.
TEST_F(ExactSearch, finds_nothing_in_a_run_of_Ns_after_a_base) {
  search_units_of(1);
  require_length(0);
  EXPECT_EQ(exact_repeats_of("ANNNNNNNNNNNNC"), Words{});
}

TEST_F(ExactSearch, finds_a_run_of_one_base_with_no_longer_unit) {
  search_units_from_to(1, 3);
  EXPECT_EQ(exact_repeats_of("AAAAAAAA"), Words{"[0,8) A@0 score 7"});
  reset();
  search_units_from_to(2, 3);
  EXPECT_EQ(exact_repeats_of("AAAAAAAA"), Words{});
}

TEST_F(ExactSearch, does_not_tell_a_repeat_again_by_a_multiple_of_its_unit) {
  search_units_from_to(2, 4);
  EXPECT_EQ(exact_repeats_of("ATATATATAT"), Words{"[0,10) AT@0 score 8"});
  reset();
  search_units_of(4);
  EXPECT_EQ(exact_repeats_of("ATATATATAT"), Words{"[0,10) ATAT@0 score 6"});
}

TEST_F(ExactSearch, orders_equal_starts_by_their_ends_and_leaves_equals_in_the_order_found) {
  // Found as AC, CA and, with units of three, ACA, which no base follows that matches.
  search_units_from_to(2, 3);
  EXPECT_EQ(all_exact_extensions_of("ACAC"),
            (Words{"[0,3) ACA@0 score 0", "[0,4) AC@0 score 2", "[0,4) CA@1 score 2"}));
}

TEST_F(ExactSearch, goes_on_right_after_a_run_of_one_base) {
  search_units_of(1);
  EXPECT_EQ(exact_repeats_of("AAAAAAACCCCCCC"), (Words{"[0,7) A@0 score 6", "[7,14) C@7 score 6"}));
  EXPECT_EQ(exact_repeats_of("AAAAAAANCCCCCCC"),
            (Words{"[0,7) A@0 score 6", "[8,15) C@8 score 6"}));
}

TEST_F(ExactSearch, tries_the_next_base_after_a_run_that_is_too_short) {
  search_units_of(1);
  EXPECT_EQ(exact_repeats_of("GTAAAAAAA"), Words{"[2,9) A@2 score 6"});
}

// Runs of one base close nothing: all bases of the unit of eight lie in them or between them.
TEST_F(ExactSearch, finds_longer_units_across_runs_of_one_base) {
  search_units_from_to(1, 14);
  EXPECT_EQ(exact_repeats_of("AAAAAAACCCCCCCAAAAAAACCCCCCC"),
            (Words{"[0,7) A@0 score 6", "[0,28) AAAAAAACCCCCCC@0 score 14", "[7,14) C@7 score 6",
                   "[14,21) A@14 score 6", "[21,28) C@21 score 6"}));
}

// The C at 7 belongs to both. It is closed when CG is looked for, so GC seeds, one base later.
TEST_F(ExactSearch, finds_a_repeat_that_begins_inside_another_one) {
  search_units_of(2);
  EXPECT_EQ(exact_repeats_of("ACACACACGCGCGCG"),
            (Words{"[0,8) AC@0 score 6", "[7,15) GC@8 score 6"}));
}

// All of [1,9) is closed by AC. A unit cannot start at the N; the one at 1 may because the base
// before it and its own last base are open.
TEST_F(ExactSearch, seeds_at_a_closed_base_between_an_open_one_and_an_open_last_base) {
  search_units_from_to(2, 10);
  EXPECT_EQ(exact_repeats_of("NACACACACTGACACACACTG"),
            (Words{"[1,9) AC@1 score 6", "[1,21) ACACACACTG@1 score 10", "[11,19) AC@11 score 6"}));
}

TEST_F(ExactSearch, takes_no_unit_with_an_N_in_it) {
  global_Ns_allowed_in_a_row = 0;
  search_units_of(2);
  EXPECT_EQ(all_exact_extensions_of("ACNGTNNCATNG"),
            (Words{"[0,2) AC@0 score 0", "[3,5) GT@3 score 0", "[7,9) CA@7 score 0",
                   "[8,10) AT@8 score 0"}));
}

// Below the user's thresholds nothing is closed, so a repeat is kept once for each of its seeds.
TEST_F(ExactSearch, closes_only_what_reaches_the_users_thresholds) {
  search_units_of(2);
  CSearchedSequence sequence("ACACACTGTGTGTG");
  CSearchController::minScores = CSearchController::minScores_intern.get();
  CSearchController::minLengths = CSearchController::minLengths_intern.get();
  sequence.search.exact_search_2();
  EXPECT_EQ(sequence.exact(),
            (Words{"[0,6) AC@0 score 4", "[0,6) CA@1 score 4", "[0,6) AC@2 score 4",
                   "[0,6) CA@3 score 4", "[0,6) AC@4 score 4", "[6,14) TG@6 score 6"}));
}

TEST_F(ExactSearch, does_not_close_what_is_too_short_for_the_user) {
  search_units_of(2);
  require_length(9);
  CSearchedSequence sequence("ACACACAC");
  CSearchController::minLengths = CSearchController::minLengths_intern.get();
  sequence.search.exact_search_2();
  EXPECT_EQ(sequence.exact().size(), 6U);
}

// No unit has no base, and the pass for runs of one base belongs to a minimum of exactly 1. In the
// common scan units of one base close nothing, so every base but the last seeds the run.
TEST_F(ExactSearch, keeps_a_run_of_one_base_for_each_seed_when_the_shortest_unit_is_0) {
  search_units_from_to(0, 2);
  EXPECT_EQ(
      exact_repeats_of("AAAAAAAANN"),
      (Words{"[0,8) A@0 score 7", "[0,8) A@1 score 7", "[0,8) A@2 score 7", "[0,8) A@3 score 7",
             "[0,8) A@4 score 7", "[0,8) A@5 score 7", "[0,8) A@6 score 7", "[0,8) A@7 score 7"}));
  reset();
  search_units_from_to(0, 0);
  EXPECT_EQ(exact_repeats_of("AAAAAAAA"), Words{});
}

TEST_F(ExactSearch, takes_units_up_to_one_base_less_than_the_sequence) {
  require_score(0);
  search_units_of(4);
  EXPECT_EQ(exact_repeats_of("ACGTA"), Words{"[0,5) ACGT@0 score 1"});
  reset();
  require_score(0);
  search_units_of(5);
  EXPECT_EQ(exact_repeats_of("ACGTA"), Words{});
}

TEST_F(ExactSearch, is_soon_done_with_unit_lengths_that_no_sequence_has) {
  require_score(3);
  search_units_from_to(5, std::numeric_limits<std::uint32_t>::max());
  EXPECT_EQ(exact_repeats_of("ACGTTACG"), Words{"[0,8) ACGTT@0 score 3"});
  EXPECT_EQ(exact_repeats_of(""), Words{});
  reset();
  search_units_of(std::numeric_limits<std::uint32_t>::max());
  EXPECT_EQ(exact_repeats_of("ACGTTACG"), Words{});
}

TEST_F(ExactSearch, gives_its_spare_record_back_to_the_end_of_the_pool) {
  CSearchedSequence sequence("ACGTTGCAACGT");
  for (Csat* const record : {sat_alloc.acquire(sequence.at(0), sequence.at(1)),
                             sat_alloc.acquire(sequence.at(0), sequence.at(1))}) {
    sat_alloc.release(record);
  }
  const std::list<Csat*> before = sat_alloc.spare_records();
  sequence.search.exact_search_2();
  EXPECT_EQ(sequence.exact(), Words{});
  EXPECT_EQ(sat_alloc.spare_records(), before);
}

TEST_F(ExactSearch, takes_its_records_from_the_end_of_the_pool) {
  CSearchedSequence sequence("ACACACAC");
  sat_alloc.release(sat_alloc.acquire(sequence.at(0), sequence.at(1)));
  Csat* const last = sat_alloc.spare_records().back();
  sequence.search.exact_search_2();
  EXPECT_EQ(sequence.search.exact_sat_list.sat_list, std::list<Csat*>{last});
}

TEST_F(ExactSearch, adds_to_the_repeats_that_are_already_there_and_sorts_all) {
  search_units_of(2);
  CSearchedSequence sequence("ACACACACGT");
  Csat* const earlier = sat_alloc.acquire(sequence.at(8), sequence.at(10));
  sequence.search.exact_sat_list.sat_list.push_back(earlier);
  sequence.search.exact_search_2();
  EXPECT_EQ(sequence.exact(), (Words{"[0,8) AC@0 score 6", "[8,10) GT@8 score 0"}));
}

TEST_F(ExactSearch, stores_nothing_in_the_list_of_imperfect_repeats) {
  CSearchedSequence sequence(repeated("ACG", 5));
  sequence.search.exact_search_2();
  EXPECT_EQ(sequence.exact(), Words{"[0,15) ACG@0 score 12"});
  EXPECT_EQ(sequence.imperfect(), Words{});
}

}  // namespace
}  // namespace quorix
