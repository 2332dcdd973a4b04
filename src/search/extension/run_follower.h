#pragma once

/// @file
/// Runs of matches along the paths of a look-ahead.
///
/// A look-ahead begins at an edge and a unit character. A state of it is an offset, the bases from
/// that edge, and a diagonal, the insertions less the deletions on the way there. Both together say
/// which unit character comes next. The bases nearest to the edge are read into a window, which
/// shows most runs; a run that leaves the window or meets an N is followed in the text.

#include <array>
#include <cstddef>
#include <cstdint>

#include "search/extension/gain_window.h"

namespace quorix {

/// What all states of a look-ahead share: the unit, and how far bases may be read.
struct LookAheadContext {
  const char* unit_begin;
  const char* unit_end;
  std::int64_t unit_length;
  const char* limit;  ///< see search/extension/direction.h
};

/// The work of following runs.
struct RunFollowerWork {
  std::uint64_t windows = 0;          ///< times that the bases beyond were read into a window
  std::uint64_t unwindowed_runs = 0;  ///< runs of matches that no window shows
  std::uint64_t runs_of_Ns = 0;       ///< runs of N's followed base by base
};

/// A follower belongs to one text: it remembers the runs of N's that it has met there. `Direction`
/// is `Rightward` or `Leftward`; between two calls of `begin` it stays the same.
class CRunFollower {
 public:
  /// Begins at `edge`, where the base beyond has to match `character`, with an empty window.
  template <class Direction>
  void begin(const char* edge, const char* character, const LookAheadContext& context);

  /// Reads the bases beyond the edge, and finds out what up to `max_edits` edits after a first one
  /// may gain there. Does nothing if that many edits, or a negative number for any, could leave the
  /// window.
  template <class Direction>
  void read_window(int max_edits);

  /// Bases that may be read beyond the edge.
  [[nodiscard]] std::int64_t base_count() const { return base_count_; }
  [[nodiscard]] std::int64_t unit_length() const { return context_.unit_length; }

  /// Returns false if no path from base `offset` on over up to `max_edits` edits gains more than
  /// `points`.
  [[nodiscard]] bool may_gain_more_than(std::int64_t points, std::int64_t offset,
                                        int max_edits) const {
    return window_.may_gain_more_than(points, offset, max_edits);
  }

  /// Moves `offset` on along `diagonal`, over matches and neutral N's, until a base differs or the
  /// limit is met. Returns the matches.
  template <class Direction>
  std::int64_t follow(std::int64_t& offset, std::ptrdiff_t diagonal) {
    // Where the window shows the end of the run, no base is read.
    const std::int64_t shown = window_.matches(offset, diagonal);
    if (shown < 0) return follow_in_text<Direction>(offset, diagonal);
    offset += shown;
    return shown;
  }

  /// The same for an edge and the unit character beyond it, in any context of this text.
  template <class Direction>
  std::int64_t follow_matches(const char*& edge, const char*& character,
                              const LookAheadContext& context);

  /// The work done since it was made.
  [[nodiscard]] const RunFollowerWork& work() const { return work_; }

 private:
  /// A run of N's as it was last followed in one direction: from every edge between the two it
  /// leads to `far_edge`.
  struct NRun {
    const char* near_edge = nullptr;
    const char* far_edge = nullptr;
    const char* limit = nullptr;  ///< of that time; null before the first one
  };

  /// The same as `follow`, base by base.
  template <class Direction>
  std::int64_t follow_in_text(std::int64_t& offset, std::ptrdiff_t diagonal);

  /// The edge after the run of N's that begins beyond `edge`.
  template <class Direction>
  const char* edge_after_Ns(const char* edge, const char* limit);

  const char* origin_ = nullptr;     ///< the edge of the beginning
  const char* character_ = nullptr;  ///< that the base beyond it has to match
  LookAheadContext context_ = {};
  std::int64_t base_count_ = 0;
  CGainWindow window_;
  std::array<NRun, 2> last_N_runs_;  ///< by direction
  RunFollowerWork work_;
};

}  // namespace quorix
