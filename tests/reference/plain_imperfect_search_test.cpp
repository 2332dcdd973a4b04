// The choice of seeds by hand. The extension itself has its own test.

#include "reference/plain_test_support.h"

namespace quorix::reference {
namespace {

using PlainImperfectSearch = CWithDefaultSettings;
using PlainExtendExact = CWithDefaultSettings;
using PlainSimpleSearch = CWithDefaultSettings;

TEST_F(PlainImperfectSearch, closes_what_it_found_to_further_seeds) {
  search_units_of(2);
  // One repeat over a mismatch: 6 - 6 + 7. Its edit site at 8 stays open, but no unit that starts
  // there or after it ends on an open base.
  EXPECT_EQ(describe(complete_imperfect_search("ACACACACGCACACACT")),
            (Texts{"[0,16) unit [0,2) score 7 mis 1 8M"}));
}

TEST_F(PlainImperfectSearch, finds_no_seed_among_Ns) {
  EXPECT_TRUE(complete_imperfect_search("NNNNNNNNNN").empty());
  EXPECT_TRUE(complete_imperfect_search("").empty());
}

TEST_F(PlainImperfectSearch, needs_a_base_after_the_unit) {
  require_score(0);
  // With these thresholds a unit alone is a repeat, but not the last base of a record.
  search_units_of(1);
  EXPECT_EQ(describe(complete_imperfect_search("AC")), (Texts{"[0,1) unit [0,1) score 0"}));
  // AC closes the bases 0 and 1 to CG; nothing stands after GT.
  search_units_of(2);
  EXPECT_EQ(describe(complete_imperfect_search("ACGT")), (Texts{"[0,2) unit [0,2) score 0"}));
}

TEST_F(PlainImperfectSearch, opens_mononucleotides_to_longer_units) {
  global_max_unit_length = 2;
  // Eight A's, then TATATATAT. The A at 7 belongs to the run of A and seeds the unit AT all the
  // same. Were it closed, TA at 8 would be the seed and the unit would stand at 8.
  const Texts found = {"[0,8) unit [0,1) score 7", "[7,17) unit [7,9) score 8"};
  EXPECT_EQ(describe(complete_imperfect_search("AAAAAAAATATATATAT")), found);
}

TEST_F(PlainImperfectSearch, closes_dinucleotides_to_longer_units) {
  global_min_unit_length = 2;
  global_max_unit_length = 4;
  EXPECT_EQ(describe(complete_imperfect_search("ATATATATAT")),
            (Texts{"[0,10) unit [0,2) score 8"}));
}

TEST_F(PlainImperfectSearch, seeds_units_of_one_base_by_the_general_rule_when_the_smallest_is_0) {
  global_min_unit_length = 0;
  global_max_unit_length = 1;
  // Unlike the exact search this one closes what it found with single bases, too.
  EXPECT_EQ(describe(complete_imperfect_search("AAAAAAAA")), (Texts{"[0,8) unit [0,1) score 7"}));
}

TEST_F(PlainImperfectSearch, stands_the_largest_unit_lengths) {
  global_max_unit_length = 4294967295U;
  const Texts one = {"[0,8) unit [0,2) score 6"};
  EXPECT_EQ(describe(complete_imperfect_search("ACACACAC")), one);
  EXPECT_EQ(describe(search_exact_and_extend("ACACACAC")), one);
  EXPECT_EQ(describe(simple_imperfect_search("ACACACAC")), one);
  global_min_unit_length = 4294967295U;
  EXPECT_TRUE(complete_imperfect_search("ACACACAC").empty());
}

TEST_F(PlainExtendExact, extends_each_seed_on_its_own) {
  search_units_of(2);
  // The left stretch is one seed, since its score 6 satisfies the user and covers it. The right one
  // scores 5 and seeds in every phase from 9 to 14. All seven extend over the mismatch to the same
  // repeat; equal repeats stay in the order of their seeds.
  const std::string bases = "ACACACACGCACACACT";
  Texts expected;
  for (const char* unit : {"0,2", "9,11", "10,12", "11,13", "12,14", "13,15", "14,16"}) {
    expected.push_back(std::string("[0,16) unit [") + unit + ") score 7 mis 1 8M");
  }
  const std::vector<Repeat> repeats = search_exact_and_extend(bases);
  EXPECT_EQ(describe(repeats), expected);
  EXPECT_EQ(describe(remove_hidden(repeats)), (Texts{"[0,16) unit [0,2) score 7 mis 1 8M"}));
}

TEST_F(PlainExtendExact, drops_what_the_user_does_not_want) {
  search_units_of(2);
  global_min_score = 8;
  EXPECT_TRUE(search_exact_and_extend("ACACACACGCACACACT").empty());
}

TEST_F(PlainExtendExact, sorts_edits_of_both_directions) {
  search_units_of(2);
  set_small_penalties();
  require_score(10);
  // The stretches [0,6) and [7,13) seed with a score of 4. Both reach the whole text: the left one
  // meets G and T in this order, 4 - 2 + 6 - 2 + 5, the middle one meets the T first.
  const std::vector<Repeat> repeats = search_exact_and_extend("CACACAGACACACTCACAC");
  ASSERT_FALSE(repeats.empty());
  for (const Repeat& repeat : repeats) {
    EXPECT_EQ(repeat.edits, (std::vector<Edit>{{6, 'M'}, {13, 'M'}})) << describe(repeat);
    EXPECT_EQ(repeat.score, 11) << describe(repeat);
  }
}

TEST_F(PlainSimpleSearch, goes_on_after_each_hit) {
  search_units_of(2);
  const Texts hits = {"[0,8) unit [0,2) score 6", "[8,16) unit [8,10) score 6"};
  EXPECT_EQ(describe(simple_imperfect_search("ACACACACGTGTGTGT")), hits);
}

TEST_F(PlainSimpleSearch, does_not_extend_back_into_the_last_hit) {
  search_units_of(2);
  set_small_penalties();
  require_score(2);
  global_maximum_scorereduction = 0;
  // The C at 5, last of the first hit, would also do before TCTCT.
  const Texts hits = {"[0,6) unit [0,2) score 4", "[6,11) unit [6,8) score 3"};
  EXPECT_EQ(describe(simple_imperfect_search("ACACACTCTCT")), hits);
  const Texts overlapping = {"[0,6) unit [0,2) score 4", "[5,11) unit [6,8) score 4"};
  EXPECT_EQ(describe(complete_imperfect_search("ACACACTCTCT")), overlapping);
}

TEST_F(PlainSimpleSearch, takes_the_shortest_unit_that_passes) {
  global_min_unit_length = 1;
  global_max_unit_length = 4;
  EXPECT_EQ(describe(simple_imperfect_search("ACACACACACAC")),
            (Texts{"[0,12) unit [0,2) score 10"}));
}

}  // namespace
}  // namespace quorix::reference
