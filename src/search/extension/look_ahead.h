#pragma once

/// @file
/// The highest score that an extension can still reach within some edits. At an edit site, the edit
/// that can lead to the highest one is chosen.

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "search/extension/edit_choice.h"
#include "search/extension/ranked_score.h"
#include "search/extension/run_follower.h"
#include "search/extension/wavefront.h"

namespace quorix {

/// A state in the alignment of a repeat with its unit.
struct LookAheadState {
  const char* edge;       ///< the base beyond it is read next
  const char* character;  ///< the unit character that base has to match
  std::int64_t score;
  std::int64_t best_score;  ///< the highest score on the way here
  std::uint8_t edit_count;  ///< edits on the way here, counted in 8 bits
};

/// The work of look-aheads.
struct LookAheadWork {
  std::uint64_t calls = 0;  ///< edits judged, or scores asked for
  /// Searches that followed every path by itself; up to three for an edit judged.
  std::uint64_t all_paths = 0;
  std::uint64_t wavefronts = 0;  ///< sets of states with one more edit each
  std::uint64_t states = 0;      ///< states followed, of wavefronts and of single paths
};

/// A look-ahead belongs to one text: it remembers the runs of N's that it has met there.
class CLookAhead {
 public:
  /// Returns the highest score that can be met from `from` on, over runs of matches and, between
  /// them, at most `global_maximum_recursion_depth` - `from.edit_count` edits, each of which must
  /// leave the score above `drop_off_limit`. Above a depth of `kMaxRecursionLimit` only that
  /// limit bounds the edits.
  ///
  /// `Direction` is `Rightward` or `Leftward`. Throws: std::bad_alloc.
  template <class Direction>
  [[nodiscard]] std::int64_t highest_score(const LookAheadState& from,
                                           const LookAheadContext& context);

  /// Returns the edit at `site`, where the base beyond the edge does not match, after which the
  /// highest score can be met, as its index in the order of preference; `kNoEdit` if none is
  /// allowed. `site.edit_count` is that before the edit. Throws: std::bad_alloc.
  template <class Direction>
  [[nodiscard]] std::size_t best_edit(const LookAheadState& site, const LookAheadContext& context);

  /// The work done since it was made.
  [[nodiscard]] const LookAheadWork& work() const { return work_; }
  [[nodiscard]] const RunFollowerWork& run_work() const { return runs_.work(); }
  [[nodiscard]] const EditChoiceWork& choice_work() const { return choice_.work(); }

 private:
  /// What an edit uses and costs.
  struct EditUse {
    std::int64_t bases;
    RankedScore score;
  };

  /// States of one diagonal, still to be edited.
  struct EditSource {
    static constexpr std::int64_t kNone = std::numeric_limits<std::int64_t>::max();

    const WavefrontCell* place = nullptr;
    const WavefrontCell* end = nullptr;

    /// Where the edit of the next of them leads; `kNone` if there is none.
    [[nodiscard]] std::int64_t offset(const EditUse& edit) const {
      return place == end ? kNone : place->offset + edit.bases;
    }
  };

  /// The states of `wavefront_` whose diagonal is `diagonal`, or differs from it by whole units.
  [[nodiscard]] EditSource source_of(std::ptrdiff_t diagonal) const;

  template <class Direction>
  std::int64_t highest_score_of_all_paths(const LookAheadState& from,
                                          const LookAheadContext& context);

  /// Begins a look-ahead from `site`. Nothing is known yet of what lies beyond.
  template <class Direction>
  void begin(const LookAheadState& site, const LookAheadContext& context);

  /// False if no path from `cell` over up to `max_edits` edits rises above `highest_`.
  [[nodiscard]] bool may_rise(const WavefrontCell& cell, int max_edits) const;

  /// Forgets the states of `wavefront_` from which up to `max_edits` edits gain nothing.
  void drop_cells_without_gain(int max_edits);

  /// True if all states of `wavefront_` began with the edit of the highest score.
  [[nodiscard]] bool is_decided() const;

  /// Follows the best paths from the states of `wavefront_` over up to `max_edits` more edits, or
  /// any number if it is negative, and raises `highest_` to the scores met. If only the first edit
  /// matters, it may end before.
  template <class Direction>
  void follow_best_paths(int max_edits, bool is_first_edit_enough);

  /// Fills `wavefront_` with the states one edit on. Up to `max_edits` edits may follow.
  template <class Direction>
  void make_wavefront(int max_edits);

  /// Fills the states of `diagonal` into `next_`, by an edit of those of `wavefront_`. Up to
  /// `max_edits` edits may follow.
  template <class Direction>
  void edit_cells(std::ptrdiff_t diagonal, int max_edits);

  /// The edit chosen by branch and bound, see search/extension/edit_choice.h, given the states
  /// after each first edit; nothing if that is undecided. `highest_` is a score met, or `kNoScore`.
  template <class Direction>
  [[nodiscard]] std::optional<std::size_t> edit_by_branch_and_bound(
      const ByEdit<EditedState>& first_states);

  /// The edit chosen by wavefronts. `highest_` is already set: only what exceeds it is followed.
  template <class Direction>
  [[nodiscard]] std::size_t edit_by_wavefronts(const ByEdit<EditedState>& first_states);

  /// Moves `cell` on over matches and raises `highest_`. Adds the cell to `wavefront`, whose states
  /// from `first` on have the same diagonal, unless it need not be followed.
  template <class Direction>
  void add_cell(WavefrontCell cell, std::ptrdiff_t diagonal, int max_edits, Wavefront& wavefront,
                std::size_t first);

  std::vector<LookAheadState> pending_;  ///< empty between calls; kept for its block
  Wavefront wavefront_;                  ///< as well
  Wavefront next_;
  CRunFollower runs_;
  CEditChoice choice_;
  RankedScore min_score_ = 0;           ///< the min score after an edit
  RankedScore min_editable_score_ = 0;  ///< the min score that an edit can follow
  RankedScore highest_ = 0;             ///< met so far
  LookAheadWork work_;
};

}  // namespace quorix
