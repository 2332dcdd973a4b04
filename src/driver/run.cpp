// The story of a run. Each step either succeeds or returns its exit code after its message; memory
// that runs out is an exception for `run_process`, whose handler allocates nothing. Write errors
// are looked at after the heads, after each record, and on both sides of the mark of success.

#include "driver/run.h"

#include <cstdio>
#include <new>

#include "console/clock.h"
#include "console/console_texts.h"
#include "console/exit_status.h"
#include "console/run_clock.h"
#include "driver/command_line.h"
#include "driver/parameter_report.h"
#include "driver/run_files.h"
#include "driver/standard_descriptors.h"
#include "report/output_format.h"
#include "sequence/sequence_mol.h"
#include "settings/settings.h"

namespace quorix {

namespace {

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

int read_settings(int argc, const char* const* argv, int* thread_count) {
  COutputFile::expect_writes();
  const int code = read_and_init_parameters(argc, argv, thread_count);
  if (code != kSuccess) good_bye_on_error(code);
  return code;
}

}  // namespace

int run(int argc, const char* const* argv, const RunMethod& method) {
  CSequence_Mol record;
  RunFiles files;
  time_analysis_started = current_time();
  quorix_welcome(stderr);
  std::fflush(stderr);

  try {
    if (const int code = read_settings(argc, argv, method.thread_count); code != kSuccess)
      return code;
  } catch (const CommandLineEnd& end) {
    return end_after_library_text(end.status);
  }
  if (const int code = open_input_and_report(files); code != kSuccess) return code;
  COutputFile::expect_writes();
  write_heads(files.report.stream());
  files.report.note_failure();
  if (global_mask_repeats) open_masked_copy(files);

  if (const int code = method.process_records(files, record); code != kSuccess) return code;
  return finish(files);
}

int run_process(int argc, const char* const* argv, const RunMethod& method) {
  fill_closed_standard_descriptors();
  try {
    return run(argc, argv, method);
  } catch (const std::bad_alloc&) {
    std::fputs("Sorry! There is not enough memory for this analysis.\n", stderr);
    good_bye_on_error(kNoMemory);
    return kNoMemory;
  }
}

}  // namespace quorix
