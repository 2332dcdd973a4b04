#pragma once

/// @file
/// A page as HTML: the template with the data of a report. The data are two texts of `CPackedText`,
/// which `web/src/data.js` reads: one for what is shown first, one for the alignments. Their layout
/// is described in page_writer.cpp.

#include "tools/io/output.h"
#include "tools/page/page_contents.h"

namespace quorix::tools {

/// Writes the page. REQUIRES: the program has a template. Throws: OutputError.
void write_page(const CPageContents& contents, COutput& output);

/// Writes what is shown first: totals, distributions, density, and the rows of the table.
void write_table_data(const CPageContents& contents, COutput& output);

/// Writes alignments, edits and flanks of the rows.
void write_detail_data(const CPageContents& contents, COutput& output);

}  // namespace quorix::tools
