#pragma once

/// @file
/// How far up can the score still go from here? An edit of a repeat is chosen by the answer.

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "search/bits/match_window.h"

namespace quorix {

/// A place in the alignment of a repeat with its unit.
struct LookAheadState {
  const char* edge;       ///< the base beyond it is read next
  const char* character;  ///< the unit character that base has to match
  std::int64_t score;
  std::int64_t best_score;  ///< the highest score on the way here
  std::uint8_t level;       ///< edits on the way here, counted in 8 bits
};

/// What stays the same during a look-ahead.
struct LookAheadBounds {
  const char* unit_begin;
  const char* unit_end;
  std::int64_t unit_length;
  const char* limit;  ///< see search/extension/direction.h
};

/// The three edits, in the order in which they are preferred: a mismatch, an inserted base and a
/// deleted unit character.
inline constexpr std::size_t kEditKinds = 3;
/// Something for each of them.
template <class Value>
using ByEdit = std::array<Value, kEditKinds>;

/// The place of none of them in that order.
inline constexpr std::size_t kNoEdit = kEditKinds;

/// A score and the first edit on the way to it, as one number: of equal scores that of the
/// preferred edit is higher.
using RankedScore = std::int64_t;

/// What look-aheads have done.
struct LookAheadWork {
  std::uint64_t calls = 0;       ///< edits judged, or scores asked for
  std::uint64_t all_paths = 0;   ///< of these the times that every path was followed by itself
  std::uint64_t windows = 0;     ///< times that the bases beyond were read into a window
  std::uint64_t wavefronts = 0;  ///< sets of states with one more edit each
  std::uint64_t states = 0;      ///< states followed, of wavefronts and of single paths
  std::uint64_t walks = 0;       ///< walks along bases that no window told of
  std::uint64_t runs_of_Ns = 0;  ///< runs of N's that were walked over, not jumped
};

/// A look-ahead belongs to one text: what it learns of the N's there, it keeps.
class CLookAhead {
 public:
  /// The highest score that can be met from `from` on, over walks along matches and, between them,
  /// at most `global_maximum_recursion_depth` - `from.level` edits, each of which must leave the
  /// score above `edit_threshold`. Above a depth of `kDeepestRecursion` only that threshold bounds
  /// the edits.
  ///
  /// `Direction` is `Rightward` or `Leftward`. Throws: std::bad_alloc.
  template <class Direction>
  [[nodiscard]] std::int64_t highest_score(const LookAheadState& from,
                                           const LookAheadBounds& bounds);

  /// The edit at `stop`, where the base beyond the edge does not match, behind which the highest
  /// score can be met, as its place in the order of preference; `kNoEdit` if none may be made.
  /// `stop.level` is that before the edit. Throws: std::bad_alloc.
  template <class Direction>
  [[nodiscard]] std::size_t best_edit(const LookAheadState& stop, const LookAheadBounds& bounds);

  /// The work done since it was made.
  [[nodiscard]] const LookAheadWork& work() const { return work_; }

 private:
  /// A run of N's as it was last walked over in one direction: from every edge between the two it
  /// leads to `far_edge`.
  struct NRun {
    const char* near_edge = nullptr;
    const char* far_edge = nullptr;
    const char* limit = nullptr;  ///< of that walk; null before the first one
  };

  /// A state among those with the same number of edits and the same drift, which is the insertions
  /// less the deletions.
  struct Place {
    std::int64_t offset;  ///< bases from where the look-ahead begins
    RankedScore score;
  };

  /// The states with one number of edits, by drift. Those of drift `lowest + i` are `places` from
  /// `begins[i]` up to `begins[i + 1]`, ordered by their edges.
  struct Level {
    std::vector<Place> places;
    std::vector<std::size_t> begins;
    std::ptrdiff_t lowest = 0;

    [[nodiscard]] std::ptrdiff_t highest() const {
      return lowest + static_cast<std::ptrdiff_t>(begins.size()) - 2;
    }
    /// Forgets the states, and begins with those of `drift`.
    void restart(std::ptrdiff_t drift) {
      places.clear();
      begins.assign(1, 0);
      lowest = drift;
    }
    /// The states of the drift that is being filled are complete.
    void complete_drift() {
      if (begins.size() == 1 && places.empty()) {
        ++lowest;
      } else {
        begins.push_back(places.size());
      }
    }
    /// All drifts are complete; those above the last one with states are forgotten.
    void complete() {
      while (begins.size() > 1 && begins[begins.size() - 2] == places.size()) begins.pop_back();
    }
  };

