#pragma once

/// @file
/// Texts as JSON writes them.

#include <string>
#include <string_view>

namespace quorix::tools {

/// Returns `text` as a JSON string, in quotation marks. Throws: InputError, which calls the text an
/// identifier and names the output `format`, if it is not UTF-8.
[[nodiscard]] std::string json_quoted(std::string_view text, std::string_view format);

}  // namespace quorix::tools
