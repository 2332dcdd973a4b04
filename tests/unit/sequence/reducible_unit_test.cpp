#include "sequence/reducible_unit.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace quorix {
namespace {

bool is_reducible(const std::string& unit) {
  return isReducibleUnit_global(unit.c_str(), unit.c_str() + unit.size());
}

std::string copies_of(std::string_view block, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += block;
  return text;
}

/// A block without a shorter period: one C after A's.
std::string irreducible_block(std::size_t length) {
  return std::string(length - 1, 'A') + 'C';
}

bool is_prime(std::size_t number) {
  if (number < 2) return false;
  for (std::size_t divisor = 2; divisor < number; ++divisor) {
    if (number % divisor == 0) return false;
  }
  return true;
}

/// The rule in other words: some shorter block repeats, and the length is no prime.
bool is_plainly_reducible(const std::string& unit) {
  for (std::size_t length = 1; length < unit.size(); ++length) {
    if (unit.size() % length != 0) continue;
    const std::string block = unit.substr(0, length);
    if (copies_of(block, unit.size() / length) == unit) return !is_prime(unit.size());
  }
  return false;
}

TEST(PrimeFactors, has_a_row_for_each_length_from_0_to_10000) {
  EXPECT_EQ(primeFactors.size(), 10001U);
}

TEST(PrimeFactors, lists_distinct_factors_ascending_then_zeros) {
  EXPECT_EQ(primeFactors[4], (PrimeFactorRow{2, 0, 0, 0, 0, 0}));
  EXPECT_EQ(primeFactors[6], (PrimeFactorRow{2, 3, 0, 0, 0, 0}));
  EXPECT_EQ(primeFactors[9], (PrimeFactorRow{3, 0, 0, 0, 0, 0}));
  EXPECT_EQ(primeFactors[12], (PrimeFactorRow{2, 3, 0, 0, 0, 0}));
  EXPECT_EQ(primeFactors[30], (PrimeFactorRow{2, 3, 5, 0, 0, 0}));
  EXPECT_EQ(primeFactors[2310], (PrimeFactorRow{2, 3, 5, 7, 11, 0}));
  EXPECT_EQ(primeFactors[9999], (PrimeFactorRow{3, 11, 101, 0, 0, 0}));
  EXPECT_EQ(primeFactors[10000], (PrimeFactorRow{2, 5, 0, 0, 0, 0}));
}

TEST(PrimeFactors, is_all_zero_for_0_to_3_and_for_primes) {
  constexpr PrimeFactorRow kNone{};
  for (const std::size_t length : {0U, 1U, 2U, 3U, 5U, 7U, 97U, 9973U}) {
    EXPECT_EQ(primeFactors[length], kNone) << "row " << length;
  }
}

TEST(PrimeFactors, follows_the_rule_in_every_row) {
  for (std::size_t length = 0; length < primeFactors.size(); ++length) {
    PrimeFactorRow expected{};
    std::size_t count = 0;
    std::size_t rest = length;
    for (std::size_t factor = 2; factor < length && rest > 1; ++factor) {
      if (rest % factor != 0) continue;
      expected[count++] = static_cast<std::int32_t>(factor);
      while (rest % factor == 0) rest /= factor;
    }
    ASSERT_EQ(primeFactors[length], expected) << "row " << length;
  }
}

TEST(ReducibleUnit, is_a_repetition_of_a_shorter_unit) {
  EXPECT_TRUE(is_reducible("ATAT"));
  EXPECT_TRUE(is_reducible("ACGACG"));
  EXPECT_TRUE(is_reducible("AAAAAA"));
}

TEST(ReducibleUnit, is_never_one_of_prime_length) {
  EXPECT_FALSE(is_reducible("AA"));
  EXPECT_FALSE(is_reducible("AAA"));
  EXPECT_FALSE(is_reducible("AAAAA"));
  EXPECT_FALSE(is_reducible(std::string(9973, 'A')));
}

TEST(ReducibleUnit, is_not_one_whose_blocks_differ) {
  EXPECT_FALSE(is_reducible("ACGT"));
  EXPECT_FALSE(is_reducible("ATAA"));
  EXPECT_FALSE(is_reducible("ACGACT"));
  EXPECT_FALSE(is_reducible("AACAAG"));
  EXPECT_FALSE(is_reducible("ACACAG"));  // the last of three blocks
  EXPECT_FALSE(is_reducible("AGACAC"));  // the first of three blocks
}

TEST(ReducibleUnit, is_not_one_of_a_single_letter_or_none) {
  EXPECT_FALSE(is_reducible("A"));
  EXPECT_FALSE(is_reducible(""));
}

TEST(ReducibleUnit, is_decided_by_the_stretch_alone_and_not_by_what_follows) {
  const std::string text = "ATATCATAT";
  EXPECT_TRUE(isReducibleUnit_global(text.c_str(), text.c_str() + 4));
  EXPECT_FALSE(isReducibleUnit_global(text.c_str(), text.c_str() + 6));
  EXPECT_TRUE(isReducibleUnit_global(text.c_str() + 5, text.c_str() + 9));
}

TEST(ReducibleUnit, agrees_with_the_plain_rule_on_all_texts_of_two_letters_up_to_length_12) {
  for (std::size_t length = 1; length <= 12; ++length) {
    for (std::size_t number = 0; number < (std::size_t{1} << length); ++number) {
      std::string unit(length, 'A');
      for (std::size_t i = 0; i < length; ++i) unit[i] = ((number >> i) & 1) != 0 ? 'C' : 'A';
      ASSERT_EQ(is_reducible(unit), is_plainly_reducible(unit)) << unit;
    }
  }
}

TEST(ReducibleUnit, agrees_with_the_plain_rule_on_every_number_of_blocks_up_to_length_240) {
  for (std::size_t length = 1; length <= 240; ++length) {
    for (std::size_t block_length = 1; block_length <= length; ++block_length) {
      if (length % block_length != 0) continue;
      std::string unit = copies_of(irreducible_block(block_length), length / block_length);
      ASSERT_EQ(is_reducible(unit), is_plainly_reducible(unit)) << length << ", " << block_length;
      unit.back() = 'G';
      ASSERT_EQ(is_reducible(unit), is_plainly_reducible(unit)) << length << ", " << block_length;
    }
  }
}

TEST(ReducibleUnit, keeps_to_the_rule_at_the_last_length_of_the_table_and_beyond) {
  EXPECT_TRUE(is_reducible(copies_of(irreducible_block(2000), 5)));  // length 10000
  EXPECT_TRUE(is_reducible(copies_of(irreducible_block(5000), 2)));
  EXPECT_FALSE(is_reducible(irreducible_block(10000)));
  EXPECT_TRUE(is_reducible(copies_of(irreducible_block(137), 73)));  // length 10001 = 73 * 137
  EXPECT_TRUE(is_reducible(copies_of(irreducible_block(73), 137)));
  EXPECT_TRUE(is_reducible(std::string(10001, 'A')));
  EXPECT_FALSE(is_reducible(irreducible_block(10001)));
}

TEST(ReducibleUnit, beyond_the_table_may_have_a_large_prime_number_of_blocks) {
  // 20014 = 2 * 10007, and the two halves of a run of AC's differ, since 10007 is odd.
  EXPECT_TRUE(is_reducible(copies_of("AC", 10007)));
  EXPECT_TRUE(is_reducible(copies_of(irreducible_block(10007), 2)));
  EXPECT_FALSE(is_reducible(irreducible_block(20014)));
  // 10012 = 2 * 2 * 2503: neither halves nor pairs are equal, only the 2503 blocks.
  EXPECT_TRUE(is_reducible(copies_of("ACGT", 2503)));
  // 12769 = 113 * 113: the only prime factor is the square root.
  EXPECT_TRUE(is_reducible(copies_of(irreducible_block(113), 113)));
  EXPECT_FALSE(is_reducible(irreducible_block(12769)));
}

TEST(ReducibleUnit, beyond_the_table_may_repeat_a_block_a_composite_number_of_times) {
  EXPECT_TRUE(is_reducible(copies_of(irreducible_block(3000), 4)));
  EXPECT_TRUE(is_reducible(copies_of(irreducible_block(2003), 15)));
}

TEST(ReducibleUnit, beyond_the_table_is_never_one_of_prime_length) {
  EXPECT_FALSE(is_reducible(std::string(10007, 'A')));
  EXPECT_FALSE(is_reducible(std::string(99991, 'A')));
}

TEST(ReducibleUnit, beyond_the_table_is_not_one_whose_last_letter_differs) {
  std::string unit = copies_of(irreducible_block(5003), 2);
  unit.back() = 'G';
  EXPECT_FALSE(is_reducible(unit));
}

}  // namespace
}  // namespace quorix
