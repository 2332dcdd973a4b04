#pragma once

/// @file
/// How far up can the score still go from here? An edit of a repeat is chosen by the answer.

#include <array>
#include <cstddef>
#include <cstdint>
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

 private:
  /// A run of N's as it was last walked over in one direction: from every edge between the two it
  /// leads to `far_edge`.
  struct NRun {
    const char* near_edge = nullptr;
    const char* far_edge = nullptr;
    const char* limit = nullptr;  ///< of that walk; null before the first one
  };

  /// A state among those with the same number of edits and the same drift.
  struct Place {
    const char* edge;
    const char* character;
    std::int64_t score;
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

  template <class Direction>
  std::int64_t highest_score_of_all_paths(const LookAheadState& from,
                                          const LookAheadBounds& bounds);
  template <class Direction>
  std::int64_t highest_score_of_best_paths(const LookAheadState& from,
                                           const LookAheadBounds& bounds);

  /// Fills the states of `drift` into `next_`, by an edit of those of `level_`. Gives the highest
  /// score among them.
  template <class Direction>
  std::int64_t edit_places(std::ptrdiff_t drift, const LookAheadBounds& bounds);

  /// Moves a state along matches and neutral N's, until a base differs or the limit is met.
  template <class Direction, class State>
  void walk_matches(State& state, const LookAheadBounds& bounds);

  /// The edge behind the run of N's that begins beyond `edge`.
  template <class Direction>
  const char* edge_behind_Ns(const char* edge, const char* limit);

  std::vector<LookAheadState> pending_;  ///< empty between calls; kept for its block
  Level level_;                          ///< as well
  Level next_;
  std::array<NRun, 2> last_N_runs_;  ///< by direction
};

}  // namespace quorix
