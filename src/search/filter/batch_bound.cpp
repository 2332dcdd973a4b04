#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "search/filter/batch_bound.cpp"
#include <hwy/foreach_target.h>  // compiles the rest of this file once for each kind of processor

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <limits>

#include <hwy/highway.h>

#include "search/filter/batch_bound.h"

#ifndef QUORIX_BATCH_BOUND_SHARED
#define QUORIX_BATCH_BOUND_SHARED

namespace quorix {

/// Seeds at 32 neighbouring bases.
struct SeedBatch {
  const char* first;  ///< base of the first seed
  std::ptrdiff_t unit_length;
  std::uint32_t asked;  ///< the seeds that matter
  const char* text_begin;
  const char* text_end;
  ScoringRules scoring;
  std::int64_t target_value;  ///< score above the floor that answers the question
};

/// Rows after which a batch is given up: what lives that long is to be grown.
inline constexpr std::ptrdiff_t kMostBatchRows = 8192;
/// The same for short units, which grow along an array faster than it can be told where they end:
/// those whose ways of growth are kept, see `CEditMemo::kLongestUnit`.
inline constexpr std::ptrdiff_t kMostShortUnitRows = 1024;
inline constexpr std::ptrdiff_t kLongestShortUnit = 28;
/// Bases less characters, or the other way round, of the states that are followed.
inline constexpr std::ptrdiff_t kMostDifference = 400;

}  // namespace quorix

#endif

HWY_BEFORE_NAMESPACE();
namespace quorix::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

/// Without vector instructions nothing is refuted.
std::uint32_t sift_batch(const SeedBatch& batch, BoundWork& /*work*/) {
  return batch.asked;
}

#else

namespace hn = hwy::HWY_NAMESPACE;

template <class D>
hn::Vec<D> load_bases(D d, const char* bases) {
  const auto* const bytes = static_cast<const std::uint8_t*>(static_cast<const void*>(bases));
  if constexpr (sizeof(hn::TFromD<D>) == 1) {
    return hn::LoadU(d, bytes);
  } else {
    return hn::PromoteTo(d, hn::LoadU(hn::Rebind<std::uint8_t, D>(), bytes));
  }
}

/// The tables of as many seeds as a vector has lanes, in one direction.
template <class Value, bool kMayHaveNs>
class CBatchTables {
 public:
  using Tag = hn::CappedTag<Value, 32 / sizeof(Value)>;
  using Vector = hn::Vec<Tag>;

  CBatchTables(const SeedBatch& batch, BoundWork& work)
      : batch_(batch),
        work_(work),
        mismatch_(penalty(batch.scoring.mismatch_penalty)),
        indel_(penalty(batch.scoring.indel_penalty)),
        target_(hn::Set(Tag(), static_cast<Value>(std::min(batch.target_value, kMax)))) {}

  [[nodiscard]] static Value capped(std::int64_t value) {
    return static_cast<Value>(std::min(value, kMax));
  }

  /// Follows the seeds from `first` on, whose values at the start are `values`, 0 for those that do
  /// not matter. Gives the highest values; those that met the target have it, and so have all that
  /// were alive when the tables had to be given up.
  template <bool kIsRightward>
  Vector highest_values(const char* first, Vector values) {
    const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(Tag()));

