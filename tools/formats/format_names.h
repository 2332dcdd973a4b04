#pragma once

/// @file
/// The formats that a command can be asked for.

#include <array>
#include <string_view>

namespace quorix::tools {

inline constexpr std::string_view kBedgraph = "bedgraph";

inline constexpr std::array<std::string_view, 5> kFormatNames{"bed", kBedgraph, "gff3", "jsonl",
                                                              "tsv"};

}  // namespace quorix::tools
