// Whole searches for imperfect repeats, overlap removal included, worked out by hand. Unless a test
// says otherwise units have one to six bases, a repeat needs a score of 6, and an edit costs 6.

#include <string_view>

#include "unit/search/recorded_stream.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using WholeExtendedSearch = testing::CSearchSettings;
using WholeImperfectSearch = testing::CSearchSettings;
using testing::CRecordedStandardError;
using testing::CSearchedSequence;
using testing::Words;

/// What is left of what the imperfect search finds.
Words imperfect_repeats_in(std::string_view bases) {
  CSearchedSequence sequence(bases);
  sequence.search.complete_imperfect_search(nullptr);
  sequence.search.remove_hidden(sequence.search.imperfect_sat_list);
  return sequence.imperfect();
}

/// What is left of what the extension of exact repeats finds.
Words extended_in(std::string_view bases) {
  const CRecordedStandardError silent;
  CSearchedSequence sequence(bases);
  sequence.search.search_exact_and_extend_to_imperfect_repeats();
  sequence.search.remove_hidden(sequence.search.imperfect_sat_list);
  return sequence.imperfect();
}

// ACACAC scores 4 and seeds in each of its phases; CACAC, 3, does not. Each seed extends over the
// G, 4 - 2 + 5 = 7, and covers all. Of five equal repeats the first one stays.
TEST_F(WholeExtendedSearch, keeps_one_of_the_phases_that_a_seed_was_found_in) {
  set_penalties(-2, -2);
  EXPECT_EQ(extended_in("ACACACGCACAC"), Words{"[0,12) AC@0 score 7 mis 1 6M"});
}

// ACG three times, T, ACG three times. Each side scores 6 and seeds; from either one the T is an
// insertion: 6 - 6 + 9 = 9. The two results are equal; the first one stays.
TEST_F(WholeExtendedSearch, extends_over_an_inserted_base) {
  EXPECT_EQ(extended_in("ACGACGACGTACGACGACG"), Words{"[0,19) ACG@0 score 9 ins 1 9I"});
}

// ACGT three times, CGT, ACGT twice. The seeds are [0,12), which scores 8, and [12,23), which
// scores 7 and whose unit is CGTA. The A that is missing before 12 is a deletion from either side:
// 8 - 6 + 11 = 13.
TEST_F(WholeExtendedSearch, extends_over_a_deleted_base) {
  EXPECT_EQ(extended_in("ACGTACGTACGTCGTACGTACGT"), Words{"[0,23) ACGT@0 score 13 del 1 12D"});
}

// ACGTCA, ACTTCA, ACGTCA. Of the copies next to each other five bases in a row agree at most, where
// a seed of six needs six, and shorter units agree in single bases only. The imperfect search needs
// no seed: AC 2, T for G 0, TCA 3, ACGTCA 9.
TEST_F(WholeExtendedSearch, misses_a_repeat_without_an_exact_seed) {
  set_penalties(-2, -2);
  EXPECT_EQ(extended_in("ACGTCAACTTCAACGTCA"), Words{});
  search_units_of(6);
  EXPECT_EQ(imperfect_repeats_in("ACGTCAACTTCAACGTCA"), Words{"[0,18) ACGTCA@0 score 9 mis 1 8M"});
}

// Six matches up to the G at 8, 6 - 6 + 7 = 7 up to the T at 16. All is closed but 8 and 16, and no
// unit of up to six bases begins at one of them and ends at the other, or before it.
TEST_F(WholeImperfectSearch, finds_a_repeat_with_a_mismatch) {
  EXPECT_EQ(imperfect_repeats_in("ACACACACGCACACACT"), Words{"[0,16) AC@0 score 7 mis 1 8M"});
}

// AC over all of it, 6 - 2 + 5 - 2 + 5 = 12, leaves its mismatches at 8 and 14 open. GCACAC seeds
// there and covers [3,20) with 6 + 5 = 11: it has three bases beside it, its own unit none.
TEST_F(WholeImperfectSearch, drops_what_an_edit_site_has_seeded_unless_it_is_better) {
  set_penalties(-2, -2);
  search_units_from_to(2, 6);
  EXPECT_EQ(imperfect_repeats_in("ACACACACGCACACGCACAC"),
            Words{"[0,20) AC@0 score 12 mis 2 8M 14M"});
  global_remove_mostly_hidden = false;
  EXPECT_EQ(imperfect_repeats_in("ACACACACGCACACGCACAC"),
            (Words{"[0,20) AC@0 score 12 mis 2 8M 14M", "[3,20) GCACAC@8 score 11"}));
}

