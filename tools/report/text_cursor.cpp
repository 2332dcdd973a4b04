#include "tools/report/text_cursor.h"

#include <algorithm>
#include <limits>

namespace quorix::tools {

namespace {

constexpr std::size_t kShownLength = 40;
constexpr std::size_t kDecimals = 3;

bool is_digit(char character) {
  return character >= '0' && character <= '9';
}

const char* skip_digits(const char* place, const char* end) {
  return std::find_if_not(place, end, is_digit);
}

/// Returns the number that the digits spell. Throws: LineFault if it has more than 63 bits.
std::int64_t value_of(const char* first, const char* last) {
  constexpr std::int64_t kLimit = std::numeric_limits<std::int64_t>::max();
  std::int64_t value = 0;
  for (; first != last; ++first) {
    const std::int64_t digit = *first - '0';
    if (value > (kLimit - digit) / 10) throw LineFault("a number is too large");
    value = 10 * value + digit;
  }
  return value;
}

}  // namespace

std::string CTextCursor::shown(std::string_view text) {
  return std::string(text.substr(0, kShownLength)) + (text.size() > kShownLength ? "..." : "");
}

void CTextCursor::fail(std::string_view words) const {
  throw LineFault("expected \"" + std::string(words) + "\", found \"" + shown(rest()) + "\"");
}

const char* CTextCursor::skip_padding() {
  const char* const column = place_;
  while (place_ != end_ && *place_ == ' ') ++place_;
  return column;
}

void CTextCursor::check_width(const char* column, const char* first, std::size_t width) const {
  const auto length = static_cast<std::size_t>(place_ - column);
  if (length < width || (length > width && first != column)) {
    throw LineFault("\"" + shown({column, length}) + "\" should be aligned in " +
                    std::to_string(width) + " characters");
  }
}

std::int64_t CTextCursor::number(std::size_t width, std::string_view suffix) {
  const char* const column = skip_padding();
  const char* const first = place_;
  const bool is_negative = place_ != end_ && *place_ == '-';
  const char* const digits = place_ + (is_negative ? 1 : 0);
  const char* const last = skip_digits(digits, end_);
  if (digits == last) {
    place_ = column;
    fail("a number");
  }
  if (*digits == '0' && (is_negative || last - digits > 1)) {
    throw LineFault("a number begins with 0");
  }
  place_ = last;
  check_width(column, first, width);
  expect(suffix);
  const std::int64_t value = value_of(digits, last);
  return is_negative ? -value : value;
}

std::string_view CTextCursor::decimals(std::size_t width, std::string_view suffix) {
  const char* const column = skip_padding();
  const char* const first = place_;
  take("-");
  if (!take("nan") && !take("inf")) {
    const char* const digits = place_;
    place_ = skip_digits(digits, end_);
    const bool has_digits = place_ != digits && (*digits != '0' || place_ - digits == 1);
    const char* const point = place_;
    if (!has_digits || !take(".")) {
      place_ = column;
      fail("a number with three decimals");
    }
    place_ = skip_digits(place_, end_);
    if (static_cast<std::size_t>(place_ - point) != kDecimals + 1) {
      place_ = column;
      fail("a number with three decimals");
    }
  }
  check_width(column, first, width);
  const std::string_view text(first, static_cast<std::size_t>(place_ - first));
  expect(suffix);
  return text;
}

std::string_view CTextCursor::last_word() {
  const std::string_view word = rest();
  if (word.empty()) throw LineFault("the line ends early");
  place_ = end_;
  return word;
}

}  // namespace quorix::tools
