#pragma once

/// @file
/// The highest score that an extension can still reach within some edits. At an edit site, the edit
/// that can lead to the highest one is chosen.

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "search/extension/gain_window.h"
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

/// What all states of a look-ahead share: the unit, and how far bases may be read.
struct LookAheadContext {
  const char* unit_begin;
  const char* unit_end;
  std::int64_t unit_length;
  const char* limit;  ///< see search/extension/direction.h
};

/// Something for each kind of edit.
template <class Value>
using ByEdit = std::array<Value, kEditKinds>;

/// None of them.
inline constexpr std::size_t kNoEdit = kEditKinds;

/// The work of look-aheads.
struct LookAheadWork {
  std::uint64_t calls = 0;  ///< edits judged, or scores asked for
  /// Searches that followed every path by itself; up to three for an edit judged.
  std::uint64_t all_paths = 0;
  std::uint64_t windows = 0;          ///< times that the bases beyond were read into a window
  std::uint64_t wavefronts = 0;       ///< sets of states with one more edit each
  std::uint64_t states = 0;           ///< states followed, of wavefronts and of single paths
  std::uint64_t unwindowed_runs = 0;  ///< runs of matches that no window shows
  std::uint64_t runs_of_Ns = 0;       ///< runs of N's followed base by base
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

 private:
  /// A run of N's as it was last followed in one direction: from every edge between the two it
  /// leads to `far_edge`.
  struct NRun {
    const char* near_edge = nullptr;
    const char* far_edge = nullptr;
    const char* limit = nullptr;  ///< of that time; null before the first one
  };

  /// What a look-ahead begins with.
  struct Frame {
    const char* origin;     ///< the edge
    const char* character;  ///< that the base beyond it has to match
    LookAheadContext context;
    std::int64_t base_count;  ///< bases beyond the origin
    RankedScore min_score;    ///< the min score after an edit
  };

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

  /// Reads the bases beyond the origin, and finds out what up to `max_edits` edits may gain there.
  template <class Direction>
  void read_window(int max_edits);

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

  /// Moves `cell` on over matches and raises `highest_`. Adds the cell to `wavefront`, whose states
  /// from `first` on have the same diagonal, unless it need not be followed.
  template <class Direction>
  void add_cell(WavefrontCell cell, std::ptrdiff_t diagonal, int max_edits, Wavefront& wavefront,
                std::size_t first);

  /// Moves `cell` on over matches and neutral N's. Returns the matches.
  template <class Direction>
  std::int64_t follow_cell(WavefrontCell& cell, std::ptrdiff_t diagonal);

  /// Moves on over matches and neutral N's, until a base differs or the limit is met. Returns the
  /// matches.
  template <class Direction>
  std::int64_t follow_matches(const char*& edge, const char*& character,
                              const LookAheadContext& context);

  /// The edge after the run of N's that begins beyond `edge`.
  template <class Direction>
  const char* edge_after_Ns(const char* edge, const char* limit);

  std::vector<LookAheadState> pending_;  ///< empty between calls; kept for its block
  Wavefront wavefront_;                  ///< as well
  Wavefront next_;
  Frame frame_ = {};
  RankedScore highest_ = 0;  ///< met so far
  CGainWindow window_;
  std::array<NRun, 2> last_N_runs_;  ///< by direction
  LookAheadWork work_;
};

}  // namespace quorix
