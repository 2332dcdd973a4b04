// Growing a repeat over edits.
//
// The repeat is walked along matching bases. Where a base differs, each of the three edits that
// keeps the score above the threshold is judged by a look-ahead, the best one is applied, whatever
// it is worth, and the walk goes on. The best-scoring state met on the way is remembered and is
// what remains: that is the only trimming. On equal look-ahead values a mismatch is preferred to
// an insertion, and an insertion to a deletion.
//
// Ties between the current and the best state are broken in two ways, both on purpose: where the
// text ends (or a long run of N's begins) the earlier, shorter state stays; where no edit is
// allowed any more, the current one.

#include "search/extension/imperfect_extension.h"

#include <algorithm>
#include <array>

#include "search/extension/direction.h"
#include "search/extension/exact_extension.h"
#include "search/extension/kept_way.h"
#include "search/rules/score.h"
#include "settings/settings.h"

namespace quorix {

namespace {

constexpr char kNoKind = '\0';

/// The edit that the look-ahead finds most promising, or NUL if none may be made.
template <class Direction>
char look_ahead_for_edit(const Csat& sat, const char* edge, const char* character,
                         const char* limit, std::int64_t best_score, CLookAhead& look_ahead) {
  constexpr std::array<char, kEditKinds + 1> kKinds = {'M', 'I', 'D', kNoKind};
  return kKinds[look_ahead.best_edit<Direction>(
      {edge, character, sat.score, best_score, sat.recursion_depth},
      {sat.unit_begin, sat.unit_end, sat.unit_length(), limit})];
}

template <class Direction>
char choose_edit(Csat& sat, const char* limit, std::int64_t best_score,
                 const EditAdvisers& advisers) {
  const char* const edge = Direction::edge(sat);
  const char* const character = Direction::unit_cursor(sat);
  if (advisers.memo == nullptr || !is_memorable<Direction>(sat, limit, best_score)) {
    return look_ahead_for_edit<Direction>(sat, edge, character, limit, best_score,
                                          advisers.look_ahead);
  }
  const EditSite site{edge, limit, unit_code<Direction>(sat),
                      std::min<std::int64_t>(sat.score, least_free_score(sat.unit_length()))};
  char choice = advisers.memo->find(site);
  if (choice == kNoKind) {
    choice = look_ahead_for_edit<Direction>(sat, edge, character, limit, best_score,
                                            advisers.look_ahead);
    advisers.memo->keep(site, choice);
  }
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

bool extend_exact(Rightward /*direction*/, Csat& sat, const char* limit) {
  return extend_exact_forward(sat, limit);
}

bool extend_exact(Leftward /*direction*/, Csat& sat, const char* limit) {
  return extend_exact_backward(sat, limit);
}

/// Grows to one side, up to where growth ends. Gives false if it ended at the limit, or at N's.
template <class Direction>
bool walk_to_end(Csat& sat, const char* limit, const EditAdvisers& advisers,
                 CKeptWay<Direction>& way, CSnapshot& best) {
  while (extend_exact(Direction(), sat, limit)) {
    if (sat.score > best.score()) best = CSnapshot(sat, way.part_count());
    way.follow(sat, limit, best);
    const char kind = choose_edit<Direction>(sat, limit, best.score(), advisers);
    if (kind == kNoKind) return true;
    way.note(sat, kind);
    apply_edit<Direction>(sat, kind);
  }
  return false;
}

template <class Direction>
void extend_imperfect(Csat& sat, const char* limit, const EditAdvisers& advisers) {
  CSnapshot best(sat);
  CKeptWay<Direction> way(advisers.paths);
  const bool is_at_stop = walk_to_end(sat, limit, advisers, way, best);
  const bool is_best_behind = is_at_stop ? sat.score < best.score() : sat.score <= best.score();
  if (is_best_behind) best.restore(sat);
  way.end(sat, is_best_behind ? best.part_count() : way.part_count());
}

}  // namespace

void extend_imperfect_forward(Csat& sat, const char* limit, const EditAdvisers& advisers) {
  extend_imperfect<Rightward>(sat, limit, advisers);
}

void extend_imperfect_backward(Csat& sat, const char* limit, const EditAdvisers& advisers) {
  extend_imperfect<Leftward>(sat, limit, advisers);
}

}  // namespace quorix
