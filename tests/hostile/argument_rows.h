#pragma once

/// @file
/// Arguments that somebody will give to the program, each with what has to come of it. All runs
/// stand in a folder with the file `in.fa`, one record of eight copies of AC.

#include <string>
#include <string_view>
#include <vector>

namespace quorix::testing {

/// Statuses that the shell sees, as docs/formats.md lists them.
enum Status : int {
  kOk = 0,
  kMalformed = 1,  ///< the command-line library has ended the run
  kWriteFailed = 153,
  kNoReport = 154,
  kNoInput = 155,
  kNoFasta = 231,
  kUnknownCode = 254,
  kRefused = 255,
};

/// Whether the copies of AC are reported by a run that succeeds.
enum class Copies { kFound, kNotFound, kNotLookedAt };

/// What comes of one value of an option.
struct ValueRow {
  std::string value;
  int status;
  /// A success: how the head of the report shows the setting, after its label. A failure: a part
  /// of the message.
  std::string expected_text;
  Copies copies = Copies::kFound;
};

/// An option with the values that are tried.
struct OptionRow {
  std::string option;
  /// The beginning of its line in the head of the report, without the "# ".
  std::string label;
  std::vector<ValueRow> values;
};

/// Options that take an int and set a limit, a width or a score.
std::vector<OptionRow> whole_number_rows();
/// Options that take a code or the number of a sequence.
std::vector<OptionRow> code_rows();
/// Options that take an unsigned number, a fraction or a word.
std::vector<OptionRow> other_value_rows();

/// A whole list of arguments.
struct ArgumentRow {
  std::vector<std::string> arguments;
  int status;
  /// A success: a part of standard output. A failure: a part of standard error.
  std::string expected_text;
};

/// Missing values, options given twice, unknown options, signs and hyphens.
std::vector<ArgumentRow> malformed_rows();
/// Several settings at odds, of which the first that is checked is reported; and lists that are
/// good.
std::vector<ArgumentRow> combination_rows();

/// A name of a file, as the input and as the report.
struct FileNameRow {
  std::string_view fact;
  std::string name;
};

/// Names that a file may have.
std::vector<FileNameRow> file_name_rows();

}  // namespace quorix::testing
