// The order of the steps is the point: everything that may refuse the run comes before the first
// byte of an old file is lost.
//
//   open the input -> compare identities -> open and lock outputs that exist, then create missing
//   ones -> look at their old content -> empty the report
//
// The masked copy is emptied even later, after the heads are written (`open_masked_copy`).

#include "driver/run_files.h"

#include <sys/stat.h>
#include <unistd.h>

#include "console/console_texts.h"
#include "console/exit_status.h"
#include "driver/file_identity.h"
#include "driver/old_content.h"
#include "settings/settings.h"

namespace quorix {

namespace {

constexpr const char* kIsForMessages = "It is the same file as standard error.";
constexpr const char* kHoldsSequences =
    "It begins with '>', as a file of sequences does. Remove it first if the report may replace "
    "it.";
constexpr const char* kMayHoldSequences =
    "It begins as a gzip file does, and may hold sequences. Remove it first if the report may "
    "replace it.";
constexpr const char* kIsInUse = "It is locked: another run is writing to it.";
constexpr const char* kHowManyNames =
    "Name one input file and, after it, at most one report file. Of more names none is taken.\n";

void say_about_file(const char* before, const std::string& filename, const char* after) {
  general_PrintMessage(stderr, before, "\n   \"", double_percent_signs(filename), "\"\n");
  general_PrintMessage(stderr, after);
}

/// Refuses outputs that would overwrite the input or each other, or that messages would overwrite.
/// REQUIRES: no file has been truncated yet.
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

int claim_report(COutputFile& report, Missing missing) {
  const std::string& name = global_output_filename;
  const Claim claim = report.claim_name(name, missing);
  if (claim == Claim::kFailed) return refuse_output_file(name, "", kOutputNotOpened);
  if (claim == Claim::kInUse) return refuse_output_file(name, kIsInUse, kOutputNotOpened);
  if (claim != Claim::kHeld) return kSuccess;
  const OldContent old_content = old_content_of(name);
  if (old_content == OldContent::kFasta) {
    return refuse_output_file(name, kHoldsSequences, kOutputNotOpened);
  }
  if (old_content == OldContent::kGzip) {
    return refuse_output_file(name, kMayHoldSequences, kOutputNotOpened);
  }
  return kSuccess;
}

/// False for pipes and devices: they have no lock, and opening one may wait for a reader that wants
/// to see the head of the report first.
bool is_regular_or_missing(const std::string& filename) {
  struct stat status {};
  return ::stat(filename.c_str(), &status) != 0 || S_ISREG(status.st_mode);
}

/// A copy in use is refused at once; one that cannot be opened, when a record is written to it.
int claim_masked_copy(COutputFile& masked, Missing missing) {
  const std::string name = masked_filename();
  if (!is_regular_or_missing(name)) return kSuccess;
  if (masked.claim_name(name, missing) != Claim::kInUse) return kSuccess;
  return refuse_output_file(name, kIsInUse, kOutputNotOpened);
}

/// Opens and locks the outputs without changing them. Files that exist come first, so that a
/// refusal leaves no new empty file.
int claim_outputs(RunFiles& files) {
  for (const Missing missing : {Missing::kLeave, Missing::kCreate}) {
    if (!global_output_filename.empty()) {
      if (const int code = claim_report(files.report, missing); code != kSuccess) return code;
    }
    if (global_mask_repeats) {
      if (const int code = claim_masked_copy(files.masked, missing); code != kSuccess) return code;
    }
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
    // With more than two names none is taken, which nobody would guess from the text above.
    if (global_input_filename.empty()) general_PrintMessage(stderr, kHowManyNames);
    good_bye_on_error(kInputNotOpened);
    return kInputNotOpened;
  }
  if (const int code = check_files_differ(); code != kSuccess) return code;
  if (const int code = claim_outputs(files); code != kSuccess) return code;

  if (global_output_filename.empty()) {
    files.report.use_standard_output();
  } else if (!files.report.begin()) {
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
