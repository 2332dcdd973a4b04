#pragma once

/// @file
/// The page without data, which is built from `web/` along with the program.

#include <string_view>

namespace quorix::tools {

/// Marks the places for the data in the template. Each stands there once, in this order.
inline constexpr std::string_view kTableMark = "@TABLE-DATA@";
inline constexpr std::string_view kDetailMark = "@DETAIL-DATA@";

/// Returns the template, empty if the program was built without it.
[[nodiscard]] std::string_view page_template();

}  // namespace quorix::tools
