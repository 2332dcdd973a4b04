// The edit chosen by branch and bound against the one that the highest scores after each edit
// imply, which wavefronts find. Arrays of short units are diverged, so that many paths lead back
// into them with scores that are close to each other.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>

#include "search/extension/direction.h"
#include "search/extension/look_ahead.h"
#include "settings/settings.h"
#include "support/default_settings.h"
#include "support/random_dna.h"

namespace quorix::testing {
namespace {

constexpr std::uint64_t kChoiceCaseCount = 25000;
constexpr std::size_t kSites = 5;  ///< neighbouring ones of a case

/// An edit site before some bases, rightward. A letter that must not be read lies at either end.
struct ChoiceCase {
  std::string text;
  std::string unit;
  std::size_t phase;  ///< of the character that the first base has to match
  int score;
};

/// Copies of `unit` with a substitution, an insertion, a deletion or an N in `divergence_percent`
/// of all places, from `phase` on.
std::string draw_copies(RandomEngine& engine, const std::string& unit, std::size_t phase,
                        std::size_t length, std::size_t divergence_percent) {
  std::string copies;
  while (copies.size() < length) {
    const char base = unit[phase++ % unit.size()];
    if (!draw_chance(engine, divergence_percent)) {
      copies += base;
      continue;
    }
    const std::size_t kind = draw_between(engine, 0, 15);
    if (kind == 0) {
      copies += 'N';
    } else if (kind < 6) {
      copies += draw_letters(engine, 1, "ACGT");
    } else if (kind < 11) {
      copies += base + draw_letters(engine, 1, "ACGT");
    }
  }
  return copies;
}

ChoiceCase draw_choice_case(RandomEngine& engine) {
  init_param();
  global_mismatch_score = -static_cast<int>(draw_between(engine, 1, 9));
  global_indel_score = draw_chance(engine, 40) ? global_mismatch_score
                                               : -static_cast<int>(draw_between(engine, 1, 9));
  if (draw_chance(engine, 5)) global_mismatch_score *= 10;
  if (draw_chance(engine, 5)) global_indel_score *= 10;
  global_maximum_recursion_depth = static_cast<int>(draw_between(engine, 1, 9));
  global_treat_Ns_as_missense = draw_chance(engine, 10);

  const std::size_t unit_length = draw_between(engine, 1, draw_chance(engine, 90) ? 12 : 70);
  const std::string unit =
      draw_letters(engine, unit_length, draw_chance(engine, 50) ? "ACGT" : "AC");
  const std::size_t phase = draw_between(engine, 0, unit_length - 1);
  const std::size_t length = draw_between(engine, 1, draw_chance(engine, 70) ? 60 : 200);
  const std::size_t shift = phase + draw_between(engine, 0, 3);
  std::string bases = draw_copies(engine, unit, shift, length, draw_between(engine, 2, 35));
  const int floor = -static_cast<int>(unit_length);
  return {"X" + bases + "X", unit, phase,
          floor + static_cast<int>(draw_between(engine, 1, draw_chance(engine, 50) ? 25 : 60))};
}

/// The same, read leftward.
ChoiceCase mirrored(ChoiceCase that) {
  std::reverse(that.text.begin(), that.text.end());
  std::reverse(that.unit.begin(), that.unit.end());
  that.phase = that.unit.size() - 1 - that.phase;
  return that;
}

/// The edit of the highest score, asked for after each of the three.
template <class Direction>
std::size_t edit_by_highest_scores(CLookAhead& look_ahead, const LookAheadState& site,
                                   const LookAheadContext& context) {
  const char* const next_edge = Direction::edge_beyond(site.edge);
  const char* const next_character =
      Direction::next_in_unit(site.character, context.unit_begin, context.unit_end);
  const std::int64_t after_mismatch = site.score + global_mismatch_score;
  const std::int64_t after_indel = site.score + global_indel_score;
  const LookAheadState edited[] = {{next_edge, next_character, after_mismatch, site.best_score, 1},
                                   {next_edge, site.character, after_indel, site.best_score, 1},
                                   {site.edge, next_character, after_indel, site.best_score, 1}};
  std::size_t best = kNoEdit;
  std::int64_t best_value = 0;
  for (std::size_t i = 0; i < kEditKinds; ++i) {
    if (edited[i].score <= -context.unit_length) continue;
    const std::int64_t value = look_ahead.highest_score<Direction>(edited[i], context);
    if (best != kNoEdit && value <= best_value) continue;
    best = i;
    best_value = value;
  }
  return best;
}

/// Compares both ways to choose at some bases, and adds the work of the first one to `work`.
template <class Direction>
void compare_choices(const ChoiceCase& drawn, EditChoiceWork& work) {
  constexpr bool kIsRightward = Direction::kIndex == Rightward::kIndex;
  const char* const begin = drawn.text.data();
  const char* const end = begin + drawn.text.size();
  const char* const unit = drawn.unit.data();
  const LookAheadContext context{unit, unit + drawn.unit.size(),
                                 static_cast<std::int64_t>(drawn.unit.size()),
                                 kIsRightward ? end - 1 : begin};
  CLookAhead look_ahead;
  for (std::size_t i = 0; i < std::min(kSites, drawn.text.size() - 2); ++i) {
    const LookAheadState site{kIsRightward ? begin + 1 + i : end - 1 - i, unit + drawn.phase,
                              drawn.score, drawn.score, 0};
    if (*Direction::base_beyond(site.edge) == *site.character) continue;
    EXPECT_EQ(look_ahead.best_edit<Direction>(site, context),
              edit_by_highest_scores<Direction>(look_ahead, site, context))
        << i;
  }
  work.choices += look_ahead.choice_work().choices;
  work.explored += look_ahead.choice_work().explored;
  work.undecided += look_ahead.choice_work().undecided;
}

using EditChoiceTwin = CDefaultSettings;

TEST_F(EditChoiceTwin, is_that_of_the_highest_scores_in_both_directions) {
  EditChoiceWork work;
  for (std::uint64_t seed = 1; seed <= kChoiceCaseCount; ++seed) {
    RandomEngine engine(seed);
    const ChoiceCase drawn = draw_choice_case(engine);
    SCOPED_TRACE("seed " + std::to_string(seed) + " text " + drawn.text + " unit " + drawn.unit);
    compare_choices<Rightward>(drawn, work);
    compare_choices<Leftward>(mirrored(drawn), work);
    if (HasFailure()) return;
  }
  // Some choices take many states, and some too many.
  EXPECT_GT(work.choices, kChoiceCaseCount);
  EXPECT_GT(work.explored, 4 * work.choices);
  EXPECT_GT(work.undecided, 100U);
  EXPECT_LT(work.undecided, work.choices / 4);
}

}  // namespace
}  // namespace quorix::testing
