// The look-ahead is an exhaustive search over edits: from a state, walk along matching bases as far
// as they go, then try a mismatch, an insertion and a deletion there, and go on from each in the
// same way. Its value is the highest score met anywhere.
//
// Since only that maximum is asked for, the order in which states are visited does not matter. And
// of two states at the same base and unit character, after equally many edits, the lower-scoring
// one can be forgotten: whatever follows it follows the other one, with a higher score. So the
// search goes from one number of edits to the next, and keeps the states of each ordered by drift
// and base. Where the first edit is to be chosen, it is part of the score: on equal scores the path
// that began with the preferred edit is kept. The search ends when all states left began with the
// edit of the highest score.
//
// Most states lead nowhere, since an edit pays only if more matches follow it than it costs. The
// bases beyond the stop are held against the unit at all drifts at once, which tells where runs
// that long begin (see `may_rise`).
//
// The one thing that two states would not share is a threshold that depends on the best score of a
// path, as a score reduction limit makes it. If that limit may come into play, every path is
// followed by itself, with a list of the states that are still to be visited: a state leaves it
// before its successors join, so it holds at most three times as many states as the deepest path
// has edits.
//
// Unlike the exact extension, the walk goes through a run of N's of any length, at score 0 a base:
// what an edit may lead to is not to be hidden by a gap that another edit would stop at anyway.

#include "search/extension/look_ahead.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <limits>
#include <utility>

#include "search/extension/direction.h"
#include "search/rules/score.h"
#include "settings/settings.h"

