// One table for all seeds of a group and a direction. A lane is a diagonal, bases less characters.
// Where a few lanes of one byte are enough, rows are in registers, see
// search/filter/register_rows.h. Else a row has as many lanes as its states need, in memory, around
// a middle on diagonal 0:
//
//     lane                    m - 2   m - 1     m     m + 1   m + 2      (m: the middle)
//     row 2: diagonal          -4      -2       0       2       4
//     row 3:                   -3      -1       1       3       5
//
//     seed                      0       1       2      ...      63
//     enters row                0       2       4      ...     126      at lane m
//
// Invariants:
//
// - States with negative counts, and those before the first entry, are never alive, whatever
// letters
//   they are compared with: a match adds to living states alone.
// - In memory, all cells beside those written are 0, since each row clears what the third row
// before it wrote
//   elsewhere. Whole vectors are written; a dead state in a spare lane stays dead, whatever letters
//   it is compared with.
// - The lanes that can be alive are those that the last two rows lead to, and that of a seed that
//   enters. Row 2 r + 1 leads to lanes k and k + 1 of row 2 r + 2, row 2 r to k - 1 and k.
// - There, values do not saturate: the target is `kMaxGroupTarget` at most, is looked for in every
// 16th
//   row, and a value rises by one in two rows.
//
// Giving up leaves all seeds undecided: at the target, where the lanes or the letters end. The
// table is at its end when no state is alive and no seed is still to enter.
//
// Without groups a search takes 2.4 times as long (unit lengths from 128 to 200, a text rich in
// repeats).

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "search/filter/group_bound.cpp"
#include <hwy/foreach_target.h>  // compiles the rest of this file once for each kind of processor

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>

#include <hwy/highway.h>

#include "search/filter/dp_cell.h"
#include "search/filter/group_bound.h"
#include "search/filter/group_letters.h"
#include "search/filter/register_rows.h"

#ifndef QUORIX_GROUP_BOUND_SHARED
#define QUORIX_GROUP_BOUND_SHARED

namespace quorix {

/// The highest value met; none if the target was met, or the table had to be given up.
using HighestGroupValue = std::optional<std::int64_t>;
/// Lanes of the widest vector.
inline constexpr std::ptrdiff_t kMaxGroupVector = 32;

}  // namespace quorix

#endif

HWY_BEFORE_NAMESPACE();
namespace quorix::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

/// Without vector instructions nothing is rejected.
HighestGroupValue fill_group_table(const GroupTable& /*table*/, BoundWork& /*work*/) {
  return std::nullopt;
}

#else

namespace hn = hwy::HWY_NAMESPACE;

/// The last rows of the table. Lane j of an even row holds the states whose bases are
/// 2 * (j - kMiddle) more than their characters, lane j of an odd row those with one more.
class CGroupRows {
 public:
  using Value = std::uint16_t;
  using Tag = hn::CappedTag<Value, kMaxGroupVector>;
  using Vector = hn::Vec<Tag>;
  static constexpr std::ptrdiff_t kMiddle = kMaxGroupLanes / 2;

  CGroupRows(const GroupTable& table, BoundWork& work)
      : table_(table),
        work_(work),
        weights_(score_weights(Tag(), table.scoring.mismatch_penalty, table.scoring.indel_penalty)),
        neutral_letter_(hn::Set(Tag(), table.scoring.is_N_neutral ? Value{'N'} : kNoNeutralLetter)),
        best_(hn::Zero(Tag())) {}

  HighestGroupValue highest_value() {
    const Tag d;
    const Vector target = hn::Set(d, capped<Value>(table_.target_value));
    const std::ptrdiff_t last_entry = 63 - std::countl_zero(table_.entering);
    for (std::ptrdiff_t row = 0;; ++row) {
      const bool is_entered =
          row % 2 == 0 && row / 2 <= last_entry && (table_.entering >> (row / 2) & 1) != 0;
      const Range range = lanes_to_fill(row, is_entered);
      if (range.is_empty() && row / 2 > last_entry) return hn::GetLane(hn::MaxOfLanes(d, best_));
      if (!has_room_for(range, row)) return std::nullopt;
      fill_row(row, range, is_entered);
      ++work_.rows;
      work_.cells += static_cast<std::uint64_t>(written_[row % 3].high + 1 - range.low);
      if (row % 16 == 0 && !hn::AllTrue(d, hn::Lt(best_, target))) return std::nullopt;
    }
  }

