// Ways that are kept, beside the same ways walked stop by stop.

#include "search/extension/growth_paths.h"

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
using StopId = CGrowthPaths::StopId;

constexpr std::int64_t kFreeScore = 25;
constexpr std::int64_t kFloor = -6;
constexpr std::uint64_t kUnitCode = 7;

/// A land of stops without bases: what is met behind a stop is drawn from its place, and from the
/// score where that is low.
class CLand {
 public:
  CLand(std::size_t length, std::uint64_t seed, std::int64_t mean_gain)
      : text_(length, 'A'), seed_(seed), mean_gain_(mean_gain) {}

  [[nodiscard]] const char* at(std::size_t place) const { return text_.data() + place; }
  [[nodiscard]] const char* end() const { return text_.data() + text_.size(); }

  [[nodiscard]] char kind_at(const GrowthStop& stop) const { return "MID"[drawn(stop) % 3]; }

  /// Makes the edit, and goes on to the next stop. False if there is none.
  [[nodiscard]] bool step(GrowthStop& stop) const {
    const std::uint64_t drawn_here = drawn(stop);
    const char kind = kind_at(stop);
    stop.mismatches += kind == 'M' ? 1 : 0;
    stop.insertions += kind == 'I' ? 1 : 0;
    stop.deletions += kind == 'D' ? 1 : 0;
    const auto matches = static_cast<std::int64_t>(drawn_here / 3 % 4 + 1);
    stop.score +=
        static_cast<std::int32_t>(static_cast<std::int64_t>(drawn_here / 12 % 7) - 3 + mean_gain_);
    stop.n_count += static_cast<std::int64_t>(drawn_here / 100 % 2);
    if (end() - stop.edge <= matches) return false;
    stop.edge += matches;
    return stop.score > kFloor;
  }

 private:
  [[nodiscard]] std::uint64_t drawn(const GrowthStop& stop) const {
    const auto place = static_cast<std::uint64_t>(stop.edge - text_.data());
    const auto score_class =
        static_cast<std::uint64_t>(std::min<std::int64_t>(stop.score, kFreeScore) + 100);
    std::uint64_t mixed = (place * 1000 + score_class + seed_) * 0x9E3779B97F4A7C15U;
    mixed ^= mixed >> 29U;
    return mixed * 0xBF58476D1CE4E5B9U >> 20U;
  }

  std::string text_;
  std::uint64_t seed_;
  std::int64_t mean_gain_;
};

bool operator==(const GrowthStop& left, const GrowthStop& right) {
  return left.edge == right.edge && left.score == right.score &&
         left.mismatches == right.mismatches && left.insertions == right.insertions &&
         left.deletions == right.deletions && left.n_count == right.n_count;
}

/// Where a way ended, the first of its best stops, and its edits.
struct Walk {
  GrowthStop last;
  GrowthStop best;
  std::vector<Edit> edits;
  std::size_t stops_on_foot = 0;
};

Edit edit_at(const GrowthStop& stop, char kind) {
  return {kind == 'D' ? stop.edge : stop.edge - 1, kind};
}

Walk walk_on_foot(const CLand& land, GrowthStop stop) {
  Walk walk{stop, stop, {}};
  do {
    walk.last = stop;
    if (stop.score > walk.best.score) walk.best = stop;
    walk.edits.push_back(edit_at(stop, land.kind_at(stop)));
    ++walk.stops_on_foot;
  } while (land.step(stop));
  walk.edits.pop_back();
  return walk;
}

void move(const CGrowthPaths& paths, StopId from, StopId to, GrowthStop& stop,
          std::vector<Edit>& edits) {
  fastvector<Edit> added;
  paths.append_edits(from, to, -1, added);
  edits.insert(edits.end(), added.begin(), added.end());
  const CGrowthPaths::Stretch stretch = paths.between(from, to);
  stop.edge = stretch.edge;
  stop.score += static_cast<std::int32_t>(stretch.score);
  stop.mismatches += stretch.mismatches;
  stop.insertions += stretch.insertions;
  stop.deletions += stretch.deletions;
  stop.n_count += stretch.n_count;
}

Walk walk_with_paths(const CLand& land, CGrowthPaths& paths, GrowthStop stop) {
  Walk walk{stop, stop, {}};
  paths.begin_way();
  do {
    if (stop.score > walk.best.score) walk.best = stop;
    while (true) {
      const CGrowthPaths::Way way = paths.follow(stop, kFreeScore, walk.best.score);
      if (way.from == CGrowthPaths::kNone) break;
      StopId at = way.from;
      if (way.best != CGrowthPaths::kNone) {
        move(paths, at, way.best, stop, walk.edits);
        walk.best = stop;
        at = way.best;
      }
      move(paths, at, way.to, stop, walk.edits);
    }
    walk.last = stop;
    const char kind = land.kind_at(stop);
    walk.edits.push_back(edit_at(stop, kind));
    paths.note(stop, kFreeScore, kind);
    ++walk.stops_on_foot;
  } while (land.step(stop));
  paths.end_way();
  walk.edits.pop_back();
  return walk;
}

