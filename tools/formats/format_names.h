#pragma once

/// @file
/// The formats that a command can be asked for.

#include <array>
#include <string_view>

namespace quorix::tools {

inline constexpr std::array<std::string_view, 2> kFormatNames{"jsonl", "tsv"};

}  // namespace quorix::tools
