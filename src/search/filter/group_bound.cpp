#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "search/filter/group_bound.cpp"
#include <hwy/foreach_target.h>  // compiles the rest of this file once for each kind of processor

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <limits>

#include <hwy/highway.h>

#include "search/filter/group_bound.h"

#ifndef QUORIX_GROUP_BOUND_SHARED
#define QUORIX_GROUP_BOUND_SHARED

namespace quorix {

/// Growth of a group in one direction.
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
inline constexpr std::int64_t kOpenGroup = -1;
/// Letters on both sides of those that states may use, for lanes without one.
inline constexpr std::ptrdiff_t kSpareLetters = 128;
/// States of a row, whatever the width of a vector.
inline constexpr std::ptrdiff_t kMostGroupLanes = 512;
/// Lanes of the widest vector.
inline constexpr std::ptrdiff_t kWidestGroupVector = 32;

}  // namespace quorix

#endif

HWY_BEFORE_NAMESPACE();
namespace quorix::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

/// Without vector instructions nothing is refuted.
std::int64_t fill_group_table(const GroupTable& /*table*/, BoundWork& /*work*/) {
  return kOpenGroup;
}

#else

namespace hn = hwy::HWY_NAMESPACE;

/// The last rows of the table. Lane j of an even row holds the states whose bases are 2 * (j -
/// kMiddle) more than their characters, lane j of an odd row those with one more.
class CGroupRows {
 public:
  using Tag = hn::CappedTag<std::uint16_t, kWidestGroupVector>;
  using Vector = hn::Vec<Tag>;
  static constexpr std::ptrdiff_t kMiddle = kMostGroupLanes / 2;

  CGroupRows(const GroupTable& table, BoundWork& work)
      : table_(table),
        work_(work),
        mismatch_(points(table.scoring.mismatch_penalty)),
        indel_(points(table.scoring.indel_penalty)),
        best_(hn::Zero(Tag())) {}

  /// The highest value of a state, or `kOpenGroup`.
  std::int64_t highest_value() {
    const Tag d;
    const Vector target = points(table_.target_value);
    const std::ptrdiff_t last_entry = 63 - std::countl_zero(table_.entering);
    for (std::ptrdiff_t row = 0;; ++row) {
      const bool is_entered =
          row % 2 == 0 && row / 2 <= last_entry && (table_.entering >> (row / 2) & 1) != 0;
      const Range range = lanes_to_fill(row, is_entered);
      if (range.is_empty() && row / 2 > last_entry) return hn::GetLane(hn::MaxOfLanes(d, best_));
      if (!has_room_for(range, row)) return kOpenGroup;
      fill_row(row, range, is_entered);
      ++work_.rows;
      work_.cells += static_cast<std::uint64_t>(written_[row % 3].high + 1 - range.low);
      if (row % 16 == 0 && !hn::AllTrue(d, hn::Lt(best_, target))) return kOpenGroup;
    }
  }

 private:
  /// Lanes, both ends included.
  struct Range {
    std::ptrdiff_t low = kMostGroupLanes;
    std::ptrdiff_t high = -1;
    [[nodiscard]] bool is_empty() const { return low > high; }
  };

  static Vector points(std::int64_t points) {
    constexpr std::int64_t kMost = std::numeric_limits<std::uint16_t>::max();
    return hn::Set(Tag(), static_cast<std::uint16_t>(std::min(points, kMost)));
  }

  static Vector load_letters(const std::uint8_t* letters) {
    return hn::PromoteTo(Tag(), hn::LoadU(hn::Rebind<std::uint8_t, Tag>(), letters));
  }

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
    const std::ptrdiff_t most_letters =
        (row + 1) / 2 + std::max(range.high - kMiddle, kMiddle - range.low) + 1;
    return range.low >= 2 && range.high + 2 < kMostGroupLanes &&
           most_letters <= table_.letter_count;
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
    const std::uint16_t* const diagonals = values_[(row + 1) % 3];  // two rows before
    const std::uint16_t* const neighbours = values_[(row + 2) % 3];
    const std::ptrdiff_t odd = row % 2;
    const Vector one = hn::Set(d, 1);
    const Vector letter_N = hn::Set(d, std::uint16_t{'N'});
    const Vector neutral =
        hn::Set(d, static_cast<std::uint16_t>(table_.scoring.is_N_neutral ? 0xFFFF : 0));

    // Whole vectors are written, none for an empty range.
    const std::ptrdiff_t end =
        range.is_empty() ? range.low : range.low + (range.high - range.low + lanes) / lanes * lanes;
    Range& written = written_[row % 3];
    clear_beside(here, range.low, end, written);
    written = {range.low, end - 1};

