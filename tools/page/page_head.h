#pragma once

/// @file
/// The head of a page's data: everything that is small, as a JSON object.

#include <string>
#include <string_view>

#include "tools/page/page_contents.h"

namespace quorix::tools {

/// Returns a JSON string of ASCII letters. What is not UTF-8 becomes the replacement character.
[[nodiscard]] std::string json_string(std::string_view bytes);

/// Returns the object. `word_count` is the number of units and motifs that follow it in the data.
[[nodiscard]] std::string page_head(const CPageContents& contents, std::size_t word_count);

}  // namespace quorix::tools
