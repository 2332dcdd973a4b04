// Cached paths, beside the same paths extended site by site.

#include "search/extension/path_cache.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "support/random_dna.h"
#include "unit/search/work_in_words.h"

namespace quorix {
namespace {

using testing::draw_between;
using testing::in_words;
using testing::RandomEngine;
using SiteId = CPathCache::SiteId;

constexpr std::int64_t kSafeScore = 25;
constexpr std::int64_t kFloor = -6;
constexpr std::uint64_t kUnitCode = 7;

/// A text of edit sites without bases: what follows a site is drawn from its place, and from the
/// score where that is low.
class CSiteText {
 public:
  CSiteText(std::size_t length, std::uint64_t seed, std::int64_t mean_gain)
      : text_(length, 'A'), seed_(seed), mean_gain_(mean_gain) {}

  [[nodiscard]] const char* at(std::size_t place) const { return text_.data() + place; }
  [[nodiscard]] const char* end() const { return text_.data() + text_.size(); }

  [[nodiscard]] char kind_at(const EditSite& site) const { return "MID"[drawn(site) % 3]; }

  /// Makes the edit, and extends to the next site. Returns false if there is none.
  [[nodiscard]] bool step(EditSite& site) const {
    const std::uint64_t drawn_here = drawn(site);
    const char kind = kind_at(site);
    site.mismatches += kind == 'M' ? 1 : 0;
    site.insertions += kind == 'I' ? 1 : 0;
    site.deletions += kind == 'D' ? 1 : 0;
    const auto matches = static_cast<std::int64_t>(drawn_here / 3 % 4 + 1);
    site.score +=
        static_cast<std::int32_t>(static_cast<std::int64_t>(drawn_here / 12 % 7) - 3 + mean_gain_);
    site.n_count += static_cast<std::int64_t>(drawn_here / 100 % 2);
    if (end() - site.edge <= matches) return false;
    site.edge += matches;
    return site.score > kFloor;
  }

 private:
  [[nodiscard]] std::uint64_t drawn(const EditSite& site) const {
    const auto place = static_cast<std::uint64_t>(site.edge - text_.data());
    const auto score_class =
        static_cast<std::uint64_t>(std::min<std::int64_t>(site.score, kSafeScore) + 100);
    std::uint64_t mixed = (place * 1000 + score_class + seed_) * 0x9E3779B97F4A7C15U;
    mixed ^= mixed >> 29U;
    return mixed * 0xBF58476D1CE4E5B9U >> 20U;
  }