namespace quorix {

namespace {

/// Edits that may follow those on the way to `level`; negative if any number may.
int edits_left(std::uint8_t level) {
  if (global_maximum_recursion_depth > kDeepestRecursion) return -1;
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

/// Drifts that differ by this meet the same unit characters. The first edits make three of them,
/// and a state and its two neighbours must stay apart; so it is a multiple of the unit length from
/// 3 on.
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

constexpr RankedScore kPoint = 4;  // a power of two with room for the edits
constexpr RankedScore kNoScore = std::numeric_limits<RankedScore>::min();

RankedScore ranked(std::int64_t score, std::size_t edit) {
  return score * kPoint + static_cast<RankedScore>(kEditKinds - 1 - edit);
}

std::int64_t score_of(RankedScore ranked_score) {
  return ranked_score >> 2U;
}

std::size_t first_edit_of(RankedScore ranked_score) {
  return kEditKinds - 1 - static_cast<std::size_t>(ranked_score & 3);
}

/// Matches that make up for the cheapest edit.
std::int64_t min_penalty() {
  return scoring_rules_of_settings().min_penalty();
}

/// The ones of `row` with which `length` ones in a row begin. REQUIRES: 1 <= length <= 64.
std::uint64_t starts_of_runs(std::uint64_t row, std::int64_t length) {
  for (std::int64_t found = 1; found < length;) {
    const std::int64_t more = std::min(found, length - found);
    row &= row >> static_cast<unsigned>(more);
    found += more;
  }
  return row;
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
  ++work_.runs_of_Ns;
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
  ++work_.all_paths;
  while (!pending_.empty()) {
    ++work_.states;
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
void CLookAhead::begin(const LookAheadState& stop, const LookAheadBounds& bounds) {
  frame_ = {stop.edge, stop.character, bounds, Direction::bases_beyond(stop.edge, bounds.limit),
            (1 - bounds.unit_length) * kPoint};
  window_.clear();
}

template <class Direction>
std::int64_t CLookAhead::walk_on(Place& place, std::ptrdiff_t drift) {
  if (place.offset < window_.size()) {
    const int matches = std::countr_one(window_.row(drift) >> static_cast<unsigned>(place.offset));
    if (place.offset + matches < window_.size()) {
      place.offset += matches;
      return matches;
    }
  }
  ++work_.walks;
  const LookAheadBounds& bounds = frame_.bounds;
  std::int64_t characters = (place.offset - drift) % bounds.unit_length;
  if (characters < 0) characters += bounds.unit_length;
  const char* edge = Direction::edge_beyond(frame_.origin, place.offset);
  const char* character =
      Direction::character_beyond(frame_.character, characters, bounds.unit_begin, bounds.unit_end);
  const std::int64_t matches = walk_matches<Direction>(edge, character, bounds);
  place.offset = Direction::distance(frame_.origin, edge);
  return matches;
}

// A path gains by an edit only if more matches follow it than it costs, and by each of these no
// more than there are bases at which so long a run begins: a run of r matches holds r - p
// beginnings of p + 1 matches, with the smaller penalty p. The runs of a path share no base, and
// none has a base before the place; a run that it enters in the middle counts from there. So the
// bases beyond the place with which such runs begin, at whatever drift, are all that can be gained.
//
// That holds as far as the window shows the runs. Up to the base at which a path would leave it,
// each edit takes one base and up to p matches at which no such run begins, or one base and p such
// matches besides those that are counted. So a path gets no farther than `farthest`; if that is in
// the window, none leaves it. The window ends before the first N, so no path meets one either.
//
// The rows of all drifts that a path can have are looked at: see `read_window`.
bool CLookAhead::may_rise(const Place& place, int most_edits) const {
  if (place.offset >= window_.size()) return true;
  const std::int64_t most_gained =
      std::popcount(long_run_starts_ >> static_cast<unsigned>(place.offset));
  if (place.score + most_gained * kPoint > highest_) return true;
  const std::int64_t farthest = place.offset + most_edits * (min_penalty() + 1) + most_gained;
  return farthest >= window_.size();
}

template <class Direction>
void CLookAhead::add_place(Place place, std::ptrdiff_t drift, int most_edits, Level& level,
                           std::size_t first) {
  place.score += walk_on<Direction>(place, drift) * kPoint;
  highest_ = std::max(highest_, place.score);
  if (place.offset == frame_.room) return;
  if (place.score - min_penalty() * kPoint < frame_.floor) return;  // no edit can follow
  if (!may_rise(place, most_edits)) return;
  // Walks of one drift that overlap end at the same base.
  assert(level.places.size() <= first || level.places.back().offset <= place.offset);
  if (level.places.size() > first && level.places.back().offset == place.offset) {
    level.places.back().score = std::max(level.places.back().score, place.score);
  } else {
    level.places.push_back(place);
  }
}

CLookAhead::EditSource CLookAhead::source_of(std::ptrdiff_t drift) const {
  const std::ptrdiff_t modulus = drift_modulus(frame_.bounds.unit_length);
  std::ptrdiff_t from_lowest = drift - level_.lowest;
  if (from_lowest < 0) from_lowest += modulus;
  assert(from_lowest >= 0 && from_lowest < modulus);
  if (from_lowest > level_.highest() - level_.lowest) return {};
  assert(from_lowest >= 0);
  const auto index = static_cast<std::size_t>(from_lowest);
  const Place* const places = level_.places.data();
  return {places + level_.begins[index], places + level_.begins[index + 1]};
}

template <class Direction>
void CLookAhead::edit_places(std::ptrdiff_t drift, int most_edits) {
  // Three ordered sources: the states one edit earlier of this drift, the one below and the one
  // above.
  const ByEdit<EditUse> edits = {{{1, global_mismatch_score * kPoint},
                                  {1, global_indel_score * kPoint},
                                  {0, global_indel_score * kPoint}}};
  ByEdit<EditSource> sources = {source_of(drift), source_of(drift - 1), source_of(drift + 1)};
  const std::size_t first = next_.places.size();
  while (true) {
    std::int64_t offset = EditSource::kNone;
    for (std::size_t i = 0; i < kEditKinds; ++i) {
      offset = std::min(offset, sources[i].offset(edits[i]));
    }
    if (offset == EditSource::kNone) return;
    Place place{offset, kNoScore};
    for (std::size_t i = 0; i < kEditKinds; ++i) {
      if (sources[i].offset(edits[i]) != offset) continue;
      place.score = std::max(place.score, sources[i].place->score + edits[i].score);
      ++sources[i].place;
    }
    if (place.score >= frame_.floor) add_place<Direction>(place, drift, most_edits, next_, first);
  }
}

bool CLookAhead::is_decided() const {
  return std::all_of(level_.places.begin(), level_.places.end(), [&](const Place& place) {
    return first_edit_of(place.score) == first_edit_of(highest_);
  });
}

template <class Direction>
void CLookAhead::read_window(int most_edits) {
  if (most_edits < 0 || most_edits >= CMatchWindow::kMostDrift) return;
  const LookAheadBounds& bounds = frame_.bounds;
  ++work_.windows;
  window_.read<Direction>(frame_.origin, bounds.limit, frame_.character, bounds.unit_begin,
                          bounds.unit_end);
  long_run_starts_ = 0;
  if (min_penalty() >= window_.size()) return;
  // The first edits lead to drifts from -1 to 1, each further one changes it by 1 at the most. Of
  // drifts that differ by whole units one is enough.
  const std::ptrdiff_t highest = most_edits + 1;
  const std::ptrdiff_t lowest = std::max(-highest, highest - bounds.unit_length + 1);
  for (std::ptrdiff_t drift = lowest; drift <= highest; ++drift) {
    long_run_starts_ |= starts_of_runs(window_.row(drift), min_penalty() + 1);
  }
}

void CLookAhead::sift_level(int most_edits) {
  next_.restart(level_.lowest);
  for (std::size_t i = 0; i + 1 < level_.begins.size(); ++i) {
    for (std::size_t k = level_.begins[i]; k < level_.begins[i + 1]; ++k) {
      if (may_rise(level_.places[k], most_edits)) next_.places.push_back(level_.places[k]);
    }
    next_.complete_drift();
  }
  next_.complete();
  std::swap(level_, next_);
}

template <class Direction>
void CLookAhead::make_edits(int most_edits) {
  next_.restart(level_.lowest - 1);
  const std::ptrdiff_t last_drift =
      std::min(level_.highest() + 1, level_.lowest + drift_modulus(frame_.bounds.unit_length) - 2);
  for (std::ptrdiff_t drift = level_.lowest - 1; drift <= last_drift; ++drift) {
    edit_places<Direction>(drift, most_edits);
    next_.complete_drift();
  }
  next_.complete();
  ++work_.wavefronts;
  work_.states += next_.places.size();
  std::swap(level_, next_);
}

template <class Direction>
void CLookAhead::follow_best_paths(int most_edits, bool is_first_edit_enough) {
  const auto is_over = [&] {
    return most_edits == 0 || level_.places.empty() || (is_first_edit_enough && is_decided());
  };
  if (is_over()) return;
  read_window<Direction>(most_edits);
  sift_level(most_edits);
  while (!is_over()) {
    if (most_edits > 0) --most_edits;
    make_edits<Direction>(most_edits);
  }
}

template <class Direction>
std::int64_t CLookAhead::highest_score(const LookAheadState& from, const LookAheadBounds& bounds) {
  ++work_.calls;
  if (may_reduction_be_limited<Direction>(from, bounds)) {
    return highest_score_of_all_paths<Direction>(from, bounds);
  }
  begin<Direction>(from, bounds);
  highest_ = ranked(from.score, 0);
  level_.restart(0);
  const int most_edits = edits_left(from.level);
  add_place<Direction>({0, highest_}, 0, most_edits, level_, 0);
  level_.complete_drift();
  follow_best_paths<Direction>(most_edits, false);
  return score_of(highest_);
}

template <class Direction>
std::size_t CLookAhead::best_edit(const LookAheadState& stop, const LookAheadBounds& bounds) {
  ++work_.calls;
  const std::int64_t threshold = edit_threshold(stop.best_score, bounds.unit_length);
  const ByEdit<LookAheadState> edited = edits_at<Direction>(stop, bounds);
  highest_ = kNoScore;
  if (may_reduction_be_limited<Direction>(stop, bounds)) {
    for (std::size_t i = 0; i < kEditKinds; ++i) {
      if (edited[i].score <= threshold) continue;
      highest_ =
          std::max(highest_, ranked(highest_score_of_all_paths<Direction>(edited[i], bounds), i));
    }
  } else {
    // By ascending drift: a deletion, the mismatch, an insertion.
    constexpr ByEdit<std::size_t> kByDrift = {2, 0, 1};
    const int most_edits = edits_left(edited[0].level);
    begin<Direction>(stop, bounds);
    level_.restart(-1);
    for (std::ptrdiff_t drift = -1; drift <= 1; ++drift) {
      const std::size_t i = kByDrift[static_cast<std::size_t>(drift + 1)];
      if (edited[i].score > threshold) {
        add_place<Direction>(
            {Direction::distance(stop.edge, edited[i].edge), ranked(edited[i].score, i)}, drift,
            most_edits, level_, level_.places.size());
      }
      level_.complete_drift();
    }
    level_.complete();
    follow_best_paths<Direction>(most_edits, true);
  }
  return highest_ == kNoScore ? kNoEdit : first_edit_of(highest_);
}

template std::int64_t CLookAhead::highest_score<Rightward>(const LookAheadState&,
                                                           const LookAheadBounds&);
template std::int64_t CLookAhead::highest_score<Leftward>(const LookAheadState&,
                                                          const LookAheadBounds&);
template std::size_t CLookAhead::best_edit<Rightward>(const LookAheadState&,
                                                      const LookAheadBounds&);
template std::size_t CLookAhead::best_edit<Leftward>(const LookAheadState&, const LookAheadBounds&);

}  // namespace quorix
