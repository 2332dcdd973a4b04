// The story of a run. Each step either succeeds or returns its exit code after its message; memory
// that runs out is an exception for `main`. Write errors are looked at after the heads, after each
// record, and on both sides of the mark of success.

#include "driver/run.h"

#include <cstdint>
#include <string>

#include "console/clock.h"
#include "console/console_texts.h"
#include "console/exit_status.h"
#include "console/run_clock.h"
#include "driver/command_line.h"
#include "driver/parameter_report.h"
#include "driver/record_analysis.h"
#include "driver/run_files.h"
#include "report/output_format.h"
#include "sequence/sequence_mol.h"
#include "settings/settings.h"

namespace quorix {

namespace {

constexpr int kMaskedLineLength = 80;

/// The settings, for the person at the terminal and as comments at the head of the report.
void write_heads(std::FILE* report) {
  creator_message(stderr, "");
  print_search_parameters(stderr, "");
  print_progress_head();

  constexpr const char* kComment = "# ";
  creator_message(report, kComment);
  print_search_parameters(report, kComment);
  print_output_format(report, kComment);
  std::fflush(report);
}

bool is_in_sequence_range(std::uint64_t number) {
  return number >= global_sequence_from &&
         (global_sequence_to == kLastSequence || number <= global_sequence_to);
}

/// Says where reading failed and, if the device failed, why. Returns the code.
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

/// Searches, reports and masks one record. Returns `kSuccess`, or the code of a failed write.
int process_record(std::uint64_t number, CSequence_Mol& record, RunFiles& files) {
  COutputFile::expect_writes();
  analyse_record(number, record, files.report.stream(), global_mask_repeats);
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

/// Reads all records, also those after the range: an error in one of them ends the run as well.
int process_records(RunFiles& files, CSequence_Mol& record) {
  std::uint64_t number = 0;
  while (!files.input.has_ended_cleanly()) {
    ++number;
    record.readFastaSequence(files.input);
    if (files.input.has_format_error()) return end_on_read_error(files.input);
    if (!is_in_sequence_range(number)) continue;
    if (const int code = process_record(number, record, files); code != kSuccess) return code;
  }
  return kSuccess;
}

/// Closes everything. The mark of success is written only if nothing is known to have failed.
int finish(RunFiles& files) {
  COutputFile::expect_writes();
  if (files.masked.stream() != nullptr && !files.masked.close()) {
    return end_on_write_error(files.masked);
  }
  files.input.close();
  if (!files.report.flush()) return end_on_write_error(files.report);
  good_bye(files.report.stream());
  return files.report.close() ? kSuccess : end_on_write_error(files.report);
}

/// Ends the run after the command-line library's own texts. Help and version are what was asked
/// for, so the run fails if they cannot be written.
int end_after_library_text(int status) {
  if (status != kSuccess) return status;
  COutputFile output;
  output.use_shared_standard_output();
  return output.close() ? kSuccess : end_on_write_error(output);
}

int read_settings(int argc, const char* const* argv) {
  COutputFile::expect_writes();
  const int code = read_and_init_parameters(argc, argv);
  if (code != kSuccess) good_bye_on_error(code);
  return code;
}

}  // namespace

int run(int argc, const char* const* argv) {
  CSequence_Mol record;
  RunFiles files;
  time_analysis_started = current_time();
  quorix_welcome(stderr);
  std::fflush(stderr);

  try {
    if (const int code = read_settings(argc, argv); code != kSuccess) return code;
  } catch (const CommandLineEnd& end) {
    return end_after_library_text(end.status);
  }
  if (const int code = open_input_and_report(files); code != kSuccess) return code;
  COutputFile::expect_writes();
  write_heads(files.report.stream());
  files.report.note_failure();
  if (global_mask_repeats) open_masked_copy(files);

  if (const int code = process_records(files, record); code != kSuccess) return code;
  return finish(files);
}

}  // namespace quorix
