// Every operation of a bit set, against a vector of bools.

#include "search/bits/bit_set.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "support/random_dna.h"

namespace quorix::testing {
namespace {

constexpr std::size_t kSizes[] = {0, 1, 2, 63, 64, 65, 127, 128, 129, 191, 192, 300};

using Bools = std::vector<bool>;

std::size_t first_of(const Bools& bools, std::size_t position, bool value) {
  while (position < bools.size() && bools[position] != value) ++position;
  return position;
}

/// Set bits from `position` on, up to 64.
int ones_from(const Bools& bools, std::size_t position) {
  return static_cast<int>(std::min<std::size_t>(first_of(bools, position, false) - position, 64));
}

int ones_down_from(const Bools& bools, std::size_t position) {
  int count = 0;
  for (std::size_t i = position + 1; i > 0 && bools[i - 1] && count < 64; --i) ++count;
  return count;
}

void expect_equal(const CBitSet& bits, const Bools& bools) {
  ASSERT_EQ(bits.size(), bools.size());
  for (std::size_t i = 0; i < bools.size(); ++i) {
    ASSERT_EQ(bits.test(i), bools[i]) << "bit " << i << " of " << bools.size();
    ASSERT_EQ(bits.ones_down_from(i), ones_down_from(bools, i)) << i << " of " << bools.size();
  }
  for (std::size_t i = 0; i <= bools.size(); ++i) {
    ASSERT_EQ(bits.find_set(i), first_of(bools, i, true)) << i << " of " << bools.size();
    ASSERT_EQ(bits.find_clear(i), first_of(bools, i, false)) << i << " of " << bools.size();
    ASSERT_EQ(bits.ones_from(i), ones_from(bools, i)) << i << " of " << bools.size();
  }
  // What lies beyond the last bit is clear, and there is a spare word.
  ASSERT_GT(bits.words().size(), bools.size() / kWordBits + 1);
  for (std::size_t i = bools.size(); i < bits.words().size() * kWordBits; ++i) {
    ASSERT_FALSE(bits.test(i)) << "bit " << i << " beyond " << bools.size();
  }
}

TEST(BitSet, is_clear_at_first) {
  for (const std::size_t size : kSizes) expect_equal(CBitSet(size), Bools(size));
  expect_equal(CBitSet(), Bools());
}

TEST(BitSet, has_one_spare_word_and_no_more) {
  for (const std::uint64_t size : {0U, 1U, 63U, 64U, 65U, 127U, 128U, 1000U}) {
    CBitSet bits(size);
    EXPECT_EQ(bits.words().size(), size / 64 + 2) << size;
    bits.reset(size + 64);
    EXPECT_EQ(bits.words().size(), size / 64 + 3) << size;
  }
}

TEST(BitSet, sets_single_bits) {
  for (const std::size_t size : kSizes) {
    for (std::size_t i = 0; i < size; ++i) {
      CBitSet bits(size);
      Bools bools(size);
      bits.set(i);
      bools[i] = true;
      ASSERT_NO_FATAL_FAILURE(expect_equal(bits, bools));
    }
  }
}

TEST(BitSet, sets_every_range) {
  for (const std::size_t size : {std::size_t{1}, std::size_t{64}, std::size_t{130}}) {
    for (std::size_t first = 0; first <= size; ++first) {
      for (std::size_t last = first; last <= size; ++last) {
        CBitSet bits(size);
        bits.set_range(first, last);
        std::size_t count = 0;
        for (std::size_t i = 0; i < size; ++i) {
          ASSERT_EQ(bits.test(i), i >= first && i < last) << i << " of " << first << "," << last;
          count += bits.test(i) ? 1 : 0;
        }
        ASSERT_EQ(count, last - first);
        ASSERT_EQ(bits.words().back(), 0U);
      }
    }
  }
}

TEST(BitSet, answers_as_a_vector_of_bools_does) {
  RandomEngine engine(1);
  std::size_t longest_run = 0;
  for (int round = 0; round < 300; ++round) {
    for (const std::size_t size : kSizes) {
      CBitSet bits(size);
      Bools bools(size);
      const std::size_t ranges = draw_between(engine, 0, 4);
      for (std::size_t i = 0; i < ranges; ++i) {
        std::size_t first = draw_between(engine, 0, size);
        std::size_t last = draw_between(engine, 0, size);
        if (draw_chance(engine, 25)) first = 0;
        if (draw_chance(engine, 25)) last = size;
        if (first > last) std::swap(first, last);
        bits.set_range(first, last);
        std::fill(bools.begin() + static_cast<std::ptrdiff_t>(first),
                  bools.begin() + static_cast<std::ptrdiff_t>(last), true);
        longest_run = std::max(longest_run, last - first);
      }
      for (std::size_t i = 0; size != 0 && i < draw_between(engine, 0, 9); ++i) {
        const std::size_t position = draw_between(engine, 0, size - 1);
        bits.set(position);
        bools[position] = true;
      }
      ASSERT_NO_FATAL_FAILURE(expect_equal(bits, bools));
    }
  }
  EXPECT_GT(longest_run, 200U);
}

TEST(BitSet, answers_for_a_range_as_for_a_set_that_ends_there) {
  CBitSet bits(200);
  for (const std::uint64_t position : {0U, 5U, 62U, 63U, 64U, 65U, 100U, 127U, 128U, 191U, 199U}) {
    bits.set(position);
  }
  bits.set_range(110, 130);
  for (std::uint64_t end = 0; end <= 200; ++end) {
    CBitSet shorter(end);
    for (std::uint64_t position = 0; position < end; ++position) {
      if (bits.test(position)) shorter.set(position);
    }
    EXPECT_EQ(bits.find_set(end, end), end);
    EXPECT_EQ(bits.find_clear(end, end), end);
    for (std::uint64_t position = 0; position < end; ++position) {
      ASSERT_EQ(bits.find_set(position, end), shorter.find_set(position)) << position << " " << end;
      ASSERT_EQ(bits.find_clear(position, end), shorter.find_clear(position));
      ASSERT_EQ(bits.bits_from(position, end), shorter.bits_from(position));
    }
  }
}

TEST(BitSet, clears_single_bits) {
  CBitSet bits;
  bits.reset_to_set(70);
  bits.clear(3);
  bits.clear(69);
  for (std::uint64_t position = 0; position < 70; ++position) {
    EXPECT_EQ(bits.test(position), position != 3 && position != 69) << position;
  }
}

TEST(BitSet, is_clear_again_after_a_reset) {
  CBitSet bits(300);
  for (const std::size_t size : kSizes) {
    bits.set_range(0, bits.size());
    bits.reset(size);
    ASSERT_NO_FATAL_FAILURE(expect_equal(bits, Bools(size)));
  }
}

TEST(BitSet, sets_all_bits_and_clears_ranges) {
  for (const std::uint64_t size : std::vector<std::uint64_t>{0, 1, 63, 64, 65, 127, 128, 200}) {
    CBitSet bits(500);
    for (std::uint64_t first = 0; first <= size; ++first) {
      for (std::uint64_t last = first; last <= size; ++last) {
        bits.reset_to_set(size);
        CBitSet expected(size);
        expected.set_range(0, size);
        ASSERT_EQ(bits.words(), expected.words()) << size;
        bits.clear_range(first, last);
        expected.reset(size);
        expected.set_range(0, first);
        expected.set_range(last, size);
        ASSERT_EQ(bits.words(), expected.words()) << first << " to " << last << " of " << size;
      }
    }
  }
}

}  // namespace
}  // namespace quorix::testing
