#include "tools/formats/json_text.h"

#include "tools/formats/columns.h"
#include "tools/io/utf8.h"

namespace quorix::tools {

namespace {

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
    const std::string_view from_here = rest;
    if (!take_utf8_character(rest)) refuse_identifier(identifier, format, "it is not UTF-8");
    const std::string_view character = from_here.substr(0, from_here.size() - rest.size());
    if (character.size() == 1) {
      append_escaped(result, character.front());
    } else {
      result += character;
    }
  }
  return result;
}

std::string json_quoted(std::string_view identifier, std::string_view format) {
  return '"' + json_text(identifier, format) + '"';
}

}  // namespace quorix::tools
