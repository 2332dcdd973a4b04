// Numbers are spelled by std::to_chars: it ignores the locale and needs no format, and it rounds
// decimals as printf does. Only what is no number is left to printf.

#include "report/report_text.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <system_error>

namespace quorix {

namespace {

constexpr std::size_t kDecimalsWidth = 7;
constexpr int kDecimals = 3;

}  // namespace

void add_column(CStreamText& text, std::string_view column, std::size_t width) {
  if (column.size() < width) text.add(width - column.size(), ' ');
  text.add(column);
}

void add_number(CStreamText& text, long long number, std::size_t width) {
  char digits[std::numeric_limits<long long>::digits10 + 2];  // one more digit, and the sign
  const std::to_chars_result end = std::to_chars(std::begin(digits), std::end(digits), number);
  add_column(text, {std::begin(digits), end.ptr}, width);
}

void add_decimals(CStreamText& text, double number) {
  // The sign, all digits of the largest number, the point, the decimals and a NUL.
  char digits[std::numeric_limits<double>::max_exponent10 + kDecimals + 4];
  if (!std::isfinite(number)) {
    // The C library decides how NaN and infinity are spelled, and whether with a sign.
    std::snprintf(digits, sizeof digits, "%f", number);
    return add_column(text, digits, kDecimalsWidth);
  }
  const std::to_chars_result end = std::to_chars(std::begin(digits), std::end(digits), number,
                                                 std::chars_format::fixed, kDecimals);
  add_column(text, {std::begin(digits), end.ptr}, kDecimalsWidth);
}

}  // namespace quorix
