#pragma once

/// @file
/// The slow twin of search/filter/lag_sieve.h: plain loops and 64-bit numbers.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "search/filter/lag_grid.h"
#include "search/filter/lag_sieve.h"

namespace quorix::testing {

/// Gain and persistence for pairs of two bases, the higher one `lag` after the lower one.
class CPlainTables {
 public:
  CPlainTables(std::int64_t first_base, std::int64_t base_end, std::int64_t first_lag,
               std::int64_t lag_count)
      : first_base_(first_base),
        base_end_(base_end),
        first_lag_(first_lag),
        lag_count_(lag_count),
        values_(2 * static_cast<std::size_t>((base_end - first_base) * lag_count)) {}

  [[nodiscard]] std::int64_t gain(std::int64_t base, std::int64_t lag) const {
    return is_inside(base, lag) ? values_[index(base, lag)] : 0;
  }
  [[nodiscard]] std::int64_t persistence(std::int64_t base, std::int64_t lag) const {
    return is_inside(base, lag) ? values_[index(base, lag) + 1] : 0;
  }
  void set(std::int64_t base, std::int64_t lag, std::int64_t gain, std::int64_t persistence) {
    values_[index(base, lag)] = gain;
    values_[index(base, lag) + 1] = persistence;
  }

 private:
  [[nodiscard]] bool is_inside(std::int64_t base, std::int64_t lag) const {
    return base >= first_base_ && base < base_end_ && lag >= first_lag_ &&
           lag < first_lag_ + lag_count_;
  }
  [[nodiscard]] std::size_t index(std::int64_t base, std::int64_t lag) const {
    return 2 * static_cast<std::size_t>((base - first_base_) * lag_count_ + (lag - first_lag_));
  }

  std::int64_t first_base_;
  std::int64_t base_end_;
  std::int64_t first_lag_;
  std::int64_t lag_count_;
  std::vector<std::int64_t> values_;
};

/// The same sieve in plain loops and 64-bit numbers. Weights and cut-offs are those of the grid,
/// see lag_grid_test.cpp for them.
class CPlainLagSieve {
 public:
  CPlainLagSieve(const std::string& text, const LagRule& rules)
      : text_(text),
        rules_(rules),
        grid_(text.data(), text.size(), rules),
        first_unit_(rules.first_unit_length),
        last_unit_(rules.last_unit_length()),
        lag_count_(2 * static_cast<std::int64_t>(grid_.lane_count())) {
    const std::int64_t parity = 1 - first_unit_ % 2;
    std::int64_t lane = 0;
    while (grid_.lanes(parity).is_searched[lane] == 0) ++lane;
    first_lag_ = first_unit_ - parity - 2 * lane;
  }

  [[nodiscard]] std::int64_t segment_count() const {
    return (grid_.row_count() + grid_.rows_per_segment() - 1) / grid_.rows_per_segment();
  }

  [[nodiscard]] std::vector<std::vector<bool>> seeds() const {
    std::vector<std::vector<bool>> seeds;
    for (std::int64_t unit = first_unit_; unit <= last_unit_; ++unit) {
      seeds.emplace_back(static_cast<std::size_t>(length() - unit));
    }
    for (std::int64_t first_row = 0; first_row < grid_.row_count();
         first_row += grid_.rows_per_segment()) {
      const std::int64_t row_end =
          std::min(first_row + grid_.rows_per_segment(), grid_.row_count());
      const CPlainTables right = rightward_tables(first_row, grid_.row_ahead(row_end));
      const CPlainTables left = leftward_tables(grid_.row_before(first_row) - 2, row_end);
      for (std::int64_t unit = first_unit_; unit <= last_unit_; ++unit) {
        for (std::int64_t p = 0; p + unit < length(); ++p) {
          const std::int64_t row = 2 * p + unit;
          if (row < first_row || row >= row_end) continue;
          seeds[static_cast<std::size_t>(unit - first_unit_)][static_cast<std::size_t>(p)] =
              may_seed(right, left, p, unit);
        }
      }
    }
    return seeds;
  }

 private:
  static constexpr char kAfter = '>';
  static constexpr char kBefore = '<';

  [[nodiscard]] std::int64_t length() const { return static_cast<std::int64_t>(text_.size()); }
  [[nodiscard]] char letter(std::int64_t position, char outside) const {
    const bool is_inside = position >= 0 && position < length();
    return is_inside ? text_[static_cast<std::size_t>(position)] : outside;
  }

  [[nodiscard]] const LagLanes& lanes(std::int64_t lag) const {
    return grid_.lanes((lag - first_lag_) % 2);
  }
  [[nodiscard]] std::int64_t lane(std::int64_t lag) const { return (lag - first_lag_) / 2; }

