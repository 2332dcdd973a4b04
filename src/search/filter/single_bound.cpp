#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "search/filter/single_bound.cpp"
#include <hwy/foreach_target.h>  // compiles the rest of this file once for each kind of processor

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>

#include <hwy/highway.h>

#include "search/filter/single_bound.h"

#ifndef QUORIX_SCORE_BOUND_SHARED
#define QUORIX_SCORE_BOUND_SHARED

namespace quorix {

/// Growth in one direction.
struct ScoreTable {
  const char* first_base;  ///< the base that is read first
  bool is_rightward;
  std::ptrdiff_t bases_ahead;   ///< that may be read in the direction, `first_base` included
  std::ptrdiff_t bases_behind;  ///< that lie on the other side of `first_base` in the text
  const char* reversed_unit;    ///< the unit backwards, again and again
  std::ptrdiff_t unit_length;
  std::ptrdiff_t skipped;  ///< characters that the direction begins behind the unit's end
  ScoringRules scoring;
  std::int64_t start_value;   ///< the score above the floor
  std::int64_t target_value;  ///< what answers the question when it is met
};

/// The highest value met; none if the target was met, or the table had to be given up.
using HighestValue = std::optional<std::int64_t>;

/// Rows after which a table is given up: what lives that long is to be grown.
inline constexpr std::ptrdiff_t kMostRows = 8192;

}  // namespace quorix

#endif

HWY_BEFORE_NAMESPACE();
namespace quorix::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

/// Without vector instructions nothing is refuted.
HighestValue fill_table(const ScoreTable& /*table*/, bool /*is_narrow*/,
                        std::ptrdiff_t /*lane_count*/, BoundWork& /*work*/) {
  return std::nullopt;
}

#else

namespace hn = hwy::HWY_NAMESPACE;

/// Letters as vectors of values.
template <class D>
hn::Vec<D> load_letters(D d, const char* letters) {
  const auto* const bytes = static_cast<const std::uint8_t*>(static_cast<const void*>(letters));
  if constexpr (sizeof(hn::TFromD<D>) == 1) {
    return hn::LoadU(d, bytes);
  } else {
    return hn::PromoteTo(d, hn::LoadU(hn::Rebind<std::uint8_t, D>(), bytes));
  }
}

/// What each edit and each base does to a value.
template <class Value>
struct RowRules {
  using Tag = hn::Full128<Value>;
  using Vector = hn::Vec<Tag>;
  static constexpr std::int64_t kMax = static_cast<Value>(-1);

  explicit RowRules(const ScoreTable& table)
      : letter_N(hn::Set(Tag(), static_cast<Value>('N'))),
        neutral_N(hn::Set(Tag(), static_cast<Value>(table.scoring.is_N_neutral ? kMax : 0))),
        mismatch(hn::Set(Tag(), capped(table.scoring.mismatch_penalty))),
        indel(hn::Set(Tag(), capped(table.scoring.indel_penalty))) {}

  [[nodiscard]] static Value capped(std::int64_t value) {
    return static_cast<Value>(std::min(value, kMax));
  }

  Vector letter_N;
  Vector neutral_N;
  Vector mismatch;
  Vector indel;
};

/// The last two rows of a table, and the highest value of each lane. A row is `kBlocks` vectors of
/// 16 bytes. Lane k of an even row holds the states whose counts differ by 2 * k - kLanes, lane k
/// of an odd row those with one more. To the right it is bases less characters that they differ by,
/// to the left the other way round: then bases and characters of ascending lanes lie at ascending
/// addresses, of the text and of the reversed unit.
template <class Value, int kBlocks>
struct ScoreRows {
  using Tag = hn::Full128<Value>;
  using Vector = hn::Vec<Tag>;
  static constexpr std::ptrdiff_t kBlockLanes = 16 / sizeof(Value);
  static constexpr std::ptrdiff_t kLanes = kBlockLanes * kBlocks;

  /// Row 0 has one state, of no base and no character, and the row before it has none.
  explicit ScoreRows(std::int64_t start_value) {
    assert(start_value > 0 && start_value <= RowRules<Value>::kMax);
    const Tag d;
    HWY_ALIGN Value lanes[kLanes] = {};
    lanes[kLanes / 2] = static_cast<Value>(start_value);
    for (int i = 0; i < kBlocks; ++i) {
      before[i] = hn::Zero(d);
      last[i] = best[i] = hn::Load(d, lanes + kBlockLanes * i);
    }
  }

