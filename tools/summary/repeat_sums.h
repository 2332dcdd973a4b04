#pragma once

/// @file
/// Sums over the repeats of a group while they come in. All are integers, so that their order does
/// not matter.

#include <algorithm>
#include <cstdint>
#include <optional>

#include "tools/report/repeat.h"
#include "tools/report/repeat_figures.h"
#include "tools/summary/group_figures.h"

namespace quorix::tools {

/// A group of any number of records. Within a record, repeats must come in the order of their
/// starts; then what a repeat adds to the covered bases is what lies after the end of those before.
struct RepeatSums {
  std::int64_t repeat_count = 0;
  std::int64_t base_count = 0;
  std::int64_t normalized_length = 0;
  std::int64_t perfection_sum = 0;  ///< thousandths of a percent
  std::int64_t perfection_count = 0;
  std::int64_t covered_end = 0;    ///< the end of all repeats so far in the last record
  std::uint64_t record_count = 0;  ///< records up to the one that `covered_end` belongs to

  /// Adds a repeat of record number `record`, counted from 1.
  void add(const Repeat& repeat, std::uint64_t record) {
    if (record_count != record) covered_end = 0;
    record_count = record;
    ++repeat_count;
    base_count += std::max<std::int64_t>(repeat.end - std::max(repeat.start - 1, covered_end), 0);
    covered_end = std::max(covered_end, repeat.end);
    normalized_length += repeat.normalized_length;
    if (const std::optional<std::int64_t> perfection = perfection_thousandths(repeat)) {
      perfection_sum += *perfection;
      ++perfection_count;
    }
  }

  /// Returns the figures of a group whose repeats have these copies.
  [[nodiscard]] GroupFigures figures(double copies) const {
    return {repeat_count, base_count, copies, perfection_sum, perfection_count};
  }

  /// Returns the figures of a group whose units are all of `unit_length` bases.
  [[nodiscard]] GroupFigures figures_of_length(std::int64_t unit_length) const {
    return figures(static_cast<double>(normalized_length) / static_cast<double>(unit_length));
  }
};

}  // namespace quorix::tools
