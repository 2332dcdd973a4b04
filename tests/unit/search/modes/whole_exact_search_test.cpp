// Whole searches for exact repeats, overlap removal included, worked out by hand. Unless a test
// says otherwise units have one to six bases, and a repeat needs a score of 6, which is six bases
// beyond its first unit.

#include <string_view>

#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using WholeExactSearch = testing::CSearchSettings;
using testing::CSearchedSequence;
using testing::Words;

Words found_in(std::string_view bases) {
  CSearchedSequence sequence(bases);
  sequence.search.exact_search_2();
  sequence.search.remove_hidden(sequence.search.exact_sat_list);
  return sequence.exact();
}

// GATTAC, seven A's from 6 to 12, G. Every base of the run equals the one 2 to 6 bases before it in
// the run only, so a longer unit would have to be all A's, which none is.
TEST_F(WholeExactSearch, finds_a_run_of_one_base) {
  EXPECT_EQ(found_in("GATTACAAAAAAAG"), Words{"[6,13) A@6 score 6"});
}

// T, nine bases of CACACACAC, G: 9 - 2 = 7. The run begins with C, so the unit is CA, and ends in
// the middle of a copy.
TEST_F(WholeExactSearch, finds_a_repeat_that_ends_in_the_middle_of_a_copy) {
  EXPECT_EQ(found_in("TCACACACACG"), Words{"[1,10) CA@1 score 7"});
}

// ACACACA from 1 to 7 scores 7 - 2 = 5.
TEST_F(WholeExactSearch, passes_over_a_repeat_that_is_one_base_short) {
  EXPECT_EQ(found_in("GACACACATG"), Words{});
  reset();
  global_min_score = 5;
  EXPECT_EQ(found_in("GACACACATG"), Words{"[1,8) AC@1 score 5"});
}

// GAT three times and GA, which score 11 - 3 = 8; the C at 11 stands where T is expected.
TEST_F(WholeExactSearch, finds_units_of_three) {
  EXPECT_EQ(found_in("GATGATGATGAC"), Words{"[0,11) GAT@0 score 8"});
}

// AC over [0,8) and, from the C at 7 on, CG over [7,15): 8 - 2 = 6 each. The C is closed by AC when
// CG is looked for, so its unit is GC at 8. They share one base, and have units enough beside it.
TEST_F(WholeExactSearch, keeps_two_repeats_that_share_a_base) {
  EXPECT_EQ(found_in("ACACACACGCGCGCG"), (Words{"[0,8) AC@0 score 6", "[7,15) GC@8 score 6"}));
}

// CAGCAG, three N's, CAGCAG. The N's keep the phase and score nothing: 3 + 6 = 9. Apart the two
// score 3 each.
TEST_F(WholeExactSearch, joins_what_a_run_of_Ns_separates_if_it_is_short_enough) {
  global_Ns_allowed_in_a_row = 3;
  EXPECT_EQ(found_in("CAGCAGNNNCAGCAG"), Words{"[0,15) CAG@0 score 9 N 3"});
  global_Ns_allowed_in_a_row = 2;
  EXPECT_EQ(found_in("CAGCAGNNNCAGCAG"), Words{});
}

// Seven A's and a C, twice. The runs of A score 6 each. With units of eight bases the whole scores
// 8; with seven, [1,14) scores 6, which is too little for that length, and shorter units score
// less. The run at 0 has no base beside what it shares with the whole and scores less: it goes, and
// so does the other one.
TEST_F(WholeExactSearch, drops_runs_of_one_base_inside_a_better_repeat) {
  search_units_from_to(1, 8);
  EXPECT_EQ(found_in("AAAAAAACAAAAAAAC"), Words{"[0,16) AAAAAAAC@0 score 8"});
  global_remove_mostly_hidden = false;
  EXPECT_EQ(found_in("AAAAAAACAAAAAAAC"),
            (Words{"[0,7) A@0 score 6", "[0,16) AAAAAAAC@0 score 8", "[8,15) A@8 score 6"}));
}

// Four A's, N, seven A's: eleven A's score 10 with the N in between, and apart 3 and 6.
TEST_F(WholeExactSearch, splits_at_an_N_where_Ns_are_missense) {
  EXPECT_EQ(found_in("AAAANAAAAAAA"), Words{"[0,12) A@0 score 10 N 1"});
  global_treat_Ns_as_missense = true;
  EXPECT_EQ(found_in("AAAANAAAAAAA"), Words{"[5,12) A@5 score 6"});
}

// AT four times, 8 - 2 = 6, and GGC three times, 9 - 3 = 6. They touch at 8.
TEST_F(WholeExactSearch, keeps_two_repeats_that_touch) {
  EXPECT_EQ(found_in("ATATATATGGCGGCGGC"), (Words{"[0,8) AT@0 score 6", "[8,17) GGC@8 score 6"}));
}

// ACG four times: 12 - 3 = 9. With units of six alone the same bases score 12 - 6 = 6; that such a
// unit is two shorter ones is for the report to see.
TEST_F(WholeExactSearch, tells_a_repeat_by_its_shortest_unit) {
  EXPECT_EQ(found_in("ACGACGACGACGT"), Words{"[0,12) ACG@0 score 9"});
  reset();
  search_units_of(6);
  EXPECT_EQ(found_in("ACGACGACGACGT"), Words{"[0,12) ACGACG@0 score 6"});
}

}  // namespace
}  // namespace quorix