  /// Computes the next row. `bases` and `characters` are those of lane 0. True if a value of it or
  /// of the row before lives.
  HWY_INLINE bool advance(const RowRules<Value>& rules, const char* bases, const char* characters,
                          bool is_odd) {
    const Tag d;
    const Vector zero = hn::Zero(d);
    Vector alive = zero;
    Vector current[kBlocks];
    for (int i = 0; i < kBlocks; ++i) {
      const Vector base = load_letters(d, bases + kBlockLanes * i);
      const Vector character = load_letters(d, characters + kBlockLanes * i);
      const Vector equal = hn::VecFromMask(d, hn::Eq(base, character));
      const Vector neutral =
          hn::And(rules.neutral_N, hn::VecFromMask(d, hn::Eq(base, rules.letter_N)));
      // A match adds 1 to living states alone.
      Vector value =
          hn::SaturatedSub(before[i], hn::AndNot(hn::Or(equal, neutral), rules.mismatch));
      value = hn::SaturatedAdd(value, hn::And(equal, hn::Min(before[i], hn::Set(d, 1))));
      // One base or one character less: the lanes on both sides, in the last row.
      const Vector beside = is_odd ? hn::CombineShiftRightBytes<sizeof(Value)>(
                                         d, i + 1 < kBlocks ? last[i + 1] : zero, last[i])
                                   : hn::CombineShiftRightBytes<16 - sizeof(Value)>(
                                         d, last[i], i > 0 ? last[i - 1] : zero);
      value = hn::Max(value, hn::SaturatedSub(hn::Max(last[i], beside), rules.indel));
      current[i] = value;
      best[i] = hn::Max(best[i], value);
      alive = hn::Or(alive, hn::Or(value, last[i]));
    }
    for (int i = 0; i < kBlocks; ++i) {
      before[i] = last[i];
      last[i] = current[i];
    }
    return !hn::AllTrue(d, hn::Eq(alive, zero));
  }

  /// The highest value so far; none if it is the target or more, or if a path may have left the
  /// rows at their edge, in any row up to now.
  [[nodiscard]] HWY_INLINE HighestValue highest_value(Vector target) const {
    const Tag d;
    HWY_ALIGN Value lanes[kLanes];
    for (int i = 0; i < kBlocks; ++i) {
      if (!hn::AllTrue(d, hn::Lt(best[i], target))) return std::nullopt;
      hn::Store(best[i], d, lanes + kBlockLanes * i);
    }
    if (lanes[0] != 0 || lanes[kLanes - 1] != 0) return std::nullopt;
    return *std::max_element(lanes, lanes + kLanes);
  }

  Vector last[kBlocks];
  Vector before[kBlocks];
  Vector best[kBlocks];
};

template <class Value, int kBlocks>
HighestValue fill_rows(const ScoreTable& table, BoundWork& work) {
  using Rules = RowRules<Value>;
  constexpr std::ptrdiff_t kLanes = ScoreRows<Value, kBlocks>::kLanes;
  if (table.bases_behind < kLanes / 2) return std::nullopt;

  const Rules rules(table);
  const auto target = hn::Set(typename Rules::Tag(), Rules::capped(table.target_value));
  ScoreRows<Value, kBlocks> rows(table.start_value);
  for (std::ptrdiff_t row = 1; row < kMostRows; ++row) {
    const std::ptrdiff_t odd = row % 2;
    const std::ptrdiff_t less =
        (row + odd - kLanes) / 2;  // lane 0's smaller count, negative at first
    const std::ptrdiff_t more = (row - odd + kLanes) / 2;  // and its greater one
    if ((table.is_rightward ? less + kLanes - 1 : more) > table.bases_ahead) return std::nullopt;
    const char* const bases =
        table.is_rightward ? table.first_base + (less - 1) : table.first_base - (more - 1);
    const std::ptrdiff_t characters = (table.is_rightward ? -more : less - 1) + table.skipped;
    std::ptrdiff_t offset = characters % table.unit_length;
    if (offset < 0) offset += table.unit_length;

    ++work.rows;
    const bool is_alive = rows.advance(rules, bases, table.reversed_unit + offset, odd == 1);
    if (is_alive && row % 16 != 0) continue;
    const HighestValue highest = rows.highest_value(target);
    if (!is_alive || !highest) return highest;
  }
  return std::nullopt;
}