 private:
  /// Lanes, both ends included.
  struct Range {
    std::ptrdiff_t low = kMaxGroupLanes;
    std::ptrdiff_t high = -1;
    [[nodiscard]] bool is_empty() const { return low > high; }
  };

  /// The lanes that the last two rows may lead to, and that of a seed that enters.
  [[nodiscard]] Range lanes_to_fill(std::ptrdiff_t row, bool is_entered) const {
    const std::ptrdiff_t odd = row % 2;
    Range range{std::min(last_.low - odd, before_.low),
                std::max(last_.high + 1 - odd, before_.high)};
    if (is_entered) range = {std::min(range.low, kMiddle), std::max(range.high, kMiddle)};
    return range;
  }

  [[nodiscard]] bool has_room_for(const Range& range, std::ptrdiff_t row) const {
    if (range.is_empty()) return true;
    // After its last state a vector has dead ones, for which there are spare lanes and letters.
    const std::ptrdiff_t letters_needed =
        (row + 1) / 2 + std::max(range.high - kMiddle, kMiddle - range.low) + 1;
    return range.low >= 2 && range.high + 2 < kMaxGroupLanes &&
           letters_needed <= table_.letter_count;
  }

  /// Clears what the row that stood here three rows ago had beside the lanes [low, end).
  static void clear_beside(std::uint16_t* values, std::ptrdiff_t low, std::ptrdiff_t end,
                           const Range& written) {
    if (written.is_empty()) return;
    if (written.low < low) std::fill(values + written.low, values + low, std::uint16_t{0});
    if (end <= written.high) {
      std::fill(values + end, values + written.high + 1, std::uint16_t{0});
    }
  }

  void fill_row(std::ptrdiff_t row, const Range& range, bool is_entered) {
    const Tag d;
    const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(d));
    std::uint16_t* const here = values_[row % 3];
    const std::uint16_t* const previous = values_[(row + 1) % 3];  // two rows before
    const std::uint16_t* const neighbours = values_[(row + 2) % 3];
    const std::ptrdiff_t odd = row % 2;
    // Whole vectors are written, none for an empty range.
    const std::ptrdiff_t end =
        range.is_empty() ? range.low : range.low + (range.high - range.low + lanes) / lanes * lanes;
    Range& written = written_[row % 3];
    clear_beside(here, range.low, end, written);
    written = {range.low, end - 1};

    // Bases and characters up to and with the last one read.
    const std::uint8_t* const bases = table_.bases + (row + odd) / 2 - kMiddle - 1;
    const std::ptrdiff_t first_character = table_.letter_count - (row - odd) / 2 - kMiddle;
    // In registers: as far as the compiler can tell, a stored value might change members.
    const std::uint8_t* const characters = table_.characters + first_character;
    const std::uint8_t* const other_characters = table_.other_characters + first_character;
    const CellWeights<Vector> weights = weights_;
    const Vector neutral_letter = neutral_letter_;
    Vector best = best_;
    Range alive;
    for (std::ptrdiff_t lane = range.low; lane <= range.high; lane += lanes) {
      const Vector base = load_letters(d, bases + lane);
      const Vector equal =
          hn::VecFromMask(d, hn::Or(hn::Eq(base, load_letters(d, characters + lane)),
                                    hn::Eq(base, load_letters(d, other_characters + lane))));
      const Vector neighbour =
          hn::Max(hn::LoadU(d, neighbours + lane + odd), hn::LoadU(d, neighbours + lane + odd - 1));
      const Vector value =
          living_cell(hn::LoadU(d, previous + lane), neighbour,
                      compare_letters<true>(d, base, equal, neutral_letter), weights);
      hn::StoreU(value, d, here + lane);
      best = hn::Max(best, value);
      const auto is_alive = hn::Ne(value, hn::Zero(d));
      if (hn::AllFalse(d, is_alive)) continue;
      if (alive.is_empty()) alive.low = lane + hn::FindFirstTrue(d, is_alive);
      alive.high = lane + lanes - 1;
    }
    if (is_entered) {
      const auto start = static_cast<Value>(table_.start_value);
      here[kMiddle] = std::max(here[kMiddle], start);
      alive = {std::min(alive.low, kMiddle), std::max(alive.high, kMiddle)};
      best = hn::Max(best, hn::Set(d, start));
    }
    best_ = best;
    before_ = last_;
    last_ = alive;
  }

  const GroupTable& table_;
  BoundWork& work_;
  CellWeights<Vector> weights_;
  Vector neutral_letter_;
  Vector best_;
  Range last_;
  Range before_;
  Range written_[3];
  std::uint16_t values_[3][kMaxGroupLanes + 2 * kMaxGroupVector] = {};
};

