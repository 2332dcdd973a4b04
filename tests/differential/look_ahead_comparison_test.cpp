// The look-ahead, and the edit that it chooses, against the plain recursion over all edits.

#include "search/extension/look_ahead.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "reference/plain_look_ahead.h"
#include "search/extension/direction.h"
#include "settings/settings.h"
#include "support/default_settings.h"
#include "support/random_dna.h"

namespace quorix::testing {
namespace {

constexpr std::uint64_t kCaseCount = 60000;

/// An edit site, in offsets into a text.
struct Site {
  std::string text;
  std::int64_t edge;       ///< the base beyond it is at this offset, or before it
  std::int64_t character;  ///< of the unit, at this offset
  std::int64_t unit_begin;
  std::int64_t unit_end;
  int score;
  int best_score;

  [[nodiscard]] std::int64_t length() const { return static_cast<std::int64_t>(text.size()); }
  [[nodiscard]] const char* at(std::int64_t offset) const { return text.data() + offset; }
  [[nodiscard]] std::int64_t unit_length() const { return unit_end - unit_begin; }
};

/// One direction: how the plain recursion is called, and where an edit leads.
struct PlainRightward {
  using Direction = Rightward;
  static std::int64_t limit(const Site& site) { return site.length(); }
  static std::int64_t edge_beyond(std::int64_t edge) { return edge + 1; }
  static std::int64_t next_character(const Site& site) {
    return site.character + 1 == site.unit_end ? site.unit_begin : site.character + 1;
  }
  static int value(const Site& site, std::int64_t edge, std::int64_t character, int score) {
    return reference::extend_imperfect_forward_leap_ahead(
        site.text, edge, character, site.unit_begin, site.unit_end, score, site.unit_length(), 1,
        limit(site), site.best_score);
  }
};

struct PlainLeftward {
  using Direction = Leftward;
  static std::int64_t limit(const Site& /*site*/) { return -1; }
  static std::int64_t edge_beyond(std::int64_t edge) { return edge - 1; }
  static std::int64_t next_character(const Site& site) {
    return (site.character == site.unit_begin ? site.unit_end : site.character) - 1;
  }
  static int value(const Site& site, std::int64_t edge, std::int64_t character, int score) {
    return reference::extend_imperfect_backward_leap_ahead(
        site.text, edge, character, site.unit_begin, site.unit_end, score, site.unit_length(), 1,
        limit(site), site.best_score);
  }
};

/// The edit of the highest value, by trying all three.
template <class Plain>
std::size_t plain_best_edit(const Site& site) {
  struct Edited {
    std::int64_t edge;
    std::int64_t character;
    int score;
  };
  const std::int64_t next = Plain::next_character(site);
  const Edited edits[] = {
      {Plain::edge_beyond(site.edge), next, site.score + global_mismatch_score},
      {Plain::edge_beyond(site.edge), site.character, site.score + global_indel_score},
      {site.edge, next, site.score + global_indel_score}};
  std::size_t best = kNoEdit;
  int best_value = 0;
  for (std::size_t i = 0; i < kEditKinds; ++i) {
    if (edits[i].score <= reference::drop_off_limit(site.unit_length(), site.best_score)) continue;
    const int value = Plain::value(site, edits[i].edge, edits[i].character, edits[i].score);
    if (best != kNoEdit && value <= best_value) continue;
    best = i;
    best_value = value;
  }
  return best;
}

template <class Plain>
void compare(const Site& site) {
  using Direction = typename Plain::Direction;
  CLookAhead look_ahead;
  const LookAheadContext context{site.at(site.unit_begin), site.at(site.unit_end),
                                 site.unit_length(), site.at(0) + Plain::limit(site)};
  LookAheadState state{site.at(site.edge), site.at(site.character), site.score, site.best_score, 1};
  EXPECT_EQ(look_ahead.highest_score<Direction>(state, context),
            Plain::value(site, site.edge, site.character, site.score));
  if (Direction::is_at_limit(state.edge, context.limit)) return;
  if (*Direction::base_beyond(state.edge) == *state.character) return;
  state.edit_count = 0;
  EXPECT_EQ(look_ahead.best_edit<Direction>(state, context), plain_best_edit<Plain>(site));
}

/// Penalties, depths and N's: mostly those that a run is likely to have.
void draw_settings(RandomEngine& engine) {
  init_param();
  global_mismatch_score = -static_cast<int>(draw_between(engine, 2, 8));
  global_indel_score = -static_cast<int>(draw_between(engine, 2, 8));
  global_maximum_recursion_depth = static_cast<int>(draw_between(engine, 1, 6));
  if (draw_chance(engine, 5)) {
    global_maximum_scorereduction = static_cast<int>(draw_between(engine, 5, 40));
  }
  global_treat_Ns_as_missense = draw_chance(engine, 20);
}

/// A site anywhere in a text of arrays, with any of its stretches without N's for a unit.
Site draw_site(RandomEngine& engine) {
  const std::size_t unit_length = draw_between(engine, 1, draw_chance(engine, 80) ? 8 : 70);
  std::string text = draw_record(engine, draw_chance(engine, 70) ? 60 : 180, unit_length);
  const std::string unit = draw_array(engine, unit_length, unit_length, 0);
  text.insert(draw_between(engine, 0, text.size()), unit + unit + unit);
  const auto unit_begin = static_cast<std::int64_t>(text.find(unit));
  const auto last = static_cast<std::int64_t>(unit_length) - 1;
  const auto character =
      static_cast<std::int64_t>(draw_between(engine, 0, static_cast<std::size_t>(last)));
  const auto edge = static_cast<std::int64_t>(draw_between(engine, 0, text.size()));
  const int score = static_cast<int>(draw_between(engine, 0, 40));
  const int lead = static_cast<int>(draw_between(engine, 0, 10));
  return {text,  edge,        unit_begin + character, unit_begin, unit_begin + last + 1,
          score, score + lead};
}

using LookAheadTwin = CDefaultSettings;

TEST_F(LookAheadTwin, finds_the_same_scores_and_edits_in_both_directions) {
  for (std::uint64_t seed = 1; seed <= kCaseCount; ++seed) {
    RandomEngine engine(seed);
    draw_settings(engine);
    const Site site = draw_site(engine);
    SCOPED_TRACE("seed " + std::to_string(seed) + " text " + site.text);
    compare<PlainRightward>(site);
    compare<PlainLeftward>(site);
    if (HasFailure()) return;
  }
}

}  // namespace
}  // namespace quorix::testing