template <class Value, int kBlocks>
HighestValue fill_table_of(const ScoreTable& table, BoundWork& work) {
  const std::uint64_t rows_before = work.rows;
  const HighestValue highest = fill_rows<Value, kBlocks>(table, work);
  ++work.tables;
  work.cells += (work.rows - rows_before) * ScoreRows<Value, kBlocks>::kLanes;
  return highest;
}

HighestValue fill_table(const ScoreTable& table, bool is_narrow, std::ptrdiff_t lane_count,
                        BoundWork& work) {
  if (is_narrow) {
    return lane_count == 16 ? fill_table_of<std::uint8_t, 1>(table, work)
                            : fill_table_of<std::uint8_t, 2>(table, work);
  }
  switch (lane_count) {
    case 32:
      return fill_table_of<std::uint16_t, 4>(table, work);
    case 64:
      return fill_table_of<std::uint16_t, 8>(table, work);
    case 128:
      return fill_table_of<std::uint16_t, 16>(table, work);
    default:
      return fill_table_of<std::uint16_t, 32>(table, work);
  }
}

#endif

}  // namespace
}  // namespace quorix::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace quorix {

namespace {

HWY_EXPORT(fill_table);

constexpr std::ptrdiff_t kMostLanes = 256;
constexpr std::ptrdiff_t kMostUnitCharacters = 4096;
constexpr std::int64_t kMostStartValue = 60'000;

}  // namespace

CScoreBound::CScoreBound() {
  // To ask the processor costs more than a short record's search.
  if (!hwy::GetChosenTarget().IsInitialized()) {
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
  }
  fill_table_ = HWY_DISPATCH_TABLE(fill_table)[hwy::GetChosenTarget().GetIndex()];
}

bool CScoreBound::may_reach(const GrowingRepeat& repeat, const GrowthRules& rules,
                            std::int64_t min_score) {
  if (repeat.score >= min_score) return true;
  const std::ptrdiff_t unit_length = repeat.unit_end - repeat.unit_begin;
  assert(unit_length >= 1 && repeat.score > -unit_length);
  assert(repeat.right_phase >= 0 && repeat.right_phase < unit_length);
  assert(repeat.left_phase >= 0 && repeat.left_phase < unit_length);
  assert(rules.text_begin <= repeat.start && repeat.end <= rules.text_end);
  // Without a gain the differences reach as far as the score can pay for; half as much again is for
  // gains. A guess: whatever goes farther meets the edge of the rows and is let through.
  const std::int64_t reach =
      (repeat.score + unit_length) * 3 / (2 * rules.scoring.indel_penalty) + 3;
  if (reach > kMostLanes || unit_length > kMostUnitCharacters ||
      repeat.score + unit_length > kMostStartValue) {
    return true;
  }
  // The target fits a byte, and so does every value below it.
  const bool is_narrow = unit_length + min_score < 256 && reach <= 32;
  const auto lane_count = static_cast<std::ptrdiff_t>(std::bit_ceil(
      static_cast<std::uint64_t>(std::max<std::int64_t>(reach, is_narrow ? 16 : 32))));

  char reversed_unit[kMostUnitCharacters + kMostLanes];
  std::reverse_copy(repeat.unit_begin, repeat.unit_end, reversed_unit);
  for (std::ptrdiff_t i = 0; i < lane_count; ++i) reversed_unit[unit_length + i] = reversed_unit[i];

  ScoreTable table{repeat.end,
                   true,
                   rules.text_end - repeat.end,
                   repeat.end - rules.text_begin,
                   reversed_unit,
                   unit_length,
                   unit_length - repeat.right_phase,
                   rules.scoring,
                   repeat.score + unit_length,
                   min_score + unit_length};
  const HighestValue right = fill_table_(table, is_narrow, lane_count, work_);
  if (!right) return true;

  table.first_base = repeat.start - 1;
  table.is_rightward = false;
  table.bases_ahead = repeat.start - rules.text_begin;
  table.bases_behind = rules.text_end - repeat.start;
  table.skipped = unit_length - 1 - repeat.left_phase;
  table.start_value = *right;
  return !fill_table_(table, is_narrow, lane_count, work_).has_value();
}

}  // namespace quorix

#endif
