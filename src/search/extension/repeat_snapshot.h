#pragma once

/// @file
/// A state of a repeat that is being extended, to return to.

#include <cstddef>
#include <cstdint>

#include "report/csat.h"

namespace quorix {

/// During one extension the edit list only gets longer, so its length is all that has to be
/// remembered of it.
class CRepeatSnapshot {
 public:
  /// `section_count` is that of the sections of cached paths followed so far, see
  /// path_follower.h.
  explicit CRepeatSnapshot(const Csat& sat, std::size_t section_count = 0)
      : start_(sat.start),
        end_(sat.end),
        unit_pos_right_(sat.unit_pos_right),
        unit_pos_left_(sat.unit_pos_left),
        score_(sat.score),
        mismatches_(sat.mismatches),
        insertions_(sat.insertions),
        deletions_(sat.deletions),
        n_count_(sat.n_count),
        edit_count_(sat.missense.size()),
        section_count_(section_count) {}

  [[nodiscard]] std::int32_t score() const { return score_; }
  [[nodiscard]] std::size_t section_count() const { return section_count_; }

  /// Returns `sat`, the same repeat extended further, to this state.
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
  std::size_t section_count_;
};

}  // namespace quorix
