// The explored states of a choice, against a list of all of them.

#include "search/extension/explored_states.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "support/random_dna.h"

namespace quorix::testing {
namespace {

bool dominates(const EditedState& a, const EditedState& b) {
  return a.offset == b.offset && a.diagonal == b.diagonal && a.edits_left >= b.edits_left &&
         a.score >= b.score;
}

EditedState draw_state(RandomEngine& engine, std::size_t max_offset) {
  return {draw_number(engine, 0, 80) - 40, draw_number(engine, 0, max_offset),
          static_cast<std::int32_t>(draw_number(engine, 0, 12) - 6),
          static_cast<std::int32_t>(draw_number(engine, 0, CExploredStates::kMaxEditsLeft))};
}

TEST(ExploredStates, dominate_what_one_of_them_dominates) {
  RandomEngine engine(61);
  CExploredStates explored;
  int dominated = 0;
  int unnoticed = 0;
  for (int round = 0; round < 300; ++round) {
    explored.clear();
    std::vector<EditedState> all;
    // Up to 15 none needs the slot of another one.
    const std::size_t max_offset = round % 2 == 0 ? 15 : 60;
    for (int k = 0; k < 150; ++k) {
      const EditedState state = draw_state(engine, max_offset);
      const bool expected = std::any_of(
          all.begin(), all.end(), [&](const EditedState& each) { return dominates(each, state); });
      const bool found = explored.dominate(state);
      EXPECT_TRUE(expected || !found);
      if (max_offset == 15) {
        EXPECT_EQ(found, expected);
      }
      dominated += found ? 1 : 0;
      unnoticed += expected && !found ? 1 : 0;
      explored.add(state);
      all.push_back(state);
      EXPECT_TRUE(explored.dominate(state));
    }
  }
  EXPECT_GT(dominated, 500);
  EXPECT_LT(unnoticed, dominated / 4);
}

TEST(ExploredStates, are_forgotten) {
  CExploredStates explored;
  const EditedState state = {12, 3, -1, 2};
  EXPECT_FALSE(explored.dominate(state));
  explored.add(state);
  EXPECT_TRUE(explored.dominate(state));
  explored.clear();
  EXPECT_FALSE(explored.dominate(state));
}

TEST(ExploredStates, keep_apart_what_shares_a_slot) {
  CExploredStates explored;
  const EditedState near = {0, 1, 0, 5};
  EditedState far = near;
  for (std::int64_t distance = 1; distance <= 4096; ++distance) {
    explored.clear();
    explored.add(near);
    far.offset = near.offset + distance;
    EXPECT_FALSE(explored.dominate(far)) << distance;
  }
}

}  // namespace
}  // namespace quorix::testing
