// Extending seeds by hand. Unless a test says otherwise a match scores 1, an edit -6, and the unit
// is the first one of the text, which itself scores nothing.

#include <limits>
#include <utility>

#include "reference/plain_test_support.h"

namespace quorix::reference {
namespace {

using PlainExactExtension = CWithDefaultSettings;
using PlainExtension = CWithDefaultSettings;
using PlainLookAhead = CWithDefaultSettings;

constexpr int kLowest = std::numeric_limits<int>::min();
constexpr int kHighest = std::numeric_limits<int>::max();

std::string extended_forward(const std::string& bases, std::int64_t unit_length) {
  Repeat repeat = repeat_from_unit(0, unit_length);
  extend_imperfect_forward(repeat, bases, static_cast<std::int64_t>(bases.size()));
  return describe(repeat);
}

/// Extends from the last unit of the text to the left.
std::string extended_backward(const std::string& bases, std::int64_t unit_length) {
  const auto end = static_cast<std::int64_t>(bases.size());
  Repeat repeat = repeat_from_unit(end - unit_length, end);
  extend_imperfect_backward(repeat, bases, -1);
  return describe(repeat);
}

TEST_F(PlainExactExtension, stops_with_true_at_a_base_that_differs) {
  Repeat repeat = repeat_from_unit(0, 2);
  EXPECT_TRUE(extend_exact_forward(repeat, "ACACAG", 6));
  // Bases 2 to 4 are A, C and A; the unit's C is expected next.
  EXPECT_EQ(describe(repeat), "[0,5) unit [0,2) score 3");
  EXPECT_EQ(repeat.unit_pos_right, 1);
}

TEST_F(PlainExactExtension, stops_with_false_at_the_limit) {
  Repeat repeat = repeat_from_unit(0, 2);
  EXPECT_FALSE(extend_exact_forward(repeat, "ACACAC", 4));
  EXPECT_EQ(describe(repeat), "[0,4) unit [0,2) score 2");
  EXPECT_FALSE(extend_exact_forward(repeat, "ACACAC", 4));
  EXPECT_EQ(describe(repeat), "[0,4) unit [0,2) score 2");
}

TEST_F(PlainExactExtension, takes_no_base_of_a_run_of_Ns_that_is_too_long) {
  global_Ns_allowed_in_a_row = 2;
  Repeat repeat = repeat_from_unit(0, 2);
  EXPECT_FALSE(extend_exact_forward(repeat, "ACACNNNAC", 9));
  EXPECT_EQ(describe(repeat), "[0,4) unit [0,2) score 2");
}

TEST_F(PlainExactExtension, counts_Ns_without_scoring_them) {
  global_Ns_allowed_in_a_row = 2;
  Repeat repeat = repeat_from_unit(0, 2);
  // Two N's keep the phase: the A after them is the expected one.
  EXPECT_TRUE(extend_exact_forward(repeat, "ACNNAT", 6));
  EXPECT_EQ(describe(repeat), "[0,5) unit [0,2) score 1 N 2");
}

TEST_F(PlainExactExtension, treats_an_N_as_a_difference_when_told_to) {
  Repeat repeat = repeat_from_unit(0, 2);
  global_Ns_allowed_in_a_row = 0;
  EXPECT_TRUE(extend_exact_forward(repeat, "ACNC", 4));
  EXPECT_EQ(repeat.end, 2);
  global_Ns_allowed_in_a_row = 4;
  global_treat_Ns_as_missense = true;
  EXPECT_TRUE(extend_exact_forward(repeat, "ACNC", 4));
  EXPECT_EQ(repeat.end, 2);
}

TEST_F(PlainExactExtension, mirrors_everything_to_the_left) {
  global_Ns_allowed_in_a_row = 2;
  Repeat repeat = repeat_from_unit(6, 8);
  // Leftwards from AC at 6: N N, then C and A; the T in front differs.
  EXPECT_TRUE(extend_exact_backward(repeat, "GTACNNAC", -1));
  EXPECT_EQ(describe(repeat), "[2,8) unit [6,8) score 2 N 2");
  EXPECT_EQ(repeat.unit_pos_left, 7);
  EXPECT_FALSE(extend_exact_backward(repeat, "GTACNNAC", 1));

  Repeat stopped = repeat_from_unit(7, 9);
  EXPECT_FALSE(extend_exact_backward(stopped, "GTACNNNAC", -1));
  EXPECT_EQ(describe(stopped), "[7,9) unit [7,9) score 0");
}

TEST_F(PlainExactExtension, keeps_the_score_at_the_largest_32_bit_number) {
  Repeat repeat = repeat_from_unit(0, 1);
  repeat.score = kHighest - 1;
  EXPECT_FALSE(extend_exact_forward(repeat, "AAAA", 4));
  EXPECT_EQ(repeat.score, kHighest);
}

TEST_F(PlainExtension, ends_before_a_mismatch_that_only_wins_back_what_it_cost) {
  // Six matches up to the G. The mismatch there leaves 0, six matches after it make 6 again, which
  // only ties; the end of the text then restores the state before the G.
  EXPECT_EQ(extended_forward("ACACACACGCACACAT", 2), "[0,8) unit [0,2) score 6");
}

TEST_F(PlainExtension, keeps_a_mismatch_that_one_match_more_pays_for) {
  // As above with a seventh match: 6 - 6 + 7 = 7. The T after is given back.
  EXPECT_EQ(extended_forward("ACACACACGCACACACT", 2), "[0,16) unit [0,2) score 7 mis 1 8M");
  EXPECT_EQ(extended_backward("TCACACACGCACACACA", 2), "[1,17) unit [15,17) score 7 mis 1 8M");
}

TEST_F(PlainExtension, leaves_a_seed_at_the_limit_as_it_is) {
  EXPECT_EQ(extended_forward("AC", 2), "[0,2) unit [0,2) score 0");
  EXPECT_EQ(extended_backward("AC", 2), "[0,2) unit [0,2) score 0");
}

TEST_F(PlainExtension, inserts_a_base_that_stands_between_two_unit_characters) {
  set_small_penalties();
  // A and C score 2; T stands where G is expected. Insertion: 0 + GACG = 4. Mismatch: 0, then G
  // stands where A is expected, a further insertion gives -2 + ACG = 1.
  EXPECT_EQ(extended_forward("ACGACTGACG", 3), "[0,10) unit [0,3) score 4 ins 1 5I");
  EXPECT_EQ(extended_backward("GCAGTCAGCA", 3), "[0,10) unit [7,10) score 4 ins 1 4I");
}

TEST_F(PlainExtension, deletes_a_unit_character_that_the_text_lacks) {
  set_small_penalties();
  // ACG ACG -CG ACG: 3 before the C at 6, where A is expected; 3 - 2 + 5 = 6. The deletion
  // stands at the base to its right, which to the left is the last base taken so far.
  EXPECT_EQ(extended_forward("ACGACGCGACG", 3), "[0,11) unit [0,3) score 6 del 1 6D");
  EXPECT_EQ(extended_backward("GCAGCGCAGCA", 3), "[0,11) unit [8,11) score 6 del 1 5D");
}

TEST_F(PlainExtension, prefers_a_mismatch_to_an_insertion_of_equal_worth) {
  set_small_penalties();
  // With a unit of one base both lead to the same state: 3 - 2 + 3 = 4.
  EXPECT_EQ(extended_forward("AAAAGAAA", 1), "[0,8) unit [0,1) score 4 mis 1 4M");
  EXPECT_EQ(extended_backward("AAAGAAAA", 1), "[0,8) unit [7,8) score 4 mis 1 3M");
}

TEST_F(PlainExtension, prefers_an_insertion_to_a_deletion_of_equal_worth) {
  global_mismatch_score = -20;
  global_indel_score = -2;
  global_maximum_recursion_depth = 1;
  // ACG ACG then C A T, A expected at 6, score 3. Inserting the C: 1, A matches, 2. Deleting A: 1,
  // C matches, 2. A single walk is all that counts at depth 1. Then the T is inserted, too, and
  // CGACGACG follow: 3 - 2 + 1 - 2 + 8 = 8.
  EXPECT_EQ(extended_forward("ACGACGCATCGACGACG", 3), "[0,17) unit [0,3) score 8 ins 2 6I 8I");
}

TEST_F(PlainExtension, takes_back_an_edit_that_led_nowhere) {
  EXPECT_EQ(extended_forward("ACACACACGTTTTTTT", 2), "[0,8) unit [0,2) score 6");
}

TEST_F(PlainExtension, needs_more_than_the_penalty_less_the_unit_length_to_try_an_edit) {
  // Unit of 2: the score after an edit must exceed -2, so 4 does not do and 5 does. A G stands in
  // front of so many matches that any edit would pay.
  const std::string tail = "ACACACACACACACAC";
  EXPECT_EQ(extended_forward("ACACACGC" + tail, 2), "[0,6) unit [0,2) score 4");
  EXPECT_EQ(extended_forward("ACACACAG" + tail, 2), "[0,24) unit [0,2) score 15 mis 1 7M");
}

TEST_F(PlainExtension, is_purely_exact_when_no_edit_can_pass_the_threshold) {
  const std::string bases = "ACACACACGCACACACT";
  const std::string exact = "[0,8) unit [0,2) score 6";
  for (const int reduction : {6, 0, kLowest}) {
    global_maximum_scorereduction = reduction;
    EXPECT_EQ(extended_forward(bases, 2), exact) << reduction;
  }
  // One more and the mismatch passes: 6 - 6 > 6 - 7.
  global_maximum_scorereduction = 7;
  EXPECT_EQ(extended_forward(bases, 2), "[0,16) unit [0,2) score 7 mis 1 8M");

  init_param();
  global_mismatch_score = kLowest;
  global_indel_score = kLowest;
  EXPECT_EQ(extended_forward(bases, 2), exact);
}

TEST_F(PlainExtension, gives_a_tie_to_the_shorter_state_at_the_end_of_the_text) {
  // Two N's score nothing: 0 ties with the seed.
  EXPECT_EQ(extended_forward("ACNN", 2), "[0,2) unit [0,2) score 0");
  EXPECT_EQ(extended_backward("NNAC", 2), "[2,4) unit [2,4) score 0");
}

TEST_F(PlainExtension, gives_a_tie_to_the_longer_state_when_out_of_edits) {
  EXPECT_EQ(extended_forward("ACNNGT", 2), "[0,4) unit [0,2) score 0 N 2");
  EXPECT_EQ(extended_backward("GTNNAC", 2), "[2,6) unit [4,6) score 0 N 2");
}

TEST_F(PlainExtension, aligns_an_N_as_a_mismatch_when_told_to) {
  global_treat_Ns_as_missense = true;
  EXPECT_EQ(extended_forward("ACACACACNCACACACT", 2), "[0,16) unit [0,2) score 7 mis 1 8M");
}

TEST_F(PlainLookAhead, walks_through_a_run_of_Ns_of_any_length) {
  global_Ns_allowed_in_a_row = 2;
  const std::string bases = "ACACNNNNNNNNAC";
  // Four matches, the N's for nothing.
  EXPECT_EQ(extend_imperfect_forward_leap_ahead(bases, 2, 0, 0, 2, 0, 2, 5, 14, 0), 4);
  EXPECT_EQ(extend_imperfect_backward_leap_ahead(bases, 12, 13, 12, 14, 0, 2, 5, -1, 0), 4);

  Repeat repeat = repeat_from_unit(0, 2);
  EXPECT_FALSE(extend_exact_forward(repeat, bases, 14));
  EXPECT_EQ(repeat.score, 2);
}

TEST_F(PlainLookAhead, stops_at_an_N_that_counts_as_a_mismatch) {
  global_treat_Ns_as_missense = true;
  EXPECT_EQ(extend_imperfect_forward_leap_ahead("ACACNCAC", 2, 0, 0, 2, 0, 2, 5, 8, 0), 2);
  EXPECT_EQ(extend_imperfect_backward_leap_ahead("ACANACAC", 6, 7, 6, 8, 0, 2, 5, -1, 0), 2);
}

TEST_F(PlainLookAhead, counts_its_level_in_8_bits_and_compares_for_equality) {
  set_small_penalties();
  const auto value = [] {
    return extend_imperfect_forward_leap_ahead("GAAA", 0, 1, 1, 2, 5, 1, 255, 4, 5);
  };
  global_maximum_recursion_depth = 255;
  EXPECT_EQ(value(), 5);
  // Not equal any more: the mismatch is tried, 5 - 2 + 3 = 6.
  global_maximum_recursion_depth = 256;
  EXPECT_EQ(value(), 6);
}

TEST_F(PlainLookAhead, measures_the_reduction_from_the_best_score) {
  set_small_penalties();
  global_maximum_scorereduction = 3;
  const auto value = [](int best_score) {
    return extend_imperfect_forward_leap_ahead("GAAA", 0, 1, 1, 2, 5, 1, 1, 4, best_score);
  };
  // 5 - 2 must exceed 10 - 3.
  EXPECT_EQ(value(10), 5);
  // 5 - 2 exceeds 5 - 3, and AAA make 6.
  EXPECT_EQ(value(5), 6);
  // A lower best score is raised to the 5 at hand before it counts: 5 - 2 does not exceed 5 - 2.
  global_maximum_scorereduction = 2;
  EXPECT_EQ(value(0), 5);
}

TEST_F(PlainLookAhead, tries_an_edit_only_above_minus_the_unit_length) {
  const auto value = [](int score) {
    return extend_imperfect_forward_leap_ahead("AGAAAA", 1, 0, 0, 1, score, 1, 1, 6, score);
  };
  for (const auto& [mismatch, indel] : {std::pair(-2, -20), std::pair(-20, -2)}) {
    global_mismatch_score = mismatch;
    global_indel_score = indel;
    // 1 - 2 is -1 and does not exceed it; otherwise AAAA would make 3.
    EXPECT_EQ(value(1), 1) << mismatch;
    EXPECT_EQ(value(2), 4) << mismatch;
  }
}

TEST_F(PlainLookAhead, finds_the_edit_that_helps) {
  set_small_penalties();
  // Before the T, G is expected: without the T follow GACG, 2 - 2 + 4.
  EXPECT_EQ(extend_imperfect_forward_leap_ahead("ACGACTGACG", 5, 2, 0, 3, 2, 3, 1, 10, 2), 4);
  EXPECT_EQ(extend_imperfect_backward_leap_ahead("GCAGTCAGCA", 5, 7, 7, 10, 2, 3, 1, -1, 2), 4);
  // Before the second C, A is expected: without it follow CGACG, 3 - 2 + 5.
  EXPECT_EQ(extend_imperfect_forward_leap_ahead("ACGCGACG", 3, 0, 0, 3, 3, 3, 1, 8, 3), 6);
  EXPECT_EQ(extend_imperfect_backward_leap_ahead("GCAGCGCA", 5, 7, 5, 8, 3, 3, 1, -1, 3), 6);
}

TEST_F(PlainLookAhead, makes_no_more_edits_than_its_depth_allows) {
  set_small_penalties();
  const auto value = [](std::uint8_t level) {
    return extend_imperfect_forward_leap_ahead("AGGAAAAAAAA", 1, 0, 0, 1, 6, 1, level, 11, 6);
  };
  // Two edits cost 4 and open eight matches; one edit alone stops at the second G.
  global_maximum_recursion_depth = 3;
  EXPECT_EQ(value(1), 10);
  EXPECT_EQ(value(2), 6);
  EXPECT_EQ(value(3), 6);
}

TEST_F(PlainLookAhead, gives_at_least_the_score_it_starts_with) {
  set_small_penalties();
  EXPECT_EQ(extend_imperfect_forward_leap_ahead("GGGA", 0, 3, 3, 4, 4, 1, 1, 3, 4), 4);
  EXPECT_EQ(extend_imperfect_backward_leap_ahead("AGGG", 4, 0, 0, 1, 4, 1, 1, 0, 4), 4);
}

}  // namespace
}  // namespace quorix::reference