  std::string text_;
  std::uint64_t seed_;
  std::int64_t mean_gain_;
};

bool operator==(const EditSite& left, const EditSite& right) {
  return left.edge == right.edge && left.score == right.score &&
         left.mismatches == right.mismatches && left.insertions == right.insertions &&
         left.deletions == right.deletions && left.n_count == right.n_count;
}

/// Where an extension ended, the first of its best sites, and its edits.
struct Extension {
  EditSite last;
  EditSite best;
  std::vector<Edit> edits;
  std::size_t uncached_sites = 0;
};

Edit edit_at(const EditSite& site, char kind) {
  return {kind == 'D' ? site.edge : site.edge - 1, kind};
}

Extension extend_site_by_site(const CSiteText& text, EditSite site) {
  Extension extension{site, site, {}};
  do {
    extension.last = site;
    if (site.score > extension.best.score) extension.best = site;
    extension.edits.push_back(edit_at(site, text.kind_at(site)));
    ++extension.uncached_sites;
  } while (text.step(site));
  extension.edits.pop_back();
  return extension;
}

void move(const CPathCache& paths, SiteId from, SiteId to, EditSite& site,
          std::vector<Edit>& edits) {
  fastvector<Edit> added;
  paths.append_edits(from, to, -1, added);
  edits.insert(edits.end(), added.begin(), added.end());
  const CPathCache::Sums sums = paths.between(from, to);
  site.edge = sums.edge;
  site.score += static_cast<std::int32_t>(sums.score);
  site.mismatches += sums.mismatches;
  site.insertions += sums.insertions;
  site.deletions += sums.deletions;
  site.n_count += sums.n_count;
}

Extension extend_with_paths(const CSiteText& text, CPathCache& paths, EditSite site) {
  Extension extension{site, site, {}};
  paths.begin_path();
  do {
    if (site.score > extension.best.score) extension.best = site;
    while (true) {
      const CPathCache::Section section = paths.follow(site, kSafeScore, extension.best.score);
      if (section.from == CPathCache::kNone) break;
      SiteId at = section.from;
      if (section.best != CPathCache::kNone) {
        move(paths, at, section.best, site, extension.edits);
        extension.best = site;
        at = section.best;
      }
      move(paths, at, section.to, site, extension.edits);
    }
    extension.last = site;
    const char kind = text.kind_at(site);
    extension.edits.push_back(edit_at(site, kind));
    paths.note(site, kSafeScore, kind);
    ++extension.uncached_sites;
  } while (text.step(site));
  paths.end_path();
  extension.edits.pop_back();
  return extension;
}

EditSite site_at(const char* edge, std::int32_t score) {
  return {edge, kUnitCode, score, 0, 0, 0, 0};
}

void expect_same_extension(const Extension& extension, const Extension& expected) {
  EXPECT_TRUE(extension.last == expected.last);
  EXPECT_TRUE(extension.best == expected.best);
  ASSERT_EQ(extension.edits.size(), expected.edits.size());
  for (std::size_t i = 0; i < extension.edits.size(); ++i) {
    ASSERT_EQ(extension.edits[i].position, expected.edits[i].position);
    ASSERT_EQ(extension.edits[i].kind, expected.edits[i].kind);
  }
}

class CPathsOfAMeanGain : public ::testing::TestWithParam<std::int64_t> {};

TEST_P(CPathsOfAMeanGain, give_fresh_extensions) {
  for (std::uint64_t seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const CSiteText text(2000, seed, GetParam());
    RandomEngine engine(seed);
    CPathCache paths;
    for (int path = 0; path < 60; ++path) {
      const std::size_t place = draw_between(engine, 0, 1500);
      const auto score = static_cast<std::int32_t>(draw_between(engine, 0, 90));
      const EditSite first = site_at(text.at(place), score);
      ASSERT_NO_FATAL_FAILURE(expect_same_extension(extend_with_paths(text, paths, first),
                                                    extend_site_by_site(text, first)));
      ASSERT_FALSE(HasFailure());
    }
  }
}

INSTANTIATE_TEST_SUITE_P(PathCache, CPathsOfAMeanGain, ::testing::Values(-1, 0, 1));

TEST(PathCache, leads_later_extensions_to_the_end) {
  const CSiteText text(40000, 1, 1);
  CPathCache paths;
  const std::size_t first = extend_with_paths(text, paths, site_at(text.at(0), 30)).uncached_sites;
  EXPECT_GT(first, 10000U);
  std::size_t others = 0;
  for (std::size_t place = 1; place <= 500; ++place) {
    others += extend_with_paths(text, paths, site_at(text.at(place), 30)).uncached_sites;
  }
  EXPECT_LT(others, 500U * 40);
}

// The counts of the next three were read off the program: they show where it did more.

TEST(PathCache, follows_paths_in_few_steps) {
  const CSiteText text(40000, 1, 1);
  CPathCache paths;
  (void)extend_with_paths(text, paths, site_at(text.at(0), 30));
  EXPECT_EQ(in_words(paths.work()), "paths: misses 15918, stored 15918, placed 15360\n");
  for (std::size_t place = 1; place <= 500; ++place) {
    (void)extend_with_paths(text, paths, site_at(text.at(place), 30));
  }
  EXPECT_EQ(in_words(paths.work()),
            "paths: hits 530, misses 16763, steps 4698, stored 16263, placed 15360\n");
}

TEST(PathCache, finds_paths_in_spite_of_low_scores) {
  const CSiteText text(3000, 3, 0);
  CPathCache paths;
  RandomEngine engine(3);
  for (int path = 0; path < 3000; ++path) {
    const auto score = static_cast<std::int32_t>(draw_between(engine, 0, 40));
    (void)extend_with_paths(text, paths, site_at(text.at(draw_between(engine, 0, 2900)), score));
  }
  EXPECT_EQ(in_words(paths.work()),
            "paths: hits 17358, misses 22768, steps 275462, stored 19881, placed 31744\n");
}

TEST(PathCache, keeps_units_apart) {
  const CSiteText text(2000, 1, 1);
  CPathCache paths;
  const EditSite first = site_at(text.at(0), 30);
  (void)extend_with_paths(text, paths, first);
  EXPECT_NE(paths.follow(first, kSafeScore, 30).from, CPathCache::kNone);
  EditSite other = first;
  ++other.unit_code;
  EXPECT_EQ(paths.follow(other, kSafeScore, 30).from, CPathCache::kNone);
}

TEST(PathCache, shares_paths_among_all_safe_scores) {
  const CSiteText text(2000, 1, 1);
  CPathCache paths;
  (void)extend_with_paths(text, paths, site_at(text.at(0), 30));
  const auto leads_on = [&](std::int32_t score) {
    return paths.follow(site_at(text.at(0), score), kSafeScore, 30).from != CPathCache::kNone;
  };
  EXPECT_TRUE(leads_on(29));
  EXPECT_TRUE(leads_on(kSafeScore));
  EXPECT_FALSE(leads_on(kSafeScore - 1));
}

TEST(PathCache, forgets_everything_when_cleared) {
  const CSiteText text(2000, 1, 1);
  CPathCache paths;
  const EditSite first = site_at(text.at(0), 30);
  (void)extend_with_paths(text, paths, first);
  paths.clear();
  EXPECT_EQ(paths.follow(first, kSafeScore, 30).from, CPathCache::kNone);
}

TEST(PathCache, is_right_and_of_use_again_after_it_was_full) {
  const CSiteText text(500'000, 1, 1);
  CPathCache paths;
  for (std::uint64_t unit_code = 1; unit_code <= 6; ++unit_code) {  // 200,000 sites each
    SCOPED_TRACE("unit " + std::to_string(unit_code));
    EditSite first = site_at(text.at(0), 30);
    first.unit_code = unit_code;
    expect_same_extension(extend_with_paths(text, paths, first), extend_site_by_site(text, first));
    (void)extend_with_paths(text, paths, first);
    const Extension again = extend_with_paths(text, paths, first);
    expect_same_extension(again, extend_site_by_site(text, first));
    EXPECT_LT(again.uncached_sites, 100U);
  }
  EXPECT_EQ(in_words(paths.work()),
            "paths: hits 70, misses 1599185, steps 237, stored 1396043, forgotten 996245, placed "
            "1569792\n");
}

/// Notes `count` sites as one path, each one base and no point after the one before.
void note_path(CPathCache& paths, const CSiteText& text, std::uint64_t unit_code,
               std::size_t count) {
  paths.begin_path();
  for (std::size_t place = 0; place < count; ++place) {
    EditSite site = site_at(text.at(place), 30);
    site.unit_code = unit_code;
    site.mismatches = static_cast<std::int64_t>(place);
    paths.note(site, kSafeScore, 'M');
  }
  paths.end_path();
}

/// Returns true if any of the first `count` sites of the unit code leads on to another one. Each by
/// itself may have lost its slot to another one.
bool is_any_stored(CPathCache& paths, const CSiteText& text, std::uint64_t unit_code,
                   std::size_t count) {
  for (std::size_t place = 0; place < count; ++place) {
    EditSite site = site_at(text.at(place), 30);
    site.unit_code = unit_code;
    if (paths.follow(site, kSafeScore, 30).from != CPathCache::kNone) return true;
  }
  return false;
}

TEST(PathCache, forgets_everything_before_the_path_after_the_one_without_room) {
  const CSiteText text(kMaxCachedSites, 1, 1);
  CPathCache paths;
  note_path(paths, text, 1, 100);
  note_path(paths, text, 2, kMaxCachedSites);
  // What is stored stays until the next path begins.
  EXPECT_TRUE(is_any_stored(paths, text, 2, kMaxCachedSites));
  paths.begin_path();
  EXPECT_FALSE(is_any_stored(paths, text, 1, 100));
  EXPECT_FALSE(is_any_stored(paths, text, 2, kMaxCachedSites));
  note_path(paths, text, 3, 100);
  EXPECT_FALSE(is_any_stored(paths, text, 1, 100));
  EXPECT_TRUE(is_any_stored(paths, text, 3, 100));
  note_path(paths, text, 1, 50);
  EXPECT_TRUE(is_any_stored(paths, text, 1, 50));
  EXPECT_TRUE(is_any_stored(paths, text, 3, 100));
}

TEST(PathCache, stores_sites_up_to_its_limit) {
  constexpr std::size_t kLimit = 64;
  const CSiteText text(200, 1, 1);
  const auto is_stored = [&](std::size_t count) {
    CPathCache paths(kLimit);
    note_path(paths, text, 1, count);
    return is_any_stored(paths, text, 1, count);
  };
  EXPECT_TRUE(is_stored(kLimit - 1));
  EXPECT_FALSE(is_stored(kLimit + 1));

  constexpr std::size_t kThird = kLimit / 3;
  CPathCache paths(kLimit);
  for (std::uint64_t unit_code = 1; unit_code <= 3; ++unit_code) {
    note_path(paths, text, unit_code, kThird);
  }
  for (std::uint64_t unit_code = 1; unit_code <= 3; ++unit_code) {
    EXPECT_TRUE(is_any_stored(paths, text, unit_code, kThird));
  }
  note_path(paths, text, 4, 2);  // no room for it
  note_path(paths, text, 5, 2);
  for (std::uint64_t unit_code = 1; unit_code <= 4; ++unit_code) {
    EXPECT_FALSE(is_any_stored(paths, text, unit_code, kThird));
  }
  EXPECT_TRUE(is_any_stored(paths, text, 5, 2));
}

TEST(PathCache, gives_fresh_extensions_with_little_room) {
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const CSiteText text(1000, seed, 0);
    RandomEngine engine(seed);
    CPathCache paths(draw_between(engine, 2, 400));
    for (int path = 0; path < 100; ++path) {
      const std::size_t place = draw_between(engine, 0, 700);
      const auto score = static_cast<std::int32_t>(draw_between(engine, 0, 90));
      const EditSite first = site_at(text.at(place), score);
      ASSERT_NO_FATAL_FAILURE(expect_same_extension(extend_with_paths(text, paths, first),
                                                    extend_site_by_site(text, first)));
      ASSERT_FALSE(HasFailure());
    }
  }
}

}  // namespace
}  // namespace quorix
