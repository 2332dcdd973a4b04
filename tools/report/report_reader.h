#pragma once

/// @file
/// A report as a stream: its settings, then record by record the repeats. Every line is checked,
/// and memory is flat but for the longest repeat.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tools/report/edit_list.h"
#include "tools/report/printed_bases.h"
#include "tools/report/repeat.h"
#include "tools/report/report_lines.h"
#include "tools/report/report_settings.h"
#include "tools/report/unit_forms.h"

namespace quorix::tools {

/// The last line of a report that is complete.
inline constexpr std::string_view kClosingLine = "## Finished successfully. ##";

class CReportReader {
 public:
  /// Reads the head. `name` is that of the input in messages. With `allow_incomplete`, a report
  /// that is cut short after its head ends where it is cut. `block_size` is that of the buffer,
  /// which grows with the longest repeat. Throws: InputError.
  CReportReader(std::unique_ptr<CByteInput> input, const std::string& name, bool allow_incomplete,
                std::size_t block_size = CLineReader::kBlockSize);

  [[nodiscard]] const ReportSettings& settings() const { return settings_; }

  /// Goes on to the next record, over the repeats that are left of this one. Returns false after
  /// the closing line of the report, or where an incomplete one ends. Throws: InputError.
  bool next_sequence();

  /// The record that `next_sequence` went to.
  [[nodiscard]] ReportedSequence sequence() const {
    return {sequence_name_, sequence_length_, sequence_line_};
  }

  /// Goes on to the next repeat of the record. Returns false if there is none. Throws: InputError.
  bool next_repeat();

  /// The repeat that `next_repeat` went to.
  [[nodiscard]] const Repeat& repeat() const { return repeat_; }

  /// Why the report is incomplete: a message with file and line, or an empty text.
  [[nodiscard]] const std::string& cut_message() const { return cut_message_; }

  /// Returns the number of bytes read so far, uncompressed.
  [[nodiscard]] std::uint64_t byte_count() const { return lines_.reader().byte_count(); }

 private:
  /// Calls a step, turns its faults into errors with file and line, and ends an incomplete report
  /// quietly where that is allowed. Returns what the step returns, or false.
  template <class Step>
  bool guarded(const Step& step);

  /// Returns how many lines were read after that with this number.
  [[nodiscard]] std::uint64_t lines_after(std::uint64_t line_number) const {
    return lines_.reader().line_number() - line_number;
  }

  bool read_sequence_head();
  bool read_repeat();
  void read_edit_line();
  void read_bases(std::string_view line);
  void read_alignment(std::string_view line);
  void check_order();

  CReportLines lines_;
  ReportSettings settings_;
  bool allows_incomplete_;
  std::string cut_message_;

  std::string sequence_name_;
  std::int64_t sequence_length_ = 0;
  std::uint64_t sequence_line_ = 0;
  bool is_in_sequence_ = false;
  bool has_ended_ = false;

  Repeat repeat_;
  std::int64_t previous_start_ = 0;
  std::int64_t previous_end_ = 0;
  std::vector<ReportedEdit> edits_;
  CPrintedBases printed_bases_;
  CUnitForms unit_forms_;
};

}  // namespace quorix::tools
