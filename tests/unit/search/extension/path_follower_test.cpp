// The safe score, and extensions over more edits than the path cache has room for.

#include "search/extension/path_follower.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "settings/settings.h"
#include "support/default_settings.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using MinSafeScore = testing::CDefaultSettings;

constexpr std::int64_t kMaxScore = std::numeric_limits<std::int32_t>::max();

TEST_F(MinSafeScore, leaves_a_path_all_its_edits) {
  global_mismatch_score = -6;
  global_indel_score = -9;
  global_maximum_recursion_depth = 5;
  // Five indels lead from 42 to -3, and -4 is the floor of units of 4.
  EXPECT_EQ(min_safe_score(4), 42);
  global_mismatch_score = -11;
  EXPECT_EQ(min_safe_score(4), 52);
  global_maximum_recursion_depth = kMaxRecursionLimit;
  EXPECT_EQ(min_safe_score(4), 255 * 11 - 3);
}

TEST_F(MinSafeScore, is_above_every_score_if_a_path_may_make_any_number_of_edits) {
  global_maximum_recursion_depth = kMaxRecursionLimit + 1;
  EXPECT_GT(min_safe_score(28), kMaxScore);
  global_maximum_recursion_depth = std::numeric_limits<int>::max();
  EXPECT_GT(min_safe_score(1), kMaxScore);
}

using PathFollower = testing::CSearchSettings;

// The array has an edit every four bases, more than are cached. The extensions after the first one
// begin with an empty cache, and follow each other near the end of the text.
TEST_F(PathFollower, without_room_gives_the_extensions_of_a_fresh_search) {
  set_penalties(-2, -2);
  global_maximum_recursion_depth = 1;
  constexpr std::size_t kCopies = kMaxCachedSites + 2000;
  const std::string bases = testing::repeated("AAAC", kCopies);
  testing::CSearchedSequence sequence(bases);
  Csat whole;
  whole.init_from_unit(sequence.at(0), sequence.at(1));
  sequence.search.extend_imperfect_forward(whole, sequence.end());
  // Two matches, then one point more for each copy.
  EXPECT_EQ(whole.score, static_cast<std::int32_t>(kCopies + 1));
  EXPECT_EQ(whole.mismatches, static_cast<std::int64_t>(kCopies - 1));
  EXPECT_EQ(whole.missense.size(), kCopies - 1);

  for (const std::size_t copies : {200U, 100U, 300U, 300U}) {
    const std::string last_bases = testing::repeated("AAAC", copies);
    testing::CSearchedSequence fresh(last_bases);
    Csat expected;
    expected.init_from_unit(fresh.at(0), fresh.at(1));
    fresh.search.extend_imperfect_forward(expected, fresh.end());
    EXPECT_EQ(expected.missense.size(), copies - 1);

    const char* const seed = sequence.end() - last_bases.size();
    Csat sat;
    sat.init_from_unit(seed, seed + 1);
    sequence.search.extend_imperfect_forward(sat, sequence.end());
    EXPECT_EQ(testing::in_words(sat, seed), testing::in_words(expected, fresh.at(0)));
  }
}

}  // namespace
}  // namespace quorix
