// What is stored of an edit, and for which edit sites it holds.

#include "search/extension/edit_cache.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "unit/search/work_in_words.h"

namespace quorix {
namespace {

using testing::in_words;

constexpr char kSiteText[] = "ACGTACGTACGTACGT";
constexpr const char* kSiteTextEnd = kSiteText + 16;

std::uint64_t code(const std::string& unit, std::size_t phase, bool is_rightward) {
  return unit_code_of(unit.data() + phase, unit.data(), unit.data() + unit.size(), is_rightward);
}

SiteKey site(std::size_t edge, std::uint64_t unit_code, std::int64_t score_class) {
  return {kSiteText + edge, unit_code, score_class};
}

TEST(UnitCode, is_the_same_for_all_rotations_of_a_unit_with_the_same_character_next) {
  for (const bool is_rightward : {false, true}) {
    EXPECT_EQ(code("ACGGT", 2, is_rightward), code("GGTAC", 0, is_rightward));
    EXPECT_EQ(code("ACGGT", 4, is_rightward), code("TACGG", 0, is_rightward));
    EXPECT_NE(code("ACGGT", 2, is_rightward), code("ACGGT", 3, is_rightward));
  }
}

TEST(UnitCode, differs_between_bases_lengths_and_directions) {
  EXPECT_NE(code("ACG", 0, true), code("ACT", 0, true));
  EXPECT_NE(code("A", 0, true), code("AA", 0, true));
  EXPECT_NE(code("AA", 0, true), code("AA", 0, false));
  const std::string longest(kMaxCachedUnit, 'G');
  std::string other = longest;
  other[0] = 'C';
  EXPECT_NE(code(longest, 0, true), code(other, 0, true));
  EXPECT_NE(code(longest, 0, true), code(longest, 0, false));
}

TEST(EditCache, is_empty_at_first) {
  CEditCache cache;
  EXPECT_EQ(cache.find(site(3, 7, 1), kSiteTextEnd), '\0');
}

TEST(EditCache, finds_an_edit_for_its_own_site_alone) {
  CEditCache cache;
  cache.store(site(3, 7, 1), kSiteTextEnd, 'I');
  EXPECT_EQ(cache.find(site(3, 7, 1), kSiteTextEnd), 'I');
  EXPECT_EQ(cache.find(site(4, 7, 1), kSiteTextEnd), '\0');
  EXPECT_EQ(cache.find(site(3, 8, 1), kSiteTextEnd), '\0');
  EXPECT_EQ(cache.find(site(3, 7, 2), kSiteTextEnd), '\0');
  EXPECT_EQ(cache.find(site(3, 7, 1), kSiteText + 15), '\0');
}

// Of as many other keys some have the slot of the stored one; of those that are shifted with their
// limit all have it.
TEST(EditCache, keeps_apart_what_shares_a_slot) {
  const std::string text(5000, 'A');
  const char* const edge = text.data();
  const char* const limit = edge + 4500;
  CEditCache cache;
  cache.store({edge, 7, 1}, limit, 'I');
  for (int i = 1; i <= 400; ++i) {
    EXPECT_EQ(cache.find({edge + i, 7, 1}, limit), '\0') << i;
    EXPECT_EQ(cache.find({edge, 7 + static_cast<std::uint64_t>(i), 1}, limit), '\0') << i;
    EXPECT_EQ(cache.find({edge, 7, 1 + i}, limit), '\0') << i;
    EXPECT_EQ(cache.find({edge, 7, 1}, limit + i), '\0') << i;
    EXPECT_EQ(cache.find({edge + i, 7, 1}, limit + i), '\0') << i;
  }
  EXPECT_EQ(cache.find({edge, 7, 1}, limit), 'I');
}

TEST(EditCache, keeps_the_last_edit_of_a_site) {
  CEditCache cache;
  cache.store(site(3, 7, 1), kSiteTextEnd, 'I');
  cache.store(site(3, 7, 1), kSiteTextEnd, 'D');
  EXPECT_EQ(cache.find(site(3, 7, 1), kSiteTextEnd), 'D');
}

TEST(EditCache, forgets_few_of_as_many_sites_as_it_has_slots_for) {
  for (const std::uint64_t count : {30U, 100U, 500U, 2000U, 8000U}) {
    CEditCache cache;
    for (std::uint64_t i = 0; i < count; ++i) cache.store(site(i % 16, i, 0), kSiteTextEnd, 'I');
    std::uint64_t known = 0;
    for (std::uint64_t i = 0; i < count; ++i)
      known += cache.find(site(i % 16, i, 0), kSiteTextEnd) == 'I' ? 1 : 0;
    EXPECT_GT(known, count / 2) << count;
  }
}

TEST(EditCache, never_returns_the_edit_of_another_site_when_it_is_full) {
  CEditCache cache;
  constexpr std::uint64_t kMany = 100'000;
  const auto kind_of = [](std::uint64_t i) { return "MID"[i % 3]; };
  for (std::uint64_t i = 0; i < kMany; ++i)
    cache.store(site(i % 16, i, 0), kSiteTextEnd, kind_of(i));
  std::uint64_t known = 0;
  for (std::uint64_t i = 0; i < kMany; ++i) {
    const char kind = cache.find(site(i % 16, i, 0), kSiteTextEnd);
    if (kind == '\0') continue;
    ++known;
    EXPECT_EQ(kind, kind_of(i));
  }
  EXPECT_GT(known, 1000U);
}

// The counts were read off the cache: they show where it forgets more, or moves more.
TEST(EditCache, finds_and_moves_as_many_as_its_slots_allow_for) {
  CEditCache cache;
  for (std::uint64_t i = 0; i < 30'000; ++i) {
    cache.store(site(i % 16, i / 5, static_cast<std::int64_t>(i % 7)), kSiteTextEnd, 'I');
    (void)cache.find(site(i / 2 % 16, i / 10, static_cast<std::int64_t>(i / 2 % 7)), kSiteTextEnd);
    if (i == 1000) {
      EXPECT_EQ(in_words(cache.work()), "memo: hits 895, misses 106, stored 1001, moved 537\n");
    }
  }
  EXPECT_EQ(in_words(cache.work()), "memo: hits 17878, misses 12122, stored 30000, moved 2123\n");
}

TEST(EditCache, forgets_everything_when_cleared) {
  CEditCache cache;
  cache.store(site(3, 7, 1), kSiteTextEnd, 'I');
  cache.clear();
  EXPECT_EQ(cache.find(site(3, 7, 1), kSiteTextEnd), '\0');
}

}  // namespace
}  // namespace quorix