/// The same with rows in registers.
template <int kBlocks>
HighestGroupValue fill_narrow_table(const GroupTable& table, BoundWork& work) {
  using Rows = CRegisterRows<std::uint8_t, kBlocks>;
  constexpr std::ptrdiff_t kMiddle = Rows::kLanes / 2;
  const auto target = hn::Set(typename Rows::Tag(), capped<std::uint8_t>(table.target_value));
  Rows rows(table.scoring, table.start_value);
  rows.enter();
  const std::ptrdiff_t last_entry = 63 - std::countl_zero(table.entering);
  for (std::ptrdiff_t row = 1; (row + 1) / 2 + kMiddle < table.letter_count; ++row) {
    const std::ptrdiff_t odd = row % 2;
    const std::ptrdiff_t first_character = table.letter_count - (row - odd) / 2 - kMiddle;
    ++work.rows;
    work.cells += Rows::kLanes;
    const bool is_alive =
        rows.advance(odd == 1, table.bases + (row + odd) / 2 - kMiddle - 1,
                     table.characters + first_character, table.other_characters + first_character);
    if (odd == 0 && row / 2 <= last_entry && (table.entering >> (row / 2) & 1) != 0) rows.enter();
    const bool is_last = !is_alive && row / 2 > last_entry;
    if (!is_last && row % 16 != 0) continue;
    const HighestGroupValue highest = rows.highest_value(target);
    if (is_last || !highest) return highest;
  }
  return std::nullopt;
}

HighestGroupValue fill_group_table(const GroupTable& table, BoundWork& work) {
  ++work.tables;
  if (table.target_value <= std::numeric_limits<std::uint8_t>::max()) {
    // A guess, as in search/filter/single_bound.cpp: what goes farther stays undecided.
    const std::int64_t reach = table.start_value * 3 / (2 * table.scoring.indel_penalty) + 3;
    if (reach <= CRegisterRows<std::uint8_t, 1>::kLanes) return fill_narrow_table<1>(table, work);
    if (reach <= CRegisterRows<std::uint8_t, 2>::kLanes) return fill_narrow_table<2>(table, work);
  }
  return CGroupRows(table, work).highest_value();
}

#endif

}  // namespace
}  // namespace quorix::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace quorix {

namespace {

HWY_EXPORT(fill_group_table);

}  // namespace

std::uint64_t group_bound(const ScoredText& text, const SeedQuestion& question,
                          BoundWorkspace& workspace) {
  const int first_bit = std::countr_zero(question.asked);
  if (question.asked == 0) return 0;
  const std::int64_t target = question.unit_length + question.min_score;
  SeedQuestion seeds = question;  // from the first one on
  seeds.first += first_bit;
  seeds.asked >>= first_bit;
  const std::int64_t span = kGroupSeeds - 1 - std::countl_zero(seeds.asked);
  if (question.min_score <= 0 || target > kMaxGroupTarget || span >= question.unit_length) {
    return question.asked;
  }
  assert(seeds.first >= text.begin);
  assert(text.end - seeds.first >= span + question.unit_length);

  const auto highest_value = [&](bool is_rightward, std::int64_t start_value) {
    GroupTable table = read_group_letters(text, seeds, is_rightward, workspace.letters);
    table.start_value = start_value;
    table.target_value = target;
    return HWY_DYNAMIC_DISPATCH(fill_group_table)(table, workspace.work);
  };
  const HighestGroupValue right = highest_value(true, question.unit_length);
  if (!right || *right >= target) return question.asked;
  const HighestGroupValue left = highest_value(false, *right);
  return left && *left < target ? 0 : question.asked;
}

}  // namespace quorix

#endif
