#pragma once

/// @file
/// Tables of aligned columns, for people.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/io/output.h"

namespace quorix::tools {

using TableRow = std::vector<std::string>;

/// Writes a header row and rows below it. The first column is aligned to the left, the others to
/// the right. `row_of` is called twice for each row, so that no more than one is in memory; every
/// row has as many columns as the header. Columns are as wide as UTF-8 characters ask for.
void write_table(COutput& output, const TableRow& header, std::size_t row_count,
                 const std::function<TableRow(std::size_t)>& row_of);

/// Returns a number with a comma between thousands; `digits` may have a sign and decimals.
[[nodiscard]] std::string with_thousands(std::string_view digits);

/// Returns `text` with '?' for control characters, cut to `max_width` characters; three dots then
/// show that it is cut.
[[nodiscard]] std::string shortened(std::string_view text, std::size_t max_width);

}  // namespace quorix::tools
