#pragma once

/// @file
/// The identifiers of records: by which other programs know a sequence.

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "tools/report/repeat.h"

namespace quorix::tools {

/// Hands out the identifier of each record and makes sure that no two are the same. Memory: the
/// names of all records.
class CIdentifiers {
 public:
  /// The identifier is the name up to its first white space or, with `full_names`, all of it.
  explicit CIdentifiers(bool full_names) : has_full_names_(full_names) {}

  /// Returns the identifier of a record of the report `report_name`, valid as long as this object.
  /// Throws: InputError if it is empty, or if an earlier record has the same one; both are named.
  const std::string& add(const std::string& report_name, const ReportedSequence& sequence);

 private:
  struct Record {
    std::string name;
    std::string place;  ///< FILE:LINE
  };

  bool has_full_names_;
  std::unordered_map<std::string, Record> records_;
};

}  // namespace quorix::tools
