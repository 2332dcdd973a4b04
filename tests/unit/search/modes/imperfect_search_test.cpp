// Mode "imperfect": candidates from every base that may seed one, and the marks that say which may.

#include <limits>
#include <list>
#include <string>

#include "report/sat_pool.h"
#include "search/scan/anchor_seq.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using ImperfectSearch = testing::CSearchSettings;
using testing::CSearchedSequence;
using testing::imperfect_repeats_of;
using testing::repeated;
using testing::Words;

TEST_F(ImperfectSearch, finds_nothing_in_a_sequence_of_no_base_or_one) {
  require_score(0);
  for (const char* const bases : {"", "A", "N"}) EXPECT_EQ(imperfect_repeats_of(bases), Words{});
}

TEST_F(ImperfectSearch, finds_nothing_if_the_largest_unit_length_is_0) {
  search_units_from_to(1, 0);
  EXPECT_EQ(imperfect_repeats_of("AAAAAAAAAAAAAAAAAAAAAAAA"), Words{});
}

TEST_F(ImperfectSearch, has_no_seed_where_all_bases_are_N) {
  require_score(0);
  EXPECT_EQ(imperfect_repeats_of("NNNNNNNNNNNN"), Words{});
}

// N's after a base are no seed either: as a unit, an N would match all the others.
TEST_F(ImperfectSearch, has_no_seed_in_a_run_of_Ns_after_a_base) {
  search_units_of(1);
  require_length(0);
  EXPECT_EQ(imperfect_repeats_of("ANNNNNNNNNNNNC"), Words{});
}

TEST_F(ImperfectSearch, never_seeds_with_a_unit_that_no_base_follows) {
  allow_no_edits();
  require_score(0);
  search_units_of(1);
  EXPECT_EQ(imperfect_repeats_of("NCAG"), (Words{"[1,2) C@1 score 0", "[2,3) A@2 score 0"}));
  reset();
  allow_no_edits();
  require_score(0);
  search_units_of(2);
  EXPECT_EQ(imperfect_repeats_of("ACG"), Words{"[0,2) AC@0 score 0"});
  EXPECT_EQ(imperfect_repeats_of("AC"), Words{});
}

TEST_F(ImperfectSearch, takes_no_unit_with_an_N_in_it) {
  allow_no_edits();
  require_score(0);
  global_Ns_allowed_in_a_row = 0;
  search_units_of(2);
  EXPECT_EQ(imperfect_repeats_of("ACNGTNNCATNG"),
            (Words{"[0,2) AC@0 score 0", "[3,5) GT@3 score 0", "[7,9) CA@7 score 0"}));
}

TEST_F(ImperfectSearch, seeds_nothing_longer_inside_a_repeat) {
  search_units_from_to(2, 6);
  EXPECT_EQ(imperfect_repeats_of("ATATATATATATATAT"), Words{"[0,16) AT@0 score 14"});
  reset();
  search_units_of(4);
  EXPECT_EQ(imperfect_repeats_of("ATATATATATATATAT"), Words{"[0,16) ATAT@0 score 12"});
}

// Without edits the two runs cover every base. They close none to units of two or more.
TEST_F(ImperfectSearch, opens_again_what_runs_of_one_base_have_closed) {
  allow_no_edits();
  search_units_from_to(1, 14);
  EXPECT_EQ(imperfect_repeats_of("AAAAAAACCCCCCCAAAAAAACCCCCCC"),
            (Words{"[0,7) A@0 score 6", "[0,28) AAAAAAACCCCCCC@0 score 14", "[7,14) C@7 score 6",
                   "[14,21) A@14 score 6", "[21,28) C@21 score 6"}));
}

// The pass of its own for units of one base belongs to a shortest unit of exactly 1.
TEST_F(ImperfectSearch, leaves_runs_of_one_base_closed_when_the_shortest_unit_is_0) {
  allow_no_edits();
  search_units_from_to(0, 14);
  EXPECT_EQ(imperfect_repeats_of("AAAAAAACCCCCCCAAAAAAACCCCCCC"),
            (Words{"[0,7) A@0 score 6", "[7,14) C@7 score 6", "[14,21) A@14 score 6",
                   "[21,28) C@21 score 6"}));
  reset();
  search_units_from_to(0, 0);
  EXPECT_EQ(imperfect_repeats_of("AAAAAAAA"), Words{});
}

