#include "console/number_text.h"

#include <gtest/gtest.h>

#include <limits>

namespace quorix {
namespace {

TEST(NumberText, of_an_int_shows_its_minus_sign) {
  EXPECT_STREQ(number2str(0), "0");
  EXPECT_STREQ(number2str(-1), "-1");
  EXPECT_STREQ(number2str(std::numeric_limits<int>::max()), "2147483647");
  EXPECT_STREQ(number2str(std::numeric_limits<int>::min()), "-2147483648");
}

TEST(NumberText, of_an_unsigned_int_has_no_sign) {
  EXPECT_STREQ(number2str(0U), "0");
  EXPECT_STREQ(number2str(4294967295U), "4294967295");
}

TEST(NumberText, of_a_float_is_in_the_shortest_form) {
  EXPECT_STREQ(number2str(1.0F), "1");
  EXPECT_STREQ(number2str(0.0F), "0");
  EXPECT_STREQ(number2str(0.25F), "0.25");
  EXPECT_STREQ(number2str(-0.5F), "-0.5");
}

TEST(NumberText, of_a_float_has_six_significant_digits) {
  EXPECT_STREQ(number2str(0.1F), "0.1");
  EXPECT_STREQ(number2str(1234567.0F), "1.23457e+06");
  EXPECT_STREQ(number2str(0.00001F), "1e-05");
  EXPECT_STREQ(number2str(std::numeric_limits<float>::max()), "3.40282e+38");
}

TEST(NumberText, of_a_double_is_like_that_of_a_float) {
  EXPECT_STREQ(number2str(0.25), "0.25");
  EXPECT_STREQ(number2str(100.0), "100");
  EXPECT_STREQ(number2str(2.0 / 3.0), "0.666667");
  EXPECT_STREQ(number2str(1e300), "1e+300");
}

TEST(NumberText, stands_in_one_buffer_until_the_next_call) {
  const char* const text = number2str(12);
  EXPECT_EQ(number2str(0.5F), text);
  EXPECT_STREQ(text, "0.5");
  EXPECT_EQ(number2str(7U), text);
  EXPECT_EQ(number2str(7.5), text);
  EXPECT_EQ(number2str(3), text);
  EXPECT_STREQ(text, "3");
}

}  // namespace
}  // namespace quorix
