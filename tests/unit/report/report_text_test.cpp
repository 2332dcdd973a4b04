// Columns as printf would print them, byte for byte.

#include "report/report_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "support/memory_stream.h"

namespace quorix {
namespace {

/// What `add` appends to a text.
template <class Add>
std::string added_by(const Add& add) {
  return testing::printed_by([&add](std::FILE* stream) {
    char block[64];
    CStreamText text(stream, block);
    add(text);
  });
}

/// Expects that the numbers, one after the other, look as printf prints them.
void expect_decimals(const std::vector<double>& numbers) {
  std::string expected;
  for (const double number : numbers) {
    char digits[400];
    std::snprintf(digits, sizeof digits, "%7.3f", number);
    expected += digits;
  }
  ASSERT_EQ(added_by([&numbers](CStreamText& text) {
              for (const double number : numbers) add_decimals(text, number);
            }),
            expected);
}

TEST(ReportText, puts_a_column_to_the_right_of_its_width) {
  EXPECT_EQ(added_by([](CStreamText& text) { add_column(text, "ACG", 5); }), "  ACG");
  EXPECT_EQ(added_by([](CStreamText& text) { add_column(text, "ACG", 3); }), "ACG");
  EXPECT_EQ(added_by([](CStreamText& text) { add_column(text, "ACG", 2); }), "ACG");
  EXPECT_EQ(added_by([](CStreamText& text) { add_column(text, "", 2); }), "  ");
}

TEST(ReportText, has_numbers_up_to_the_64_bit_limits) {
  constexpr long long kMin = std::numeric_limits<long long>::min();
  constexpr long long kLargest = std::numeric_limits<long long>::max();
  for (const long long number : {kMin, -123456LL, -1LL, 0LL, 7LL, 99'999LL, kLargest}) {
    for (const std::size_t width : {0U, 1U, 5U, 6U, 25U}) {
      char expected[40];
      std::snprintf(expected, sizeof expected, "%*lld", static_cast<int>(width), number);
      EXPECT_EQ(added_by([=](CStreamText& text) { add_number(text, number, width); }), expected);
    }
  }
}

TEST(ReportText, has_every_perfection_of_up_to_3000_bases_as_printf_prints_it) {
  for (int counted = 1; counted <= 3000; ++counted) {
    std::vector<double> perfections;
    for (int matched = 0; matched <= counted; ++matched) {
      perfections.push_back(static_cast<double>(matched) / counted * 100.0);
    }
    ASSERT_NO_FATAL_FAILURE(expect_decimals(perfections)) << "of " << counted << " bases";
  }
}

TEST(ReportText, rounds_halves_to_the_even_decimal_as_printf_does) {
  std::vector<double> halves;
  for (int sixteenths = -4000; sixteenths <= 4000; ++sixteenths) {
    halves.push_back(sixteenths / 16.0);
    halves.push_back(std::nextafter(sixteenths / 16.0, 1000.0));
    halves.push_back(std::nextafter(sixteenths / 16.0, -1000.0));
  }
  expect_decimals(halves);
}

TEST(ReportText, has_numbers_of_any_size_and_none_as_printf_prints_them) {
  using Limits = std::numeric_limits<double>;
  expect_decimals({0.0, -0.0, 0.0004, -0.0004, 99.9995, 999.9995, -25.0, -100.0, -1e21, 1e15, 1e22,
                   Limits::max(), Limits::lowest(), Limits::min(), Limits::denorm_min(),
                   Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN(),
                   -Limits::quiet_NaN()});
}

TEST(ReportText, has_numbers_of_random_bits_as_printf_prints_them) {
  constexpr unsigned kSeed = 777;
  std::mt19937_64 random(kSeed);
  std::vector<double> numbers;
  for (int i = 0; i < 50'000; ++i) {
    numbers.push_back(std::bit_cast<double>(std::uint64_t{random()}));
    numbers.push_back(static_cast<double>(random() % 2'000'000'000) / 1e7 - 50.0);
  }
  expect_decimals(numbers);
}

}  // namespace
}  // namespace quorix