  /// What a look-ahead begins with.
  struct Frame {
    const char* origin;     ///< the edge
    const char* character;  ///< that the base beyond it has to match
    LookAheadBounds bounds;
    std::int64_t room;  ///< bases beyond the origin
    RankedScore floor;  ///< the least score behind an edit
  };

  /// What an edit uses and costs.
  struct EditUse {
    std::int64_t bases;
    RankedScore score;
  };

  /// States of one drift, still to be edited.
  struct EditSource {
    static constexpr std::int64_t kNone = std::numeric_limits<std::int64_t>::max();

    const Place* place = nullptr;
    const Place* end = nullptr;

    /// Where the edit of the next of them leads; `kNone` if there is none.
    [[nodiscard]] std::int64_t offset(const EditUse& edit) const {
      return place == end ? kNone : place->offset + edit.bases;
    }
  };

  /// The states of `level_` whose drift is `drift`, or differs from it by whole units.
  [[nodiscard]] EditSource source_of(std::ptrdiff_t drift) const;

  template <class Direction>
  std::int64_t highest_score_of_all_paths(const LookAheadState& from,
                                          const LookAheadBounds& bounds);

  /// Begins a look-ahead from `stop`. Nothing is known yet of what lies beyond.
  template <class Direction>
  void begin(const LookAheadState& stop, const LookAheadBounds& bounds);

  /// Reads the bases beyond the origin, and finds out what up to `most_edits` edits may gain there.
  template <class Direction>
  void read_window(int most_edits);

  /// False if no path from `place` over up to `most_edits` edits rises above `highest_`.
  [[nodiscard]] bool may_rise(const Place& place, int most_edits) const;

  /// Forgets the states of `level_` from which up to `most_edits` edits gain nothing.
  void sift_level(int most_edits);

  /// True if all states of `level_` began with the edit of the highest score.
  [[nodiscard]] bool is_decided() const;

  /// Follows the best paths from the states of `level_` over up to `most_edits` more edits, or any
  /// number if it is negative, and raises `highest_` to the scores met. If only the first edit
  /// matters, it may end before.
  template <class Direction>
  void follow_best_paths(int most_edits, bool is_first_edit_enough);

  /// Fills `level_` with the states one edit on. Up to `most_edits` edits may follow.
  template <class Direction>
  void make_edits(int most_edits);

  /// Fills the states of `drift` into `next_`, by an edit of those of `level_`. Up to `most_edits`
  /// edits may follow.
  template <class Direction>
  void edit_places(std::ptrdiff_t drift, int most_edits);

  /// Walks from `place`, raises `highest_`, and adds it to the states that are being filled into
  /// `level`, of which those from `first` on have the same drift, unless it need not be followed.
  template <class Direction>
  void add_place(Place place, std::ptrdiff_t drift, int most_edits, Level& level,
                 std::size_t first);

  /// Moves `place` on along matches and neutral N's. Gives the matches.
  template <class Direction>
  std::int64_t walk_on(Place& place, std::ptrdiff_t drift);

  /// Moves on along matches and neutral N's, until a base differs or the limit is met. Gives the
  /// matches.
  template <class Direction>
  std::int64_t walk_matches(const char*& edge, const char*& character,
                            const LookAheadBounds& bounds);

  /// The edge behind the run of N's that begins beyond `edge`.
  template <class Direction>
  const char* edge_behind_Ns(const char* edge, const char* limit);

  std::vector<LookAheadState> pending_;  ///< empty between calls; kept for its block
  Level level_;                          ///< as well
  Level next_;
  Frame frame_ = {};
  RankedScore highest_ = 0;  ///< met so far
  CMatchWindow window_;
  std::uint64_t long_run_starts_ = 0;  ///< bases of the window where an edit may begin to pay
  std::array<NRun, 2> last_N_runs_;    ///< by direction
  LookAheadWork work_;
};

}  // namespace quorix
