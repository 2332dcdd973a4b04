// A unit code has two bits for each base, the first one to be read highest, and above them the
// unit length and the direction: 56 bits and 6.

#include "search/extension/site_key.h"

#include <cassert>

namespace quorix {

std::uint64_t unit_code_of(const char* character, const char* unit_begin, const char* unit_end,
                           bool is_rightward) {
  std::uint64_t code = 0;
  const std::int64_t unit_length = unit_end - unit_begin;
  assert(unit_length <= kMaxCachedUnit);
  for (std::int64_t i = 0; i < unit_length; ++i) {
    assert(*character != 'N');
    // A, C, T and G differ in these two bits of their letters.
    code = code << 2U | (static_cast<unsigned char>(*character) >> 1U & 3U);
    if (is_rightward) {
      ++character;
      if (character == unit_end) character = unit_begin;
    } else {
      if (character == unit_begin) character = unit_end;
      --character;
    }
  }
  constexpr unsigned kLengthShift = 2 * kMaxCachedUnit;
  return code | static_cast<std::uint64_t>(2 * unit_length + (is_rightward ? 1 : 0))
                    << kLengthShift;
}

}  // namespace quorix
