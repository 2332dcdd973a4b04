#pragma once

/// @file
/// The slow twin of search/filter/group_bound.h: a whole table of 64-bit numbers for each
/// direction, without rows, lanes or vectors.

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "search/rules/scoring_rules.h"

namespace quorix::testing {

/// Seeds at `first` + k of `text`, for each bit k that is set in `asked`, and the rules of scoring.
struct PlainGroup {
  std::string text;
  std::int64_t first;
  std::int64_t unit_length;
  std::uint64_t asked;
  ScoringRules scoring;
};

/// The table of one direction. A state has read b bases and c characters, both counted from the
/// first seed that enters.
class CPlainGroupTable {
 public:
  /// REQUIRES: bit 0 is asked.
  CPlainGroupTable(const PlainGroup& group, bool is_rightward, std::int64_t start_value,
                   std::int64_t max_letters)
      : group_(group),
        is_rightward_(is_rightward),
        start_value_(start_value),
        seeds_(64 - std::countl_zero(group.asked)),
        count_(max_letters + 1),
        values_(static_cast<std::size_t>(count_ * count_)) {}

  /// The highest value of a state; none if a living one has `max_letters` bases or characters.
  [[nodiscard]] std::optional<std::int64_t> highest() {
    std::int64_t best = 0;
    for (std::int64_t b = 0; b < count_; ++b) {
      for (std::int64_t c = 0; c < count_; ++c) {
        const std::int64_t value = value_of(b, c);
        at(b, c) = value;
        best = std::max(best, value);
        if (value > 0 && std::max(b, c) == count_ - 1) return std::nullopt;
      }
    }
    return best;
  }

 private:
  std::int64_t& at(std::int64_t b, std::int64_t c) {
    return values_[static_cast<std::size_t>(b * count_ + c)];
  }

  /// What stands at `position`, or `outside` beyond the text.
  [[nodiscard]] char letter(std::int64_t position, char outside) const {
    const auto length = static_cast<std::int64_t>(group_.text.size());
    return position >= 0 && position < length ? group_.text[static_cast<std::size_t>(position)]
                                              : outside;
  }
  [[nodiscard]] char base(std::int64_t i) const {
    return letter(
        is_rightward_ ? group_.first + group_.unit_length + i : group_.first + seeds_ - 2 - i, 'b');
  }
  [[nodiscard]] char character(std::int64_t offset) const {
    return letter(is_rightward_ ? group_.first + offset
                                : group_.first + seeds_ + group_.unit_length - 2 - offset,
                  'c');
  }

  /// Units of seeds after the first one wrap later.
  [[nodiscard]] bool is_match(char read, std::int64_t i) const {
    const std::int64_t offset = i % group_.unit_length;
    const bool is_wrapping = i >= group_.unit_length && offset < seeds_ - 1;
    return read == character(offset) ||
           (is_wrapping && read == character(offset + group_.unit_length));
  }

  [[nodiscard]] std::int64_t value_of(std::int64_t b, std::int64_t c) {
    std::int64_t value = 0;
    if (b > 0 && c > 0 && at(b - 1, c - 1) > 0) {
      const char read = base(b - 1);
      const std::int64_t before = at(b - 1, c - 1);
      value = read == 'N' && group_.scoring.is_N_neutral ? before
              : is_match(read, c - 1)                    ? before + 1
                                                         : before - group_.scoring.mismatch_penalty;
    }
    if (b > 0) value = std::max(value, at(b - 1, c) - group_.scoring.indel_penalty);
    if (c > 0) value = std::max(value, at(b, c - 1) - group_.scoring.indel_penalty);
    const std::int64_t seed = is_rightward_ ? b : seeds_ - 1 - b;
    if (b == c && b < seeds_ && (group_.asked >> seed & 1) != 0) {
      value = std::max(value, start_value_);
    }
    return std::max<std::int64_t>(value, 0);
  }

  const PlainGroup& group_;
  bool is_rightward_;
  std::int64_t start_value_;
  std::int64_t seeds_;  ///< bases from the first seed to the last one
  std::int64_t count_;
  std::vector<std::int64_t> values_;
};

/// Returns the highest score that the group bound leaves undecided; none if a chain lives for
/// `max_letters`. REQUIRES: a seed is asked.
inline std::optional<std::int64_t> plain_group_score(PlainGroup group, std::int64_t max_letters) {
  const int first = std::countr_zero(group.asked);
  group.first += first;
  group.asked >>= first;
  const auto right = CPlainGroupTable(group, true, group.unit_length, max_letters).highest();
  if (!right) return std::nullopt;
  const auto left = CPlainGroupTable(group, false, *right, max_letters).highest();
  if (!left) return std::nullopt;
  return *left - group.unit_length;
}

}  // namespace quorix::testing
