// What `quorix` does with its records. A search on several threads is made of the same steps.

#include "driver/record_loop.h"

#include <string>

#include "console/console_texts.h"
#include "console/exit_status.h"
#include "driver/record_analysis.h"
#include "settings/settings.h"

namespace quorix {

namespace {

constexpr int kMaskedLineLength = 80;

}  // namespace

bool is_in_sequence_range(std::uint64_t number) {
  return number >= global_sequence_from &&
         (global_sequence_to == kLastSequence || number <= global_sequence_to);
}

int end_on_read_error(CFile& input) {
  general_PrintMessage(
      stderr, "\n\n",
      "An error occurred while reading the input file. It might not be a valid fasta file.\n"
      "File position: line ",
      std::to_string(input.line_number()), "\n");
  if (const std::string reason = input.read_failure_reason(); !reason.empty()) {
    general_PrintMessage(stderr, double_percent_signs(reason), "\n");
  }
  std::fflush(stderr);
  input.close();
  return kInputReadError;
}

int finish_record(const CSequence_Mol& record, RunFiles& files) {
  if (!files.report.flush()) return end_on_write_error(files.report);
  if (!global_mask_repeats) return kSuccess;

  // The copy was opened before the search. That it failed is said only now, when there is something
  // to write.
  if (files.masked.stream() == nullptr) {
    return refuse_output_file(files.masked.name(), "", kOutputWriteError);
  }
  COutputFile::expect_writes();
  record.writeSequence(files.masked.stream(), kMaskedLineLength);
  return files.masked.flush() ? kSuccess : end_on_write_error(files.masked);
}

int process_records(RunFiles& files, CSequence_Mol& record) {
  std::uint64_t number = 0;
  while (!files.input.has_ended_cleanly()) {
    ++number;
    record.readFastaSequence(files.input);
    if (files.input.has_format_error()) return end_on_read_error(files.input);
    if (!is_in_sequence_range(number)) continue;
    COutputFile::expect_writes();
    analyse_record(number, record, files.report.stream(), global_mask_repeats);
    if (const int code = finish_record(record, files); code != kSuccess) return code;
  }
  return kSuccess;
}

}  // namespace quorix
