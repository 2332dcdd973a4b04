// Bit planes of bases, against a comparison base by base.

#include "search/bits/base_planes.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "support/filter/plain_matches.h"
#include "support/random_dna.h"
#include "unit/search/searched_sequence.h"

namespace quorix::testing {
namespace {

CBasePlanes planes_of(const std::string& text) {
  const CBases bases(text);
  return CBasePlanes(bases.begin(), text.size());
}

/// Compares all lags of `text`, and some beyond its end.
void expect_matches_of(const std::string& text, bool is_N_wild) {
  const CBasePlanes planes = planes_of(text);
  CBitSet matches(777);
  matches.set_range(0, 777);  // what was there before does not matter
  for (std::size_t lag = 1; lag <= text.size() + 130; ++lag) {
    planes.find_matches(lag, is_N_wild, matches);
    ASSERT_EQ(matches.size(), text.size());
    for (std::size_t x = 0; x < text.size(); ++x) {
      ASSERT_EQ(matches.test(x), plain_match(text, x, lag, is_N_wild))
          << text << " lag " << lag << " base " << x;
    }
    for (std::size_t x = text.size(); x < matches.words().size() * kWordBits; ++x) {
      ASSERT_FALSE(matches.test(x)) << "beyond " << text << " lag " << lag;
    }
  }
}

std::string draw_text(RandomEngine& engine, std::size_t length, const std::string& alphabet) {
  return draw_chance(engine, 50) ? draw_letters(engine, length, alphabet)
                                 : draw_array(engine, length, 9, 10);
}

TEST(BasePlanes, compare_every_pair_of_letters) {
  for (const char first : std::string("ACGTN")) {
    for (const char second : std::string("ACGTN")) {
      for (const bool is_N_wild : {false, true}) {
        ASSERT_NO_FATAL_FAILURE(expect_matches_of({first, second}, is_N_wild));
      }
    }
  }
}

TEST(BasePlanes, find_the_matches_of_all_lags) {
  RandomEngine engine(2);
  for (const std::size_t length :
       std::vector<std::size_t>{0, 1, 2, 7, 8, 9, 63, 64, 65, 127, 128, 129, 192, 193, 250}) {
    for (const char* const alphabet : {"ACGT", "AC", "ACGTN", "AN", "N"}) {
      const std::string text = draw_text(engine, length, alphabet);
      ASSERT_NO_FATAL_FAILURE(expect_matches_of(text, false));
      ASSERT_NO_FATAL_FAILURE(expect_matches_of(text, true));
    }
  }
}

TEST(BasePlanes, show_where_the_Ns_are) {
  RandomEngine engine(3);
  for (const std::size_t length : std::vector<std::size_t>{0, 1, 63, 64, 65, 128, 200}) {
    const std::string text = draw_text(engine, length, "ACGTN");
    const CBasePlanes planes = planes_of(text);
    ASSERT_EQ(planes.length(), length);
    EXPECT_EQ(planes.has_Ns(), text.find('N') != std::string::npos) << text;
    for (std::size_t x = 0; x < length; ++x) {
      ASSERT_EQ(planes.bits_of_Ns().test(x), text[x] == 'N') << text << " base " << x;
    }
  }
}

TEST(BasePlanes, see_an_N_within_64_bases) {
  constexpr std::size_t kLength = 330;
  constexpr std::size_t kNear = 64;
  for (std::size_t position = 0; position < kLength; ++position) {
    std::string text(kLength, 'A');
    text[position] = 'N';
    const CBasePlanes planes = planes_of(text);
    for (std::size_t first = 0; first <= kLength; first += 3) {
      for (std::size_t last = first; last <= kLength; last += 7) {
        const bool is_near = position + kNear >= first && position < last + kNear;
        // Whole words on both sides of those of the range: nothing is seen beyond two of them.
        const bool is_far = position + 2 * kNear < first || position >= last + 2 * kNear + 1;
        const bool is_seen = planes.has_N_near(first, last);
        ASSERT_TRUE(is_seen || !is_near) << position << " from " << first << "," << last;
        ASSERT_FALSE(is_seen && is_far) << position << " from " << first << "," << last;
      }
    }
  }
}

TEST(BasePlanes, see_no_N_where_there_is_none) {
  const CBasePlanes planes = planes_of(std::string(200, 'G'));
  EXPECT_FALSE(planes.has_Ns());
  EXPECT_FALSE(planes.has_N_near(0, 200));
  EXPECT_FALSE(planes_of("").has_N_near(0, 0));
}

}  // namespace
}  // namespace quorix::testing
