#include "tools/formats/json_text.h"

#include "tools/formats/columns.h"

namespace quorix::tools {

namespace {

/// Returns the bytes of the UTF-8 character that `text` begins with, 0 if it is none. Surrogates,
/// overlong forms and what lies beyond U+10FFFF are none.
std::size_t utf8_length(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  if (byte(0) < 0x80U) return 1;
  const std::size_t length = byte(0) >= 0xF0U ? 4 : byte(0) >= 0xE0U ? 3 : 2;
  if (byte(0) < 0xC2U || byte(0) > 0xF4U || text.size() < length) return 0;
  unsigned first = 0x80U;  // range of the second byte
  unsigned last = 0xBFU;
  if (byte(0) == 0xE0U) first = 0xA0U;
  if (byte(0) == 0xEDU) last = 0x9FU;
  if (byte(0) == 0xF0U) first = 0x90U;
  if (byte(0) == 0xF4U) last = 0x8FU;
  if (byte(1) < first || byte(1) > last) return 0;
  for (std::size_t i = 2; i < length; ++i) {
    if ((byte(i) & 0xC0U) != 0x80U) return 0;
  }
  return length;
}

/// Appends an ASCII character as it stands in a JSON string.
void append_escaped(std::string& result, char character) {
  constexpr std::string_view kHexDigits = "0123456789abcdef";
  const auto code = static_cast<unsigned char>(character);
  if (character == '"' || character == '\\') {
    result += '\\';
    result += character;
  } else if (code < 0x20U) {
    result += "\\u00";
    result += kHexDigits[code >> 4U];
    result += kHexDigits[code & 0xFU];
  } else {
    result += character;
  }
}

}  // namespace

std::string json_text(std::string_view identifier, std::string_view format) {
  std::string result;
  for (std::string_view rest = identifier; !rest.empty();) {
    const std::size_t length = utf8_length(rest);
    if (length == 0) refuse_identifier(identifier, format, "it is not UTF-8");
    if (length == 1) {
      append_escaped(result, rest.front());
    } else {
      result += rest.substr(0, length);
    }
    rest.remove_prefix(length);
  }
  return result;
}

std::string json_quoted(std::string_view identifier, std::string_view format) {
  return '"' + json_text(identifier, format) + '"';
}

}  // namespace quorix::tools
