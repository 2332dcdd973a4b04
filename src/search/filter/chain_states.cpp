#include "search/filter/chain_states.h"

#include <algorithm>
#include <cassert>

namespace quorix {

namespace {

/// Fewer matches than these happen to most seeds of random DNA, over two to four edits. The bound
/// is sound with any number.
constexpr std::int64_t kTellingMatches = 9;
constexpr std::ptrdiff_t kLeastChainEdits = 2;

/// True if every chain that stops at `before` is still looked for where an edit brings it in
/// `state`, `bases` bases farther on.
bool is_followed_on(const ChainState& before, const ChainState& state, std::ptrdiff_t bases) {
  return before.is_followed && before.fewest_bases + bases == state.fewest_bases &&
         before.matches_let_through <= state.matches_let_through &&
         before.end_bases - 1 + bases <= state.end_bases;
}

/// True if that holds for all edits that lead to one of the states.
[[maybe_unused]] bool are_arrivals_looked_for(const ChainState* states, std::size_t count) {
  return std::all_of(states, states + count, [&](const ChainState& state) {
    const auto is_looked_for = [&](std::ptrdiff_t before, std::ptrdiff_t bases) {
      return before < 0 || is_followed_on(states[before], state, bases);
    };
    return is_looked_for(state.before_mismatch, 1) && is_looked_for(state.before_insertion, 1) &&
           is_looked_for(state.before_deletion, 0);
  });
}

}  // namespace

int ChainRule::edits_to_follow() const {
  if (unit_length > kMostChainUnit || min_score < 1) return 0;
  const std::int64_t least_penalty = std::min(mismatch_penalty, indel_penalty);
  for (std::ptrdiff_t edits = kLeastChainEdits; edits <= kMostChainEdits; ++edits) {
    if ((edits + 1) * least_penalty - unit_length + 1 >= kTellingMatches) {
      return static_cast<int>(edits);
    }
  }
  return 0;
}

ChainStates::ChainStates(const ChainRule& rule, std::ptrdiff_t edits)
    : unit_length(rule.unit_length), most_edits(edits), is_N_neutral(rule.is_N_neutral), states{} {
  // Lower values let through more, and no chain is long enough to tell these from higher ones. Sums
  // of them are small.
  constexpr std::int64_t kMost = 1'000'000;
  const std::ptrdiff_t mismatch = std::min(rule.mismatch_penalty, kMost);
  const std::ptrdiff_t indel = std::min(rule.indel_penalty, kMost);
  const std::ptrdiff_t min_score = std::min(rule.min_score, kMost);
  const std::ptrdiff_t least_penalty = std::min(mismatch, indel);

  // Where the state with these counts stands; states with fewer edits stand before.
  std::ptrdiff_t index_of[kMostChainEdits + 1][kMostChainEdits + 1][kMostChainEdits + 1] = {};
  for (std::ptrdiff_t all = 0; all <= edits; ++all) {
    for (std::ptrdiff_t insertions = 0; insertions <= all; ++insertions) {
      for (std::ptrdiff_t deletions = 0; insertions + deletions <= all; ++deletions) {
        const std::ptrdiff_t mismatches = all - insertions - deletions;
        index_of[mismatches][insertions][deletions] = static_cast<std::ptrdiff_t>(count);
        ChainState& state = states[count++];
        state.drift = insertions - deletions;
        state.cost = mismatches * mismatch + (insertions + deletions) * indel;
        state.fewest_bases = mismatches + insertions;
        state.least_matches = state.cost - unit_length + 1;
        // From there on one edit more than the last one followed may be made.
        const std::ptrdiff_t beyond = (edits + 1 - all) * least_penalty;
        state.matches_let_through = std::min(state.least_matches + beyond, min_score + state.cost);
        state.end_bases = std::clamp(state.fewest_bases + state.matches_let_through,
                                     state.fewest_bases, kMostChainBases);
        state.is_followed = all < edits;
        state.before_mismatch =
            mismatches == 0 ? -1 : index_of[mismatches - 1][insertions][deletions];
        state.before_insertion =
            insertions == 0 ? -1 : index_of[mismatches][insertions - 1][deletions];
        state.before_deletion =
            deletions == 0 ? -1 : index_of[mismatches][insertions][deletions - 1];
        most_bases = std::max(most_bases, state.end_bases);
        if (state.is_followed) followed_count = count;
      }
    }
  }
  assert(are_arrivals_looked_for(states.data(), count));
}

}  // namespace quorix
