#include "reference/plain_test_support.h"

namespace quorix::reference {
namespace {

TEST(PlainReverseComplement, reads_backwards_in_complements) {
  EXPECT_EQ(reverse_complement("ACGTN").text, "NACGT");
  EXPECT_EQ(reverse_complement("GATTACA").text, "TGTAATC");
  EXPECT_EQ(reverse_complement("").text, "");
  EXPECT_EQ(reverse_complement("RYKMBVDH").text, "DHBVKMRY");
}

TEST(PlainReverseComplement, counts_what_has_no_complement) {
  const ReverseComplement result = reverse_complement("ACSW");
  EXPECT_EQ(result.text, "??GT");
  EXPECT_EQ(result.unknown_count, 2);
  EXPECT_EQ(reverse_complement("aU").text, "??");
  EXPECT_EQ(reverse_complement("ACGTN").unknown_count, 0);
}

TEST(PlainLeastRotation, is_the_alphabetically_first_one) {
  EXPECT_EQ(least_rotation("GCA").unit, "AGC");
  EXPECT_EQ(least_rotation("TTA").unit, "ATT");
  EXPECT_EQ(least_rotation("A").unit, "A");
  // By byte: G < N < T.
  EXPECT_EQ(least_rotation("TNG").unit, "GTN");
}

TEST(PlainLeastRotation, tells_units_that_repeat_a_shorter_one) {
  EXPECT_EQ(least_rotation("TATA").unit, "ATAT");
  EXPECT_TRUE(least_rotation("TATA").is_reducible);
  EXPECT_TRUE(least_rotation("ATAT").is_reducible);
  EXPECT_TRUE(least_rotation("AAAAA").is_reducible);
  EXPECT_TRUE(least_rotation("AA").is_reducible);
  EXPECT_FALSE(least_rotation("A").is_reducible);
  EXPECT_FALSE(least_rotation("ACGT").is_reducible);
}

TEST(PlainReducibleUnit, is_made_of_equal_blocks) {
  EXPECT_TRUE(is_reducible_unit("ATAT"));
  EXPECT_TRUE(is_reducible_unit("ACGACG"));
  EXPECT_TRUE(is_reducible_unit("AAAAAA"));
  EXPECT_TRUE(is_reducible_unit("ACGTACGTACGT"));
  EXPECT_FALSE(is_reducible_unit("ACGT"));
  EXPECT_FALSE(is_reducible_unit("ATATAG"));
}

TEST(PlainReducibleUnit, is_never_of_prime_length) {
  EXPECT_FALSE(is_reducible_unit("AA"));
  EXPECT_FALSE(is_reducible_unit("AAAAA"));
  EXPECT_FALSE(is_reducible_unit("A"));
  EXPECT_FALSE(is_reducible_unit(""));
}

TEST(PlainReducibleUnit, may_be_longer_than_ten_thousand) {
  // 10,006 = 2 * 5,003, both prime.
  EXPECT_TRUE(is_reducible_unit(std::string(10006, 'A')));
  EXPECT_FALSE(is_reducible_unit(std::string(10005, 'A') + "C"));
  EXPECT_FALSE(is_reducible_unit(std::string(10007, 'A')));
}

}  // namespace
}  // namespace quorix::reference