  /// What a path has at the pair of base `high` and the one `lag` before it, if it has
  /// `same_...` after a match or mismatch and `edited_...` after an insertion or deletion.
  void fill(CPlainTables& tables, std::int64_t high, std::int64_t lag, bool is_rightward,
            std::int64_t same_gain, std::int64_t edited_gain, std::int64_t same_persistence,
            std::int64_t edited_persistence) const {
    const LagWeights& weights = grid_.weights();
    const char higher = letter(high, kAfter);
    const char lower = letter(high - lag, kBefore);
    const bool is_N = rules_.scoring.is_N_neutral && (is_rightward ? higher : lower) == 'N';
    const bool is_match = !is_N && higher == lower;

    std::int64_t gain = is_N       ? same_gain
                        : is_match ? same_gain + 1
                                   : same_gain - rules_.scoring.mismatch_penalty;
    gain = std::max<std::int64_t>({gain, edited_gain - rules_.scoring.indel_penalty, 0});
    std::int64_t persistence =
        same_persistence + (is_N || is_match ? std::int64_t{weights.reward} : -weights.cost);
    persistence = std::max<std::int64_t>({persistence, edited_persistence - weights.cost, 0});
    tables.set(high, lag, std::min<std::int64_t>(gain, lanes(lag).gain_cap[lane(lag)]),
               std::min<std::int64_t>(persistence, lanes(lag).persistence_cap[lane(lag)]));
  }

  /// The extension to the right, from the rows [first_row, last_row]; those after have nothing.
  [[nodiscard]] CPlainTables rightward_tables(std::int64_t first_row, std::int64_t last_row) const {
    const std::int64_t last_lag = first_lag_ + lag_count_ - 1;
    const std::int64_t last_base = (last_row + last_lag) / 2;
    CPlainTables tables(first_row / 2, last_base + 1, first_lag_, lag_count_);
    for (std::int64_t x = last_base; x >= first_row / 2; --x) {
      for (std::int64_t lag = first_lag_; lag <= last_lag; ++lag) {
        if (2 * x - lag < first_row || 2 * x - lag > last_row) continue;
        fill(tables, x, lag, true, tables.gain(x + 1, lag),
             std::max(tables.gain(x + 1, lag + 1), tables.gain(x, lag - 1)),
             tables.persistence(x + 1, lag),
             std::max(tables.persistence(x + 1, lag + 1), tables.persistence(x, lag - 1)));
      }
    }
    return tables;
  }

  /// The extension to the left, from the rows [first_row, row_end); those before have nothing.
  [[nodiscard]] CPlainTables leftward_tables(std::int64_t first_row, std::int64_t row_end) const {
    const std::int64_t last_lag = first_lag_ + lag_count_ - 1;
    const std::int64_t base_end = (row_end + last_lag) / 2 + 1;
    CPlainTables tables(first_row / 2 - 2, base_end, first_lag_, lag_count_);
    for (std::int64_t c = first_row / 2; c < base_end; ++c) {
      for (std::int64_t lag = last_lag; lag >= first_lag_; --lag) {
        if (2 * c - lag < first_row || 2 * c - lag >= row_end) continue;
        fill(tables, c, lag, false, tables.gain(c - 1, lag),
             std::max(tables.gain(c, lag + 1), tables.gain(c - 1, lag - 1)),
             tables.persistence(c - 1, lag),
             std::max(tables.persistence(c, lag + 1), tables.persistence(c - 1, lag - 1)));
      }
    }
    return tables;
  }

  [[nodiscard]] bool may_seed(const CPlainTables& right, const CPlainTables& left, std::int64_t p,
                              std::int64_t unit) const {
    const std::int64_t right_gain = right.gain(p + unit, unit);
    const std::int64_t min_persistence = lanes(unit).min_persistence[lane(unit)];
    if (right_gain > CLagGrid::kMaxGain) return true;
    if (right.persistence(p + unit, unit) >= min_persistence) return true;
    if (right_gain + left.gain(p + unit - 1, unit) >= lanes(unit).min_gain[lane(unit)]) {
      return true;
    }
    const std::int64_t lent = grid_.weights().is_half_enough ? (right_gain + 1) / 2 : right_gain;
    return left.persistence(p + unit - 1, unit) + lent >= min_persistence;
  }

  const std::string& text_;
  const LagRule& rules_;
  CLagGrid grid_;
  std::int64_t first_unit_;
  std::int64_t last_unit_;
  std::int64_t first_lag_ = 0;
  std::int64_t lag_count_;
};

}  // namespace quorix::testing
