// One table for one seed and direction, its rows in registers: see search/filter/register_rows.h.
// To the right, lanes are ordered by ascending diagonals, to the left by descending ones: then
// bases and characters of ascending lanes lie at ascending addresses, of the text and of the
// reversed unit.
//
// States with negative counts are never alive, whatever letters they are compared with: a match
// adds to living states alone, and only states with counts of 0 or more follow the first one.
//
// Giving up answers true, which rejects nothing: at the target, at the edge lanes, at the ends of
// the text and after `kMaxSingleRows`. The target and the edges are looked at in every 16th row and
// at the end, since `best` forgets nothing.
//
// Values of one byte where they have room, twice as many a vector, save 3 % of the instructions of
// a whole search (unit lengths up to 50, a text rich in repeats, vectors of 32 bytes).

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "search/filter/single_bound.cpp"
#include <hwy/foreach_target.h>  // compiles the rest of this file once for each kind of processor

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <optional>

#include <hwy/highway.h>

#include "search/filter/dp_cell.h"
#include "search/filter/register_rows.h"
#include "search/filter/single_bound.h"

#ifndef QUORIX_SINGLE_BOUND_SHARED
#define QUORIX_SINGLE_BOUND_SHARED

namespace quorix {

/// The extension in one direction.
struct SingleTable {
  const char* first_base;  ///< the base that is read first
  bool is_rightward;
  std::ptrdiff_t bases_ahead;   ///< that may be read in the direction, `first_base` included
  std::ptrdiff_t bases_passed;  ///< that lie on the other side of `first_base` in the text
  const char* reversed_unit;    ///< the unit backwards, again and again
  std::ptrdiff_t unit_length;
  std::ptrdiff_t skipped;  ///< characters between the first one used and the end of the unit
  ScoringRules scoring;
  std::int64_t start_value;   ///< the score above the floor
  std::int64_t target_value;  ///< what answers the question when it is met
};

/// The highest value met; none if the target was met, or the table had to be given up.
using HighestValue = std::optional<std::int64_t>;

}  // namespace quorix

#endif

HWY_BEFORE_NAMESPACE();
namespace quorix::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

/// Without vector instructions nothing is rejected.
HighestValue fill_table(const SingleTable& /*table*/, bool /*is_narrow*/,
                        std::ptrdiff_t /*lane_count*/, BoundWork& /*work*/) {
  return std::nullopt;
}

#else

namespace hn = hwy::HWY_NAMESPACE;

template <class Value, int kBlocks>
HighestValue fill_rows(const SingleTable& table, BoundWork& work) {
  using Rows = CRegisterRows<Value, kBlocks>;
  constexpr std::ptrdiff_t kLanes = Rows::kLanes;
  if (table.bases_passed < kLanes / 2) return std::nullopt;

  const auto target = hn::Set(typename Rows::Tag(), capped<Value>(table.target_value));
  Rows rows(table.scoring, table.start_value);
  rows.enter();
  for (std::ptrdiff_t row = 1; row < kMaxSingleRows; ++row) {
    const std::ptrdiff_t odd = row % 2;
    // The counts of lane 0: the smaller one, negative at first, and the greater one.
    const std::ptrdiff_t fewer = (row + odd - kLanes) / 2;
    const std::ptrdiff_t more = (row - odd + kLanes) / 2;
    if ((table.is_rightward ? fewer + kLanes - 1 : more) > table.bases_ahead) return std::nullopt;
    const char* const bases =
        table.is_rightward ? table.first_base + (fewer - 1) : table.first_base - (more - 1);
    const std::ptrdiff_t characters = (table.is_rightward ? -more : fewer - 1) + table.skipped;
    std::ptrdiff_t offset = characters % table.unit_length;
    if (offset < 0) offset += table.unit_length;

    ++work.rows;
    const bool is_alive = rows.advance(odd == 1, bases, table.reversed_unit + offset);
    if (is_alive && row % 16 != 0) continue;
    const HighestValue highest = rows.highest_value(target);
    if (!is_alive || !highest) return highest;
  }
  return std::nullopt;
}

