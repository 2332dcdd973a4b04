#include "tools/summary/group_figures.h"

#include <array>
#include <charconv>
#include <cstdlib>

namespace quorix::tools {

namespace {

/// Long enough for a number of 64 bits with decimals.
using NumberBuffer = std::array<char, 64>;

std::string text_of(double number, std::chars_format format, int precision) {
  NumberBuffer digits{};
  const std::to_chars_result end =
      std::to_chars(digits.data(), digits.data() + digits.size(), number, format, precision);
  return {digits.data(), end.ptr};
}

double share_of(std::int64_t base_count, std::int64_t length) {
  return length == 0 ? 0 : static_cast<double>(base_count) / static_cast<double>(length);
}

}  // namespace

std::string share_text(std::int64_t base_count, std::int64_t length) {
  constexpr int kDigits = 6;
  return text_of(share_of(base_count, length), std::chars_format::general, kDigits);
}

std::string percent_text(std::int64_t base_count, std::int64_t length) {
  constexpr double kPercent = 100;
  constexpr int kDecimals = 4;
  return text_of(kPercent * share_of(base_count, length), std::chars_format::fixed, kDecimals);
}

std::string copies_text(const GroupFigures& figures) {
  constexpr int kDecimals = 2;
  return text_of(figures.copies, std::chars_format::fixed, kDecimals);
}

std::string mean_perfection_text(const GroupFigures& figures) {
  constexpr std::int64_t kThousand = 1000;
  if (figures.perfection_count == 0) return "";
  const std::int64_t sum = std::abs(figures.perfection_sum);
  const std::int64_t rest = sum % figures.perfection_count;
  const std::int64_t mean =
      sum / figures.perfection_count + (2 * rest >= figures.perfection_count ? 1 : 0);
  std::string text;
  if (figures.perfection_sum < 0 && mean > 0) text += '-';
  text += std::to_string(mean / kThousand);
  text += '.';
  text += std::to_string(kThousand + mean % kThousand).substr(1);
  return text;
}

}  // namespace quorix::tools
