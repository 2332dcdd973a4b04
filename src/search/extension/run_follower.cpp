// Unlike the exact extension, matches continue through a run of N's of any length, at score 0 a
// base: a gap at which another edit would end anyway must not hide what this one leads to.

#include "search/extension/run_follower.h"

#include "search/extension/direction.h"
#include "search/rules/score.h"

namespace quorix {

template <class Direction>
void CRunFollower::begin(const char* edge, const char* character, const LookAheadContext& context) {
  origin_ = edge;
  character_ = character;
  context_ = context;
  base_count_ = Direction::bases_beyond(edge, context.limit);
  window_.clear();
}

template <class Direction>
void CRunFollower::read_window(int max_edits) {
  if (max_edits < 0 || max_edits > CGainWindow::kMaxEdits) return;
  ++work_.windows;
  window_.read<Direction>(origin_, context_.limit, character_, context_.unit_begin,
                          context_.unit_end, max_edits, scoring_rules_of_settings().min_penalty());
}

// A run of N's may be a gap of many megabases, and hundreds of paths at its edge go through it. So
// the run that was followed last is remembered, and all but the first of them skip it.
template <class Direction>
const char* CRunFollower::edge_after_Ns(const char* edge, const char* limit) {
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
std::int64_t CRunFollower::follow_matches(const char*& edge, const char*& character,
                                          const LookAheadContext& context) {
  std::int64_t all_matches = 0;
  const auto move_on = [&](std::int64_t count) {
    edge = Direction::edge_beyond(edge, count);
    character = Direction::character_beyond(character, count, context.unit_begin, context.unit_end);
  };
  while (!Direction::is_at_limit(edge, context.limit)) {
    const char base = *Direction::base_beyond(edge);
    if (base == *character) {
      const std::int64_t matches = matches_beyond<Direction>(edge, character, context.unit_begin,
                                                             context.unit_end, context.limit);
      all_matches += matches;
      move_on(matches);
    } else if (base == 'N' && is_N_neutral()) {
      move_on(Direction::distance(edge, edge_after_Ns<Direction>(edge, context.limit)));
    } else {
      break;
    }
  }
  return all_matches;
}

template <class Direction>
std::int64_t CRunFollower::follow_in_text(std::int64_t& offset, std::ptrdiff_t diagonal) {
  ++work_.unwindowed_runs;
  std::int64_t characters = (offset - diagonal) % context_.unit_length;
  if (characters < 0) characters += context_.unit_length;
  const char* edge = Direction::edge_beyond(origin_, offset);
  const char* character =
      Direction::character_beyond(character_, characters, context_.unit_begin, context_.unit_end);
  const std::int64_t matches = follow_matches<Direction>(edge, character, context_);
  offset = Direction::distance(origin_, edge);
  return matches;
}

template void CRunFollower::begin<Rightward>(const char*, const char*, const LookAheadContext&);
template void CRunFollower::begin<Leftward>(const char*, const char*, const LookAheadContext&);
template void CRunFollower::read_window<Rightward>(int);
template void CRunFollower::read_window<Leftward>(int);
template std::int64_t CRunFollower::follow_matches<Rightward>(const char*&, const char*&,
                                                              const LookAheadContext&);
template std::int64_t CRunFollower::follow_matches<Leftward>(const char*&, const char*&,
                                                             const LookAheadContext&);
template std::int64_t CRunFollower::follow_in_text<Rightward>(std::int64_t&, std::ptrdiff_t);
template std::int64_t CRunFollower::follow_in_text<Leftward>(std::int64_t&, std::ptrdiff_t);

}  // namespace quorix
