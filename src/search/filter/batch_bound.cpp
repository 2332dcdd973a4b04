// A lane is a seed, and a cell is a vector: all tables are filled at once, over the cells in which
// any of the seeds may be alive.
//
//     lanes                 seed 0   seed 1   ...   seed 31       16 or 32 of 8 or 16 bits each
//     cell (row, diagonal)    v        v               v         one load, one store
//
//     row r - 2          low  .   .   .   .   .   .  high        every other diagonal: its parity
//     row r - 1        low  .   .   .   .   .   .   .   high     is that of the row
//     row r          low  .   .   .   .   .   .   .   .   high
//
// A row has the cells with the same sum of bases and characters. It has no fixed width but a range
// of diagonals, bases less characters, that widens and shrinks with the cells that are alive.
// Invariants:
//
// - A cell that is alive follows one on the same diagonal two rows before, or one beside it in the
//   last row. So the cells from one beside the range of the last row, and from that of the row
//   before, are all that can be alive.
// - Rows share their memory with the third row after them, so beyond the range that was filled a
//   row has old values. The next two rows read at most two diagonals beyond it, and there it is
//   cleared. For the lower end (the upper one mirrors it) let f(r) be the lowest diagonal filled in
//   row r, and a(r) >= f(r) that of its lowest cell that is alive, beyond all others if there is
//   none: f(r) = min(a(r-1) - 1, a(r-2)), so f(r) <= a(r-1) - 1 for every r. Row r reads row r-1
//   from f(r) - 1 = min(a(r-1) - 2, a(r-2) - 1) on, which is f(r-1) - 2 or more. It reads row r-2
//   from f(r) on; there a(r-2) >= f(r-2), and a(r-1) - 1 >= f(r-1) - 1 = min(a(r-2) - 2,
//   a(r-3) - 1), which is f(r-2) - 2 or more. How far a(r) lies above f(r) does not matter, so the
//   range may shrink by any amount and widen again.
// - Values saturate at or above the target alone.
//
// Tables that are given up, at the ends of the text or for their size, are undecided for the seeds
// that still have a state in the last two rows; the others have their highest value already. Every
// 16 rows the states of seeds that met the target are dropped: their verdict is known.
//
// Gains, in instructions of a whole search (unit lengths up to 50, a text rich in repeats, vectors
// of 32 bytes): batches instead of one seed after the other, 60 %; values of one byte where they
// have room, 24 %; no comparison with N's where there are none, 3 %.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "search/filter/batch_bound.cpp"
#include <hwy/foreach_target.h>  // compiles the rest of this file once for each kind of processor

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>

#include <hwy/highway.h>

#include "search/filter/batch_bound.h"
#include "search/filter/dp_cell.h"
#include "search/rules/cache_limits.h"

#ifndef QUORIX_BATCH_BOUND_SHARED
#define QUORIX_BATCH_BOUND_SHARED

namespace quorix {

/// A question about `kBatchSeeds` seeds.
struct SeedBatch {
  const ScoredText& text;
  const char* first;  ///< base of the first seed
  std::ptrdiff_t unit_length;
  std::uint32_t asked;
  std::int64_t target_value;  ///< score above the floor that answers the question
};

}  // namespace quorix

#endif

HWY_BEFORE_NAMESPACE();
namespace quorix::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

/// Without vector instructions nothing is rejected.
std::uint32_t undecided_seeds(const SeedBatch& batch, BoundWork& /*work*/) {
  return batch.asked;
}

#else

namespace hn = hwy::HWY_NAMESPACE;

/// The tables of as many seeds as a vector has lanes, in one direction.
template <class Value, bool kMayHaveNs>
class CBatchTables {
 public:
  using Tag = hn::CappedTag<Value, 32 / sizeof(Value)>;
  using Vector = hn::Vec<Tag>;

  CBatchTables(const SeedBatch& batch, BoundWork& work)
      : batch_(batch),
        work_(work),
        weights_(score_weights(Tag(), batch.text.scoring.mismatch_penalty,
                               batch.text.scoring.indel_penalty)),
        target_(hn::Set(Tag(), capped<Value>(batch.target_value))) {}

  /// Follows the seeds from `first` on, whose values on entry are `values`, 0 for those that nobody
  /// asked about. Returns the highest values; those that met the target have it, and so have all
  /// that were alive when the tables had to be given up.
  template <bool kIsRightward>
  Vector highest_values(const char* first, Vector values) {
    const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(Tag()));

