#include "soundness/attack_case.h"

#include <algorithm>
#include <cstddef>

#include "search/filter/lag_grid.h"
#include "search/rules/score.h"
#include "settings/settings.h"
#include "soundness/floor_path.h"
#include "support/filter/vector_targets.h"
#include "support/random_dna.h"

namespace quorix::testing {

namespace {

std::size_t draw_unit_length(RandomEngine& engine) {
  const std::size_t chance = draw_between(engine, 1, 100);
  if (chance <= 28) return draw_between(engine, 1, 12);
  if (chance <= 62) return draw_between(engine, 13, 64);
  if (chance <= 76) return draw_between(engine, 65, 135);
  if (chance <= 94) return draw_between(engine, 96, 260);
  return draw_between(engine, 261, 1000);
}

int draw_penalty(RandomEngine& engine) {
  const std::size_t chance = draw_between(engine, 1, 100);
  if (chance <= 12) return static_cast<int>(draw_between(engine, 5, 6));  // weights change there
  if (chance <= 45) return static_cast<int>(draw_between(engine, 2, 12));
  if (chance <= 75) return static_cast<int>(draw_between(engine, 13, 45));
  return static_cast<int>(draw_between(engine, 46, 100));
}

/// Rules of scoring, and of unknown bases. The look-ahead goes through more states the deeper it
/// is, the longer the unit and, under a limit of the reduction, through all paths.
void draw_rules(RandomEngine& engine, std::size_t unit_length) {
  init_param();
  global_mismatch_score = -draw_penalty(engine);
  global_indel_score = draw_chance(engine, 25) ? global_mismatch_score : -draw_penalty(engine);
  const bool is_costly =
      unit_length > 64 || -std::max(global_mismatch_score, global_indel_score) < 4;
  global_maximum_recursion_depth =
      static_cast<int>(draw_chance(engine, 70) ? draw_between(engine, 1, is_costly ? 3 : 5)
                                               : draw_between(engine, 1, is_costly ? 5 : 12));
  if (draw_chance(engine, 10)) {
    global_maximum_scorereduction = static_cast<int>(draw_between(engine, 0, 2 * unit_length));
    global_maximum_recursion_depth = std::min(global_maximum_recursion_depth, 3);
  }
  if (draw_chance(engine, 40)) {
    global_Ns_allowed_in_a_row = static_cast<int>(draw_between(engine, 0, 7));
  }
  global_treat_Ns_as_missense = draw_chance(engine, 15);
}

PathRules draw_path_rules(RandomEngine& engine, std::size_t unit_length) {
  constexpr PathEdits kEdits[] = {PathEdits::kMismatches, PathEdits::kInsertions,
                                  PathEdits::kDeletions, PathEdits::kMixed};
  return {-std::int64_t{global_mismatch_score}, -std::int64_t{global_indel_score},
          kEdits[draw_between(engine, 0, 3)], draw_chance(engine, 65) ? 12U : 120U,
          std::min<std::size_t>(4 * unit_length + 150, 1500)};
}

std::string reversed(std::string text) {
  std::reverse(text.begin(), text.end());
  return text;
}

/// A copy of a unit with a path on one side or on both.
std::string draw_floor_array(RandomEngine& engine, const std::string& unit) {
  std::string right;
  std::int64_t score = 0;
  if (draw_chance(engine, 80)) {
    const FloorPath path = draw_floor_path(engine, unit, 0, draw_path_rules(engine, unit.size()));
    right = path.bases;
    score = path.best_score;
  }
  std::string left;
  if (draw_chance(engine, right.empty() ? 100 : 60)) {
    left = reversed(
        draw_floor_path(engine, reversed(unit), score, draw_path_rules(engine, unit.size())).bases);
  }
  return left + unit + right;
}

/// Turns a few bases of [first, last) into runs of N's.
void sprinkle_Ns(RandomEngine& engine, std::string& text, std::size_t first, std::size_t last) {
  const std::size_t run_count = draw_between(engine, 1, 6);
  // A run of more N's than allowed ends an extension, and is a wall for the filter.
  const std::size_t longest =
      static_cast<std::size_t>(global_Ns_allowed_in_a_row) + (draw_chance(engine, 20) ? 40 : 1);
  for (std::size_t i = 0; i < run_count; ++i) {
    const std::size_t start = draw_between(engine, first, last - 1);
    const std::size_t count = draw_chance(engine, 70) ? 1 : draw_between(engine, 1, longest);
    for (std::size_t k = start; k < std::min(start + count, last); ++k) text[k] = 'N';
  }
}

/// A base whose seeds are the last ones before a border of two segments of the lag sieve.
std::size_t seeds_at_border(std::size_t unit_length) {
  const LagRule rule{static_cast<std::int64_t>(unit_length), {1}, scoring_rules_of_settings()};
  const std::string text(100'000, 'A');
  const CLagGrid grid(text.data(), text.size(), rule);
  return (static_cast<std::size_t>(grid.rows_per_segment()) - unit_length) / 2;
}

/// Bases before the array: none, some, or so many that such a border lies in it or near its ends.
std::size_t draw_lead(RandomEngine& engine, std::size_t unit_length, std::size_t array_length) {
  if (draw_chance(engine, 25)) return 0;
  const bool has_segments = unit_length >= 5 && unit_length <= 200 &&
                            scoring_rules_of_settings().min_penalty() >= kMinLagPenalty;
  if (!has_segments || !draw_chance(engine, 8)) {
    return draw_between(engine, 1, 150);
  }
  const std::size_t max_distance = draw_chance(engine, 50) ? unit_length : array_length;
  return seeds_at_border(unit_length) -
         std::min(draw_between(engine, 0, max_distance), std::size_t{900});
}

}  // namespace

std::string AttackCase::option_text() const {
  const std::string length = std::to_string(unit_length);
  return "-u " + length + " -U " + length + " -m " + std::to_string(global_mismatch_score) +
         " -g " + std::to_string(global_indel_score) + " -r " +
         std::to_string(global_maximum_recursion_depth) + " -R " +
         std::to_string(global_maximum_scorereduction) + " -N " +
         std::to_string(global_Ns_allowed_in_a_row) +
         (global_treat_Ns_as_missense ? " --NsAsMissense" : "");
}

AttackCase draw_attack_case(std::uint64_t seed, const std::vector<std::int64_t>& targets) {
  RandomEngine engine(seed);
  AttackCase drawn{};
  const std::size_t unit_length = draw_unit_length(engine);
  drawn.unit_length = unit_length;
  draw_rules(engine, unit_length);

  const std::string unit = draw_unit(engine, unit_length);
  std::string array = draw_floor_array(engine, unit);
  if (draw_chance(engine, 15)) array += draw_floor_array(engine, unit);
  const std::size_t lead = draw_lead(engine, unit_length, array.size());
  const std::size_t trail = draw_chance(engine, 25) ? 0 : draw_between(engine, 1, 150);
  drawn.text = draw_letters(engine, lead, "ACGT") + array + draw_letters(engine, trail, "ACGT");
  if (draw_chance(engine, 35)) {
    sprinkle_Ns(engine, drawn.text, lead, lead + array.size());
  }
  drawn.first_seed = lead - std::min(lead, std::min<std::size_t>(unit_length, 40));
  drawn.seed_end = std::min(drawn.text.size(), lead + array.size());
  // Long units have many seeds that are much alike.
  const std::size_t max_seeds = unit_length > 128 ? 150 : 600;
  if (drawn.seed_end - drawn.first_seed > max_seeds) {
    drawn.first_seed = draw_between(engine, drawn.first_seed, drawn.seed_end - max_seeds);
    drawn.seed_end = drawn.first_seed + max_seeds;
  }
  drawn.target = targets[draw_between(engine, 0, targets.size() - 1)];
  use_vector_targets(drawn.target);
  return drawn;
}

}  // namespace quorix::testing
