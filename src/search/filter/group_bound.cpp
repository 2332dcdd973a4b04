// One table for all seeds of a group and a direction. A lane is a diagonal, bases less characters,
// as in search/filter/single_bound.cpp, but a row has as many lanes as its states need, in memory,
// around a middle on diagonal 0:
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
// - All cells beside those written are 0, since each row clears what the third row before it wrote
//   elsewhere. Whole vectors are written; a dead state in a spare lane stays dead, whatever letters
//   it is compared with.
// - The lanes that can be alive are those that the last two rows lead to, and that of a seed that
//   enters. Row 2 r + 1 leads to lanes k and k + 1 of row 2 r + 2, row 2 r to k - 1 and k.
// - Values do not saturate: the target is `kMaxGroupTarget` at most, is looked for in every 16th
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
#include <vector>

#include <hwy/highway.h>

#include "search/filter/dp_cell.h"
#include "search/filter/group_bound.h"

#ifndef QUORIX_GROUP_BOUND_SHARED
#define QUORIX_GROUP_BOUND_SHARED

namespace quorix {

/// The extensions of a group in one direction.
struct GroupTable {
  const std::uint8_t* bases;  ///< in the order in which they are read
  /// The characters with which bases are compared, the last one first, for seeds whose units have
  /// wrapped the more and the less often.
  const std::uint8_t* characters;
  const std::uint8_t* other_characters;
  std::ptrdiff_t letter_count;  ///< bases, and characters
  std::uint64_t entering;       ///< bit k: a seed enters after k bases and characters
  ScoringRules scoring;
  std::int64_t start_value;   ///< the score above the floor
  std::int64_t target_value;  ///< what answers the question when it is met
};

/// The value of a table that met the target, or that had to be given up.
inline constexpr std::int64_t kUndecidedGroup = -1;
/// Letters on both sides of those that states may use, for lanes without one.
inline constexpr std::ptrdiff_t kSpareLetters = 128;
/// Lanes of the widest vector.
inline constexpr std::ptrdiff_t kMaxGroupVector = 32;

}  // namespace quorix

#endif

HWY_BEFORE_NAMESPACE();
namespace quorix::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

/// Without vector instructions nothing is rejected.
std::int64_t fill_group_table(const GroupTable& /*table*/, BoundWork& /*work*/) {
  return kUndecidedGroup;
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

  /// The highest value of a state, or `kUndecidedGroup`.
  std::int64_t highest_value() {
    const Tag d;
    const Vector target = hn::Set(d, capped<Value>(table_.target_value));
    const std::ptrdiff_t last_entry = 63 - std::countl_zero(table_.entering);
    for (std::ptrdiff_t row = 0;; ++row) {
      const bool is_entered =
          row % 2 == 0 && row / 2 <= last_entry && (table_.entering >> (row / 2) & 1) != 0;
      const Range range = lanes_to_fill(row, is_entered);
      if (range.is_empty() && row / 2 > last_entry) return hn::GetLane(hn::MaxOfLanes(d, best_));
      if (!has_room_for(range, row)) return kUndecidedGroup;
      fill_row(row, range, is_entered);
      ++work_.rows;
      work_.cells += static_cast<std::uint64_t>(written_[row % 3].high + 1 - range.low);
      if (row % 16 == 0 && !hn::AllTrue(d, hn::Lt(best_, target))) return kUndecidedGroup;
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

std::int64_t fill_group_table(const GroupTable& table, BoundWork& work) {
  ++work.tables;
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

/// What stands for the letters outside the text: they match none, nor each other.
constexpr std::uint8_t kOutsideBase = 1;
constexpr std::uint8_t kOutsideCharacter = 2;

/// Letters to follow paths through.
std::ptrdiff_t letters_to_follow(std::int64_t unit_length) {
  return kMaxGroupCopies * unit_length + kMinGroupUnit;
}

/// Reads bases and characters of the extensions in one direction into `letters`. Returns them as a
/// table, with nothing else in it.
GroupTable read_letters(const ScoredText& text, const SeedQuestion& question, bool is_rightward,
                        std::vector<std::uint8_t>& letters) {
  const std::ptrdiff_t unit_length = question.unit_length;
  const std::ptrdiff_t count = letters_to_follow(unit_length);
  const std::ptrdiff_t text_length = text.end - text.begin;
  const std::ptrdiff_t first_seed = question.first - text.begin;
  const std::ptrdiff_t last_seed = first_seed + kGroupSeeds - 1;
  const std::ptrdiff_t stride = count + 2 * kSpareLetters;
  letters.assign(static_cast<std::size_t>(3 * stride), 0);
  std::uint8_t* const bases = letters.data() + kSpareLetters;
  std::uint8_t* const characters = bases + stride;
  std::uint8_t* const others = characters + stride;
  const auto letter_at = [&](std::ptrdiff_t position, std::uint8_t outside) {
    return position >= 0 && position < text_length ? static_cast<std::uint8_t>(text.begin[position])
                                                   : outside;
  };
  // A character counted from the first seed to enter, in the direction.
  const auto character_at = [&](std::ptrdiff_t offset) {
    return letter_at(is_rightward ? first_seed + offset : last_seed + unit_length - 1 - offset,
                     kOutsideCharacter);
  };
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    bases[i] =
        letter_at(is_rightward ? first_seed + unit_length + i : last_seed - 1 - i, kOutsideBase);
  }
  std::ptrdiff_t offset = 0;  // into the unit of the first seed to enter
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    characters[count - 1 - i] = character_at(offset);
    // The seed that enters last, after `kGroupSeeds` - 1 characters, wraps that much later.
    const bool is_wrapping = i >= unit_length && offset < kGroupSeeds - 1;
    others[count - 1 - i] = character_at(is_wrapping ? offset + unit_length : offset);
    if (++offset == unit_length) offset = 0;
  }
  return {bases, characters, others, count, 0, text.scoring, 0, 0};
}

/// The bits of `seeds` in the order in which the seeds enter to the left.
std::uint64_t reversed(std::uint64_t seeds) {
  std::uint64_t found = 0;
  for (int k = 0; k < kGroupSeeds; ++k) found |= (seeds >> k & 1) << (kGroupSeeds - 1 - k);
  return found;
}

}  // namespace

std::uint64_t group_bound(const ScoredText& text, const SeedQuestion& question,
                          BoundWorkspace& workspace) {
  const std::uint64_t asked = question.asked;
  assert(question.unit_length >= kMinGroupUnit);
  if (asked == 0) return 0;
  assert(question.first + std::countr_zero(asked) >= text.begin);
  assert(text.end - question.first >= 63 - std::countl_zero(asked) + question.unit_length);
  const std::int64_t target = question.unit_length + question.min_score;
  if (question.min_score <= 0 || target > kMaxGroupTarget) return asked;

  GroupTable right = read_letters(text, question, true, workspace.letters);
  right.entering = asked;
  right.start_value = question.unit_length;
  right.target_value = target;
  const std::int64_t right_value = HWY_DYNAMIC_DISPATCH(fill_group_table)(right, workspace.work);
  if (right_value == kUndecidedGroup || right_value >= target) return asked;

  GroupTable left = read_letters(text, question, false, workspace.letters);
  left.entering = reversed(asked);
  left.start_value = right_value;
  left.target_value = target;
  const std::int64_t left_value = HWY_DYNAMIC_DISPATCH(fill_group_table)(left, workspace.work);
  return left_value == kUndecidedGroup || left_value >= target ? asked : 0;
}

}  // namespace quorix

#endif