// AC closes all but its mismatches at 8 and 14. With six bases GCACAC seeds at 8, since 14 lies
// after it; it extends over its second copy to the end, 6, and to the left over five matches, 11,
// where a mismatch and two matches more only tie.
TEST_F(ImperfectSearch, leaves_edit_sites_open_as_seeds) {
  set_penalties(-2, -2);
  search_units_from_to(2, 6);
  EXPECT_EQ(imperfect_repeats_of("ACACACACGCACACGCACAC"),
            (Words{"[0,20) AC@0 score 12 mis 2 8M 14M", "[3,20) GCACAC@8 score 11"}));
}

// Again all but 8 and 14 is closed, but no unit may hold the N at 8. CACACG at 9 may seed, though
// its first base is closed: 8 before it and 14, its last base, are open. Five matches to the right,
// to the left a mismatch at the N and five more matches: 5 - 2 + 5, which is not bettered.
TEST_F(ImperfectSearch, seeds_at_a_closed_base_between_an_open_one_and_an_open_last_base) {
  set_penalties(-2, -2);
  global_treat_Ns_as_missense = true;
  search_units_from_to(2, 6);
  EXPECT_EQ(imperfect_repeats_of("ACACACACNCACACGCACAC"),
            (Words{"[0,20) AC@0 score 12 mis 2 8M 14M", "[3,20) CACACG@9 score 8 mis 1 8M"}));
}

TEST_F(ImperfectSearch, finds_a_run_of_one_base_with_its_mismatch_once) {
  search_units_of(1);
  EXPECT_EQ(imperfect_repeats_of("AAAAAAAGAAAAAAAA"), Words{"[0,16) A@0 score 8 mis 1 7M"});
}

TEST_F(ImperfectSearch, sorts_what_it_finds_by_position) {
  // The run of T is found first.
  search_units_from_to(1, 2);
  EXPECT_EQ(imperfect_repeats_of("ACACACACGTTTTTTT"),
            (Words{"[0,8) AC@0 score 6", "[9,16) T@9 score 6"}));
}

TEST_F(ImperfectSearch, of_one_unit_length_closes_marks_and_appends) {
  set_penalties(-2, -2);
  CSearchedSequence sequence("TTACACACGCACACTT");
  CAnchorSeq anchors(sequence.at(0), 16);
  std::list<Csat*> found{sat_alloc.acquire(sequence.at(14), sequence.at(16))};
  sequence.search.one_unit_len_complete_imperfect_search(2, anchors, found);
  EXPECT_EQ(sequence.in_words(found),
            (Words{"[14,16) TT@14 score 0", "[2,14) AC@2 score 7 mis 1 8M"}));
  EXPECT_EQ(std::string(anchors.marks, anchors.marks_end), "aa      a     aa");
  for (Csat* const record : found) sat_alloc.release(record);
}

TEST_F(ImperfectSearch, of_one_unit_length_respects_the_marks_that_it_is_given) {
  CSearchedSequence sequence("ACACACAC");
  CAnchorSeq anchors(sequence.at(0), 8);
  for (int i = 0; i < 7; ++i) anchors.marks[i] = kClosedMark;
  std::list<Csat*> found;
  sequence.search.one_unit_len_complete_imperfect_search(2, anchors, found);
  EXPECT_EQ(sequence.in_words(found), Words{});
  anchors.marks[2] = kOpenMark;
  sequence.search.one_unit_len_complete_imperfect_search(2, anchors, found);
  EXPECT_EQ(sequence.in_words(found), Words{});
  // Base 2 seeds once 4, after its unit, is open too.
  anchors.marks[4] = kOpenMark;
  sequence.search.one_unit_len_complete_imperfect_search(2, anchors, found);
  EXPECT_EQ(sequence.in_words(found), Words{"[0,8) AC@2 score 6"});
  for (Csat* const record : found) sat_alloc.release(record);
}

