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

#include <algorithm>
#include <array>
#include <functional>

#include "search/direction.h"
#include "search/edit_memo.h"
#include "search/look_ahead.h"
#include "search/score.h"
#include "search/search_controller.h"
#include "settings/settings.h"

namespace quorix {

namespace {

constexpr char kNoKind = '\0';

/// A state of a growing repeat. During one extension the edit list only gets longer, so its length
/// is all that has to be remembered of it.
class CSnapshot {
 public:
  explicit CSnapshot(const Csat& sat)
      : start_(sat.start),
        end_(sat.end),
        unit_pos_right_(sat.unit_pos_right),
        unit_pos_left_(sat.unit_pos_left),
        score_(sat.score),
        mismatches_(sat.mismatches),
        insertions_(sat.insertions),
        deletions_(sat.deletions),
        n_count_(sat.n_count),
        edit_count_(sat.missense.size()) {}

  [[nodiscard]] std::int32_t score() const { return score_; }

  void restore(Csat& sat) const {
    sat.start = start_;
    sat.end = end_;
    sat.unit_pos_right = unit_pos_right_;
    sat.unit_pos_left = unit_pos_left_;
    sat.score = score_;
    sat.mismatches = mismatches_;
    sat.insertions = insertions_;
    sat.deletions = deletions_;
    sat.n_count = n_count_;
    sat.missense.truncate(edit_count_);
  }

 private:
  const char* start_;
  const char* end_;
  const char* unit_pos_right_;
  const char* unit_pos_left_;
  std::int32_t score_;
  std::int64_t mismatches_;
  std::int64_t insertions_;
  std::int64_t deletions_;
  std::int64_t n_count_;
  std::size_t edit_count_;
};

/// What growth asks for an edit.
struct EditAdvisers {
  CLookAhead& look_ahead;
  CEditMemo* memo;  ///< null if the text is not the one that it is for
};

/// True if only the floor bounds what edits may cost from here on.
bool is_reduction_unlimited(const Csat& sat, std::int64_t best_score, std::int64_t bases_beyond) {
  const std::int64_t highest_score = std::max<std::int64_t>(sat.score, best_score) + bases_beyond;
  return edit_threshold(highest_score, sat.unit_length()) == -sat.unit_length();
}

/// The score, or one value for all scores from which no path of the look-ahead can fall to the
/// floor, however many of its edits it makes.
std::int64_t score_that_matters(const Csat& sat) {
  const std::int64_t most_lost =
      std::int64_t{global_maximum_recursion_depth} *
      std::max(-std::int64_t{global_mismatch_score}, -std::int64_t{global_indel_score});
  return std::min<std::int64_t>(sat.score, most_lost - sat.unit_length() + 1);
}

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
  const bool is_memorable =
      advisers.memo != nullptr && sat.unit_length() <= CEditMemo::kLongestUnit &&
      sat.recursion_depth == 0 &&
      is_reduction_unlimited(sat, best_score, Direction::bases_beyond(edge, limit));
  if (!is_memorable) {
    return look_ahead_for_edit<Direction>(sat, edge, character, limit, best_score,
                                          advisers.look_ahead);
  }
  const EditSite site{edge, limit,
                      CEditMemo::code_of(character, sat.unit_begin, sat.unit_end,
                                         Direction::kIndex == Rightward::kIndex),
                      score_that_matters(sat)};
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
  return CSearchController::extend_exact_forward(sat, limit);
}

bool extend_exact(Leftward /*direction*/, Csat& sat, const char* limit) {
  return CSearchController::extend_exact_backward(sat, limit);
}

template <class Direction>
void extend_imperfect(Csat& sat, const char* limit, const EditAdvisers& advisers) {
  CSnapshot best(sat);
  while (extend_exact(Direction(), sat, limit)) {
    if (sat.score > best.score()) best = CSnapshot(sat);
    const char kind = choose_edit<Direction>(sat, limit, best.score(), advisers);
    if (kind == kNoKind) {
      if (sat.score < best.score()) best.restore(sat);
      return;
    }
    apply_edit<Direction>(sat, kind);
  }
  if (sat.score <= best.score()) best.restore(sat);
}

}  // namespace

CEditMemo* CSearchController::memo_for(const Csat& sat) {
  const std::less<> is_before;
  const bool is_own = !is_before(sat.start, text_begin()) && !is_before(text_end(), sat.end);
  return is_own ? &edit_memo_ : nullptr;
}

void CSearchController::extend_imperfect_forward(Csat& sat, const char* limit) {
  extend_imperfect<Rightward>(sat, limit, {look_ahead_, memo_for(sat)});
}

void CSearchController::extend_imperfect_backward(Csat& sat, const char* limit) {
  extend_imperfect<Leftward>(sat, limit, {look_ahead_, memo_for(sat)});
}

int CSearchController::extend_imperfect_forward_leap_ahead(
    const char* pos, const char* unit_pos, const char* unit_begin, const char* unit_end, int score,
    std::int64_t unit_length, std::uint8_t level, const char* limit, int best_score) {
  return saturated_score(look_ahead_.highest_score<Rightward>(
      {pos, unit_pos, score, best_score, level}, {unit_begin, unit_end, unit_length, limit}));
}

int CSearchController::extend_imperfect_backward_leap_ahead(
    const char* pos, const char* unit_pos, const char* unit_begin, const char* unit_end, int score,
    std::int64_t unit_length, std::uint8_t level, const char* limit, int best_score) {
  return saturated_score(look_ahead_.highest_score<Leftward>(
      {pos, unit_pos, score, best_score, level}, {unit_begin, unit_end, unit_length, limit}));
}

}  // namespace quorix
