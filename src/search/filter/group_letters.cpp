#include "search/filter/group_letters.h"

#include <algorithm>
#include <bit>
#include <cassert>

#include "search/filter/filter_plan.h"

namespace quorix {

namespace {

// What stands for the letters outside the text: they match none, nor each other.
constexpr std::uint8_t kOutsideBase = 1;
constexpr std::uint8_t kOutsideCharacter = 2;

/// Copies `count` letters, upward or downward from offset `first` of the text on, to `to`;
/// `outside` stands for those beyond its ends.
void copy_letters(const ScoredText& text, std::ptrdiff_t first, bool is_upward,
                  std::ptrdiff_t count, std::uint8_t outside, std::uint8_t* to) {
  const std::ptrdiff_t length = text.end - text.begin;
  // The part [begin, end) of what is copied lies in the text.
  const std::ptrdiff_t below = is_upward ? -first : first - (length - 1);
  const std::ptrdiff_t begin = std::clamp<std::ptrdiff_t>(below, 0, count);
  const std::ptrdiff_t end =
      std::clamp<std::ptrdiff_t>(is_upward ? length - first : first + 1, begin, count);
  std::fill_n(to, begin, outside);
  std::fill(to + end, to + count, outside);
  if (begin == end) return;
  if (is_upward) {
    std::copy_n(text.begin + first + begin, end - begin, to + begin);
  } else {
    std::reverse_copy(text.begin + (first - end + 1), text.begin + (first - begin + 1), to + begin);
  }
}

/// The bits of `seeds` in the order in which the seeds enter to the left; the last of them is that
/// of base `span`.
std::uint64_t mirrored(std::uint64_t seeds, std::ptrdiff_t span) {
  std::uint64_t found = 0;
  for (std::ptrdiff_t k = 0; k <= span; ++k) found |= (seeds >> k & 1) << (span - k);
  return found;
}

}  // namespace

GroupTable read_group_letters(const ScoredText& text, const SeedQuestion& question,
                              bool is_rightward, std::vector<std::uint8_t>& letters) {
  assert((question.asked & 1) != 0);
  const std::ptrdiff_t unit_length = question.unit_length;
  const std::ptrdiff_t span = kGroupSeeds - 1 - std::countl_zero(question.asked);
  assert(span < unit_length);
  const std::ptrdiff_t first = question.first - text.begin;
  const std::ptrdiff_t count = kMaxGroupCopies * unit_length + kGroupSeeds;
  const std::ptrdiff_t stride = count + 2 * kSpareLetters;
  const std::ptrdiff_t two_units = unit_length + span;
  letters.resize(std::max(letters.size(), static_cast<std::size_t>(3 * stride + two_units)));
  std::uint8_t* const bases = letters.data() + kSpareLetters;
  std::uint8_t* const characters = bases + stride;
  std::uint8_t* const others = characters + stride;
  std::uint8_t* const units = others + stride - kSpareLetters;

  copy_letters(text, is_rightward ? first + unit_length : first + span - 1, is_rightward, count,
               kOutsideBase, bases);
  // Backwards: the unit of the seed that enters last, then what only the first one has.
  copy_letters(text, is_rightward ? first + span + unit_length - 1 : first, !is_rightward,
               two_units, kOutsideCharacter, units);
  const std::uint8_t* const units_end = units + two_units;
  for (std::ptrdiff_t used = 0; used < count; used += unit_length) {
    const std::ptrdiff_t part = std::min(unit_length, count - used);
    const std::ptrdiff_t begin = count - used - part;
    std::copy_n(units_end - part, part, characters + begin);
    std::copy_n(units_end - part, part, others + begin);
    if (used == 0) continue;
    // The seed that enters last, after `span` characters, wraps that much later.
    const std::ptrdiff_t wrapping = std::min(span, part);
    std::copy_n(units_end - unit_length - wrapping, wrapping, others + count - used - wrapping);
  }
  return {bases,
          characters,
          others,
          count,
          is_rightward ? question.asked : mirrored(question.asked, span),
          text.scoring,
          0,
          0};
}

}  // namespace quorix
