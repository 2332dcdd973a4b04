// The look-ahead is an exhaustive search over edits: from a state, walk along matching bases as far
// as they go, then try a mismatch, an insertion and a deletion there, and go on from each in the
// same way. Its value is the highest score met anywhere.
//
// Since only that maximum is asked for, the order in which states are visited does not matter, and
// a list of states still to visit does for a recursion. The list also serves recursion depths
// without a limit, where the call stack would run out: a state leaves it before its successors
// join, so it holds at most three times as many states as the deepest path has edits.
//
// Unlike the exact extension, the walk goes through a run of N's of any length, at score 0 a base:
// what an edit may lead to is not to be hidden by a gap that another edit would stop at anyway.

#include "search/look_ahead.h"

#include <algorithm>

#include "search/direction.h"
#include "search/score.h"
#include "settings/settings.h"

namespace quorix {

// Such a run may be a gap of many megabases, and hundreds of paths at its edge go through it. So
// the run that was walked over last is remembered, and all but the first of them jump.
template <class Direction>
const char* CLookAhead::edge_behind_Ns(const char* edge, const char* limit) {
  NRun& last = last_N_runs_[Direction::kIndex];
  if (last.limit == limit) {
    const std::int64_t offset = Direction::distance(last.near_edge, edge);
    if (offset >= 0 && offset < Direction::distance(last.near_edge, last.far_edge)) {
      return last.far_edge;
    }
  }

  const char* far_edge = edge;
  while (!Direction::is_at_limit(far_edge, limit) && *Direction::base_beyond(far_edge) == 'N') {
    far_edge = Direction::edge_beyond(far_edge);
  }
  last = {edge, far_edge, limit};
  return far_edge;
}

/// Moves `state` along matches and neutral N's, until a base differs or the limit is met.
template <class Direction>
void CLookAhead::walk_matches(LookAheadState& state, const LookAheadBounds& bounds) {
  while (!Direction::is_at_limit(state.edge, bounds.limit)) {
    const char base = *Direction::base_beyond(state.edge);
    if (base == *state.character) {
      ++state.score;
      state.edge = Direction::edge_beyond(state.edge);
      state.character =
          Direction::next_in_unit(state.character, bounds.unit_begin, bounds.unit_end);
    } else if (base == 'N' && is_N_neutral()) {
      const char* const far_edge = edge_behind_Ns<Direction>(state.edge, bounds.limit);
      state.character =
          Direction::character_beyond(state.character, Direction::distance(state.edge, far_edge),
                                      bounds.unit_begin, bounds.unit_end);
      state.edge = far_edge;
    } else {
      return;
    }
  }
}

template <class Direction>
std::int64_t CLookAhead::highest_score(const LookAheadState& from, const LookAheadBounds& bounds) {
  pending_.assign(1, from);
  std::int64_t highest = from.score;
  while (!pending_.empty()) {
    LookAheadState state = pending_.back();
    pending_.pop_back();
    walk_matches<Direction>(state, bounds);
    highest = std::max(highest, state.score);
    if (state.level == global_maximum_recursion_depth ||
        Direction::is_at_limit(state.edge, bounds.limit)) {
      continue;
    }

    state.best_score = std::max(state.best_score, state.score);
    const std::int64_t threshold = edit_threshold(state.best_score, bounds.unit_length);
    const auto try_edit = [&](const char* edge, const char* character, int penalty) {
      const std::int64_t score = state.score + penalty;
      if (score <= threshold) return;
      pending_.push_back(
          {edge, character, score, state.best_score, static_cast<std::uint8_t>(state.level + 1)});
    };
    const char* const next_edge = Direction::edge_beyond(state.edge);
    const char* const next_character =
        Direction::next_in_unit(state.character, bounds.unit_begin, bounds.unit_end);
    try_edit(next_edge, next_character, global_mismatch_score);
    try_edit(next_edge, state.character, global_indel_score);
    try_edit(state.edge, next_character, global_indel_score);
  }
  return highest;
}

template std::int64_t CLookAhead::highest_score<Rightward>(const LookAheadState&,
                                                           const LookAheadBounds&);
template std::int64_t CLookAhead::highest_score<Leftward>(const LookAheadState&,
                                                          const LookAheadBounds&);

}  // namespace quorix
