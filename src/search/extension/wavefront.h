#pragma once

/// @file
/// The states of a look-ahead with the same number of edits, by diagonal.
///
///     diagonal     -1     0    +1         insertions less deletions on the way to a state
///     wavefront 1   D     M     I         from the edit site
///     wavefront 2   ...                   each cell of the one before by three edits: a mismatch
///                                         stays on its diagonal, an insertion goes one up, a
///                                         deletion one down
///
/// On one diagonal, cells are ordered by their base; no two share it, since of two states at the
/// same base and unit character the lower-scoring one is dropped.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "search/extension/ranked_score.h"

namespace quorix {

/// A state; its number of edits and its diagonal are known from where it is stored.
struct WavefrontCell {
  std::int64_t offset;  ///< bases from where the look-ahead begins
  RankedScore score;
};

/// The cells of diagonal `min_diagonal + i` are `cells` from `begins[i]` up to `begins[i + 1]`.
struct Wavefront {
  std::vector<WavefrontCell> cells;
  std::vector<std::size_t> begins;
  std::ptrdiff_t min_diagonal = 0;

  [[nodiscard]] std::ptrdiff_t max_diagonal() const {
    return min_diagonal + static_cast<std::ptrdiff_t>(begins.size()) - 2;
  }
  /// Forgets the cells, and begins with those of `diagonal`.
  void restart(std::ptrdiff_t diagonal) {
    cells.clear();
    begins.assign(1, 0);
    min_diagonal = diagonal;
  }
  /// The cells of the diagonal that is being filled are complete.
  void complete_diagonal() {
    if (begins.size() == 1 && cells.empty()) {
      ++min_diagonal;
    } else {
      begins.push_back(cells.size());
    }
  }
  /// All diagonals are complete; those after the last one with cells are forgotten.
  void complete() {
    while (begins.size() > 1 && begins[begins.size() - 2] == cells.size()) begins.pop_back();
  }
};

}  // namespace quorix
