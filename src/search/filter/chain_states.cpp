#include "search/filter/chain_states.h"

#include <algorithm>
#include <cassert>

namespace quorix {

namespace {

/// True if every chain that has an edit site in state `before` is still looked for where an edit
/// brings it in `state`, `bases` bases farther on.
bool is_followed_on(const ChainState& before, const ChainState& state, std::ptrdiff_t bases) {
  return before.is_followed && before.min_bases + bases == state.min_bases &&
         before.undecided_matches <= state.undecided_matches &&
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

ChainStates::ChainStates(const ChainRule& rule)
    : unit_length(rule.unit_length),
      max_edits(rule.edits),
      is_N_neutral(rule.scoring.is_N_neutral),
      states{} {
  assert(max_edits >= 1 && max_edits <= kMaxChainEdits && unit_length <= kMaxChainUnit);
  const std::ptrdiff_t edits = max_edits;
  // Lower values reject less, and no chain is long enough to show the difference to higher ones.
  // Sums of them are small.
  constexpr std::int64_t kMax = 1'000'000;
  const std::ptrdiff_t mismatch = std::min(rule.scoring.mismatch_penalty, kMax);
  const std::ptrdiff_t indel = std::min(rule.scoring.indel_penalty, kMax);
  const std::ptrdiff_t min_score = std::min(rule.min_score, kMax);
  const std::ptrdiff_t min_penalty = std::min(mismatch, indel);

  // Where the state with these counts stands; states with fewer edits stand before.
  std::ptrdiff_t index_of[kMaxChainEdits + 1][kMaxChainEdits + 1][kMaxChainEdits + 1] = {};
  for (std::ptrdiff_t all = 0; all <= edits; ++all) {
    for (std::ptrdiff_t insertions = 0; insertions <= all; ++insertions) {
      for (std::ptrdiff_t deletions = 0; insertions + deletions <= all; ++deletions) {
        const std::ptrdiff_t mismatches = all - insertions - deletions;
        index_of[mismatches][insertions][deletions] = static_cast<std::ptrdiff_t>(count);
        ChainState& state = states[count++];
        state.diagonal = insertions - deletions;
        state.cost = mismatches * mismatch + (insertions + deletions) * indel;
        state.min_bases = mismatches + insertions;
        state.min_matches = state.cost - unit_length + 1;
        // From there on one edit more than the last one followed may be made.
        const std::ptrdiff_t beyond = (edits + 1 - all) * min_penalty;
        state.undecided_matches = std::min(state.min_matches + beyond, min_score + state.cost);
        state.end_bases =
            std::clamp(state.min_bases + state.undecided_matches, state.min_bases, kMaxChainBases);
        state.is_followed = all < edits;
        state.before_mismatch =
            mismatches == 0 ? -1 : index_of[mismatches - 1][insertions][deletions];
        state.before_insertion =
            insertions == 0 ? -1 : index_of[mismatches][insertions - 1][deletions];
        state.before_deletion =
            deletions == 0 ? -1 : index_of[mismatches][insertions][deletions - 1];
        max_bases = std::max(max_bases, state.end_bases);
        if (state.is_followed) followed_count = count;
      }
    }
  }
  assert(are_arrivals_looked_for(states.data(), count));
}

}  // namespace quorix
