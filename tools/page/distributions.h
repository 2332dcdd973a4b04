#pragma once

/// @file
/// How many repeats have which length and which perfection.

#include <array>
#include <cstdint>
#include <vector>

#include "tools/report/repeat.h"

namespace quorix::tools {

class CDistributions {
 public:
  static constexpr std::size_t kPercents = 101;

  CDistributions();

  void add(const Repeat& repeat);

  /// The least length of each class in bp, ten classes from a power of ten to the next.
  [[nodiscard]] const std::vector<std::int64_t>& length_bounds() const { return bounds_; }

  /// The repeats of each class of lengths, up to the last one that has any.
  [[nodiscard]] const std::vector<std::int64_t>& length_counts() const { return length_counts_; }

  /// The repeats of 0 % and more, 1 % and more ... 99 % and more, and of 100 %.
  [[nodiscard]] const std::array<std::int64_t, kPercents>& perfection_counts() const {
    return perfection_counts_;
  }

  /// Returns the number of repeats whose perfection is no number, or is negative.
  [[nodiscard]] std::int64_t without_perfection() const { return without_perfection_; }

 private:
  std::vector<std::int64_t> bounds_;
  std::vector<std::int64_t> length_counts_;
  std::array<std::int64_t, kPercents> perfection_counts_{};
  std::int64_t without_perfection_ = 0;
};

}  // namespace quorix::tools
