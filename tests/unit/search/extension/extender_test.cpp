// What is accepted: an extended seed is held against the thresholds of its unit length, both of
// which count as reached when they are met exactly.

#include <string>

#include "unit/search/recorded_stream.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using Acceptance = testing::CSearchSettings;
using testing::CRecordedStandardError;
using testing::CSearchedSequence;
using testing::exact_repeats_of;
using testing::imperfect_repeats_of;
using testing::Words;

// Six matches beyond the first copy, eight bases.
constexpr char kFourCopies[] = "ACACACAC";

TEST_F(Acceptance, of_an_exact_repeat_needs_the_minimum_score) {
  search_units_of(2);
  require_score(6);
  EXPECT_EQ(exact_repeats_of(kFourCopies), Words{"[0,8) AC@0 score 6"});
  reset();
  search_units_of(2);
  require_score(7);
  EXPECT_EQ(exact_repeats_of(kFourCopies), Words{});
}

TEST_F(Acceptance, of_an_exact_repeat_needs_the_minimum_length) {
  search_units_of(2);
  require_length(8);
  EXPECT_EQ(exact_repeats_of(kFourCopies), Words{"[0,8) AC@0 score 6"});
  reset();
  search_units_of(2);
  require_length(9);
  EXPECT_EQ(exact_repeats_of(kFourCopies), Words{});
}

TEST_F(Acceptance, of_an_imperfect_repeat_needs_the_minimum_score) {
  search_units_of(2);
  require_score(6);
  EXPECT_EQ(imperfect_repeats_of(kFourCopies), Words{"[0,8) AC@0 score 6"});
  reset();
  search_units_of(2);
  require_score(7);
  EXPECT_EQ(imperfect_repeats_of(kFourCopies), Words{});
}

// The thresholds that grow with the unit length are those of the seed's own unit.
TEST_F(Acceptance, asks_for_more_of_a_longer_unit) {
  global_min_score = 0;
  global_min_score_bx = 3.0F;
  search_units_of(2);
  EXPECT_EQ(exact_repeats_of("ACACACAC"), Words{"[0,8) AC@0 score 6"});
  reset();
  global_min_score = 0;
  global_min_score_bx = 3.0F;
  search_units_of(3);
  EXPECT_EQ(exact_repeats_of("ACGACGACGAC"), Words{});  // score 8 of 9
  EXPECT_EQ(exact_repeats_of("ACGACGACGACG"), Words{"[0,12) ACG@0 score 9"});
}

// An inserted base does not count: six copies of three bases and the T at 9.
TEST_F(Acceptance, measures_the_length_without_insertions) {
  const std::string bases = "ACGACGACGTACGACGACG";
  search_units_of(3);
  require_length(18);
  EXPECT_EQ(imperfect_repeats_of(bases), Words{"[0,19) ACG@0 score 9 ins 1 9I"});
  reset();
  search_units_of(3);
  require_length(19);
  EXPECT_EQ(imperfect_repeats_of(bases), Words{});
}

// A deleted one does: six copies of four bases of which one lacks its A.
TEST_F(Acceptance, measures_the_length_with_deletions) {
  const std::string bases = "ACGTACGTACGTCGTACGTACGT";
  search_units_of(4);
  require_length(24);
  EXPECT_EQ(imperfect_repeats_of(bases), Words{"[0,23) ACGT@0 score 13 del 1 12D"});
  reset();
  search_units_of(4);
  require_length(25);
  EXPECT_EQ(imperfect_repeats_of(bases), Words{});
}

TEST_F(Acceptance, measures_the_length_without_the_Ns_at_the_ends) {
  for (const auto find : {exact_repeats_of, imperfect_repeats_of}) {
    reset();
    search_units_of(2);
    require_length(8);
    EXPECT_EQ(find("NNACACACACNN"), Words{"[2,10) AC@2 score 6"});
    reset();
    search_units_of(2);
    require_length(9);
    EXPECT_EQ(find("NNACACACACNN"), Words{});
  }
}

// The one seed lies between the two mismatches. It extends to the right first, so that the edit at
// 11 is the first of its list.
TEST_F(Acceptance, puts_the_edits_in_order_of_position) {
  search_units_of(2);
  set_penalties(-2, -2);
  CSearchedSequence sequence("ACATACACACATACA");
  const CRecordedStandardError silent;
  sequence.search.search_exact_and_extend_to_imperfect_repeats();
  ASSERT_FALSE(sequence.imperfect().empty());
  EXPECT_EQ(sequence.imperfect().front(), "[0,15) AC@4 score 7 mis 2 3M 11M");
}

}  // namespace
}  // namespace quorix
