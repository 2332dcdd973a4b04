// The look-ahead is an exhaustive search over edits: from a state, walk along matching bases as far
// as they go, then try a mismatch, an insertion and a deletion there, and go on from each in the
// same way. Its value is the highest score met anywhere.
//
// Since only that maximum is asked for, the order in which states are visited does not matter. And
// of two states at the same base and unit character, after equally many edits, the lower-scoring
// one can be forgotten: whatever follows it follows the other one, with a higher score. So the
// search goes from one number of edits to the next, and keeps the states of each ordered by drift
// and base; all of them but a few dozen meet. The one thing that the two would not share is a
// threshold that depends on the best score of a path, as a score reduction limit makes it. If that
// limit may come into play, every path is followed by itself, with a list of the states that are
// still to be visited: a state leaves it before its successors join, so it holds at most three
// times as many states as the deepest path has edits.
//
// Unlike the exact extension, the walk goes through a run of N's of any length, at score 0 a base:
// what an edit may lead to is not to be hidden by a gap that another edit would stop at anyway.

#include "search/look_ahead.h"

#include <algorithm>
#include <limits>
#include <utility>

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

template <class Direction, class State>
void CLookAhead::walk_matches(State& state, const LookAheadBounds& bounds) {
  const auto move_on = [&](const char* edge) {
    const std::int64_t count = Direction::distance(state.edge, edge);
    state.character =
        Direction::character_beyond(state.character, count, bounds.unit_begin, bounds.unit_end);
    state.edge = edge;
  };
  while (true) {
    const std::int64_t matches = matches_beyond<Direction>(
        state.edge, state.character, bounds.unit_begin, bounds.unit_end, bounds.limit);
    if (matches != 0) {
      state.score += matches;
      move_on(Direction::edge_beyond(state.edge, matches));
    }
    if (Direction::is_at_limit(state.edge, bounds.limit)) return;
    if (*Direction::base_beyond(state.edge) != 'N' || !is_N_neutral()) return;
    move_on(edge_behind_Ns<Direction>(state.edge, bounds.limit));
  }
}

template <class Direction>
std::int64_t CLookAhead::highest_score_of_all_paths(const LookAheadState& from,
                                                    const LookAheadBounds& bounds) {
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

template <class Direction>
std::int64_t CLookAhead::edit_places(std::ptrdiff_t drift, const LookAheadBounds& bounds) {
  const auto next_in_unit = [&bounds](const char* character) {
    return Direction::next_in_unit(character, bounds.unit_begin, bounds.unit_end);
  };
  // Three ordered sources: the states one edit earlier of this drift, the one below and the one
  // above.
  struct Source {
    const Place* place;
    const Place* end;
  };
  const auto source_of = [&](std::ptrdiff_t source_drift) -> Source {
    if (source_drift < level_.lowest || source_drift > level_.highest()) return {nullptr, nullptr};
    const Place* const places = level_.places.data();
    const auto index = static_cast<std::size_t>(source_drift - level_.lowest);
    return {places + level_.begins[index], places + level_.begins[index + 1]};
  };
  Source mismatched = source_of(drift);
  Source inserted = source_of(drift - 1);
  Source deleted = source_of(drift + 1);

  std::int64_t highest = std::numeric_limits<std::int64_t>::min();
  const std::size_t first = next_.places.size();
  while (true) {
    // The nearest edge, and the highest score at it.
    Place nearest{nullptr, nullptr, 0};
    const auto offer = [&](const Source& source, bool is_base_used, bool is_character_used,
                           int penalty) {
      if (source.place == source.end) return;
      const Place& from = *source.place;
      const char* const edge = is_base_used ? Direction::edge_beyond(from.edge) : from.edge;
      const std::int64_t score = from.score + penalty;
      if (nearest.edge != nullptr) {
        const std::int64_t lead = Direction::distance(edge, nearest.edge);
        if (lead < 0 || (lead == 0 && score <= nearest.score)) return;
      }
      nearest = {edge, is_character_used ? next_in_unit(from.character) : from.character, score};
    };
    offer(mismatched, true, true, global_mismatch_score);
    offer(inserted, true, false, global_indel_score);
    offer(deleted, false, true, global_indel_score);
    if (nearest.edge == nullptr) return highest;

    const auto skip = [&](Source& source, bool is_base_used) {
      if (source.place == source.end) return;
      const char* const edge =
          is_base_used ? Direction::edge_beyond(source.place->edge) : source.place->edge;
      if (edge == nearest.edge) ++source.place;
    };
    skip(mismatched, true);
    skip(inserted, true);
    skip(deleted, false);
    if (nearest.score <= -bounds.unit_length) continue;

    walk_matches<Direction>(nearest, bounds);
    highest = std::max(highest, nearest.score);
    if (Direction::is_at_limit(nearest.edge, bounds.limit)) continue;
    // Walks of one drift that overlap end at the same edge.
    if (next_.places.size() > first && next_.places.back().edge == nearest.edge) {
      next_.places.back().score = std::max(next_.places.back().score, nearest.score);
    } else {
      next_.places.push_back(nearest);
    }
  }
}

template <class Direction>
std::int64_t CLookAhead::highest_score_of_best_paths(const LookAheadState& from,
                                                     const LookAheadBounds& bounds) {
  constexpr int kDeepestLevel = std::numeric_limits<std::uint8_t>::max();
  const bool is_unlimited = global_maximum_recursion_depth > kDeepestLevel;
  const auto most_edits = static_cast<std::uint8_t>(global_maximum_recursion_depth - from.level);

  Place start{from.edge, from.character, from.score};
  walk_matches<Direction>(start, bounds);
  std::int64_t highest = start.score;
  level_.restart(0);
  if (!Direction::is_at_limit(start.edge, bounds.limit)) level_.places.push_back(start);
  level_.complete_drift();

  for (int edits = 0; !level_.places.empty() && (is_unlimited || edits < most_edits); ++edits) {
    next_.restart(level_.lowest - 1);
    const std::ptrdiff_t last_drift = level_.highest() + 1;
    for (std::ptrdiff_t drift = level_.lowest - 1; drift <= last_drift; ++drift) {
      highest = std::max(highest, edit_places<Direction>(drift, bounds));
      next_.complete_drift();
    }
    next_.complete();
    std::swap(level_, next_);
  }
  return highest;
}

template <class Direction>
std::int64_t CLookAhead::highest_score(const LookAheadState& from, const LookAheadBounds& bounds) {
  // No path gets above this.
  const std::int64_t most =
      std::max(from.score, from.best_score) + Direction::bases_beyond(from.edge, bounds.limit);
  const bool is_reduction_limited =
      most - std::int64_t{global_maximum_scorereduction} > -bounds.unit_length;
  return is_reduction_limited ? highest_score_of_all_paths<Direction>(from, bounds)
                              : highest_score_of_best_paths<Direction>(from, bounds);
}

template std::int64_t CLookAhead::highest_score<Rightward>(const LookAheadState&,
                                                           const LookAheadBounds&);
template std::int64_t CLookAhead::highest_score<Leftward>(const LookAheadState&,
                                                          const LookAheadBounds&);

}  // namespace quorix
