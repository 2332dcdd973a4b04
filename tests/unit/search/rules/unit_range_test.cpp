#include "search/rules/unit_range.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "support/default_settings.h"

namespace quorix {
namespace {

using Range = testing::CDefaultSettings;

void expect_range(const UnitRange& range, std::uint64_t first, std::uint64_t last) {
  EXPECT_EQ(range.first, first);
  EXPECT_EQ(range.last, last);
}

TEST_F(Range, is_that_of_the_settings_in_a_long_text) {
  global_min_unit_length = 3;
  global_max_unit_length = 9;
  expect_range(unit_range_of(10), 3, 9);
  expect_range(unit_range_of(std::uint64_t{1} << 40), 3, 9);
}

TEST_F(Range, ends_where_one_base_follows_the_unit) {
  global_min_unit_length = 3;
  global_max_unit_length = std::numeric_limits<std::uint32_t>::max();
  expect_range(unit_range_of(9), 3, 8);
  expect_range(unit_range_of(1), 3, 0);
  expect_range(unit_range_of(0), 3, 0);
}

TEST_F(Range, may_begin_with_0) {
  global_min_unit_length = 0;
  global_max_unit_length = 2;
  expect_range(unit_range_of(100), 0, 2);
}

}  // namespace
}  // namespace quorix
