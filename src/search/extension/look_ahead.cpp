// The look-ahead is an exhaustive search over edits: from a state, follow the matches as far as
// they go, then try a mismatch, an insertion and a deletion there, and continue from each in the
// same way. Its value is the highest score met anywhere.
//
// Since only that maximum counts, the order in which states are visited does not matter. And of two
// states at the same base and unit character after equally many edits the lower-scoring one can be
// dropped: whatever follows it follows the other one with a higher score. So the search goes from
// wavefront to wavefront (wavefront.h): as many states as the depth squared, not three to its
// power. States from which nothing can be gained are dropped (gain_window.h).
//
// Where only the first edit is to be chosen, branch and bound decides most often (edit_choice.h).
// If it does not, wavefronts do: the first edit is part of the score, so that on equal scores the
// path that began with the preferred edit stays. They begin with the score that branch and bound
// has met, and end early when all states left began with the edit of the highest score.
//
// Two states do not share a drop-off limit that depends on the best score of a path, as a score
// reduction limit makes it. If that may come into play, every path is followed by itself, with a
// list of states still to be visited: a state leaves it before its successors join, so it holds at
// most three times as many states as the deepest path has edits.

#include "search/extension/look_ahead.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "search/extension/direction.h"
#include "search/rules/score.h"
#include "settings/settings.h"

