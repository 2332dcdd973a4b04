#pragma once

/// @file
/// What reports add up to: figures for each record, each unit length, each unit, and all repeats.
/// A base that lies in several repeats of a group counts once for it.

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tools/report/repeat.h"
#include "tools/report/report_settings.h"
#include "tools/report/unit_forms.h"
#include "tools/summary/group_figures.h"
#include "tools/summary/repeat_sums.h"
#include "tools/summary/unit_table.h"

namespace quorix::tools {

struct RecordSummary {
  std::string identifier;
  std::int64_t length = 0;  ///< in bp, as reported
  bool is_complete = true;  ///< false if the report was cut short in this record
  GroupFigures figures;
};

struct UnitLengthSummary {
  std::int64_t unit_length = 0;  ///< in bp
  GroupFigures figures;
};

struct UnitSummary {
  std::string unit;  ///< the least rotation of both strands
  GroupFigures figures;
};

/// Takes records and their repeats as they stream by. Memory: the records, the unit lengths and the
/// distinct units. No figure depends on the order of the records.
class CSummary {
 public:
  /// The records that follow belong to a report with units in this form. Units are grouped by their
  /// least rotation on either strand, whatever their form; where they are printed in it, they need
  /// not be brought into it.
  void begin_report(UnitForm form) { form_ = form; }

  /// The repeats that follow belong to this record.
  void begin_record(std::string_view identifier, std::int64_t length);

  /// Adds a repeat of the record. REQUIRES: repeats of a record come in the order of their starts.
  void add(const Repeat& repeat);

  /// Ends the record; `is_complete` is false if its report was cut short there.
  void end_record(bool is_complete);

  /// Ends the report; `is_complete` is false if it was cut short, in a record or between two.
  void end_report(bool is_complete) { is_complete_ = is_complete_ && is_complete; }

  /// False if a report was cut short.
  [[nodiscard]] bool is_complete() const { return is_complete_; }

  /// The records that have ended, in their order.
  [[nodiscard]] const std::vector<RecordSummary>& records() const { return records_; }

  /// Returns the sum of their lengths, in bp.
  [[nodiscard]] std::int64_t searched_length() const { return searched_length_; }

  /// Returns the figures of all repeats.
  [[nodiscard]] GroupFigures total() const;

  /// Returns the figures of each unit length that repeats have, in ascending order.
  [[nodiscard]] std::vector<UnitLengthSummary> unit_lengths() const;

  /// Returns the number of distinct units.
  [[nodiscard]] std::size_t unit_count() const { return units_.size(); }

  /// Returns the numbers of the commonest units, up to `max_count` of them, or all for 0; their
  /// order is that of `CUnitTable::commonest`.
  [[nodiscard]] std::vector<std::uint32_t> commonest_units(std::size_t max_count) const {
    return units_.commonest(max_count);
  }

  /// Returns the unit with a number, which is less than `unit_count()`.
  [[nodiscard]] UnitSummary unit_at(std::uint32_t number) const;

 private:
  struct UnitLengthSums {
    RepeatSums sums;
    std::int64_t earlier_normalized_length = 0;  ///< of the records before the last one
  };

  UnitForm form_ = UnitForm::kAsFound;
  CUnitForms forms_;
  bool is_complete_ = true;
  std::vector<RecordSummary> records_;
  RecordSummary record_;  ///< the one that repeats are added to
  RepeatSums record_sums_;
  std::uint64_t record_number_ = 0;
  std::int64_t searched_length_ = 0;
  std::map<std::int64_t, UnitLengthSums> unit_lengths_;
  std::vector<std::int64_t> record_unit_lengths_;  ///< those that the record has
  CUnitTable units_;
};

}  // namespace quorix::tools
