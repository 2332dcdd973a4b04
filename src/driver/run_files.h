#pragma once

/// @file
/// The files of a run: the input, the report and, on request, the masked copy of the input.

#include <string>

#include "driver/output_file.h"
#include "sequence/file.h"

namespace quorix {

struct RunFiles {
  CFile input;
  COutputFile report;
  COutputFile masked;  ///< open only when `global_mask_repeats` and it could be created
};

/// Name of the masked copy.
[[nodiscard]] std::string masked_filename();

/// Opens the input named by the settings, then checks that no two files are the same, that no other
/// run writes to an output and that the report replaces no sequences, then opens the report. The
/// masked copy is locked as well, but keeps its content. No file loses anything until all checks
/// have passed. Returns `kSuccess`, or the code of the failure after its message.
[[nodiscard]] int open_input_and_report(RunFiles& files);

/// Opens the masked copy and empties it. A failure is reported when a record is written to it.
void open_masked_copy(RunFiles& files);

/// Says that an output file could not be opened, with `why` on a line of its own unless it is
/// empty. Returns `code` after the closing text.
[[nodiscard]] int refuse_output_file(const std::string& filename, const std::string& why, int code);

/// Says that writing to `file` failed, and why. Returns its exit code after the closing text.
[[nodiscard]] int end_on_write_error(const COutputFile& file);

}  // namespace quorix
