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

namespace {

constexpr int kDeepestLevel = std::numeric_limits<std::uint8_t>::max();

/// Edits that may follow those on the way to `level`; negative if any number may.
int edits_left(std::uint8_t level) {
  if (global_maximum_recursion_depth > kDeepestLevel) return -1;
  return static_cast<std::uint8_t>(global_maximum_recursion_depth - level);
}

/// False if the floor alone bounds what edits may cost.
template <class Direction>
bool may_reduction_be_limited(const LookAheadState& from, const LookAheadBounds& bounds) {
  // No path gets above this.
  const std::int64_t most =
      std::max(from.score, from.best_score) + Direction::bases_beyond(from.edge, bounds.limit);
  return most - std::int64_t{global_maximum_scorereduction} > -bounds.unit_length;
}

/// The states after each edit at `stop`.
template <class Direction>
ByEdit<LookAheadState> edits_at(const LookAheadState& stop, const LookAheadBounds& bounds) {
  const char* const next_edge = Direction::edge_beyond(stop.edge);
  const char* const next_character =
      Direction::next_in_unit(stop.character, bounds.unit_begin, bounds.unit_end);
  const auto level = static_cast<std::uint8_t>(stop.level + 1);
  return {{{next_edge, next_character, stop.score + global_mismatch_score, stop.best_score, level},
           {next_edge, stop.character, stop.score + global_indel_score, stop.best_score, level},
           {stop.edge, next_character, stop.score + global_indel_score, stop.best_score, level}}};
}

/// Drifts that differ by this meet the same unit characters. The first edits make three of them.
std::ptrdiff_t drift_modulus(std::int64_t unit_length) {
  switch (unit_length) {
    case 1:
      return 3;
    case 2:
      return 4;
    default:
      return unit_length;
  }
}

void raise(ByEdit<std::int64_t>& scores, const ByEdit<std::int64_t>& others) {
  for (std::size_t i = 0; i < kEditKinds; ++i) scores[i] = std::max(scores[i], others[i]);
}

}  // namespace

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

  // As far as the bases equal the one before them.
  const std::int64_t others = Direction::common_bases(Direction::edge_beyond(edge), edge,
                                                      Direction::bases_beyond(edge, limit) - 1);
  const char* const far_edge = Direction::edge_beyond(edge, others + 1);
  last = {edge, far_edge, limit};
  return far_edge;
}

template <class Direction>
std::int64_t CLookAhead::walk_matches(const char*& edge, const char*& character,
                                      const LookAheadBounds& bounds) {
  std::int64_t all_matches = 0;
  const auto move_on = [&](std::int64_t count) {
    edge = Direction::edge_beyond(edge, count);
    character = Direction::character_beyond(character, count, bounds.unit_begin, bounds.unit_end);
  };
  while (!Direction::is_at_limit(edge, bounds.limit)) {
    const char base = *Direction::base_beyond(edge);
    if (base == *character) {
      const std::int64_t matches = matches_beyond<Direction>(edge, character, bounds.unit_begin,
                                                             bounds.unit_end, bounds.limit);
      all_matches += matches;
      move_on(matches);
    } else if (base == 'N' && is_N_neutral()) {
      move_on(Direction::distance(edge, edge_behind_Ns<Direction>(edge, bounds.limit)));
    } else {
      break;
    }
  }
  return all_matches;
}

template <class Direction>
std::int64_t CLookAhead::highest_score_of_all_paths(const LookAheadState& from,
                                                    const LookAheadBounds& bounds) {
  pending_.assign(1, from);
  std::int64_t highest = from.score;
  while (!pending_.empty()) {
    LookAheadState state = pending_.back();
    pending_.pop_back();
    state.score += walk_matches<Direction>(state.edge, state.character, bounds);
    highest = std::max(highest, state.score);
    if (state.level == global_maximum_recursion_depth ||
        Direction::is_at_limit(state.edge, bounds.limit)) {
      continue;
    }

    state.best_score = std::max(state.best_score, state.score);
    const std::int64_t threshold = edit_threshold(state.best_score, bounds.unit_length);
    for (const LookAheadState& edited : edits_at<Direction>(state, bounds)) {
      if (edited.score > threshold) pending_.push_back(edited);
    }
  }
  return highest;
}

template <class Direction>
void CLookAhead::add_place(Place place, const char* origin, const LookAheadBounds& bounds,
                           ByEdit<std::int64_t>& highest, Level& level, std::size_t first) {
  const char* reached = Direction::edge_beyond(origin, place.offset);
  const std::int64_t matches = walk_matches<Direction>(reached, place.character, bounds);
  place.offset = Direction::distance(origin, reached);
  for (std::size_t i = 0; i < kEditKinds; ++i) {
    if (place.scores[i] != kNoValue) place.scores[i] += matches;
    highest[i] = std::max(highest[i], place.scores[i]);
  }
  if (Direction::is_at_limit(reached, bounds.limit)) return;
  const std::int64_t highest_score = *std::max_element(place.scores.begin(), place.scores.end());
  const std::int64_t least_penalty = std::max(global_mismatch_score, global_indel_score);
  if (highest_score + least_penalty <= -bounds.unit_length) return;  // no edit can follow
  // Walks of one drift that overlap end at the same base.
  if (level.places.size() > first && level.places.back().offset == place.offset) {
    raise(level.places.back().scores, place.scores);
  } else {
    level.places.push_back(place);
  }
}

CLookAhead::EditSource CLookAhead::source_of(std::ptrdiff_t drift, std::int64_t unit_length) const {
  const std::ptrdiff_t modulus = drift_modulus(unit_length);
  std::ptrdiff_t from_lowest = drift - level_.lowest;
  if (from_lowest < 0) from_lowest += modulus;
  if (from_lowest >= modulus) from_lowest -= modulus;
  if (from_lowest > level_.highest() - level_.lowest) return {};
  const auto index = static_cast<std::size_t>(from_lowest);
  const Place* const places = level_.places.data();
  return {places + level_.begins[index], places + level_.begins[index + 1]};
}