    // Bases that every seed may read.
    const std::ptrdiff_t bases_ahead =
        kIsRightward ? batch_.text_end - (first + batch_.unit_length) - (lanes - 1)
                     : first - batch_.text_begin;
    std::ptrdiff_t row = 1;
    std::ptrdiff_t filled_width = 0;  // of all rows
    const auto count_work = [&](std::ptrdiff_t rows) {
      ++work_.tables;
      work_.rows += static_cast<std::uint64_t>(rows);
      work_.cells += static_cast<std::uint64_t>(filled_width / 2 + rows);
    };
    Vector best = values;
    store(0, 0, values);
    clear_around(0, 0, 0);
    clear_around(-1, 1, -1);  // the row before the first has no living state
    const std::ptrdiff_t most_rows =
        batch_.unit_length <= kLongestShortUnit ? kMostShortUnitRows : kMostBatchRows;
    Range last{0, 0};
    Range before{1, -1};
    [[maybe_unused]] Range last_filled{0, 0};
    [[maybe_unused]] Range filled_before{1, -1};
    for (;; ++row) {
      const Range computed{std::min(last.low - 1, before.low),
                           std::max(last.high + 1, before.high)};
      const std::ptrdiff_t most_bases = (row + computed.high + 1) / 2;
      if (row == most_rows || most_bases > bases_ahead || computed.high > kMostDifference ||
          computed.low < -kMostDifference) {
        count_work(row - 1);
        return give_up(best, row, last, before);
      }
      assert(reads_known_cells(computed, last_filled, 1));
      assert(reads_known_cells(computed, filled_before, 0));
      const Range filled = fill_row<kIsRightward>(first, row, computed, best);
      clear_around(row, filled.low, filled.high);
      filled_before = last_filled;
      last_filled = filled;
      filled_width += filled.high - filled.low;

      before = last;
      last = living_range(row, filled.low, filled.high);
      if (last.is_empty() && before.is_empty()) break;
      if (row % 16 == 0 && !drop_answered(best, row, last, before)) break;
    }
    count_work(row);
    return best;
  }

 private:
  static constexpr std::int64_t kMax = std::numeric_limits<Value>::max();
  static constexpr std::ptrdiff_t kCell = 32 / sizeof(Value);  ///< values in a cell

  /// Differences of a row, both ends included.
  struct Range {
    std::ptrdiff_t low;
    std::ptrdiff_t high;
    [[nodiscard]] bool is_empty() const { return low > high; }
  };

  /// Computes the states of `row` within `computed`, gives the differences of the first and the
  /// last one, and raises `best` to the highest values.
  template <bool kIsRightward>
  HWY_INLINE Range fill_row(const char* first, std::ptrdiff_t row, const Range& computed,
                            Vector& best) {
    const Tag d;
    const Vector one = hn::Set(d, 1);
    const Vector letter_N = hn::Set(d, static_cast<Value>('N'));
    const std::ptrdiff_t unit_length = batch_.unit_length;
    // Differences have the parity of the row. Neither count of a computed cell is negative.
    std::ptrdiff_t difference = computed.low + ((computed.low ^ row) & 1);
    assert(difference == computed.low && -row <= difference && computed.high <= row);
    const std::ptrdiff_t first_difference = difference;
    std::ptrdiff_t bases = (row + difference) / 2;
    std::ptrdiff_t character = ((row - difference) / 2 - 1) % unit_length;
    if (character < 0) character += unit_length;
    const Value* const diagonals = cell(row - 2, 0);
    const Value* const neighbours = cell(row - 1, 0);
    Value* const values_here = cell(row, 0);
    for (; difference <= computed.high; difference += 2) {
      const char* const base_at = kIsRightward ? first + unit_length + bases - 1 : first - bases;
      const char* const character_at =
          kIsRightward ? first + character : first + unit_length - 1 - character;
      const Vector base = load_bases(d, base_at);
      const Vector equal = hn::VecFromMask(d, hn::Eq(base, load_bases(d, character_at)));
      Vector is_free = equal;
      Vector is_match = equal;
      if constexpr (kMayHaveNs) {
        const Vector is_N = hn::VecFromMask(d, hn::Eq(base, letter_N));
        is_free = hn::Or(equal, is_N);
        is_match = hn::AndNot(is_N, equal);
      }
      const Vector diagonal = hn::Load(d, diagonals + difference * kCell);
      Vector value = hn::SaturatedSub(diagonal, hn::AndNot(is_free, mismatch_));
      // A match adds 1 to living states alone.
      value = hn::SaturatedAdd(value, hn::And(is_match, hn::Min(diagonal, one)));
      const Vector beside = hn::Max(hn::Load(d, neighbours + (difference - 1) * kCell),
                                    hn::Load(d, neighbours + (difference + 1) * kCell));
      value = hn::Max(value, hn::SaturatedSub(beside, indel_));
      best = hn::Max(best, value);
      hn::Store(value, d, values_here + difference * kCell);
      ++bases;
      character = character == 0 ? unit_length - 1 : character - 1;
    }
    return {first_difference, difference - 2};
  }

  static Vector penalty(std::int64_t points) { return hn::Set(Tag(), capped(points)); }

  [[nodiscard]] Value* cell(std::ptrdiff_t row, std::ptrdiff_t difference) {
    // Two rows of a parity do not meet in the same cells as those of the other.
    const std::ptrdiff_t slot = (row + 3) % 3;
    return cells_[slot][difference + kMostDifference + 3];
  }
  Vector load(std::ptrdiff_t row, std::ptrdiff_t difference) {
    return hn::Load(Tag(), cell(row, difference));
  }
  void store(std::ptrdiff_t row, std::ptrdiff_t difference, Vector value) {
    hn::Store(value, Tag(), cell(row, difference));
  }
  /// True if the cells from `computed` and `reach` beside it were filled or cleared in a row that
  /// was filled over `filled`.
  [[nodiscard]] static bool reads_known_cells(const Range& computed, const Range& filled,
                                              std::ptrdiff_t reach) {
    return computed.low - reach >= filled.low - 2 && computed.high + reach <= filled.high + 2;
  }

  /// The next two rows read no farther than this beyond the cells of a row, see batch_bound.h.
  void clear_around(std::ptrdiff_t row, std::ptrdiff_t low, std::ptrdiff_t high) {
    store(row, low - 2, hn::Zero(Tag()));
    store(row, high + 2, hn::Zero(Tag()));
  }

  [[nodiscard]] Range living_range(std::ptrdiff_t row, std::ptrdiff_t low, std::ptrdiff_t high) {
    const auto is_dead = [&](std::ptrdiff_t difference) {
      return hn::AllTrue(Tag(), hn::Eq(load(row, difference), hn::Zero(Tag())));
    };
    while (low <= high && is_dead(low)) low += 2;
    while (low <= high && is_dead(high)) high -= 2;
    if (low > high) return {kMostDifference + 2, -kMostDifference - 2};
    return {low, high};
  }

  /// Lets the states of seeds that met the target die. False if none is left.
  bool drop_answered(Vector best, std::ptrdiff_t row, const Range& last, const Range& before) {
    const Tag d;
    const auto is_answered = hn::Eq(hn::Max(best, target_), best);
    if (hn::AllFalse(d, is_answered)) return true;
    Vector any = hn::Zero(d);
    const auto drop = [&](std::ptrdiff_t dropped_row, const Range& range) {
      for (std::ptrdiff_t i = range.low; i <= range.high; i += 2) {
        const Vector kept = hn::IfThenZeroElse(is_answered, load(dropped_row, i));
        store(dropped_row, i, kept);
        any = hn::Or(any, kept);
      }
    };
    drop(row, last);
    drop(row - 1, before);
    return !hn::AllTrue(d, hn::Eq(any, hn::Zero(d)));
  }

  /// `best`, with the target for all seeds with a living state in the two rows before `row`.
  Vector give_up(Vector best, std::ptrdiff_t row, const Range& last, const Range& before) {
    const Tag d;
    Vector any = hn::Zero(d);
    for (std::ptrdiff_t i = last.low; i <= last.high; i += 2) any = hn::Or(any, load(row - 1, i));
    for (std::ptrdiff_t i = before.low; i <= before.high; i += 2) {
      any = hn::Or(any, load(row - 2, i));
    }
    return hn::Max(best, hn::IfThenZeroElse(hn::Eq(any, hn::Zero(d)), target_));
  }

  const SeedBatch& batch_;
  BoundWork& work_;
  Vector mismatch_;
  Vector indel_;
  Vector target_;
  HWY_ALIGN Value cells_[3][2 * kMostDifference + 7][32 / sizeof(Value)];
};

