#pragma once

/// @file
/// Masked copies, line by line: a header for each record, and its bases in lines of 80.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "tools/report/report_reader.h"

namespace quorix::tools {

/// Checks the lines of one masked copy. A copy has no end mark: one that is cut at the end of a
/// line looks complete.
class CMaskedLines {
 public:
  /// True if the next line, which is `line`, is a header. Throws: LineFault if it is neither that
  /// nor a line of bases that may come here.
  [[nodiscard]] bool is_header(std::string_view line);

 private:
  bool is_in_record_ = false;
  std::size_t line_length_ = 0;  ///< of the last line of bases; a full line for a header
};

/// Compares masked copies with the report of the same run, record by record.
class CMaskedCheck {
 public:
  /// `reader` is at the begin of the report. Throws: InputError if its run has masked nothing.
  CMaskedCheck(CReportReader& reader, std::string report_name);

  /// The next record has this name. Throws: LineFault if the report has another one, or none, or if
  /// the record before lacks bases; InputError for the report.
  void begin_record(std::string_view name);

  /// The record goes on with these bases. Throws: LineFault if one that lies in a repeat is no X,
  /// or if they are more than the report says; InputError.
  void add_bases(std::string_view bases);

  /// There is no further record. Throws: InputError if the report has one, LineFault as
  /// `begin_record`.
  void finish();

 private:
  void end_record() const;
  void check_masked(std::string_view bases, std::int64_t begin, std::int64_t end) const;
  [[nodiscard]] std::string in_report() const;

  CReportReader& reader_;
  std::string report_name_;
  std::string name_;
  bool is_in_record_ = false;
  bool has_repeat_ = false;       ///< the repeat of the reader begins after the bases so far
  std::int64_t position_ = 0;     ///< bases of the record so far
  std::int64_t covered_end_ = 0;  ///< the end of all repeats that have begun
};

}  // namespace quorix::tools