GrowthStop stop_at(const char* edge, std::int32_t score) {
  return {edge, kUnitCode, score, 0, 0, 0, 0};
}

void expect_same_walk(const Walk& walk, const Walk& expected) {
  EXPECT_TRUE(walk.last == expected.last);
  EXPECT_TRUE(walk.best == expected.best);
  ASSERT_EQ(walk.edits.size(), expected.edits.size());
  for (std::size_t i = 0; i < walk.edits.size(); ++i) {
    ASSERT_EQ(walk.edits[i].position, expected.edits[i].position);
    ASSERT_EQ(walk.edits[i].kind, expected.edits[i].kind);
  }
}

class CWaysOfAMeanGain : public ::testing::TestWithParam<std::int64_t> {};

TEST_P(CWaysOfAMeanGain, are_those_walked_on_foot) {
  for (std::uint64_t seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const CLand land(2000, seed, GetParam());
    RandomEngine engine(seed);
    CGrowthPaths paths;
    for (int way = 0; way < 60; ++way) {
      const std::size_t place = draw_between(engine, 0, 1500);
      const auto score = static_cast<std::int32_t>(draw_between(engine, 0, 90));
      const GrowthStop first = stop_at(land.at(place), score);
      ASSERT_NO_FATAL_FAILURE(
          expect_same_walk(walk_with_paths(land, paths, first), walk_on_foot(land, first)));
      ASSERT_FALSE(HasFailure());
    }
  }
}

INSTANTIATE_TEST_SUITE_P(GrowthPaths, CWaysOfAMeanGain, ::testing::Values(-1, 0, 1));

TEST(GrowthPaths, are_not_walked_twice) {
  const CLand land(40000, 1, 1);
  CGrowthPaths paths;
  const std::size_t first = walk_with_paths(land, paths, stop_at(land.at(0), 30)).stops_on_foot;
  EXPECT_GT(first, 10000U);
  std::size_t others = 0;
  for (std::size_t place = 1; place <= 500; ++place) {
    others += walk_with_paths(land, paths, stop_at(land.at(place), 30)).stops_on_foot;
  }
  EXPECT_LT(others, 500U * 40);
}

// The counts of the next three were read off the program: they show where it did more.

TEST(GrowthPaths, are_followed_in_few_steps) {
  const CLand land(40000, 1, 1);
  CGrowthPaths paths;
  (void)walk_with_paths(land, paths, stop_at(land.at(0), 30));
  EXPECT_EQ(in_words(paths.work()), "paths: misses 15918, stored 15918, placed 15360\n");
  for (std::size_t place = 1; place <= 500; ++place) {
    (void)walk_with_paths(land, paths, stop_at(land.at(place), 30));
  }
  EXPECT_EQ(in_words(paths.work()),
            "paths: hits 530, misses 16763, steps 4698, stored 16263, placed 15360\n");
}

TEST(GrowthPaths, are_found_in_spite_of_low_scores) {
  const CLand land(3000, 3, 0);
  CGrowthPaths paths;
  RandomEngine engine(3);
  for (int way = 0; way < 3000; ++way) {
    const auto score = static_cast<std::int32_t>(draw_between(engine, 0, 40));
    (void)walk_with_paths(land, paths, stop_at(land.at(draw_between(engine, 0, 2900)), score));
  }
  EXPECT_EQ(in_words(paths.work()),
            "paths: hits 17358, misses 22768, steps 275462, stored 19881, placed 31744\n");
}

TEST(GrowthPaths, of_other_units_lead_nowhere) {
  const CLand land(2000, 1, 1);
  CGrowthPaths paths;
  const GrowthStop first = stop_at(land.at(0), 30);
  (void)walk_with_paths(land, paths, first);
  EXPECT_NE(paths.follow(first, kFreeScore, 30).from, CGrowthPaths::kNone);
  GrowthStop other = first;
  ++other.unit_code;
  EXPECT_EQ(paths.follow(other, kFreeScore, 30).from, CGrowthPaths::kNone);
}

TEST(GrowthPaths, are_shared_by_all_scores_from_the_free_one_on) {
  const CLand land(2000, 1, 1);
  CGrowthPaths paths;
  (void)walk_with_paths(land, paths, stop_at(land.at(0), 30));
  const auto leads_on = [&](std::int32_t score) {
    return paths.follow(stop_at(land.at(0), score), kFreeScore, 30).from != CGrowthPaths::kNone;
  };
  EXPECT_TRUE(leads_on(29));
  EXPECT_TRUE(leads_on(kFreeScore));
  EXPECT_FALSE(leads_on(kFreeScore - 1));
}

TEST(GrowthPaths, are_forgotten_when_cleared) {
  const CLand land(2000, 1, 1);
  CGrowthPaths paths;
  const GrowthStop first = stop_at(land.at(0), 30);
  (void)walk_with_paths(land, paths, first);
  paths.clear();
  EXPECT_EQ(paths.follow(first, kFreeScore, 30).from, CGrowthPaths::kNone);
}

