// Where a site has the place of its next character as its key, all units that are read on from that
// place have the same edit made there.

#include "search/extension/site_key.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "search/extension/direction.h"
#include "search/extension/look_ahead.h"
#include "support/random_dna.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using testing::CBases;
using testing::draw_between;
using testing::draw_letters;
using testing::draw_number;
using testing::RandomEngine;

/// Characters before the place, and at least as many after those of a window.
constexpr std::size_t kAround = 80;
constexpr std::size_t kWindow = kWindowCharacters;

/// Bases that follow `characters` over deletions, each after a few matches, and then bases of
/// their own.
std::string bases_after_deletions(RandomEngine& engine, const std::string& characters) {
  std::string bases;
  std::size_t next = 0;
  for (std::size_t deletions = draw_between(engine, 4, 8); deletions > 0; --deletions) {
    ++next;
    const std::size_t run = draw_between(engine, 2, 8);
    bases += characters.substr(next, run);
    next += run;
  }
  return bases + draw_letters(engine, kAround, "ACGT");
}

/// What stands before the place, from it on, and beyond the edge, as an extension to the right
/// reads it.
std::string draw_site(RandomEngine& engine) {
  const std::string characters = draw_letters(engine, kWindow + kAround, "AAC");
  return draw_letters(engine, kAround, "ACGT") + characters +
         bases_after_deletions(engine, characters);
}

/// The same where the last character of the window decides. A deletion of each C and a mismatch
/// there, which loses a base as well, are worth the same. Over eight deletions alone a path comes
/// to the G's after the window, at the character after its last one.
std::string draw_tied_site(RandomEngine& engine) {
  constexpr std::size_t kDeletions = CMatchWindow::kMaxDiagonal;
  constexpr std::size_t kMatches = CMatchWindow::kMaxBases - 1;
  std::string characters(kMatches, 'A');
  for (std::size_t i = 1; i < kDeletions; ++i) {
    characters.insert(draw_between(engine, 0, characters.size()), 1, 'C');
  }
  return std::string(kAround, 'G') + 'C' + characters +
         draw_letters(engine, kWindow + kAround - 1 - characters.size(), "ACT") +
         std::string(kMatches, 'A') + std::string(kAround, 'G');
}

/// A repeat at the site whose unit has `characters_left` from the place on and `characters_before`
/// before it.
template <class Direction>
Csat repeat_at(const CBases& text, std::size_t characters_before, std::size_t characters_left,
               std::int64_t score) {
  const std::size_t edge = kAround + kWindow + kAround;
  Csat sat;
  if (Direction::kIndex == Rightward::kIndex) {
    sat.unit_begin = text.at(kAround - characters_before);
    sat.unit_end = text.at(kAround + characters_left);
    sat.unit_pos_right = text.at(kAround);
    sat.start = sat.unit_begin;
    sat.end = text.at(edge);
  } else {
    const char* const end = text.end();
    sat.unit_begin = end - kAround - characters_left;
    sat.unit_end = end - kAround + characters_before;
    sat.unit_pos_left = end - kAround - 1;
    sat.start = end - edge;
    sat.end = sat.unit_end;
  }
  sat.score = static_cast<std::int32_t>(score);
  return sat;
}

/// The edit that a look-ahead chooses, and whether it has seen no more than its window.
struct Choice {
  std::size_t edit;
  bool is_in_window;
};

template <class Direction>
Choice choice_at(Csat& sat, const char* limit) {
  CLookAhead look_ahead;
  const std::size_t edit = look_ahead.best_edit<Direction>(
      {Direction::edge(sat), Direction::unit_cursor(sat), sat.score, sat.score, 0},
      {sat.unit_begin, sat.unit_end, sat.unit_length(), limit});
  return {edit, look_ahead.run_work().unwindowed_runs == 0};
}

