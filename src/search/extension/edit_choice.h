#pragma once

/// @file
/// The choice of one edit by branch and bound: only the edit after which the highest score can be
/// met counts, not that score.
///
/// At nearly every edit site one edit leads back into the array, and a greedy path from it, along
/// the longest run at each next edit, meets a high score. With that score as the bar, few states
/// after the other two edits have to be looked at:
///
///     1. follow the run after each allowed first edit; the longest one begins the greedy path
///     2. continue it: of three edits the one that leads to the highest score
///     3. explore the paths of the other first edits, depth first
///     4. if they end above the bar, explore those of the greedy path's first edit, too
///
/// Steps 3 and 4 drop a state from which no path gains enough to exceed the highest score so far,
/// and one that an earlier state dominates. After `kMaxStates` states the choice stays undecided.
///
/// **Why the choice is that of all paths.** Scores are ranked: the first edit is part of them, so
/// that two first edits never tie, and "exceeds" already means "or is preferred at equal scores".
/// Every score met is that of a real path. So it is enough that no path that was left out exceeds
/// the highest score met, or that those which do begin with the edit chosen.
///
/// - *No gain.* `CRunFollower::may_gain_more_than` bounds all paths from a state. What it drops
///   exceeds neither the highest score of that time nor the one at the end.
/// - *Dominance.* State a dominates b if both have the same offset and diagonal, a has as many
///   edits left or more, and a ranked score as high or higher. Each path from b can be repeated
///   from a: the runs are the same, and an edit that keeps b's score above the drop-off limit keeps
///   a's there too, as the limit is the same for all paths. It ends as high or higher. So b may be
///   dropped if the paths of a are accounted for.
/// - *States explored earlier* are: their edits are tried, and each leaves one edit fewer, so a
///   chain of states that dominate one another's successors ends.
/// - *States of the greedy path* may dominate in step 3 although only one edit of each has been
///   tried. All that they can reach begins with the greedy path's first edit. If step 3 ends with a
///   highest score of that edit, it is chosen whatever else those states reach. If not, step 4
///   explores all paths from it, and forgets the dominating states before.
///
/// Where a reduction limit makes the drop-off limit depend on the path, none of this holds.
///
/// **N's, text ends, long runs.** The window ends before the first N and holds a limited number of
/// bases. A run that it does not show to the end is followed in the text, and a state beyond its
/// last base may gain anything.
///
/// **Units shorter than the number of diagonals.** Diagonals that differ by whole units meet the
/// same characters. Here they stay apart, unlike in a wavefront: some dominance goes unnoticed,
/// which costs time and changes no result. All diagonals are in the window, since the first edit
/// leads to -1, 0 or 1 and each of the `kMaxEdits` others changes that by 1 at most.

#include <cstddef>
#include <cstdint>
#include <optional>

#include "search/extension/explored_states.h"
#include "search/extension/gain_window.h"
#include "search/extension/ranked_score.h"
#include "search/extension/run_follower.h"

namespace quorix {

/// The work of choices.
struct EditChoiceWork {
  std::uint64_t choices = 0;    ///< edits asked for
  std::uint64_t explored = 0;   ///< states whose three edits were tried, greedy paths included
  std::uint64_t undecided = 0;  ///< choices given up
};

class CEditChoice {
 public:
  /// Edits that may follow the first one. With more, wavefronts alone are faster: user time of
  /// `quorix -U 50 -r DEPTH` on 300 kbp of human chromosome 2, with this choice and without it, is
  /// 0.18 s and 0.22 s at depth 5 (4 edits), 0.27 s and 0.29 s at depth 6, but 0.43 s and 0.37 s at
  /// depth 7, 0.75 s and 0.56 s at depth 8.
  static constexpr int kMaxEdits = 5;
  /// Paths of more could leave the diagonals of the window.
  static_assert(kMaxEdits <= CGainWindow::kMaxEdits);
  static_assert(kMaxEdits <= CExploredStates::kMaxEditsLeft);

  /// States that are explored for one choice, not counting the greedy path. Wavefronts, which merge
  /// more states, are faster at the few choices that take more. Of 410,000 on the 300 kbp above,
  /// with `-U 100` at depth 5, these are 36.
  static constexpr int kMaxStates = 64;

  /// Returns the first edit after which the highest score can be met, as its index in the order of
  /// preference, or nothing if that is undecided. `first_states` are the states after each first
  /// edit, their runs not yet followed; all have the same `edits_left`. `Direction` is `Rightward`
  /// or `Leftward`. Throws: std::bad_alloc.
  ///
  /// REQUIRES: at least one edit is allowed; 0 <= `edits_left` <= `kMaxEdits`; `runs` has begun at
  /// the edit site, and its window is empty or was read for `edits_left` edits.
  template <class Direction>
  [[nodiscard]] std::optional<std::size_t> choose(const ByEdit<EditedState>& first_states,
                                                  CRunFollower& runs);

  /// The highest score met by the last choice, decided or not; a path that leads to it exists.
  [[nodiscard]] RankedScore highest() const { return highest_; }

  /// The work done since it was made.
  [[nodiscard]] const EditChoiceWork& work() const { return work_; }

 private:
  /// Moves an edited state on over its run, and raises `highest_`.
  template <class Direction>
  void follow_run(EditedState& state, CRunFollower& runs);

  /// The states after each edit of `state`, at the ends of their runs.
  template <class Direction>
  ByEdit<EditedState> edits_of(const EditedState& state, CRunFollower& runs);

  /// Follows the greedy path from `state`, whose states may dominate from then on.
  template <class Direction>
  void follow_greedy_path(EditedState state, CRunFollower& runs);

  /// Follows all paths from `state` that may exceed `highest_`, depth first: no deeper than the
  /// edits that are left. Returns false if that takes too many states.
  template <class Direction>
  [[nodiscard]] bool explore(const EditedState& state, CRunFollower& runs);

  /// True if an edit of `state` is to be tried: a path from there may exceed `highest_`.
  [[nodiscard]] bool may_exceed(const EditedState& state, const CRunFollower& runs) const;

  CExploredStates explored_;        ///< states whose edits were tried
  RankedScore highest_ = kNoScore;  ///< met so far
  RankedScore min_score_ = 0;       ///< that an edit may leave
  int states_left_ = 0;             ///< states that may still be explored
  EditChoiceWork work_;
};

}  // namespace quorix
