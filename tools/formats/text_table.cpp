#include "tools/formats/text_table.h"

#include <algorithm>

namespace quorix::tools {

namespace {

constexpr std::string_view kGap = "  ";

/// True unless the byte goes on with a character of UTF-8.
bool begins_character(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

std::size_t width_of(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), begins_character));
}

void write_row(COutput& output, const TableRow& row, const std::vector<std::size_t>& widths) {
  for (std::size_t i = 0; i < row.size(); ++i) {
    const std::string padding(widths[i] - width_of(row[i]), ' ');
    if (i > 0) output.add(kGap);
    output.add(i == 0 ? row[i] : padding);
    output.add(i == 0 ? padding : row[i]);
  }
  output.add('\n');
}

}  // namespace

void write_table(COutput& output, const TableRow& header, std::size_t row_count,
                 const std::function<TableRow(std::size_t)>& row_of) {
  std::vector<std::size_t> widths(header.size(), 0);
  const auto widen = [&widths](const TableRow& row) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], width_of(row[i]));
  };
  widen(header);
  for (std::size_t i = 0; i < row_count; ++i) widen(row_of(i));
  write_row(output, header, widths);
  for (std::size_t i = 0; i < row_count; ++i) write_row(output, row_of(i), widths);
}

std::string with_thousands(std::string_view digits) {
  constexpr std::size_t kGroup = 3;
  const std::size_t end = std::min(digits.find('.'), digits.size());
  const std::size_t begin = digits.starts_with('-') ? 1 : 0;
  std::string text(digits);
  for (std::size_t place = end; place > begin + kGroup;) {
    place -= kGroup;
    text.insert(place, 1, ',');
  }
  return text;
}

std::string shortened(std::string_view text, std::size_t max_width) {
  constexpr std::string_view kDots = "...";
  constexpr unsigned char kFirstPrintable = 0x20;
  constexpr unsigned char kDelete = 0x7F;
  const bool is_cut = width_of(text) > max_width;
  std::size_t left = is_cut ? max_width - kDots.size() : max_width;
  std::string result;
  for (const char byte : text) {
    if (begins_character(byte) && left-- == 0) break;
    const auto code = static_cast<unsigned char>(byte);
    result += code < kFirstPrintable || code == kDelete ? '?' : byte;
  }
  return is_cut ? result.append(kDots) : result;
}

}  // namespace quorix::tools