TEST_F(ImperfectSearch, of_unit_length_1_respects_and_closes_marks) {
  CSearchedSequence sequence("AAAAAAAGAAAAAAAA");
  CAnchorSeq anchors(sequence.at(0), 16);
  std::list<Csat*> found;
  for (int i = 0; i < 16; ++i) anchors.marks[i] = kClosedMark;
  sequence.search.unit_len_1_complete_imperfect_search(anchors, found);
  EXPECT_EQ(sequence.in_words(found), Words{});
  anchors.marks[0] = kOpenMark;
  sequence.search.unit_len_1_complete_imperfect_search(anchors, found);
  EXPECT_EQ(sequence.in_words(found), Words{"[0,16) A@0 score 8 mis 1 7M"});
  EXPECT_EQ(std::string(anchors.marks, anchors.marks_end), "       a        ");
  for (Csat* const record : found) sat_alloc.release(record);
}

TEST_F(ImperfectSearch, of_one_unit_length_finds_nothing_of_no_base_or_of_too_many) {
  require_score(0);
  CSearchedSequence sequence("ACGT");
  CAnchorSeq anchors(sequence.at(0), 4);
  std::list<Csat*> found;
  for (const std::uint64_t unit_length : {0U, 4U, 5U, std::numeric_limits<std::uint32_t>::max()}) {
    sequence.search.one_unit_len_complete_imperfect_search(unit_length, anchors, found);
    EXPECT_EQ(sequence.in_words(found), Words{}) << unit_length;
  }
}

TEST_F(ImperfectSearch, takes_units_up_to_one_base_less_than_the_sequence) {
  require_score(1);
  search_units_from_to(4, 5);
  EXPECT_EQ(imperfect_repeats_of("ACGTA"), Words{"[0,5) ACGT@0 score 1"});
}

TEST_F(ImperfectSearch, is_soon_done_with_unit_lengths_that_no_sequence_has) {
  search_units_from_to(2, std::numeric_limits<std::uint32_t>::max());
  EXPECT_EQ(imperfect_repeats_of("ACACACACT"), Words{"[0,8) AC@0 score 6"});
  EXPECT_EQ(imperfect_repeats_of(""), Words{});
}

// Four hundred mismatches, one every seven bases: the whole is one repeat, whatever the depth.
TEST_F(ImperfectSearch, passes_more_than_256_edits_at_a_recursion_depth_of_300) {
  const std::string bases = "ACACACACA" + repeated("TACACACGCACACA", 200) + repeated("CA", 5);
  global_maximum_recursion_depth = 300;
  search_units_of(2);
  CSearchedSequence sequence(bases);
  sequence.search.complete_imperfect_search(nullptr);
  ASSERT_EQ(sequence.search.imperfect_sat_list.sat_list.size(), 1U);
  const Csat& repeat = *sequence.search.imperfect_sat_list.sat_list.front();
  EXPECT_EQ(repeat.start, sequence.at(0));
  EXPECT_EQ(repeat.end, sequence.end());
  EXPECT_EQ(repeat.score, 17);
  EXPECT_EQ(repeat.mismatches, 400);
}

TEST_F(ImperfectSearch, gives_its_spare_record_back_to_the_end_of_the_pool) {
  CSearchedSequence sequence("ACGTTGCAACGT");
  for (Csat* const record : {sat_alloc.acquire(sequence.at(0), sequence.at(1)),
                             sat_alloc.acquire(sequence.at(0), sequence.at(1))}) {
    sat_alloc.release(record);
  }
  const std::list<Csat*> before = sat_alloc.spare_records();
  sequence.search.complete_imperfect_search(nullptr);
  EXPECT_EQ(sequence.imperfect(), Words{});
  EXPECT_EQ(sat_alloc.spare_records(), before);
}

TEST_F(ImperfectSearch, stores_nothing_in_the_list_of_exact_repeats) {
  CSearchedSequence sequence("ACACACAC");
  sequence.search.complete_imperfect_search(nullptr);
  EXPECT_EQ(sequence.exact(), Words{});
  EXPECT_EQ(sequence.imperfect(), Words{"[0,8) AC@0 score 6"});
}

TEST_F(ImperfectSearch, of_that_name_alone_does_nothing) {
  CSearchedSequence sequence("ACACACAC");
  sequence.search.imperfect_search();
  EXPECT_EQ(sequence.imperfect(), Words{});
  EXPECT_EQ(sequence.exact(), Words{});
}

}  // namespace
}  // namespace quorix