template <class Value, bool kMayHaveNs>
std::uint32_t sift_batch_of(const SeedBatch& batch, BoundWork& work) {
  using Tables = CBatchTables<Value, kMayHaveNs>;
  const typename Tables::Tag d;
  const auto lanes = static_cast<int>(hn::Lanes(d));
  const Value target = Tables::capped(batch.target_value);
  Tables tables(batch, work);
  std::uint32_t let_through = 0;
  for (int k = 0; k < 32; k += lanes) {
    const auto asked = static_cast<std::uint32_t>(
        batch.asked >> k & (lanes == 32 ? ~std::uint32_t{0} : (std::uint32_t{1} << lanes) - 1));
    if (asked == 0) continue;
    HWY_ALIGN Value values[32];
    for (int i = 0; i < lanes; ++i) {
      values[i] = (asked >> i & 1) != 0 ? Tables::capped(batch.unit_length) : Value{0};
    }
    auto best = tables.template highest_values<true>(batch.first + k, hn::Load(d, values));
    // What met the target need not be followed to the left.
    const auto is_answered = hn::Eq(hn::Max(best, hn::Set(d, target)), best);
    const auto left = tables.template highest_values<false>(batch.first + k,
                                                            hn::IfThenZeroElse(is_answered, best));
    best = hn::Max(best, left);
    hn::Store(best, d, values);
    for (int i = 0; i < lanes; ++i) {
      // The values of seeds that do not matter stay 0, below any target.
      if (values[i] >= target) let_through |= std::uint32_t{1} << (k + i);
    }
  }
  return let_through;
}

std::uint32_t sift_batch(const SeedBatch& batch, BoundWork& work) {
  if (batch.target_value < 256) {
    return batch.scoring.is_N_neutral ? sift_batch_of<std::uint8_t, true>(batch, work)
                                      : sift_batch_of<std::uint8_t, false>(batch, work);
  }
  return batch.scoring.is_N_neutral ? sift_batch_of<std::uint16_t, true>(batch, work)
                                    : sift_batch_of<std::uint16_t, false>(batch, work);
}

#endif

}  // namespace
}  // namespace quorix::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace quorix {

namespace {

HWY_EXPORT(sift_batch);

/// Values are 16 bits wide at the most.
constexpr std::int64_t kMostUnitLength = 30'000;

}  // namespace

CBatchBound::CBatchBound() {
  // To ask the processor costs more than a short record's search.
  if (!hwy::GetChosenTarget().IsInitialized()) {
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
  }
  sift_batch_ = HWY_DISPATCH_TABLE(sift_batch)[hwy::GetChosenTarget().GetIndex()];
}

std::uint32_t CBatchBound::may_reach(const char* first, std::int64_t unit_length,
                                     std::uint32_t asked, const GrowthRules& rules,
                                     std::int64_t min_score) {
  assert(unit_length >= 1 && first >= rules.text_begin);
  // All lanes are read, whatever is asked for.
  const bool is_readable = rules.text_end - first >= unit_length + kSeeds;
  if (min_score <= 0 || unit_length > kMostUnitLength || !is_readable) return asked;
  return sift_batch_({first, unit_length, asked, rules.text_begin, rules.text_end, rules.scoring,
                      min_score + unit_length},
                     work_);
}

}  // namespace quorix

#endif
