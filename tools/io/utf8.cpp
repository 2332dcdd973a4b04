#include "tools/io/utf8.h"

namespace quorix::tools {

std::optional<std::uint32_t> take_utf8_character(std::string_view& bytes) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const std::uint32_t first = byte(0);
  const std::size_t length = first < 0x80U ? 1 : first < 0xE0U ? 2 : first < 0xF0U ? 3 : 4;
  std::uint32_t code = length == 1 ? first : first & (0xFFU >> (length + 1));
  bool is_good = (first < 0x80U || first >= 0xC2U) && first < 0xF5U && bytes.size() >= length;
  for (std::size_t i = 1; is_good && i < length; ++i) {
    is_good = (byte(i) & 0xC0U) == 0x80U;
    code = (code << 6U) | (byte(i) & 0x3FU);
  }
  constexpr std::uint32_t kMinCodes[] = {0, 0, 0x80, 0x800, 0x10000};
  is_good = is_good && code >= kMinCodes[length] && code <= 0x10FFFFU &&
            (code < 0xD800U || code > 0xDFFFU);
  bytes.remove_prefix(is_good ? length : 1);
  if (!is_good) return std::nullopt;
  return code;
}

}  // namespace quorix::tools