    // Bases and characters up to and with the last one read.
    const std::uint8_t* const bases = table_.bases + (row + odd) / 2 - kMiddle - 1;
    const std::ptrdiff_t first_character = table_.letter_count - (row - odd) / 2 - kMiddle;
    Range alive;
    for (std::ptrdiff_t lane = range.low; lane <= range.high; lane += lanes) {
      const Vector base = load_letters(bases + lane);
      const std::ptrdiff_t at = first_character + lane;
      const Vector equal =
          hn::VecFromMask(d, hn::Or(hn::Eq(base, load_letters(table_.characters + at)),
                                    hn::Eq(base, load_letters(table_.other_characters + at))));
      const Vector is_N = hn::And(neutral, hn::VecFromMask(d, hn::Eq(base, letter_N)));
      const Vector diagonal = hn::LoadU(d, diagonals + lane);
      Vector value = hn::SaturatedSub(diagonal, hn::AndNot(hn::Or(equal, is_N), mismatch_));
      // A match adds 1 to living states alone.
      value = hn::SaturatedAdd(value, hn::And(hn::AndNot(is_N, equal), hn::Min(diagonal, one)));
      const Vector beside =
          hn::Max(hn::LoadU(d, neighbours + lane + odd), hn::LoadU(d, neighbours + lane + odd - 1));
      value = hn::Max(value, hn::SaturatedSub(beside, indel_));
      hn::StoreU(value, d, here + lane);
      best_ = hn::Max(best_, value);
      const auto is_alive = hn::Ne(value, hn::Zero(d));
      if (hn::AllFalse(d, is_alive)) continue;
      if (alive.is_empty()) alive.low = lane + hn::FindFirstTrue(d, is_alive);
      alive.high = lane + lanes - 1;
    }
    if (is_entered) {
      here[kMiddle] = std::max(here[kMiddle], static_cast<std::uint16_t>(table_.start_value));
      alive = {std::min(alive.low, kMiddle), std::max(alive.high, kMiddle)};
      best_ = hn::Max(best_, points(table_.start_value));
    }
    before_ = last_;
    last_ = alive;
  }

  const GroupTable& table_;
  BoundWork& work_;
  Vector mismatch_;
  Vector indel_;
  Vector best_;
  Range last_;
  Range before_;
  Range written_[3];
  std::uint16_t values_[3][kMostGroupLanes + 2 * kWidestGroupVector] = {};
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

/// What stands for the letters before and behind the text: they match none, nor each other.
constexpr std::uint8_t kOutsideBase = 1;
constexpr std::uint8_t kOutsideCharacter = 2;

/// Letters to follow chains through; what lives longer is to be looked at more closely.
std::ptrdiff_t letters_to_follow(std::int64_t unit_length) {
  return 3 * unit_length + CGroupBound::kShortestUnit;
}

}  // namespace

CGroupBound::CGroupBound() {
  // To ask the processor costs more than a short record's search.
  if (!hwy::GetChosenTarget().IsInitialized()) {
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
  }
  fill_group_table_ = HWY_DISPATCH_TABLE(fill_group_table)[hwy::GetChosenTarget().GetIndex()];
}

void CGroupBound::load_letters(const char* first, std::int64_t unit_length, bool is_rightward,
                               const GrowthRules& rules) {
  const std::ptrdiff_t count = letters_to_follow(unit_length);
  const std::ptrdiff_t text_length = rules.text_end - rules.text_begin;
  const std::ptrdiff_t first_seed = first - rules.text_begin;
  const std::ptrdiff_t last_seed = first_seed + kSeeds - 1;
  letters_.assign(static_cast<std::size_t>(3 * (count + 2 * kSpareLetters)), 0);
  std::uint8_t* const bases = letters_.data() + kSpareLetters;
  std::uint8_t* const characters = bases + count + 2 * kSpareLetters;
  std::uint8_t* const others = characters + count + 2 * kSpareLetters;
  const auto letter_at = [&](std::ptrdiff_t position, std::uint8_t outside) {
    return position >= 0 && position < text_length
               ? static_cast<std::uint8_t>(rules.text_begin[position])
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
    // The seed that enters last, after `kSeeds` - 1 characters, wraps that much later.
    const bool is_wrapping = i >= unit_length && offset < kSeeds - 1;
    others[count - 1 - i] = character_at(is_wrapping ? offset + unit_length : offset);
    if (++offset == unit_length) offset = 0;
  }
}

bool CGroupBound::may_reach(const char* first, std::int64_t unit_length, std::uint64_t asked,
                            const GrowthRules& rules, std::int64_t min_score) {
  constexpr std::int64_t kMostTarget = 60'000;
  assert(unit_length >= kShortestUnit);
  if (asked == 0) return false;
  assert(first + std::countr_zero(asked) >= rules.text_begin);
  assert(rules.text_end - first >= 63 - std::countl_zero(asked) + unit_length);
  if (min_score <= 0 || unit_length + min_score > kMostTarget) return true;
  load_letters(first, unit_length, true, rules);
  std::uint64_t reversed = 0;
  for (int k = 0; k < kSeeds; ++k) reversed |= (asked >> k & 1) << (kSeeds - 1 - k);

  const std::ptrdiff_t count = letters_to_follow(unit_length);
  const std::uint8_t* const bases = letters_.data() + kSpareLetters;
  const std::ptrdiff_t stride = count + 2 * kSpareLetters;
  GroupTable table{bases, bases + stride, bases + 2 * stride, count,
                   asked, rules.scoring,  unit_length,        min_score + unit_length};
  table.start_value = fill_group_table_(table, work_);
  if (table.start_value == kOpenGroup || table.start_value >= table.target_value) return true;
  load_letters(first, unit_length, false, rules);
  table.entering = reversed;
  const std::int64_t highest = fill_group_table_(table, work_);
  return highest == kOpenGroup || highest >= table.target_value;
}

}  // namespace quorix

#endif
