#include "tools/report/repeat_figures.h"

#include <charconv>

namespace quorix::tools {

double copies_of(const Repeat& repeat) {
  return static_cast<double>(repeat.normalized_length) / static_cast<double>(repeat.unit_length);
}

double perfection_of(const Repeat& repeat) {
  double value = 0;
  const char* const end = repeat.perfection.data() + repeat.perfection.size();
  std::from_chars(repeat.perfection.data(), end, value);
  return value;
}

std::optional<std::int64_t> perfection_thousandths(const Repeat& repeat) {
  constexpr std::int64_t kThousand = 1000;
  std::string_view digits = repeat.perfection;
  const bool is_negative = digits.starts_with('-');
  if (is_negative) digits.remove_prefix(1);
  std::int64_t number = 0;
  for (const char digit : digits) {
    if (digit == '.') continue;
    if (digit < '0' || digit > '9') return std::nullopt;
    number = 10 * number + (digit - '0');
  }
  if (digits.find('.') == std::string_view::npos) number *= kThousand;
  return is_negative ? -number : number;
}

}  // namespace quorix::tools
