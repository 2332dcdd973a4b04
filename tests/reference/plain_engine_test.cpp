// The engine as a whole: whole records by hand.

#include "reference/plain_test_support.h"

namespace quorix::reference {
namespace {

using PlainEngine = CWithDefaultSettings;

TEST_F(PlainEngine, searches_in_the_mode_that_is_set) {
  search_units_of(2);
  // Exact: two stretches around the G, of which the second scores 5 and is not reported. Imperfect:
  // one repeat. Extended: the same from each of seven seeds.
  const std::string bases = "ACACACACGCACACACT";
  global_search_mode = kSearchExact;
  EXPECT_EQ(describe(search(bases)), (Texts{"[0,8) unit [0,2) score 6"}));
  global_search_mode = kSearchExtendExact;
  EXPECT_EQ(search(bases).size(), 7U);
  global_search_mode = kSearchImperfect;
  EXPECT_EQ(describe(search(bases)), (Texts{"[0,16) unit [0,2) score 7 mis 1 8M"}));
  global_search_mode = 17;
  EXPECT_EQ(describe(search(bases)), (Texts{"[0,16) unit [0,2) score 7 mis 1 8M"}));
}

TEST_F(PlainEngine, reports_a_record_from_head_to_closing_line) {
  search_units_of(2);
  EXPECT_EQ(
      run_record("x y", "ACACACACACT"),
      ">x y\n"
      "sequence length: 11\n"
      "    dinucleotide         1 :        10 |     10 bp |     10 BP |      8 pt | 100.000 % "
      "|   0 mis |   0 ins |   0 del |   0 N |  unit AC\n"
      "Missense: \n"
      "ACACACACAC\n"
      "||||||||||\n"
      "ACACACACAC\n"
      "# Analysis of sequence \"x y\" completed.\n");
}

TEST_F(PlainEngine, reports_a_mismatch_where_it_is) {
  // Sixteen unit positions, fifteen right: 93.75 %. The edit stands at the ninth base.
  EXPECT_EQ(
      run_record("x", "ACACACACGCACACACT"),
      ">x\n"
      "sequence length: 17\n"
      "    dinucleotide         1 :        16 |     16 bp |     16 BP |      7 pt |  93.750 % "
      "|   1 mis |   0 ins |   0 del |   0 N |  unit AC\n"
      "Missense: (9,M),\n"
      "ACACACACGCACACAC\n"
      "|||||||| |||||||\n"
      "ACACACACACACACAC\n"
      "# Analysis of sequence \"x\" completed.\n");
}

TEST_F(PlainEngine, reports_a_record_without_bases_or_repeats) {
  EXPECT_EQ(run_record("", ""), ">\nsequence length: 0\n# Analysis of sequence \"\" completed.\n");
  EXPECT_EQ(run_record("n", "NNNN"),
            ">n\nsequence length: 4\n# Analysis of sequence \"n\" completed.\n");
}

TEST_F(PlainEngine, prints_a_name_as_it_stands_up_to_a_NUL) {
  EXPECT_EQ(run_record(std::string("100%s\0rest", 10), ""),
            ">100%s\nsequence length: 0\n# Analysis of sequence \"100%s\" completed.\n");
}

TEST_F(PlainEngine, does_not_print_a_reducible_unit_but_masks_it) {
  // ATAT comes first when shorter units are not searched.
  search_units_of(4);
  const std::string bases = "GATATATATATG";
  const std::vector<Repeat> repeats = remove_hidden(search(bases));
  EXPECT_EQ(describe(repeats), (Texts{"[1,11) unit [1,5) score 6"}));
  EXPECT_EQ(report_repeat(repeats[0], bases), "");
  EXPECT_EQ(mask(bases, repeats), "GXXXXXXXXXXG");
}

TEST_F(PlainEngine, masks_nothing_without_repeats) {
  EXPECT_EQ(mask("ACGTN", {}), "ACGTN");
}

TEST_F(PlainEngine, reads_the_settings_anew_on_every_call) {
  search_units_of(2);
  EXPECT_EQ(search("ACACACAC").size(), 1U);
  global_min_score = 7;
  EXPECT_TRUE(search("ACACACAC").empty());
}

}  // namespace
}  // namespace quorix::reference
