#pragma once

/// @file
/// How far up can the score still go from here? An edit of a repeat is chosen by the answer.

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

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
  const char* limit;  ///< see search/direction.h
};

/// The three edits, in the order in which they are preferred: a mismatch, an inserted base and a
/// deleted unit character.
inline constexpr std::size_t kEditKinds = 3;
/// Something for each of them.
template <class Value>
using ByEdit = std::array<Value, kEditKinds>;

/// The value of an edit that may not be made: below every score.
inline constexpr std::int64_t kNoValue = std::numeric_limits<std::int64_t>::min() / 2;

/// A look-ahead belongs to one text: what it learns of the N's there, it keeps.
class CLookAhead {
 public:
  /// The highest score that can be met from `from` on, over walks along matches and, between them,
  /// at most `global_maximum_recursion_depth` - `from.level` edits, each of which must leave the
  /// score above `edit_threshold`. Above a depth of 255 only that threshold bounds the edits.
  ///
  /// `Direction` is `Rightward` or `Leftward`. Throws: std::bad_alloc.
  template <class Direction>
  [[nodiscard]] std::int64_t highest_score(const LookAheadState& from,
                                           const LookAheadBounds& bounds);

  /// The highest score that can be met after each of the edits at `stop`, where the base beyond the
  /// edge does not match, or `kNoValue` if the edit may not be made. `stop.level` is that before
  /// the edit. Throws: std::bad_alloc.
  template <class Direction>
  [[nodiscard]] ByEdit<std::int64_t> values_of_edits(const LookAheadState& stop,
                                                     const LookAheadBounds& bounds);

 private:
  /// A run of N's as it was last walked over in one direction: from every edge between the two it
  /// leads to `far_edge`.
  struct NRun {
    const char* near_edge = nullptr;
    const char* far_edge = nullptr;
    const char* limit = nullptr;  ///< of that walk; null before the first one
  };

  /// A state among those with the same number of edits and the same drift. Paths that begin with
  /// different edits meet, too: each of them has a score of its own, or `kNoValue`.
  struct Place {
    std::int64_t offset;    ///< bases from where the look-ahead begins
    const char* character;  ///< that the next base has to match
    ByEdit<std::int64_t> scores;
  };

  /// The states with one number of edits, by drift: the insertions less the deletions. Those of
  /// drift `lowest + i` are `places` from `begins[i]` up to `begins[i + 1]`, ordered by their
  /// edges.
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

  /// What an edit uses and costs.
  struct EditUse {
    std::int64_t bases;
    bool is_character_used;
    std::int64_t penalty;
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
  [[nodiscard]] EditSource source_of(std::ptrdiff_t drift, std::int64_t unit_length) const;

  /// If the next state of `source` leads to `place`, takes it, and raises the scores there. True if
  /// one of its scores may pay for the edit.
  template <class Direction>
  static bool take_edits(EditSource& source, const EditUse& edit, const LookAheadBounds& bounds,
                         Place& place);

  template <class Direction>
  std::int64_t highest_score_of_all_paths(const LookAheadState& from,
                                          const LookAheadBounds& bounds);

  /// Follows the best paths from the states of `level_` over up to `most_edits` more edits, or any
  /// number if it is negative, and raises `highest` to the scores met.
  template <class Direction>
  void follow_best_paths(const char* origin, int most_edits, const LookAheadBounds& bounds,
                         ByEdit<std::int64_t>& highest);

  /// Fills the states of `drift` into `next_`, by an edit of those of `level_`.
  template <class Direction>
  void edit_places(std::ptrdiff_t drift, const char* origin, const LookAheadBounds& bounds,
                   ByEdit<std::int64_t>& highest);

  /// Walks from `place`, raises `highest` to the scores met, and adds it to the states that are
  /// being filled into `level`, of which those from `first` on have the same drift.
  template <class Direction>
  void add_place(Place place, const char* origin, const LookAheadBounds& bounds,
                 ByEdit<std::int64_t>& highest, Level& level, std::size_t first);

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
  std::array<NRun, 2> last_N_runs_;  ///< by direction
};

}  // namespace quorix
