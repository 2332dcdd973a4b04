#pragma once

/// @file
/// Summaries in the formats of `quorix-tools stats`.

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "tools/io/output.h"
#include "tools/summary/summary.h"

namespace quorix::tools {

inline constexpr std::string_view kMultiqc = "multiqc";
inline constexpr std::string_view kTable = "table";

inline constexpr std::array<std::string_view, 4> kSummaryFormatNames{"json", kMultiqc, kTable,
                                                                     "tsv"};

/// What is written of a summary.
struct SummaryView {
  const CSummary& summary;
  std::size_t max_unit_count;  ///< of units, the commonest first; 0 for all
};

/// Writes aligned columns for people. Long names and units are cut.
void write_summary_table(const SummaryView& view, COutput& output);

/// Writes one table for programs, whose first column says what a row is of. Throws: InputError if
/// an identifier holds a tab.
void write_summary_tsv(const SummaryView& view, COutput& output);

/// Writes one JSON object. Throws: InputError if an identifier is not UTF-8.
void write_summary_json(const SummaryView& view, COutput& output);

}  // namespace quorix::tools
