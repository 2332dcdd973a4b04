// Exact repeats by hand. The first unit of a repeat is not scored, every further base scores 1.

#include "reference/plain_test_support.h"

namespace quorix::reference {
namespace {

using PlainThresholds = CWithDefaultSettings;
using PlainSeedRules = CWithDefaultSettings;
using PlainExactSearch = CWithDefaultSettings;

TEST_F(PlainThresholds, are_the_larger_of_the_constant_and_the_unit_length_by_default) {
  EXPECT_EQ(min_score(ThresholdSet::kUser, 1), 6);
  EXPECT_EQ(min_score(ThresholdSet::kUser, 6), 6);
  EXPECT_EQ(min_score(ThresholdSet::kUser, 7), 7);
  EXPECT_EQ(min_length(ThresholdSet::kUser, 7), 1);
}

TEST_F(PlainThresholds, round_a_fraction_up) {
  global_min_score = -100;
  global_min_score_bx = 1.5F;
  EXPECT_EQ(min_score(ThresholdSet::kUser, 1), 2);
  EXPECT_EQ(min_score(ThresholdSet::kUser, 2), 3);
  global_min_score_a = -4;
  // -4 + 1.5 = -2.5, rounded up to -2.
  EXPECT_EQ(min_score(ThresholdSet::kUser, 1), -2);
}

TEST_F(PlainThresholds, use_the_factor_as_the_float_that_it_is) {
  global_min_length_bx = 0.1F;
  // The float nearest to 0.1 lies above it, so that ten times it lies above 1.
  EXPECT_EQ(min_length(ThresholdSet::kUser, 10), 2);
}

TEST_F(PlainThresholds, saturate_at_the_32_bit_limits) {
  global_min_score_bx = 1.0e9F;
  EXPECT_EQ(min_score(ThresholdSet::kUser, 10), 2147483647);
  global_min_score_bx = -1.0e30F;
  EXPECT_EQ(min_score(ThresholdSet::kUser, 10), 6);
  EXPECT_EQ(min_score(ThresholdSet::kIntern, 4294967295), 2147483647);
}

TEST_F(PlainThresholds, are_lax_inside) {
  EXPECT_EQ(min_score(ThresholdSet::kIntern, 0), 4);
  EXPECT_EQ(min_score(ThresholdSet::kIntern, 4), 4);
  EXPECT_EQ(min_score(ThresholdSet::kIntern, 5), 5);
  EXPECT_EQ(min_length(ThresholdSet::kIntern, 5), 0);
}

TEST_F(PlainThresholds, include_their_own_value_and_test_the_normalized_length) {
  global_min_length = 9;
  Repeat repeat = repeat_from_unit(0, 3);
  repeat.end = 10;
  repeat.score = 6;
  repeat.insertions = 1;
  EXPECT_TRUE(passes_thresholds(repeat, ThresholdSet::kUser));
  repeat.score = 5;
  EXPECT_FALSE(passes_thresholds(repeat, ThresholdSet::kUser));
  repeat.score = 6;
  repeat.insertions = 2;
  EXPECT_FALSE(passes_thresholds(repeat, ThresholdSet::kUser));
  repeat.deletions = 1;
  EXPECT_TRUE(passes_thresholds(repeat, ThresholdSet::kUser));
}

TEST_F(PlainSeedRules, refuse_units_with_an_N_or_of_one_base_repeated) {
  EXPECT_FALSE(is_valid_starting_pattern("ANC", 0, 3));
  EXPECT_FALSE(is_valid_starting_pattern("N", 0, 1));
  EXPECT_FALSE(is_valid_starting_pattern("TTT", 0, 3));
  EXPECT_FALSE(is_valid_starting_pattern("ACG", 1, 1));
  EXPECT_TRUE(is_valid_starting_pattern("T", 0, 1));
  EXPECT_TRUE(is_valid_starting_pattern("TTA", 0, 3));
  EXPECT_TRUE(is_valid_starting_pattern("ATAT", 0, 4));
  // The N after the unit is none of its business.
  EXPECT_TRUE(is_valid_starting_pattern("ACN", 0, 2));
}

TEST_F(PlainSeedRules, let_a_closed_base_start_a_unit_between_open_ones) {
  CPlainMarks marks(6);
  EXPECT_TRUE(is_open_for_seed(marks, 0, 2));
  marks.cover(repeat_from_unit(1, 2));
  // Base 1 is closed; base 0 in front and the unit's last base, 2, are open.
  EXPECT_TRUE(is_open_for_seed(marks, 1, 2));
  marks.cover(repeat_from_unit(2, 3));
  EXPECT_FALSE(is_open_for_seed(marks, 1, 2));
  // Base 0 is open, but neither the unit's last base nor the one after it.
  EXPECT_FALSE(is_open_for_seed(marks, 0, 2));
  EXPECT_TRUE(is_open_for_seed(marks, 3, 2));
  // The guards are open: base 5 is the last one.
  EXPECT_TRUE(is_open_for_seed(marks, 5, 1));
}

TEST_F(PlainSeedRules, leave_edit_sites_open) {
  CPlainMarks marks(4);
  Repeat repeat = repeat_from_unit(0, 1);
  repeat.end = 4;
  repeat.edits = {{2, 'M'}};
  marks.cover(repeat);
  EXPECT_FALSE(marks.is_free(1));
  EXPECT_TRUE(marks.is_free(2));
  EXPECT_FALSE(marks.is_free(3));
  EXPECT_TRUE(marks.is_free(-1));
  EXPECT_TRUE(marks.is_free(4));
  marks.clear();
  EXPECT_TRUE(marks.is_free(1));
}

TEST_F(PlainExactSearch, finds_nothing_in_records_of_no_or_one_base) {
  global_min_length = 2;
  require_score(0);
  EXPECT_TRUE(exact_search_2("").empty());
  EXPECT_TRUE(exact_search_2("A").empty());
  EXPECT_TRUE(exact_search("").empty());
  EXPECT_TRUE(exact_search("A").empty());
}

TEST_F(PlainExactSearch, needs_a_base_after_the_unit) {
  search_units_of(2);
  require_score(2);
  // AC at 0 reaches the end with two matches; CA at 1 lies in it.
  EXPECT_EQ(describe(exact_search_2("ACAC")), (Texts{"[0,4) unit [0,2) score 2"}));
  EXPECT_TRUE(exact_search_2("AC").empty());
}

TEST_F(PlainExactSearch, starts_at_the_first_base_that_is_not_N) {
  EXPECT_EQ(describe(exact_search_2("NNNNAAAAAAAA")), (Texts{"[4,12) unit [4,5) score 7"}));
  EXPECT_TRUE(exact_search_2("NNNNNNNN").empty());
}

TEST_F(PlainExactSearch, bridges_as_many_Ns_as_are_allowed) {
  search_units_of(2);
  global_Ns_allowed_in_a_row = 2;
  // Six bases after the first unit match, the two N's score nothing.
  EXPECT_EQ(describe(exact_search_2("ACACNNACAC")), (Texts{"[0,10) unit [0,2) score 6 N 2"}));

  require_score(2);
  const Texts two_repeats = {"[0,4) unit [0,2) score 2", "[7,11) unit [7,9) score 2"};
  EXPECT_EQ(describe(exact_search_2("ACACNNNACAC")), two_repeats);

  global_treat_Ns_as_missense = true;
  const Texts also_two = {"[0,4) unit [0,2) score 2", "[6,10) unit [6,8) score 2"};
  EXPECT_EQ(describe(exact_search_2("ACACNNACAC")), also_two);
}

TEST_F(PlainExactSearch, gives_back_Ns_at_the_ends_of_a_repeat) {
  search_units_of(2);
  EXPECT_EQ(describe(exact_search_2("NNACACACACNN")), (Texts{"[2,10) unit [2,4) score 6"}));
}

TEST_F(PlainExactSearch, finds_a_run_of_one_base_only_as_mononucleotides) {
  global_max_unit_length = 3;
  EXPECT_EQ(describe(exact_search_2("AAAAAAAA")), (Texts{"[0,8) unit [0,1) score 7"}));
}

TEST_F(PlainExactSearch, does_not_find_a_repeat_again_with_a_multiple_of_its_unit) {
  global_min_unit_length = 2;
  global_max_unit_length = 4;
  EXPECT_EQ(describe(exact_search_2("ATATATATAT")), (Texts{"[0,10) unit [0,2) score 8"}));
  EXPECT_EQ(describe(exact_search("ATATATATAT")), (Texts{"[0,10) unit [0,2) score 8"}));
}

TEST_F(PlainExactSearch, sorts_across_unit_lengths) {
  // The run of T is found first, by the pass for single bases, and stands after the run of AC.
  const Texts sorted = {"[0,8) unit [0,2) score 6", "[8,15) unit [8,9) score 6"};
  EXPECT_EQ(describe(exact_search_2("ACACACACTTTTTTT")), sorted);
}

TEST_F(PlainExactSearch, keeps_a_seed_in_each_phase_where_only_the_internal_thresholds_pass) {
  search_units_of(2);
  // 4 is enough inside and not for the user, so nothing is covered: units at 0 to 3 all give the
  // whole text; one at 4 would have no base after it.
  const Texts phases = {"[0,6) unit [0,2) score 4", "[0,6) unit [1,3) score 4",
                        "[0,6) unit [2,4) score 4", "[0,6) unit [3,5) score 4"};
  EXPECT_EQ(describe(exact_search_2("ACACAC", ThresholdSet::kIntern)), phases);
  EXPECT_TRUE(exact_search_2("ACACAC").empty());
}

TEST_F(PlainExactSearch, has_no_pass_for_single_bases_when_the_smallest_unit_is_0) {
  global_min_unit_length = 0;
  global_max_unit_length = 1;
  require_score(3);
  // Units of one base then go through the general scan, which covers nothing for them.
  const Texts every_position = {"[0,4) unit [0,1) score 3", "[0,4) unit [1,2) score 3",
                                "[0,4) unit [2,3) score 3"};
  EXPECT_EQ(describe(exact_search_2("AAAA")), every_position);
}

TEST_F(PlainExactSearch, stands_the_largest_unit_lengths) {
  global_max_unit_length = 4294967295U;
  const Texts one = {"[0,8) unit [0,2) score 6"};
  EXPECT_EQ(describe(exact_search_2("ACACACAC")), one);
  EXPECT_EQ(describe(exact_search("ACACACAC")), one);
  global_min_unit_length = 4294967295U;
  EXPECT_TRUE(exact_search_2("ACACACAC").empty());
  EXPECT_TRUE(exact_search("ACACACAC").empty());
}

TEST_F(PlainExactSearch, in_the_older_variant_does_not_sort) {
  global_min_unit_length = 2;
  global_max_unit_length = 3;
  require_score(0);
  // At position 0 the unit AC comes first and gives ACAC, then ACA, which scores nothing, is kept
  // as well. In the order of positions the shorter one would come first.
  const Texts found = {"[0,4) unit [0,2) score 2", "[0,3) unit [0,3) score 0"};
  EXPECT_EQ(describe(exact_search("ACAC")), found);
}

TEST_F(PlainExactSearch, in_the_older_variant_skips_units_that_would_end_in_a_kept_repeat) {
  search_units_of(2);
  require_score(2);
  // ACAC is kept at 0 and lets no unit end before 5: GA at 4 (end 6) may, as may CG at 3 (end 5).
  const Texts found = {"[0,4) unit [0,2) score 2", "[4,8) unit [4,6) score 2"};
  EXPECT_EQ(describe(exact_search("ACACGAGA")), found);
}

}  // namespace
}  // namespace quorix::reference
