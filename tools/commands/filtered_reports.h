#pragma once

/// @file
/// What a command takes of its reports: the way through records and repeats that all commands
/// share.

#include <cstdint>
#include <string>

#include "tools/commands/progress.h"
#include "tools/commands/repeat_filter.h"
#include "tools/commands/report_choice.h"
#include "tools/formats/format_writer.h"
#include "tools/report/identifiers.h"
#include "tools/report/repeat.h"
#include "tools/report/report_settings.h"

namespace quorix::tools {

/// Is shown what is taken, in the order of the report.
class CRepeatVisitor {
 public:
  CRepeatVisitor() = default;
  CRepeatVisitor(const CRepeatVisitor&) = delete;
  CRepeatVisitor& operator=(const CRepeatVisitor&) = delete;
  virtual ~CRepeatVisitor() = default;

  /// `name` is that of the report in messages.
  virtual void begin_report(const ReportSettings& settings, const std::string& name) = 0;
  /// The identifier stays where it is until identifiers are forgotten.
  virtual void begin_sequence(const OutputSequence& sequence) = 0;
  virtual void add(const OutputSequence& sequence, const Repeat& repeat) = 0;
  /// `is_complete` is false if the report is cut short in this record.
  virtual void end_sequence(const OutputSequence& sequence, bool is_complete) = 0;
  /// `is_complete` is false if the report is cut short, in a record or between two.
  virtual void end_report(bool /*is_complete*/) {}
};

/// Reads reports one after the other. Identifiers differ between all of them.
class CFilteredReports {
 public:
  /// Throws: UsageError for a filter that is none.
  CFilteredReports(const ReportChoice& reports, const FilterOptions& filters)
      : reports_(reports), filter_(filters), identifiers_(reports.has_full_names) {}

  /// Reads one of the reports to its end, and says on standard error if it is incomplete. Throws:
  /// InputError, and what the visitor throws.
  void read(const std::string& file_name, CRepeatVisitor& visitor);

  /// From here on identifiers may be those of earlier reports.
  void forget_identifiers() { identifiers_ = CIdentifiers(reports_.has_full_names); }

  /// Throws: InputError if a record that the filters name was in no report.
  void check_all_found() const;

 private:
  const ReportChoice& reports_;
  CRepeatFilter filter_;
  CIdentifiers identifiers_;
  CProgress progress_;
};

}  // namespace quorix::tools
