#pragma once

/// @file
/// Characters of UTF-8 in bytes that may be anything.

#include <cstdint>
#include <optional>
#include <string_view>

namespace quorix::tools {

/// Takes a character off the front of `bytes` and returns its code. Surrogates, overlong forms and
/// what lies beyond U+10FFFF are no characters: of those one byte is taken, and nothing returned.
/// REQUIRES: `bytes` are not empty.
[[nodiscard]] std::optional<std::uint32_t> take_utf8_character(std::string_view& bytes);

}  // namespace quorix::tools
