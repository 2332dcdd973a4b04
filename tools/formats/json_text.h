#pragma once

/// @file
/// Texts as JSON writes them.

#include <string>
#include <string_view>

namespace quorix::tools {

/// Returns an identifier as it stands between the quotes of a JSON string. Throws: InputError if it
/// is not UTF-8, which JSON is made of.
[[nodiscard]] std::string json_text(std::string_view identifier, std::string_view format);

/// The same with the quotes.
[[nodiscard]] std::string json_quoted(std::string_view identifier, std::string_view format);

}  // namespace quorix::tools
