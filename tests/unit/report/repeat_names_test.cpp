#include "report/repeat_names.h"

#include <gtest/gtest.h>

#include <string>

namespace quorix {
namespace {

TEST(RepeatNames, has_an_entry_for_each_unit_length_up_to_6_and_an_error_for_0) {
  ASSERT_EQ(REPEAT_NAMES.size(), 7U);
  EXPECT_STREQ(REPEAT_NAMES[0], "***  ERROR  ***");
  EXPECT_STREQ(REPEAT_NAMES[1], "mononucleotide");
  EXPECT_STREQ(REPEAT_NAMES[2], "dinucleotide");
  EXPECT_STREQ(REPEAT_NAMES[3], "trinucleotide");
  EXPECT_STREQ(REPEAT_NAMES[4], "tetranucleotide");
  EXPECT_STREQ(REPEAT_NAMES[5], "pentanucleotide");
  EXPECT_STREQ(REPEAT_NAMES[6], "hexanucleotide");
}

TEST(RepeatNames, names_unit_lengths_up_to_6_by_the_table) {
  for (std::int64_t unit_length = 0; unit_length <= 6; ++unit_length) {
    EXPECT_STREQ(get_repeat_name(unit_length), REPEAT_NAMES[static_cast<std::size_t>(unit_length)]);
  }
  EXPECT_STREQ(get_repeat_name(0), "***  ERROR  ***");
}

TEST(RepeatNames, names_unit_lengths_above_6_by_their_number) {
  EXPECT_STREQ(get_repeat_name(7), "7-nucleotide");
  EXPECT_STREQ(get_repeat_name(10), "10-nucleotide");
  EXPECT_STREQ(get_repeat_name(99999), "99999-nucleotide");
  EXPECT_STREQ(get_repeat_name(5'000'000'000), "5000000000-nucleotide");
  EXPECT_STREQ(get_repeat_name(9'223'372'036'854'775'807), "9223372036854775807-nucleotide");
}

TEST(RepeatNames, overwrites_a_numbered_name_at_the_next_call) {
  const char* const first = get_repeat_name(7);
  const char* const second = get_repeat_name(8);
  EXPECT_EQ(first, second);
  EXPECT_STREQ(first, "8-nucleotide");
}

}  // namespace
}  // namespace quorix