    // Bases that every seed may read.
    const std::ptrdiff_t bases_ahead =
        kIsRightward ? batch_.text.end - (first + batch_.unit_length) - (lanes - 1)
                     : first - batch_.text.begin;
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
    clear_around(-1, 1, -1);  // nothing is alive in the row before the first
    const std::ptrdiff_t max_rows =
        batch_.unit_length <= kMaxCachedUnit ? kMaxCachedUnitRows : kMaxBatchRows;
    Range last{0, 0};
    Range before{1, -1};
    [[maybe_unused]] Range last_filled{0, 0};
    [[maybe_unused]] Range filled_before{1, -1};
    for (;; ++row) {
      const Range computed{std::min(last.low - 1, before.low),
                           std::max(last.high + 1, before.high)};
      const std::ptrdiff_t bases_needed = (row + computed.high + 1) / 2;
      if (row == max_rows || bases_needed > bases_ahead || computed.high > kMaxBatchDiagonal ||
          computed.low < -kMaxBatchDiagonal) {
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
      last = alive_range(row, filled.low, filled.high);
      if (last.is_empty() && before.is_empty()) break;
      if (row % 16 == 0 && !drop_answered(best, row, last, before)) break;
    }
    count_work(row);
    return best;
  }

 private:
  static constexpr std::ptrdiff_t kCell = 32 / sizeof(Value);  ///< values in a cell

  /// Diagonals of a row, both ends included.
  struct Range {
    std::ptrdiff_t low;
    std::ptrdiff_t high;
    [[nodiscard]] bool is_empty() const { return low > high; }
  };

  /// Computes the states of `row` within `computed` and raises `best` to the highest values.
  /// Returns the diagonals of the first and the last state.
  template <bool kIsRightward>
  HWY_INLINE Range fill_row(const char* first, std::ptrdiff_t row, const Range& computed,
                            Vector& best) {
    const Tag d;
    const Vector neutral_letter = hn::Set(d, static_cast<Value>('N'));
    // In registers: as far as the compiler can tell, a stored cell might change members.
    const CellWeights<Vector> weights = weights_;
    const std::ptrdiff_t unit_length = batch_.unit_length;
    // Diagonals have the parity of the row. Neither count of a computed cell is negative.
    std::ptrdiff_t diagonal = computed.low + ((computed.low ^ row) & 1);
    assert(diagonal == computed.low && -row <= diagonal && computed.high <= row);
    const std::ptrdiff_t first_diagonal = diagonal;
    std::ptrdiff_t bases = (row + diagonal) / 2;
    std::ptrdiff_t character = ((row - diagonal) / 2 - 1) % unit_length;
    if (character < 0) character += unit_length;
    const Value* const previous = cell(row - 2, 0);
    const Value* const neighbours = cell(row - 1, 0);
    Value* const values_here = cell(row, 0);
    for (; diagonal <= computed.high; diagonal += 2) {
      const char* const base_at = kIsRightward ? first + unit_length + bases - 1 : first - bases;
      const char* const character_at =
          kIsRightward ? first + character : first + unit_length - 1 - character;
      const Vector base = load_letters(d, base_at);
      const Vector equal = hn::VecFromMask(d, hn::Eq(base, load_letters(d, character_at)));
      const Vector neighbour = hn::Max(hn::Load(d, neighbours + (diagonal - 1) * kCell),
                                       hn::Load(d, neighbours + (diagonal + 1) * kCell));
      const Vector value =
          living_cell(hn::Load(d, previous + diagonal * kCell), neighbour,
                      compare_letters<kMayHaveNs>(d, base, equal, neutral_letter), weights);
      best = hn::Max(best, value);
      hn::Store(value, d, values_here + diagonal * kCell);
      ++bases;
      character = character == 0 ? unit_length - 1 : character - 1;
    }
    return {first_diagonal, diagonal - 2};
  }

  [[nodiscard]] Value* cell(std::ptrdiff_t row, std::ptrdiff_t diagonal) {
    // Rows r and r - 3 share a slot, but no cells: their diagonals differ in parity.
    const std::ptrdiff_t slot = (row + 3) % 3;
    return cells_[slot][diagonal + kMaxBatchDiagonal + 3];
  }
  Vector load(std::ptrdiff_t row, std::ptrdiff_t diagonal) {
    return hn::Load(Tag(), cell(row, diagonal));
  }
  void store(std::ptrdiff_t row, std::ptrdiff_t diagonal, Vector value) {
    hn::Store(value, Tag(), cell(row, diagonal));
  }
  /// True if the cells from `computed` and `reach` beside it were filled or cleared in a row that
  /// was filled over `filled`.
  [[nodiscard]] static bool reads_known_cells(const Range& computed, const Range& filled,
                                              std::ptrdiff_t reach) {
    return computed.low - reach >= filled.low - 2 && computed.high + reach <= filled.high + 2;
  }

  /// The next two rows read no farther than this beyond the cells of a row, see above.
  void clear_around(std::ptrdiff_t row, std::ptrdiff_t low, std::ptrdiff_t high) {
    store(row, low - 2, hn::Zero(Tag()));
    store(row, high + 2, hn::Zero(Tag()));
  }

