#pragma once

/// @file
/// Reports over consecutive ranges of the records of one input, and the head of the report that one
/// run over all of them writes.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/report/report_settings.h"

namespace quorix::tools {

/// A part, as its head tells. Records are counted from 1.
struct ReportPart {
  std::string name;  ///< of its file
  ReportSettings settings;
  std::string head;  ///< its text

  /// Returns the number of the first record that its range can hold.
  [[nodiscard]] std::uint64_t begin() const;

  /// Returns the number after that of the last record that its range can hold; UINT64_MAX if it
  /// goes on to the last one of the input.
  [[nodiscard]] std::uint64_t end() const;

  /// Returns the range as in the head: "1 - 4" or "5 - last sequence".
  [[nodiscard]] std::string range_text() const;
};

/// Reads the head of a part. Throws: InputError.
[[nodiscard]] ReportPart read_part(const std::string& file_name);

/// Throws: InputError if the parts differ in their input or in a setting, by their heads. The range
/// and the output may differ.
void check_same_run(const std::vector<ReportPart>& parts);

/// Sorts the parts by their ranges. Throws: InputError if these overlap, leave out a record, or end
/// before they begin; a range that ends just before it begins is empty, and no fault.
void sort_by_range(std::vector<ReportPart>& parts);

/// Returns the head of the report of all parts, which is named `output_name` or goes to standard
/// output. REQUIRES: there is a part, and they are sorted and of one run.
[[nodiscard]] std::string merged_head(const std::vector<ReportPart>& parts,
                                      const std::optional<std::string>& output_name);

/// Counts the records of the parts, in their order. A part with fewer than its range can hold shows
/// that the input has no more of them.
class CRecordCount {
 public:
  /// Throws: InputError if the part has more records than its range, or has some although an
  /// earlier part has met the end of the input.
  void add(const ReportPart& part, std::uint64_t record_count);

 private:
  std::string last_part_;  ///< that has met the end of the input, and its range
  std::uint64_t last_record_ = 0;
};

}  // namespace quorix::tools
