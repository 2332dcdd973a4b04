// Stretches that agree, against loops over single bases.

#include "search/bits/match_run.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "support/filter/plain_matches.h"
#include "unit/search/searched_sequence.h"

namespace quorix::testing {
namespace {

constexpr std::int64_t kLongest = 40;

/// Both blocks end where the stretches do, so no byte may be read beyond them.
void expect_counts(const std::string& left, const std::string& right) {
  const CBases left_bases(left);
  const CBases right_bases(right);
  for (std::int64_t max_count = 0; max_count <= static_cast<std::int64_t>(left.size());
       ++max_count) {
    ASSERT_EQ(common_prefix(left_bases.begin(), right_bases.begin(), max_count),
              plain_prefix(left, right, max_count))
        << left << " " << right << " " << max_count;
    ASSERT_EQ(common_suffix(left_bases.end(), right_bases.end(), max_count),
              plain_suffix(left, right, max_count))
        << left << " " << right << " " << max_count;
  }
}

std::string bases_of_length(std::int64_t length) {
  std::string bases;
  for (std::int64_t i = 0; i < length; ++i) bases += "ACGTTGAC"[i * i % 7];
  return bases;
}

TEST(MatchRun, is_as_long_as_nothing_differs) {
  for (std::int64_t length = 0; length <= kLongest; ++length) {
    const std::string bases = bases_of_length(length);
    const CBases left(bases);
    const CBases right(bases);
    EXPECT_EQ(common_prefix(left.begin(), right.begin(), length), length);
    EXPECT_EQ(common_suffix(left.end(), right.end(), length), length);
    ASSERT_NO_FATAL_FAILURE(expect_counts(bases, bases));
  }
}

TEST(MatchRun, ends_at_a_difference_wherever_it_is) {
  for (std::int64_t length = 1; length <= kLongest; ++length) {
    const std::string bases = bases_of_length(length);
    for (std::size_t place = 0; place < bases.size(); ++place) {
      std::string hit = bases;
      hit[place] = hit[place] == 'A' ? 'C' : 'A';  // letters that differ in one bit alone
      ASSERT_NO_FATAL_FAILURE(expect_counts(bases, hit));
      ASSERT_NO_FATAL_FAILURE(expect_counts(hit, bases));
    }
  }
}

TEST(MatchRun, ends_at_the_nearer_one_of_two_differences) {
  const std::string bases = bases_of_length(24);
  for (std::size_t first = 0; first < bases.size(); ++first) {
    for (std::size_t second = first + 1; second < bases.size(); ++second) {
      std::string hit = bases;
      hit[first] = hit[second] = 'N';
      ASSERT_NO_FATAL_FAILURE(expect_counts(bases, hit));
    }
  }
}

TEST(MatchRun, takes_stretches_of_one_text_that_overlap) {
  const std::string text = "ACACACACACACACACACACACG";
  const CBases bases(text);
  EXPECT_EQ(common_prefix(bases.at(2), bases.at(0), 21), 20);
  EXPECT_EQ(common_suffix(bases.at(22), bases.at(20), 20), 20);
  EXPECT_EQ(common_suffix(bases.end(), bases.at(21), 21), 0);
}

}  // namespace
}  // namespace quorix::testing