  [[nodiscard]] Range alive_range(std::ptrdiff_t row, std::ptrdiff_t low, std::ptrdiff_t high) {
    const auto is_dead = [&](std::ptrdiff_t diagonal) {
      return hn::AllTrue(Tag(), hn::Eq(load(row, diagonal), hn::Zero(Tag())));
    };
    while (low <= high && is_dead(low)) low += 2;
    while (low <= high && is_dead(high)) high -= 2;
    if (low > high) return {kMaxBatchDiagonal + 2, -kMaxBatchDiagonal - 2};
    return {low, high};
  }

  /// Lets the states of seeds that met the target die. Returns false if none is left.
  bool drop_answered(Vector best, std::ptrdiff_t row, const Range& last, const Range& before) {
    const Tag d;
    const auto is_answered = hn::Eq(hn::Max(best, target_), best);
    if (hn::AllFalse(d, is_answered)) return true;
    Vector any = hn::Zero(d);
    const auto drop = [&](std::ptrdiff_t dropped_row, const Range& range) {
      for (std::ptrdiff_t i = range.low; i <= range.high; i += 2) {
        const Vector left = hn::IfThenZeroElse(is_answered, load(dropped_row, i));
        store(dropped_row, i, left);
        any = hn::Or(any, left);
      }
    };
    drop(row, last);
    drop(row - 1, before);
    return !hn::AllTrue(d, hn::Eq(any, hn::Zero(d)));
  }

  /// Returns `best`, with the target for all seeds that are alive in the two rows before `row`.
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
  CellWeights<Vector> weights_;
  Vector target_;
  HWY_ALIGN Value cells_[3][2 * kMaxBatchDiagonal + 7][32 / sizeof(Value)];
};

template <class Value, bool kMayHaveNs>
std::uint32_t undecided_seeds_of(const SeedBatch& batch, BoundWork& work) {
  using Tables = CBatchTables<Value, kMayHaveNs>;
  const typename Tables::Tag d;
  const auto lanes = static_cast<int>(hn::Lanes(d));
  const auto target = capped<Value>(batch.target_value);
  Tables tables(batch, work);
  std::uint32_t undecided = 0;
  for (int k = 0; k < kBatchSeeds; k += lanes) {
    const auto asked = static_cast<std::uint32_t>(
        batch.asked >> k & (lanes == 32 ? ~std::uint32_t{0} : (std::uint32_t{1} << lanes) - 1));
    if (asked == 0) continue;
    HWY_ALIGN Value values[32];
    for (int i = 0; i < lanes; ++i) {
      values[i] = (asked >> i & 1) != 0 ? capped<Value>(batch.unit_length) : Value{0};
    }
    auto best = tables.template highest_values<true>(batch.first + k, hn::Load(d, values));
    // What met the target need not be followed to the left.
    const auto is_answered = hn::Eq(hn::Max(best, hn::Set(d, target)), best);
    const auto left = tables.template highest_values<false>(batch.first + k,
                                                            hn::IfThenZeroElse(is_answered, best));
    best = hn::Max(best, left);
    hn::Store(best, d, values);
    for (int i = 0; i < lanes; ++i) {
      // The values of seeds that nobody asked about stay 0, below any target.
      if (values[i] >= target) undecided |= std::uint32_t{1} << (k + i);
    }
  }
  return undecided;
}

std::uint32_t undecided_seeds(const SeedBatch& batch, BoundWork& work) {
  if (batch.target_value < 256) {
    return batch.text.scoring.is_N_neutral ? undecided_seeds_of<std::uint8_t, true>(batch, work)
                                           : undecided_seeds_of<std::uint8_t, false>(batch, work);
  }
  return batch.text.scoring.is_N_neutral ? undecided_seeds_of<std::uint16_t, true>(batch, work)
                                         : undecided_seeds_of<std::uint16_t, false>(batch, work);
}

#endif

}  // namespace
}  // namespace quorix::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace quorix {

namespace {

HWY_EXPORT(undecided_seeds);

}  // namespace

std::uint64_t batch_bound(const ScoredText& text, const SeedQuestion& question,
                          BoundWorkspace& workspace) {
  assert(question.unit_length >= 1 && question.first >= text.begin);
  constexpr std::uint64_t kBatchBits = (std::uint64_t{1} << kBatchSeeds) - 1;
  // All lanes are read, whatever is asked about.
  const bool is_readable = text.end - question.first >= question.unit_length + kBatchSeeds;
  if (question.min_score <= 0 || question.unit_length > kMaxBatchUnit || !is_readable) {
    return question.asked;
  }
  const SeedBatch batch{text, question.first, question.unit_length,
                        static_cast<std::uint32_t>(question.asked & kBatchBits),
                        question.min_score + question.unit_length};
  return (question.asked & ~kBatchBits) |
         HWY_DYNAMIC_DISPATCH(undecided_seeds)(batch, workspace.work);
}

}  // namespace quorix

#endif
