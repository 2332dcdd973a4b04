#pragma once

/// @file
/// The bases after an edit site as bits, and the most that paths over them can gain.
///
/// Most states of a look-ahead lead nowhere, since an edit pays only if more matches follow it than
/// it costs. The bases are compared with the unit on all diagonals at once. A run start is a base
/// from which p + 1 matches follow on any of them, where p is the smaller penalty. Here p is 2:
///
///     diagonal -1   0 0 1 0 0 1 0 0 1 1 1 1
///     diagonal  0   1 1 0 1 1 1 1 0 0 0 0 0
///     diagonal +1   0 1 0 0 0 0 0 0 1 0 0 1
///     run starts    . . . x x . . . x x . .       a path from the left gains 4 points at most
///
/// **Why the run starts bound the gain.** An edit with a run of r matches after it gains r - p at
/// most, and a run of r matches has r - p run starts. The runs of a path share no base. None has a
/// base before the state where the path begins; of a run that it enters in the middle, only the
/// rest counts. So a path gains no more points than there are run starts from its first base on.
///
/// **Why no path leaves the window.** The bases of a path are run starts, or others: each edit
/// takes at most one base, and each run has at most p matches that are no run starts. So over e
/// edits a path gets no farther than e (p + 1) bases and all run starts. If that is still in the
/// window, the window has shown all runs. It ends before the first N, so no path meets one.

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "search/bits/count_ones.h"
#include "search/bits/match_window.h"

namespace quorix {

/// Returns the ones of `row` with which `length` ones in a row begin. REQUIRES: 1 <= length <= 64.
[[nodiscard]] inline std::uint64_t starts_of_runs(std::uint64_t row, std::int64_t length) {
  for (std::int64_t found = 1; found < length;) {
    const std::int64_t more = std::min(found, length - found);
    row &= row >> static_cast<unsigned>(more);
    found += more;
  }
  return row;
}

class CGainWindow {
 public:
  /// Paths of more edits could leave the diagonals of the window.
  static constexpr int kMaxEdits = CMatchWindow::kMaxDiagonal - 1;

  /// Holds no base: any gain is possible.
  void clear() { window_.clear(); }

  /// Reads the bases beyond `edge`, see `CMatchWindow::read`, for paths of up to `max_edits` edits
  /// after the first one. REQUIRES: 0 <= max_edits <= kMaxEdits.
  template <class Direction>
  void read(const char* edge, const char* limit, const char* character, const char* unit_begin,
            const char* unit_end, int max_edits, std::int64_t min_penalty) {
    window_.read<Direction>(edge, limit, character, unit_begin, unit_end);
    min_penalty_ = min_penalty;
    std::uint64_t run_starts = 0;  // bases where an edit may begin to pay
    // The first edits lead to diagonals from -1 to 1, and each later one changes it by 1 at most.
    // Of diagonals that differ by whole units one is enough.
    const std::ptrdiff_t last = min_penalty < window_.size() ? max_edits + 1 : -1;
    const std::ptrdiff_t first = std::max(-last, last - (unit_end - unit_begin) + 1);
    for (std::ptrdiff_t diagonal = first; diagonal <= last; ++diagonal) {
      run_starts |= starts_of_runs(window_.row(diagonal), min_penalty + 1);
    }
    run_starts_from_ = ones_from_each_bit(run_starts);
  }

  /// Returns the matches from base `offset` on along `diagonal`, or -1 if the window does not show
  /// where they end.
  [[nodiscard]] std::int64_t matches(std::int64_t offset, std::ptrdiff_t diagonal) const {
    if (offset >= window_.size()) return -1;
    const int count = std::countr_one(window_.row(diagonal) >> static_cast<unsigned>(offset));
    return offset + count < window_.size() ? count : -1;
  }

  /// Returns false if no path from base `offset` on over up to `max_edits` edits gains more than
  /// `points`.
  [[nodiscard]] bool may_gain_more_than(std::int64_t points, std::int64_t offset,
                                        int max_edits) const {
    if (offset >= window_.size()) return true;
    const std::int64_t max_gain = run_starts_from_[static_cast<std::size_t>(offset)];
    if (max_gain > points) return true;
    const std::int64_t farthest = offset + max_edits * (min_penalty_ + 1) + max_gain;
    return farthest >= window_.size();
  }

 private:
  CMatchWindow window_;
  OnesFromEachBit run_starts_from_ = {};  ///< from each base on
  std::int64_t min_penalty_ = 0;
};

}  // namespace quorix