class PlaceOfASite : public testing::CSearchSettings {
 protected:
  void SetUp() override {
    CSearchSettings::SetUp();
    // As deep as windows serve, so that deletions lead to the farthest characters.
    global_maximum_recursion_depth = CGainWindow::kMaxEdits + 1;
    set_penalties(-2, -3);
  }

  template <class Direction>
  void compare_units() {
    RandomEngine engine(71);
    int compared = 0;
    int differing = 0;
    for (int round = 0; round < 1000; ++round) {
      std::string bases = round % 2 == 0 ? draw_site(engine) : draw_tied_site(engine);
      if (Direction::kIndex == Leftward::kIndex) std::reverse(bases.begin(), bases.end());
      const CBases text(bases);
      const char* const limit = Direction::kIndex == Rightward::kIndex ? text.end() : text.before();
      const std::size_t before = draw_between(engine, 1, kAround);
      const std::size_t left = kWindow + draw_between(engine, 1, kAround);
      Csat unit = repeat_at<Direction>(text, kAround, left, draw_number(engine, 0, 50));
      Csat shortest = repeat_at<Direction>(text, before, kWindow, draw_number(engine, 0, 50));
      Csat shorter = repeat_at<Direction>(text, before, kWindow - 1, draw_number(engine, 0, 50));
      ASSERT_TRUE(is_place_cacheable<Direction>(unit, limit, 50));
      ASSERT_TRUE(is_place_cacheable<Direction>(shortest, limit, 50));
      ASSERT_FALSE(is_place_cacheable<Direction>(shorter, limit, 50));
      ASSERT_EQ(place_code_of<Direction>(unit), place_code_of<Direction>(shortest));
      const Choice choice = choice_at<Direction>(unit, limit);
      if (!choice.is_in_window) continue;
      ++compared;
      EXPECT_EQ(choice_at<Direction>(shortest, limit).edit, choice.edit) << round << " " << bases;
      // With one character less the unit begins anew within the window.
      differing += choice_at<Direction>(shorter, limit).edit != choice.edit ? 1 : 0;
    }
    EXPECT_GT(compared, 300);
    EXPECT_GT(differing, 0);
  }
};

TEST_F(PlaceOfASite, is_all_that_its_edit_depends_on_to_the_right) {
  compare_units<Rightward>();
}

TEST_F(PlaceOfASite, is_all_that_its_edit_depends_on_to_the_left) {
  compare_units<Leftward>();
}

// The unit has 136 characters, and the bases beyond the edge are all that a score may still rise
// by.
TEST_F(PlaceOfASite, is_no_key_where_the_score_or_the_path_matters) {
  RandomEngine engine(72);
  const CBases text(draw_tied_site(engine));
  const std::int64_t bases_beyond = text.end() - text.at(kAround + kWindow + kAround);
  const auto has_key = [&](std::int64_t score, std::int64_t best_score) {
    Csat sat = repeat_at<Rightward>(text, kAround, kWindow, score);
    return is_place_cacheable<Rightward>(sat, text.end(), best_score);
  };
  // Eight indels leave a point above the floor.
  EXPECT_TRUE(has_key(-111, 0));
  EXPECT_FALSE(has_key(-112, 0));

  global_maximum_scorereduction = static_cast<int>(50 + bases_beyond + 136);
  EXPECT_TRUE(has_key(20, 50));
  EXPECT_FALSE(has_key(20, 51));
  EXPECT_TRUE(has_key(50, 20));
  EXPECT_FALSE(has_key(51, 20));

  global_maximum_scorereduction = kNoScoreReductionLimit;
  Csat sat = repeat_at<Rightward>(text, kAround, kWindow, 20);
  EXPECT_TRUE(is_place_cacheable<Rightward>(sat, text.end(), 20));
  sat.recursion_depth = 1;
  EXPECT_FALSE(is_place_cacheable<Rightward>(sat, text.end(), 20));
}

}  // namespace
}  // namespace quorix