// ACG, N for A, CGAC 4, T for G 2, ACGACG 8.
TEST_F(WholeImperfectSearch, walks_over_an_N_and_a_mismatch) {
  set_penalties(-2, -2);
  search_units_of(3);
  EXPECT_EQ(imperfect_repeats_in("ACGNCGACTACGACG"), Words{"[0,15) ACG@0 score 8 mis 1 N 1 8M"});
}

// Seven A's, N, eight A's: 6 + 8 with a neutral N, 6 - 6 + 8 with a mismatch.
TEST_F(WholeImperfectSearch, counts_an_N_as_the_settings_say) {
  EXPECT_EQ(imperfect_repeats_in("AAAAAAANAAAAAAAA"), Words{"[0,16) A@0 score 14 N 1"});
  global_treat_Ns_as_missense = true;
  EXPECT_EQ(imperfect_repeats_in("AAAAAAANAAAAAAAA"), Words{"[0,16) A@0 score 8 mis 1 7M"});
  reset();
  global_Ns_allowed_in_a_row = 0;
  EXPECT_EQ(imperfect_repeats_in("AAAAAAANAAAAAAAA"), Words{"[0,16) A@0 score 8 mis 1 7M"});
}

// ACGTACGTA 5, no C 1, GTACGT 7, one T more 3, ACGTACG 10.
TEST_F(WholeImperfectSearch, walks_over_a_deletion_and_an_insertion) {
  set_penalties(-4, -4);
  search_units_of(4);
  EXPECT_EQ(imperfect_repeats_in("ACGTACGTAGTACGTTACGTACG"),
            Words{"[0,23) ACGT@0 score 10 ins 1 del 1 9D 15I"});
}

// Seven A's and a C, twice. As a run of A, [0,15): 6 - 6 + 7 = 7. As units of eight, all of it: 8.
// Units of seven score 6, and shorter ones less. The run has no base beside what it shares with the
// whole, and goes.
TEST_F(WholeImperfectSearch, drops_a_run_of_one_base_that_a_better_repeat_hides) {
  search_units_from_to(1, 8);
  EXPECT_EQ(imperfect_repeats_in("AAAAAAACAAAAAAAC"), Words{"[0,16) AAAAAAAC@0 score 8"});
  global_remove_mostly_hidden = false;
  EXPECT_EQ(imperfect_repeats_in("AAAAAAACAAAAAAAC"),
            (Words{"[0,15) A@0 score 7 mis 1 7M", "[0,16) AAAAAAAC@0 score 8"}));
}

// Six N's, which keep the phase: AC on both sides scores 6 each, and 6 + 8 when they are walked
// over.
TEST_F(WholeImperfectSearch, does_not_cross_a_run_of_too_many_Ns) {
  EXPECT_EQ(imperfect_repeats_in("ACACACACNNNNNNACACACAC"),
            (Words{"[0,8) AC@0 score 6", "[14,22) AC@14 score 6"}));
  global_Ns_allowed_in_a_row = 5;
  EXPECT_EQ(imperfect_repeats_in("ACACACACNNNNNNACACACAC"),
            (Words{"[0,8) AC@0 score 6", "[14,22) AC@14 score 6"}));
  global_Ns_allowed_in_a_row = 6;
  EXPECT_EQ(imperfect_repeats_in("ACACACACNNNNNNACACACAC"), Words{"[0,22) AC@0 score 14 N 6"});
}

// At the G the score would fall from 6 to 0. A reduction by 6 is one too many where 6 is the limit;
// the seven bases after the G alone score 5.
TEST_F(WholeImperfectSearch, makes_no_edit_that_reduces_the_score_by_the_limit) {
  global_maximum_scorereduction = 6;
  EXPECT_EQ(imperfect_repeats_in("ACACACACGCACACAC"), Words{"[0,8) AC@0 score 6"});
  global_maximum_scorereduction = 7;
  EXPECT_EQ(imperfect_repeats_in("ACACACACGCACACAC"), Words{"[0,16) AC@0 score 7 mis 1 8M"});
}

}  // namespace
}  // namespace quorix
