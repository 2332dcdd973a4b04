// Extension over edits.
//
// The repeat is extended over matching bases up to an edit site. There each of the three edits that
// keeps the score above the drop-off limit is judged by a look-ahead, the best one is made,
// whatever it is worth, and the extension goes on. The best state met is remembered and is what
// remains: that is the only trimming. On equal values a mismatch is preferred to an insertion, and
// an insertion to a deletion.
//
// Ties between the last and the best state are broken in two ways, both on purpose: where the text
// ends (or a long run of N's begins) the earlier, shorter state stays; where no edit is allowed any
// more, the last one.
//
// The cache takes over where it can: see extension_cache.h.

#include "search/extension/imperfect_extension.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

#include "search/extension/direction.h"
#include "search/extension/exact_extension.h"
#include "search/extension/path_follower.h"
#include "search/extension/repeat_snapshot.h"
#include "search/extension/site_key.h"
#include "search/rules/score.h"
#include "settings/settings.h"

namespace quorix {

namespace {

constexpr char kNoKind = '\0';

/// Returns the edit that the look-ahead finds most promising, or NUL if none is allowed.
template <class Direction>
char look_ahead_for_edit(const Csat& sat, const char* edge, const char* character,
                         const char* limit, std::int64_t best_score, CLookAhead& look_ahead) {
  constexpr std::array<char, kEditKinds + 1> kKinds = {'M', 'I', 'D', kNoKind};
  return kKinds[look_ahead.best_edit<Direction>(
      {edge, character, sat.score, best_score, sat.recursion_depth},
      {sat.unit_begin, sat.unit_end, sat.unit_length(), limit})];
}

/// The key of the site at the edge, if it has one.
template <class Direction>
std::optional<SiteKey> key_of_site(Csat& sat, const char* limit, std::int64_t best_score) {
  const char* const edge = Direction::edge(sat);
  if (is_cacheable<Direction>(sat, limit, best_score)) {
    return SiteKey{edge, unit_code_of<Direction>(sat),
                   score_class_of(sat.score, min_safe_score(sat.unit_length()))};
  }
  if (is_place_cacheable<Direction>(sat, limit, best_score)) {
    return SiteKey{edge, place_code_of<Direction>(sat), 0};
  }
  return std::nullopt;
}

/// The edit that is made at the edge, NUL if none is allowed: from the cache if it is there.
template <class Direction>
char choose_edit(Csat& sat, const char* limit, std::int64_t best_score,
                 const ExtensionTools& tools) {
  const auto look_ahead = [&] {
    return look_ahead_for_edit<Direction>(sat, Direction::edge(sat), Direction::unit_cursor(sat),
                                          limit, best_score, tools.look_ahead);
  };
  if (tools.edits == nullptr) return look_ahead();
  const std::optional<SiteKey> site = key_of_site<Direction>(sat, limit, best_score);
  if (!site) return look_ahead();
  char choice = tools.edits->find(*site, limit);
  if (choice != kNoKind) return choice;

  const auto runs_beyond_window = [&] { return tools.look_ahead.run_work().unwindowed_runs; };
  const std::uint64_t runs_before = runs_beyond_window();
  choice = look_ahead();
  const bool is_in_window = runs_beyond_window() == runs_before;
  if (is_in_window || site->unit_code < kPlaceMark) tools.edits->store(*site, limit, choice);
  return choice;
}

/// Makes the edit at the edge. A deletion lies just before the base at the edge, on either side.
template <class Direction>
void apply_edit(Csat& sat, char kind) {
  const char*& edge = Direction::edge(sat);
  const char*& cursor = Direction::unit_cursor(sat);
  if (kind == 'D') {
    sat.missense.push_back({edge, kind});
    ++sat.deletions;
  } else {
    sat.missense.push_back({Direction::base_beyond(edge), kind});
    edge = Direction::edge_beyond(edge);
    ++(kind == 'M' ? sat.mismatches : sat.insertions);
  }
  if (kind != 'I') cursor = Direction::next_in_unit(cursor, sat.unit_begin, sat.unit_end);
  const int penalty = kind == 'M' ? global_mismatch_score : global_indel_score;
  sat.score = saturated_score(std::int64_t{sat.score} + penalty);
}

// The exact extension by direction, for the templates below.

bool extend_exact(Rightward /*direction*/, Csat& sat, const char* limit) {
  return extend_exact_forward(sat, limit);
}

bool extend_exact(Leftward /*direction*/, Csat& sat, const char* limit) {
  return extend_exact_backward(sat, limit);
}

/// Extends to one side up to the last edit allowed, or the limit. Returns false if it ended at the
/// limit, or at too many N's.
template <class Direction>
bool extend_to_end(Csat& sat, const char* limit, const ExtensionTools& tools,
                   CPathFollower<Direction>& follower, CRepeatSnapshot& best) {
  while (extend_exact(Direction(), sat, limit)) {
    // Before the cache moves the repeat on: the state at this site may remain the best one.
    if (sat.score > best.score()) best = CRepeatSnapshot(sat, follower.section_count());
    follower.follow(sat, limit, best);
    const char kind = choose_edit<Direction>(sat, limit, best.score(), tools);
    if (kind == kNoKind) return true;
    follower.note(sat, kind);
    apply_edit<Direction>(sat, kind);
  }
  return false;
}

/// Extends to one side and leaves the repeat at its best state, with all edits up to there.
template <class Direction>
void extend_imperfect(Csat& sat, const char* limit, const ExtensionTools& tools) {
  CRepeatSnapshot best(sat);
  CPathFollower<Direction> follower(tools.paths);
  const bool is_at_site = extend_to_end(sat, limit, tools, follower, best);
  const bool is_best_before = is_at_site ? sat.score < best.score() : sat.score <= best.score();
  if (is_best_before) best.restore(sat);
  follower.end(sat, is_best_before ? best.section_count() : follower.section_count());
}

}  // namespace

void extend_imperfect_forward(Csat& sat, const char* limit, const ExtensionTools& tools) {
  extend_imperfect<Rightward>(sat, limit, tools);
}

void extend_imperfect_backward(Csat& sat, const char* limit, const ExtensionTools& tools) {
  extend_imperfect<Leftward>(sat, limit, tools);
}

}  // namespace quorix
