// The bound of seeds as one, against a table of all states of each of them in 64-bit numbers.

#include "search/filter/group_bound.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "support/filter/plain_group_value.h"
#include "support/filter/plain_score_paths.h"
#include "support/filter/vector_targets.h"
#include "support/random_dna.h"
#include "unit/search/searched_sequence.h"

namespace quorix::testing {
namespace {

constexpr std::int64_t kSeeds = kGroupSeeds;

std::uint64_t bit(std::int64_t k) {
  return std::uint64_t{1} << k;
}

/// Seeds at neighbouring bases, and what they are asked with.
struct Group {
  std::string text;
  std::int64_t first;
  std::int64_t unit_length;
  std::uint64_t asked;
  ScoringRules scoring;

  [[nodiscard]] std::string unit(std::int64_t k) const {
    return text.substr(static_cast<std::size_t>(first + k), static_cast<std::size_t>(unit_length));
  }
};

std::uint64_t undecided(const Group& group, std::int64_t min_score, BoundWorkspace& workspace) {
  const CBases bases(group.text);
  return group_bound(
      {bases.begin(), bases.end(), group.scoring},
      {bases.at(static_cast<std::size_t>(group.first)), group.unit_length, group.asked, min_score},
      workspace);
}

bool may_reach(const Group& group, std::int64_t min_score) {
  BoundWorkspace workspace;
  const std::uint64_t left = undecided(group, min_score, workspace);
  EXPECT_TRUE(left == 0 || left == group.asked);
  return left != 0;
}

/// Returns the highest score that a chain of one of the seeds reaches.
std::int64_t highest_score(const Group& group) {
  std::int64_t highest = 0;
  for (std::int64_t k = 0; k < kSeeds; ++k) {
    if ((group.asked & bit(k)) == 0) continue;
    const std::int64_t begin = group.first + k;
    const std::int64_t end = begin + group.unit_length;
    const PlainRepeat repeat{group.text, begin,        end, begin, end, 0, group.unit_length - 1,
                             0,          group.scoring};
    highest = std::max(highest, follow_all_paths(repeat).best);
  }
  return highest;
}

/// Bases between an array and an end of the text.
std::size_t draw_margin(RandomEngine& engine) {
  return draw_chance(engine, 50) ? 1000 : draw_between(engine, 0, 150);
}

/// A few seeds on the edge of an array of a shorter unit with edits, and in it.
Group draw_group(RandomEngine& engine) {
  Group group{};
  group.unit_length = draw_number(engine, kMinGroupUnit, 200);
  group.scoring.mismatch_penalty = draw_number(engine, 4, 8);
  group.scoring.indel_penalty =
      draw_chance(engine, 60) ? group.scoring.mismatch_penalty : draw_number(engine, 4, 8);
  group.scoring.is_N_neutral = draw_chance(engine, 50);
  const std::size_t margin_before = draw_margin(engine);
  group.text = draw_letters(engine, margin_before, "ACGT");
  if (draw_chance(engine, 70)) {
    const std::string unit = draw_letters(engine, draw_between(engine, 2, 60), "ACGT");
    const std::size_t edited = draw_between(engine, 0, 12);
    for (std::size_t length = draw_between(engine, 50, 600); length > 0; --length) {
      group.text += draw_chance(engine, edited) ? "ACGTN"[draw_between(engine, 0, 4)]
                                                : unit[length % unit.size()];
    }
  }
  group.first = std::max<std::int64_t>(
      static_cast<std::int64_t>(margin_before) - draw_number(engine, 0, 250), 0);
  group.text += draw_letters(engine, draw_margin(engine), "ACGT");
  group.text += draw_letters(engine, static_cast<std::size_t>(group.unit_length) + 1, "ACGT");
  for (std::int64_t k = 0; k < group_bases(group.unit_length); ++k) {
    const auto seed_end = static_cast<std::size_t>(group.first + k + group.unit_length);
    if (draw_chance(engine, 8) && seed_end < group.text.size() &&
        group.unit(k).find('N') == std::string::npos) {
      group.asked |= bit(k);
    }
  }
  return group;
}

TEST(GroupBound, is_no_lower_than_any_seed_and_hardly_higher) {
  RandomEngine engine(41);
  int rejected = 0;
  int undecided = 0;
  int needlessly_undecided = 0;
  for (int round = 0; round < 60; ++round) {
    const Group group = draw_group(engine);
    const std::int64_t highest = highest_score(group);
    for_each_vector_target([&](const char* target) {
      const auto describe = [&](std::int64_t min_score) {
        return std::string(target) + " seeds " + std::to_string(group.asked) + " from " +
               std::to_string(group.first) + " unit length " + std::to_string(group.unit_length) +
               " needed " + std::to_string(min_score) + " of " + std::to_string(highest) + " in " +
               group.text;
      };
      for (const std::int64_t needed : {highest - 3, highest}) {
        if (needed <= 0 || group.asked == 0) continue;
        EXPECT_TRUE(may_reach(group, needed)) << describe(needed);
        ++undecided;
      }
      ++(may_reach(group, highest + 7) ? needlessly_undecided : rejected);
    });
  }
  EXPECT_GT(rejected, 30);
  EXPECT_GT(undecided, 30);
  EXPECT_LT(needlessly_undecided, rejected / 3);
}

/// Seeds of an array of As before Cs, far from the ends.
Group homopolymer_group(std::uint64_t asked) {
  return {std::string(600, 'C') + std::string(200, 'A') + std::string(600, 'C'),
          600,
          130,
          asked,
          {6, 6, true}};
}

TEST(GroupBound, is_the_highest_value_of_its_tables) {
  RandomEngine engine(43);
  int compared = 0;
  int exact = 0;
  int needlessly_undecided = 0;
  for (int round = 0; round < 120; ++round) {
    const Group group = draw_group(engine);
    if (group.asked == 0) continue;
    const PlainGroup plain{group.text, group.first, group.unit_length, group.asked, group.scoring};
    // Wide vectors look some letters ahead.
    const std::optional<std::int64_t> highest = plain_group_score(plain, 3 * group.unit_length);
    if (!highest || *highest < 1) continue;
    ++compared;
    // Values of one byte have few lanes. Paths that leave them are undecided.
    const bool is_in_memory = group.unit_length + *highest + 1 > 255;
    for_each_vector_target([&](const char* target) {
      EXPECT_TRUE(may_reach(group, *highest)) << target << " round " << round;
      const bool is_exact = !may_reach(group, *highest + 1);
      EXPECT_TRUE(is_exact || !is_in_memory) << target << " round " << round;
      ++(is_exact ? exact : needlessly_undecided);
    });
  }
  EXPECT_GT(compared, 60);
  EXPECT_LT(needlessly_undecided, exact / 50);
}

// Rows are whole vectors, so each width of them has its count. It was read off the bound.
TEST(GroupBound, fills_few_cells) {
  const std::map<std::string, std::uint64_t> cells_by_target{{"AVX3", 457'024},
                                                             {"AVX2", 366'848},
                                                             {"SSE4", 308'848},
                                                             {"SSSE3", 308'848},
                                                             {"SSE2", 308'848}};
  for_each_vector_target([&](const std::string& target) {
    RandomEngine engine(44);
    std::uint64_t cells = 0;
    for (int round = 0; round < 60; ++round) {
      const Group group = draw_group(engine);
      BoundWorkspace workspace;
      (void)undecided(group, 90, workspace);
      cells += workspace.work.cells;
    }
    const auto expected = cells_by_target.find(target);
    if (expected != cells_by_target.end()) {
      EXPECT_EQ(cells, expected->second) << target;
    }
  });
}

TEST(GroupBound, adds_up_both_sides) {
  // To the right of the first seed lie 70 more bases of the array; to the left of the one at k, k.
  EXPECT_TRUE(may_reach(homopolymer_group(1), 70));
  EXPECT_FALSE(may_reach(homopolymer_group(1), 71));
  EXPECT_TRUE(may_reach(homopolymer_group(bit(20)), 70));
  EXPECT_FALSE(may_reach(homopolymer_group(bit(20)), 71));
}

/// Copies of the unit of the seed at `k`, after noise and with noise around them.
Group copies_of_one_seed(RandomEngine& engine, std::int64_t unit_length, std::int64_t k,
                         std::size_t copies_before, std::size_t copies_after) {
  Group group{};
  const std::string unit = draw_letters(engine, static_cast<std::size_t>(unit_length), "ACGT");
  group.text = draw_letters(engine, 1200, "ACGT") + repeated(unit, copies_before);
  group.first = static_cast<std::int64_t>(group.text.size()) - k;
  group.text += repeated(unit, 1 + copies_after) + draw_letters(engine, 1200, "ACGT");
  group.unit_length = unit_length;
  group.asked = bit(k);
  group.scoring.mismatch_penalty = group.scoring.indel_penalty = 40;  // noise ends it soon
  return group;
}

// The seed at k reads on in its own unit where that of the first seed is at its end already.
TEST(GroupBound, follows_each_seed_in_its_own_unit) {
  RandomEngine engine(42);
  for (const std::int64_t k : {0, 1, 30, 62, 63}) {
    for (const std::int64_t unit_length : {128, 129, 150}) {
      for (const auto& [before, after] : {std::pair(0U, 2U), {2U, 0U}}) {
        const Group group = copies_of_one_seed(engine, unit_length, k, before, after);
        const std::int64_t highest = highest_score(group);
        EXPECT_GE(highest, 2 * unit_length);
        for_each_vector_target([&](const char* target) {
          EXPECT_TRUE(may_reach(group, highest)) << target << " seed " << k << " of " << group.text;
          EXPECT_FALSE(may_reach(group, highest + 7))
              << target << " seed " << k << " of " << group.text;
        });
      }
    }
  }
}

// A seed that enters when all those before it have died, with rows of any kind.
TEST(GroupBound, waits_for_the_last_seed) {
  RandomEngine engine(45);
  int judged = 0;
  for (const std::int64_t unit_length : {70, 127, 128, 200}) {
    for (int round = 0; round < 12; ++round) {
      const std::int64_t k =
          draw_number(engine, 20, static_cast<std::size_t>(group_bases(unit_length)) - 1);
      Group group = copies_of_one_seed(engine, unit_length, k, 0, 1);
      group.asked |= 1;
      const std::int64_t highest = highest_score(group);
      EXPECT_GE(highest, unit_length);
      for_each_vector_target([&](const char* target) {
        EXPECT_TRUE(may_reach(group, highest)) << target << " seed " << k << " of " << group.text;
        ++judged;
      });
    }
  }
  EXPECT_GE(judged, 48);
}

/// A unit at the edge of copies of itself in which an indel follows every seven matches, and of
/// copies without one beyond them: a path there crosses 40 diagonals.
Group copies_with_indels(RandomEngine& engine, std::int64_t unit_length, bool are_deletions,
                         bool are_to_the_left) {
  Group group{};
  const std::string unit = draw_letters(engine, static_cast<std::size_t>(unit_length), "ACGT");
  std::string copies = unit;
  std::size_t next = 0;
  const auto copy = [&](std::size_t count) {
    for (; count > 0; --count) copies += unit[next++ % unit.size()];
  };
  for (int i = 0; i < 40; ++i) {
    copy(7);
    if (are_deletions) {
      ++next;
    } else {
      copies += draw_letters(engine, 1, "ACGT");
    }
  }
  copy(40);
  group.text = draw_letters(engine, 800, "ACGT") + copies + draw_letters(engine, 800, "ACGT");
  group.first = 800;
  if (are_to_the_left) {
    std::reverse(group.text.begin(), group.text.end());
    group.first = static_cast<std::int64_t>(group.text.size()) - 800 - unit_length;
  }
  group.unit_length = unit_length;
  group.asked = 1;
  group.scoring = {6, 6, true};
  return group;
}

// Rows in registers have 16 diagonals to either side, or 32.
TEST(GroupBound, loses_no_path_that_leaves_its_rows) {
  RandomEngine engine(46);
  for (const std::int64_t unit_length : {40, 90}) {
    for (const bool are_deletions : {false, true}) {
      for (const bool are_to_the_left : {false, true}) {
        const Group group = copies_with_indels(engine, unit_length, are_deletions, are_to_the_left);
        const std::int64_t highest = highest_score(group);
        EXPECT_GE(highest, 75);
        EXPECT_LE(unit_length + highest, 255);  // values of one byte
        for_each_vector_target([&](const char* target) {
          EXPECT_TRUE(may_reach(group, highest))
              << target << " deletions " << are_deletions << " left " << are_to_the_left;
        });
      }
    }
  }
}

TEST(GroupBound, leaves_undecided_seeds_a_unit_apart) {
  Group group = homopolymer_group(1);
  group.text.insert(600, 100, 'A');
  group.unit_length = 40;
  EXPECT_FALSE(may_reach(group, 300));
  group.asked |= bit(39);
  EXPECT_FALSE(may_reach(group, 300));
  group.asked |= bit(40);
  EXPECT_TRUE(may_reach(group, 300));
}

TEST(GroupBound, rejects_what_nobody_asks_for) {
  EXPECT_FALSE(may_reach(homopolymer_group(0), 1));
}

TEST(GroupBound, leaves_undecided_what_has_the_score_already) {
  EXPECT_TRUE(may_reach(homopolymer_group(1), 0));
  EXPECT_TRUE(may_reach(homopolymer_group(1), -3));
}

TEST(GroupBound, knows_where_the_text_ends) {
  const std::string array(200, 'A');
  for (const std::size_t around : {0U, 1U, 63U, 128U, 400U}) {
    Group group = homopolymer_group(1);
    group.text = std::string(600, 'C') + array + std::string(around, 'C');
    EXPECT_TRUE(may_reach(group, 70)) << around;
    EXPECT_FALSE(may_reach(group, 71)) << around;
    group = homopolymer_group(bit(20));
    group.text = std::string(around, 'C') + array + std::string(600, 'C');
    group.first = static_cast<std::int64_t>(around);
    EXPECT_TRUE(may_reach(group, 70)) << around;
    EXPECT_FALSE(may_reach(group, 71)) << around;
  }
}

TEST(GroupBound, leaves_undecided_what_lives_longer_than_it_is_followed) {
  for (const std::int64_t bases_before : {0, 2870}) {
    Group group = homopolymer_group(1);
    group.text = std::string(600, 'C') + std::string(3000, 'A') + std::string(600, 'C');
    group.first += bases_before;
    EXPECT_TRUE(may_reach(group, 2870));
  }
}

TEST(GroupBound, leaves_undecided_what_does_not_fit_its_numbers) {
  EXPECT_FALSE(may_reach(homopolymer_group(1), 59'000));
  EXPECT_TRUE(may_reach(homopolymer_group(1), 60'000));
}

// A row has room for as many states whatever the width of a vector: noise reaches farther from the
// middle the longer the unit.
TEST(GroupBound, answers_alike_with_vectors_of_any_width) {
  for (const std::int64_t unit_length : {300, 1000, 1500, 2000, 2500, 3000}) {
    RandomEngine engine(static_cast<std::uint64_t>(unit_length));
    const std::size_t length = 6 * static_cast<std::size_t>(unit_length);
    const Group group{draw_letters(engine, length, "ACGT"),
                      unit_length,
                      unit_length,
                      ~std::uint64_t{0},
                      {6, 6, false}};
    std::vector<bool> answers;
    for_each_vector_target([&](const char*) { answers.push_back(may_reach(group, unit_length)); });
    EXPECT_EQ(std::count(answers.begin(), answers.end(), answers.front()),
              static_cast<std::ptrdiff_t>(answers.size()))
        << unit_length;
    EXPECT_TRUE(unit_length > 2000 || !answers.front()) << unit_length;
  }
}

TEST(GroupBound, takes_penalties_of_any_height) {
  Group group = homopolymer_group(1);
  group.scoring.mismatch_penalty = group.scoring.indel_penalty = 2147483648;
  EXPECT_TRUE(may_reach(group, 70));
  EXPECT_FALSE(may_reach(group, 71));
}

}  // namespace
}  // namespace quorix::testing