namespace quorix {

namespace {

/// Edits that may follow those before; negative if any number may.
int edits_left(std::uint8_t edit_count) {
  if (global_maximum_recursion_depth > kMaxRecursionLimit) return -1;
  return static_cast<std::uint8_t>(global_maximum_recursion_depth - edit_count);
}

/// Returns false if the unit length alone sets the drop-off limit.
template <class Direction>
bool may_reduction_be_limited(const LookAheadState& from, const LookAheadContext& context) {
  // No path gets above this.
  const std::int64_t max_score =
      std::max(from.score, from.best_score) + Direction::bases_beyond(from.edge, context.limit);
  return max_score - std::int64_t{global_maximum_scorereduction} > -context.unit_length;
}

/// The states after each edit at `site`.
template <class Direction>
ByEdit<LookAheadState> edits_at(const LookAheadState& site, const LookAheadContext& context) {
  const char* const next_edge = Direction::edge_beyond(site.edge);
  const char* const next_character =
      Direction::next_in_unit(site.character, context.unit_begin, context.unit_end);
  const auto edit_count = static_cast<std::uint8_t>(site.edit_count + 1);
  return {
      {{next_edge, next_character, site.score + global_mismatch_score, site.best_score, edit_count},
       {next_edge, site.character, site.score + global_indel_score, site.best_score, edit_count},
       {site.edge, next_character, site.score + global_indel_score, site.best_score, edit_count}}};
}

/// Diagonals that differ by this meet the same unit characters. The first edits make three of them,
/// and a state and its two neighbours must stay apart; so it is the least multiple of the unit
/// length that is 3 or more.
std::ptrdiff_t diagonal_modulus(std::int64_t unit_length) {
  switch (unit_length) {
    case 1:
      return 3;
    case 2:
      return 4;
    default:
      return unit_length;
  }
}

}  // namespace

template <class Direction>
std::int64_t CLookAhead::highest_score_of_all_paths(const LookAheadState& from,
                                                    const LookAheadContext& context) {
  pending_.assign(1, from);
  std::int64_t highest = from.score;
  ++work_.all_paths;
  while (!pending_.empty()) {
    ++work_.states;
    LookAheadState state = pending_.back();
    pending_.pop_back();
    state.score += runs_.follow_matches<Direction>(state.edge, state.character, context);
    // Before the tests that end a path: its last state counts too.
    highest = std::max(highest, state.score);
    if (state.edit_count == global_maximum_recursion_depth ||
        Direction::is_at_limit(state.edge, context.limit)) {
      continue;
    }

    state.best_score = std::max(state.best_score, state.score);
    const std::int64_t limit_score = drop_off_limit(state.best_score, context.unit_length);
    for (const LookAheadState& edited : edits_at<Direction>(state, context)) {
      if (edited.score > limit_score) pending_.push_back(edited);
    }
  }
  return highest;
}

template <class Direction>
void CLookAhead::begin(const LookAheadState& site, const LookAheadContext& context) {
  runs_.begin<Direction>(site.edge, site.character, context);
  min_score_ = (1 - context.unit_length) * kPoint;
  min_editable_score_ = min_score_ + scoring_rules_of_settings().min_penalty() * kPoint;
}

bool CLookAhead::may_rise(const WavefrontCell& cell, int max_edits) const {
  return runs_.may_gain_more_than(score_of(highest_ - cell.score), cell.offset, max_edits);
}

template <class Direction>
void CLookAhead::add_cell(WavefrontCell cell, std::ptrdiff_t diagonal, int max_edits,
                          Wavefront& wavefront, std::size_t first) {
  cell.score += runs_.follow<Direction>(cell.offset, diagonal) * kPoint;
  highest_ = std::max(highest_, cell.score);
  if (cell.offset == runs_.base_count()) return;
  if (cell.score < min_editable_score_) return;
  if (!may_rise(cell, max_edits)) return;
  // Runs on one diagonal that overlap end at the same base.
  assert(wavefront.cells.size() <= first || wavefront.cells.back().offset <= cell.offset);
  if (wavefront.cells.size() > first && wavefront.cells.back().offset == cell.offset) {
    wavefront.cells.back().score = std::max(wavefront.cells.back().score, cell.score);
  } else {
    wavefront.cells.push_back(cell);
  }
}

CLookAhead::EditSource CLookAhead::source_of(std::ptrdiff_t diagonal) const {
  const std::ptrdiff_t modulus = diagonal_modulus(runs_.unit_length());
  std::ptrdiff_t from_first = diagonal - wavefront_.min_diagonal;
  if (from_first < 0) from_first += modulus;
  assert(from_first >= 0 && from_first < modulus);
  if (from_first > wavefront_.max_diagonal() - wavefront_.min_diagonal) return {};
  assert(from_first >= 0);
  const auto index = static_cast<std::size_t>(from_first);
  const WavefrontCell* const cells = wavefront_.cells.data();
  return {cells + wavefront_.begins[index], cells + wavefront_.begins[index + 1]};
}

template <class Direction>
void CLookAhead::edit_cells(std::ptrdiff_t diagonal, int max_edits) {
  // Three ordered sources: the states one edit earlier of this diagonal, the one below and the one
  // above.
  const ByEdit<EditUse> edits = {{{1, global_mismatch_score * kPoint},
                                  {1, global_indel_score * kPoint},
                                  {0, global_indel_score * kPoint}}};
  ByEdit<EditSource> sources = {source_of(diagonal), source_of(diagonal - 1),
                                source_of(diagonal + 1)};
  const std::size_t first = next_.cells.size();
  while (true) {
    std::int64_t offset = EditSource::kNone;
    for (std::size_t i = 0; i < kEditKinds; ++i) {
      offset = std::min(offset, sources[i].offset(edits[i]));
    }
    if (offset == EditSource::kNone) return;
    WavefrontCell cell{offset, kNoScore};
    for (std::size_t i = 0; i < kEditKinds; ++i) {
      if (sources[i].offset(edits[i]) != offset) continue;
      cell.score = std::max(cell.score, sources[i].place->score + edits[i].score);
      ++sources[i].place;
    }
    if (cell.score >= min_score_) add_cell<Direction>(cell, diagonal, max_edits, next_, first);
  }
}

bool CLookAhead::is_decided() const {
  return std::all_of(wavefront_.cells.begin(), wavefront_.cells.end(),
                     [&](const WavefrontCell& cell) {
                       return first_edit_of(cell.score) == first_edit_of(highest_);
                     });
}

void CLookAhead::drop_cells_without_gain(int max_edits) {
  next_.restart(wavefront_.min_diagonal);
  for (std::size_t i = 0; i + 1 < wavefront_.begins.size(); ++i) {
    for (std::size_t k = wavefront_.begins[i]; k < wavefront_.begins[i + 1]; ++k) {
      if (may_rise(wavefront_.cells[k], max_edits)) next_.cells.push_back(wavefront_.cells[k]);
    }
    next_.complete_diagonal();
  }
  next_.complete();
  std::swap(wavefront_, next_);
}

template <class Direction>
void CLookAhead::make_wavefront(int max_edits) {
  next_.restart(wavefront_.min_diagonal - 1);
  // One diagonal more on either side, but no more than the modulus in all: the next ones would meet
  // the unit where the first ones do.
  const std::ptrdiff_t last_diagonal =
      std::min(wavefront_.max_diagonal() + 1,
               wavefront_.min_diagonal + diagonal_modulus(runs_.unit_length()) - 2);
  for (std::ptrdiff_t diagonal = wavefront_.min_diagonal - 1; diagonal <= last_diagonal;
       ++diagonal) {
    edit_cells<Direction>(diagonal, max_edits);
    next_.complete_diagonal();
  }
  next_.complete();
  ++work_.wavefronts;
  work_.states += next_.cells.size();
  std::swap(wavefront_, next_);
}

template <class Direction>
void CLookAhead::follow_best_paths(int max_edits, bool is_first_edit_enough) {
  const auto is_over = [&] {
    return max_edits == 0 || wavefront_.cells.empty() || (is_first_edit_enough && is_decided());
  };
  while (!is_over()) {
    if (max_edits > 0) --max_edits;
    make_wavefront<Direction>(max_edits);
  }
}

template <class Direction>
std::int64_t CLookAhead::highest_score(const LookAheadState& from,
                                       const LookAheadContext& context) {
  ++work_.calls;
  if (may_reduction_be_limited<Direction>(from, context)) {
    return highest_score_of_all_paths<Direction>(from, context);
  }
  begin<Direction>(from, context);
  highest_ = ranked(from.score, 0);
  wavefront_.restart(0);
  const int max_edits = edits_left(from.edit_count);
  add_cell<Direction>({0, highest_}, 0, max_edits, wavefront_, 0);
  wavefront_.complete_diagonal();
  // Only now, as the first run often leads out of the window, or to the limit.
  if (max_edits != 0 && !wavefront_.cells.empty()) {
    runs_.read_window<Direction>(max_edits);
    drop_cells_without_gain(max_edits);
  }
  follow_best_paths<Direction>(max_edits, false);
  return score_of(highest_);
}

template <class Direction>
std::optional<std::size_t> CLookAhead::edit_by_branch_and_bound(
    const ByEdit<EditedState>& first_states) {
  const int max_edits = first_states[0].edits_left;
  highest_ = kNoScore;
  if (max_edits < 0 || max_edits > CEditChoice::kMaxEdits) return std::nullopt;
  const std::optional<std::size_t> edit = choice_.choose<Direction>(first_states, runs_);
  highest_ = choice_.highest();
  return edit;
}

template <class Direction>
std::size_t CLookAhead::edit_by_wavefronts(const ByEdit<EditedState>& first_states) {
  // By ascending diagonal: a deletion, the mismatch, an insertion.
  constexpr ByEdit<std::size_t> kByDiagonal = {2, 0, 1};
  const int max_edits = first_states[0].edits_left;
  wavefront_.restart(-1);
  for (const std::size_t i : kByDiagonal) {
    const EditedState& first = first_states[i];
    if (first.score != kNoScore) {
      add_cell<Direction>({first.offset, first.score}, first.diagonal, max_edits, wavefront_,
                          wavefront_.cells.size());
    }
    wavefront_.complete_diagonal();
  }
  wavefront_.complete();
  follow_best_paths<Direction>(max_edits, true);
  return first_edit_of(highest_);
}

template <class Direction>
std::size_t CLookAhead::best_edit(const LookAheadState& site, const LookAheadContext& context) {
  ++work_.calls;
  const std::int64_t limit_score = drop_off_limit(site.best_score, context.unit_length);
  const ByEdit<LookAheadState> edited = edits_at<Direction>(site, context);
  const auto is_allowed = [&](const LookAheadState& state) { return state.score > limit_score; };
  if (std::count_if(edited.begin(), edited.end(), is_allowed) < 2) {
    const auto* const only = std::find_if(edited.begin(), edited.end(), is_allowed);
    return static_cast<std::size_t>(only - edited.begin());  // kNoEdit if there is none
  }

  if (may_reduction_be_limited<Direction>(site, context)) {
    highest_ = kNoScore;
    for (std::size_t i = 0; i < kEditKinds; ++i) {
      if (!is_allowed(edited[i])) continue;
      highest_ =
          std::max(highest_, ranked(highest_score_of_all_paths<Direction>(edited[i], context), i));
    }
    return first_edit_of(highest_);
  }

  constexpr ByEdit<std::int32_t> kDiagonals = {0, 1, -1};
  ByEdit<EditedState> first_states;
  for (std::size_t i = 0; i < kEditKinds; ++i) {
    first_states[i] = {is_allowed(edited[i]) ? ranked(edited[i].score, i) : kNoScore,
                       Direction::distance(site.edge, edited[i].edge), kDiagonals[i],
                       edits_left(edited[i].edit_count)};
  }
  begin<Direction>(site, context);
  if (first_states[0].edits_left != 0) runs_.read_window<Direction>(first_states[0].edits_left);
  const std::optional<std::size_t> edit = edit_by_branch_and_bound<Direction>(first_states);
  return edit ? *edit : edit_by_wavefronts<Direction>(first_states);
}

template std::int64_t CLookAhead::highest_score<Rightward>(const LookAheadState&,
                                                           const LookAheadContext&);
template std::int64_t CLookAhead::highest_score<Leftward>(const LookAheadState&,
                                                          const LookAheadContext&);
template std::size_t CLookAhead::best_edit<Rightward>(const LookAheadState&,
                                                      const LookAheadContext&);
template std::size_t CLookAhead::best_edit<Leftward>(const LookAheadState&,
                                                     const LookAheadContext&);

}  // namespace quorix