TEST(GrowthPaths, are_right_and_of_use_again_when_there_was_no_room_for_more) {
  const CLand land(500'000, 1, 1);
  CGrowthPaths paths;
  for (std::uint64_t unit_code = 1; unit_code <= 6; ++unit_code) {  // 200,000 stops each
    SCOPED_TRACE("unit " + std::to_string(unit_code));
    GrowthStop first = stop_at(land.at(0), 30);
    first.unit_code = unit_code;
    expect_same_walk(walk_with_paths(land, paths, first), walk_on_foot(land, first));
    (void)walk_with_paths(land, paths, first);
    const Walk again = walk_with_paths(land, paths, first);
    expect_same_walk(again, walk_on_foot(land, first));
    EXPECT_LT(again.stops_on_foot, 100U);
  }
  EXPECT_EQ(in_words(paths.work()),
            "paths: hits 70, misses 1599185, steps 237, stored 1396043, forgotten 996245, placed "
            "1569792\n");
}

/// Notes `count` stops as one way, each one base and no point after the one before.
void note_way(CGrowthPaths& paths, const CLand& land, std::uint64_t unit_code, std::size_t count) {
  paths.begin_way();
  for (std::size_t place = 0; place < count; ++place) {
    GrowthStop stop = stop_at(land.at(place), 30);
    stop.unit_code = unit_code;
    stop.mismatches = static_cast<std::int64_t>(place);
    paths.note(stop, kFreeScore, 'M');
  }
  paths.end_way();
}

/// True if some of the first `count` stops of the unit code lead on to others. Each by itself may
/// have been replaced by one that shares its place.
bool is_any_kept(CGrowthPaths& paths, const CLand& land, std::uint64_t unit_code,
                 std::size_t count) {
  for (std::size_t place = 0; place < count; ++place) {
    GrowthStop stop = stop_at(land.at(place), 30);
    stop.unit_code = unit_code;
    if (paths.follow(stop, kFreeScore, 30).from != CGrowthPaths::kNone) return true;
  }
  return false;
}

TEST(GrowthPaths, forget_everything_before_the_way_that_follows_the_one_without_room) {
  const CLand land(CGrowthPaths::kMaxStops, 1, 1);
  CGrowthPaths paths;
  note_way(paths, land, 1, 100);
  note_way(paths, land, 2, CGrowthPaths::kMaxStops);
  // What is kept stays until the next way begins.
  EXPECT_TRUE(is_any_kept(paths, land, 2, CGrowthPaths::kMaxStops));
  paths.begin_way();
  EXPECT_FALSE(is_any_kept(paths, land, 1, 100));
  EXPECT_FALSE(is_any_kept(paths, land, 2, CGrowthPaths::kMaxStops));
  note_way(paths, land, 3, 100);
  EXPECT_FALSE(is_any_kept(paths, land, 1, 100));
  EXPECT_TRUE(is_any_kept(paths, land, 3, 100));
  note_way(paths, land, 1, 50);
  EXPECT_TRUE(is_any_kept(paths, land, 1, 50));
  EXPECT_TRUE(is_any_kept(paths, land, 3, 100));
}

TEST(GrowthPaths, keep_stops_up_to_their_limit) {
  constexpr std::size_t kLimit = 64;
  const CLand land(200, 1, 1);
  const auto is_kept = [&](std::size_t count) {
    CGrowthPaths paths(kLimit);
    note_way(paths, land, 1, count);
    return is_any_kept(paths, land, 1, count);
  };
  EXPECT_TRUE(is_kept(kLimit - 1));
  EXPECT_FALSE(is_kept(kLimit + 1));

  constexpr std::size_t kThird = kLimit / 3;
  CGrowthPaths paths(kLimit);
  for (std::uint64_t unit_code = 1; unit_code <= 3; ++unit_code) {
    note_way(paths, land, unit_code, kThird);
  }
  for (std::uint64_t unit_code = 1; unit_code <= 3; ++unit_code) {
    EXPECT_TRUE(is_any_kept(paths, land, unit_code, kThird));
  }
  note_way(paths, land, 4, 2);  // no room for it
  note_way(paths, land, 5, 2);
  for (std::uint64_t unit_code = 1; unit_code <= 4; ++unit_code) {
    EXPECT_FALSE(is_any_kept(paths, land, unit_code, kThird));
  }
  EXPECT_TRUE(is_any_kept(paths, land, 5, 2));
}

TEST(GrowthPaths, are_those_walked_on_foot_with_little_room) {
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const CLand land(1000, seed, 0);
    RandomEngine engine(seed);
    CGrowthPaths paths(draw_between(engine, 2, 400));
    for (int way = 0; way < 100; ++way) {
      const std::size_t place = draw_between(engine, 0, 700);
      const auto score = static_cast<std::int32_t>(draw_between(engine, 0, 90));
      const GrowthStop first = stop_at(land.at(place), score);
      ASSERT_NO_FATAL_FAILURE(
          expect_same_walk(walk_with_paths(land, paths, first), walk_on_foot(land, first)));
      ASSERT_FALSE(HasFailure());
    }
  }
}

}  // namespace
}  // namespace quorix
