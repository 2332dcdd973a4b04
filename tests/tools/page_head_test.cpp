// The parts of a page's data that have rules of their own.

#include "tools/page/page_head.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <numeric>

#include "tools/page/density_windows.h"
#include "tools/page/distributions.h"

namespace quorix::testing {
namespace {

TEST(JsonString, is_ascii_and_reads_back) {
  for (const std::string text :
       {"", "plain", "\"quoted\" \\ / \x01\x1f\x7f", "<script>", "caf\u00e9", "\u2028\u2029",
        "\U0001F9EC\U0010FFFF", "\uFFFF\uD7FF\uE000"}) {
    const std::string quoted = tools::json_string(text);
    EXPECT_TRUE(std::all_of(quoted.begin(), quoted.end(), [](char c) {
      return c >= ' ' && c < 127;
    })) << quoted;
    EXPECT_EQ(nlohmann::json::parse(quoted).get<std::string>(), text);
  }
}

TEST(JsonString, replaces_what_is_no_utf8) {
  const auto read = [](const std::string& bytes) {
    return nlohmann::json::parse(tools::json_string(bytes)).get<std::string>();
  };
  const std::string bad = "\uFFFD";
  EXPECT_EQ(read("a\xFFz"), "a" + bad + "z");
  EXPECT_EQ(read("\xC3"), bad);                                // cut short
  EXPECT_EQ(read("\xC0\x80"), bad + bad);                      // overlong
  EXPECT_EQ(read("\xE0\x80\x80"), bad + bad + bad);            // overlong
  EXPECT_EQ(read("\xED\xA0\x80"), bad + bad + bad);            // surrogate
  EXPECT_EQ(read("\xF4\x90\x80\x80"), bad + bad + bad + bad);  // beyond U+10FFFF
  EXPECT_EQ(read("\x80"
                 "\xE2\x82\xAC"),
            bad + "\u20AC");
}

TEST(DensityWindows, have_the_same_length_and_few_enough) {
  tools::CDensityWindows density(100);
  density.begin_sequence(50);
  EXPECT_EQ(density.window(), 1);
  density.add(1, 10);
  density.add(5, 12);
  density.begin_sequence(3'000'000'000);
  EXPECT_EQ(density.window(), 100'000'000);
  density.add(2'999'999'901, 3'000'000'000);
  density.begin_sequence(0);
  density.begin_sequence(1000);
  density.add(1, 1000);
  const std::vector<std::int64_t>& counts = density.counts();
  ASSERT_EQ(counts.size(), 32U);
  EXPECT_EQ(counts.front(), 12);
  EXPECT_EQ(counts[30], 100);
  EXPECT_EQ(counts.back(), 1000);
  EXPECT_EQ(std::accumulate(counts.begin(), counts.end(), std::int64_t{0}), 1112);
}

TEST(DensityWindows, every_record_of_very_many_has_one) {
  tools::CDensityWindows density(100);
  for (int i = 0; i < 1000; ++i) {
    density.begin_sequence(1000);
    density.add(i + 1, i + 1);
  }
  EXPECT_EQ(density.window(), 1000);
  EXPECT_EQ(density.counts(), std::vector<std::int64_t>(1000, 1));
}

TEST(Distributions, bounds_ascend_ten_from_power_to_power) {
  const tools::CDistributions distributions;
  const std::vector<std::int64_t>& bounds = distributions.length_bounds();
  const std::vector<std::int64_t> begin(bounds.begin(), bounds.begin() + 14);
  EXPECT_EQ(begin, (std::vector<std::int64_t>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 13, 16, 20, 25}));
  EXPECT_TRUE(std::is_sorted(bounds.begin(), bounds.end(), std::less_equal<>()));
  for (const std::int64_t power : {10, 100, 1000, 1'000'000}) {
    const auto first = std::find(bounds.begin(), bounds.end(), power);
    ASSERT_NE(first, bounds.end());
    EXPECT_EQ(*(first + 10), 10 * power);
  }
}

}  // namespace
}  // namespace quorix::testing
