#pragma once

/// @file
/// A summary counted the plain way: a mark for every base, and every rotation of a unit.

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "tools/report_text.h"

namespace quorix::testing {

/// A group of repeats.
struct PlainGroup {
  std::int64_t repeats = 0;
  std::set<std::pair<std::string, std::int64_t>> bases;  ///< record and position
  long double copies = 0;
  long double perfection = 0;  ///< the sum of those that are numbers
  std::int64_t perfections = 0;
};

/// Returns the least of all rotations of a unit and of its reverse complement.
std::string least_form(const std::string& unit);

class CPlainSummary {
 public:
  /// Adds a repeat of a record.
  void add(const std::string& record, const OwnedRepeat& repeat);

  std::map<std::string, PlainGroup> records;
  std::map<std::int64_t, PlainGroup> unit_lengths;
  std::map<std::string, PlainGroup> units;
  PlainGroup total;
};

}  // namespace quorix::testing
