#include "driver/run_files.h"

#include <unistd.h>

#include "driver/console_texts.h"
#include "driver/exit_status.h"
#include "driver/file_identity.h"
#include "driver/old_content.h"
#include "settings/settings.h"

namespace quorix {

namespace {

constexpr const char* kIsForMessages = "It is the same file as standard error.";
constexpr const char* kHoldsSequences =
    "It begins with '>', as a file of sequences does. Remove it first if the report may replace "
    "it.";
constexpr const char* kHowManyNames =
    "Name one input file and, behind it, at most one report file. Of more names none is taken.\n";

void say_about_file(const char* before, const std::string& filename, const char* after) {
  general_PrintMessage(stderr, before, "\n   \"", double_percent_signs(filename), "\"\n");
  general_PrintMessage(stderr, after);
}

/// Refuses outputs that would overwrite the input or each other, or that messages would overwrite.
/// Nothing has been truncated yet.
int check_files_differ() {
  const std::string& report_name = global_output_filename;
  const CFileIdentity input = CFileIdentity::of_name(global_input_filename);
  const CFileIdentity report = report_name.empty() ? CFileIdentity::of_descriptor(STDOUT_FILENO)
                                                   : CFileIdentity::of_name(report_name);
  if (report.is_same_file(input)) {
    return refuse_output_file(report_name.empty() ? "standard output" : report_name,
                              "It is the same file as the input file.", kOutputNotOpened);
  }
  // Messages on standard output are what a user of `2>&1` asks for.
  const CFileIdentity messages = CFileIdentity::of_descriptor(STDERR_FILENO);
  if (!report_name.empty() && report.is_same_file(messages)) {
    return refuse_output_file(report_name, kIsForMessages, kOutputNotOpened);
  }
  if (!global_mask_repeats) return kSuccess;

  const CFileIdentity masked = CFileIdentity::of_name(masked_filename());
  if (masked.is_same_file(input)) {
    return refuse_output_file(masked_filename(), "It is the same file as the input file.",
                              kOutputNotOpened);
  }
  if (masked.is_same_file(report)) {
    return refuse_output_file(masked_filename(), "It is the same file as the report.",
                              kOutputNotOpened);
  }
  if (masked.is_same_file(messages)) {
    return refuse_output_file(masked_filename(), kIsForMessages, kOutputNotOpened);
  }
  return kSuccess;
}

}  // namespace

std::string masked_filename() {
  return global_input_filename + ".masked";
}

int open_input_and_report(RunFiles& files) {
  files.input.open(global_input_filename);
  if (files.input.has_format_error()) {
    say_about_file("Sorry! The input file ", global_input_filename,
                   "could not be opened. I guess it does not exist.\n");
    // More than two names leave the input without one, which nobody would guess from the text.
    if (global_input_filename.empty()) general_PrintMessage(stderr, kHowManyNames);
    good_bye_on_error(kInputNotOpened);
    return kInputNotOpened;
  }
  if (const int code = check_files_differ(); code != kSuccess) return code;

  if (global_output_filename.empty()) {
    files.report.use_standard_output();
  } else if (begins_like_fasta(global_output_filename)) {
    return refuse_output_file(global_output_filename, kHoldsSequences, kOutputNotOpened);
  } else if (!files.report.open(global_output_filename)) {
    return refuse_output_file(global_output_filename, "", kOutputNotOpened);
  }
  return kSuccess;
}

void open_masked_copy(RunFiles& files) {
  static_cast<void>(files.masked.open(masked_filename()));
}

int refuse_output_file(const std::string& filename, const std::string& why, int code) {
  say_about_file("Sorry! Failed to open file", filename, "as output file.\n");
  if (!why.empty()) general_PrintMessage(stderr, double_percent_signs(why), "\n");
  good_bye_on_error(code);
  return code;
}

int end_on_write_error(const COutputFile& file) {
  say_about_file("Sorry! Failed to write to file", file.name(), "");
  general_PrintMessage(stderr, double_percent_signs(file.failure_reason()), "\n");
  good_bye_on_error(kOutputWriteError);
  return kOutputWriteError;
}

}  // namespace quorix
