#pragma once

/// @file
/// Inputs that somebody will feed to the program, each with what has to come of it. The rows are
/// told apart by theme, one file each; a row is read as "FACT: BYTES give RECORDS, and then an
/// error on LINE".

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quorix::testing {

/// What the report has to say of a record.
struct ExpectedRecord {
  std::string name;
  std::size_t length;  ///< in bases
  /// The repeats, parted by "; ", none if empty. Each is "UNIT FIRST-LAST" (positions from 1, both
  /// inclusive) if it is perfect, else "UNIT FIRST-LAST SCORE PERFECTION".
  std::string repeats;
};

struct InputRow {
  std::string fact;
  std::string bytes;
  /// The records that are reported, up to the one with the error.
  std::vector<ExpectedRecord> records;
  /// The line (from 1) at which the error is reported; 0 if the run succeeds.
  int error_line = 0;
  /// Options beside those of the test, parted by blanks.
  std::string_view options = {};
  /// The line after that of the error, if the input could not be read on.
  std::string_view reason = {};
};

using InputRows = std::vector<InputRow>;

/// Line ends of every kind, blank lines, and what stands before the first header.
InputRows line_rows();
/// Headers: empty, odd bytes, and signs that begin none.
InputRows header_rows();
/// Letters, gaps, case, digits, proteins.
InputRows letter_rows();
/// Control bytes, encodings, and bytes that are no letters.
InputRows byte_rows();
/// Files of other kinds: FASTQ, tables, compressed files, pictures.
InputRows foreign_file_rows();
/// Gzip and BGZF: good, cut short and damaged.
InputRows gzip_rows();
/// Several records, with errors before, between and after those that are searched.
InputRows record_rows();

}  // namespace quorix::testing