template <class Value, int kBlocks>
HighestValue fill_table_of(const SingleTable& table, BoundWork& work) {
  const std::uint64_t rows_before = work.rows;
  const HighestValue highest = fill_rows<Value, kBlocks>(table, work);
  ++work.tables;
  work.cells += (work.rows - rows_before) * CRegisterRows<Value, kBlocks>::kLanes;
  return highest;
}

HighestValue fill_table(const SingleTable& table, bool is_narrow, std::ptrdiff_t lane_count,
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

}  // namespace

bool may_repeat_reach(const ScoredText& text, const ExtendableRepeat& repeat,
                      std::int64_t min_score, BoundWork& work) {
  if (repeat.score >= min_score) return true;
  const std::ptrdiff_t unit_length = repeat.unit_end - repeat.unit_begin;
  assert(unit_length >= 1 && repeat.score > -unit_length);
  assert(repeat.right_phase >= 0 && repeat.right_phase < unit_length);
  assert(repeat.left_phase >= 0 && repeat.left_phase < unit_length);
  assert(text.begin <= repeat.start && repeat.end <= text.end);
  // Without a gain the diagonals reach as far as the score can pay for; half as much again is for
  // gains. A guess: whatever goes farther meets the edge of the rows and stays undecided.
  const std::int64_t reach =
      (repeat.score + unit_length) * 3 / (2 * text.scoring.indel_penalty) + 3;
  if (reach > kMaxSingleLanes || unit_length > kMaxSingleUnit ||
      repeat.score + unit_length > kMaxSingleStartValue) {
    return true;
  }
  // The target fits a byte, and so does every value below it.
  const bool is_narrow = unit_length + min_score < 256 && reach <= 32;
  const auto lane_count = static_cast<std::ptrdiff_t>(std::bit_ceil(
      static_cast<std::uint64_t>(std::max<std::int64_t>(reach, is_narrow ? 16 : 32))));

  char reversed_unit[kMaxSingleUnit + kMaxSingleLanes];
  std::reverse_copy(repeat.unit_begin, repeat.unit_end, reversed_unit);
  for (std::ptrdiff_t i = 0; i < lane_count; ++i) reversed_unit[unit_length + i] = reversed_unit[i];

  SingleTable table{repeat.end,
                    true,
                    text.end - repeat.end,
                    repeat.end - text.begin,
                    reversed_unit,
                    unit_length,
                    unit_length - repeat.right_phase,
                    text.scoring,
                    repeat.score + unit_length,
                    min_score + unit_length};
  const HighestValue right = HWY_DYNAMIC_DISPATCH(fill_table)(table, is_narrow, lane_count, work);
  if (!right) return true;

  table.first_base = repeat.start - 1;
  table.is_rightward = false;
  table.bases_ahead = repeat.start - text.begin;
  table.bases_passed = text.end - repeat.start;
  table.skipped = unit_length - 1 - repeat.left_phase;
  table.start_value = *right;
  return !HWY_DYNAMIC_DISPATCH(fill_table)(table, is_narrow, lane_count, work).has_value();
}

std::uint64_t single_bound(const ScoredText& text, const SeedQuestion& question,
                           BoundWorkspace& workspace) {
  std::uint64_t undecided = question.asked;
  for (std::uint64_t rest = question.asked; rest != 0; rest &= rest - 1) {
    const char* const begin = question.first + std::countr_zero(rest);
    const char* const end = begin + question.unit_length;
    const ExtendableRepeat seed{begin, end, begin, end, 0, question.unit_length - 1, 0};
    if (!may_repeat_reach(text, seed, question.min_score, workspace.work)) {
      undecided &= ~(rest & (~rest + 1));
    }
  }
  return undecided;
}

}  // namespace quorix

#endif