template <class Direction>
bool CLookAhead::take_edits(EditSource& source, const EditUse& edit, const LookAheadBounds& bounds,
                            Place& place) {
  if (source.offset(edit) != place.offset) return false;
  const Place& from = *source.place++;
  place.character = edit.is_character_used ? Direction::next_in_unit(
                                                 from.character, bounds.unit_begin, bounds.unit_end)
                                           : from.character;
  bool is_alive = false;
  for (std::size_t i = 0; i < kEditKinds; ++i) {
    const std::int64_t score = from.scores[i] + edit.penalty;
    if (score <= -bounds.unit_length) continue;
    place.scores[i] = std::max(place.scores[i], score);
    is_alive = true;
  }
  return is_alive;
}

template <class Direction>
void CLookAhead::edit_places(std::ptrdiff_t drift, const char* origin,
                             const LookAheadBounds& bounds, ByEdit<std::int64_t>& highest) {
  // Three ordered sources: the states one edit earlier of this drift, the one below and the one
  // above.
  const ByEdit<EditUse> edits = {{{1, true, global_mismatch_score},
                                  {1, false, global_indel_score},
                                  {0, true, global_indel_score}}};
  ByEdit<EditSource> sources = {source_of(drift, bounds.unit_length),
                                source_of(drift - 1, bounds.unit_length),
                                source_of(drift + 1, bounds.unit_length)};
  const std::size_t first = next_.places.size();
  while (true) {
    std::int64_t offset = EditSource::kNone;
    for (std::size_t i = 0; i < kEditKinds; ++i) {
      offset = std::min(offset, sources[i].offset(edits[i]));
    }
    if (offset == EditSource::kNone) return;
    Place place{offset, nullptr, {kNoValue, kNoValue, kNoValue}};
    bool is_alive = false;
    for (std::size_t i = 0; i < kEditKinds; ++i) {
      if (take_edits<Direction>(sources[i], edits[i], bounds, place)) is_alive = true;
    }
    if (is_alive) add_place<Direction>(place, origin, bounds, highest, next_, first);
  }
}

template <class Direction>
void CLookAhead::follow_best_paths(const char* origin, int most_edits,
                                   const LookAheadBounds& bounds, ByEdit<std::int64_t>& highest) {
  for (int edits = 0; !level_.places.empty() && (most_edits < 0 || edits < most_edits); ++edits) {
    next_.restart(level_.lowest - 1);
    const std::ptrdiff_t last_drift =
        std::min(level_.highest() + 1, level_.lowest + drift_modulus(bounds.unit_length) - 2);
    for (std::ptrdiff_t drift = level_.lowest - 1; drift <= last_drift; ++drift) {
      edit_places<Direction>(drift, origin, bounds, highest);
      next_.complete_drift();
    }
    next_.complete();
    std::swap(level_, next_);
  }
}

template <class Direction>
std::int64_t CLookAhead::highest_score(const LookAheadState& from, const LookAheadBounds& bounds) {
  if (may_reduction_be_limited<Direction>(from, bounds)) {
    return highest_score_of_all_paths<Direction>(from, bounds);
  }
  ByEdit<std::int64_t> highest = {from.score, kNoValue, kNoValue};
  level_.restart(0);
  add_place<Direction>({0, from.character, highest}, from.edge, bounds, highest, level_, 0);
  level_.complete_drift();
  follow_best_paths<Direction>(from.edge, edits_left(from.level), bounds, highest);
  return highest[0];
}

template <class Direction>
ByEdit<std::int64_t> CLookAhead::values_of_edits(const LookAheadState& stop,
                                                 const LookAheadBounds& bounds) {
  ByEdit<std::int64_t> values = {kNoValue, kNoValue, kNoValue};
  const std::int64_t threshold = edit_threshold(stop.best_score, bounds.unit_length);
  const ByEdit<LookAheadState> edited = edits_at<Direction>(stop, bounds);
  if (may_reduction_be_limited<Direction>(stop, bounds)) {
    for (std::size_t i = 0; i < kEditKinds; ++i) {
      if (edited[i].score <= threshold) continue;
      values[i] = highest_score_of_all_paths<Direction>(edited[i], bounds);
    }
    return values;
  }

  // By ascending drift: a deletion, the mismatch, an insertion.
  constexpr ByEdit<std::size_t> kByDrift = {2, 0, 1};
  level_.restart(-1);
  for (const std::size_t i : kByDrift) {
    if (edited[i].score > threshold) {
      Place place{Direction::distance(stop.edge, edited[i].edge),
                  edited[i].character,
                  {kNoValue, kNoValue, kNoValue}};
      place.scores[i] = edited[i].score;
      add_place<Direction>(place, stop.edge, bounds, values, level_, level_.places.size());
    }
    level_.complete_drift();
  }
  level_.complete();
  follow_best_paths<Direction>(stop.edge, edits_left(edited[0].level), bounds, values);
  return values;
}

template std::int64_t CLookAhead::highest_score<Rightward>(const LookAheadState&,
                                                           const LookAheadBounds&);
template std::int64_t CLookAhead::highest_score<Leftward>(const LookAheadState&,
                                                          const LookAheadBounds&);
template ByEdit<std::int64_t> CLookAhead::values_of_edits<Rightward>(const LookAheadState&,
                                                                     const LookAheadBounds&);
template ByEdit<std::int64_t> CLookAhead::values_of_edits<Leftward>(const LookAheadState&,
                                                                    const LookAheadBounds&);

}  // namespace quorix
