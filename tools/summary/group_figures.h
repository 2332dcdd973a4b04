#pragma once

/// @file
/// What a summary says of a group of repeats: those of a record, of a unit length, of a unit, or
/// all.

#include <cstdint>
#include <string>

namespace quorix::tools {

struct GroupFigures {
  std::int64_t repeat_count = 0;
  std::int64_t base_count = 0;        ///< bases in repeats of the group, none counted twice
  double copies = 0;                  ///< sum of normalized length / unit length
  std::int64_t perfection_sum = 0;    ///< thousandths of a percent, of those that have one
  std::int64_t perfection_count = 0;  ///< repeats that have a perfection

  friend bool operator==(const GroupFigures&, const GroupFigures&) = default;
};

/// Returns the part of `length` bases that `base_count` is, from 0 to 1, with up to six significant
/// digits as JSON writes numbers ("0.0123457", "1e-08"); "0" if `length` is 0.
[[nodiscard]] std::string share_text(std::int64_t base_count, std::int64_t length);

/// Returns the same in percent, with four decimals.
[[nodiscard]] std::string percent_text(std::int64_t base_count, std::int64_t length);

/// Returns the copies with two decimals.
[[nodiscard]] std::string copies_text(const GroupFigures& figures);

/// Returns the mean perfection in percent with three decimals, halves rounded away from zero, or an
/// empty text if no repeat has one.
[[nodiscard]] std::string mean_perfection_text(const GroupFigures& figures);

}  // namespace quorix::tools
