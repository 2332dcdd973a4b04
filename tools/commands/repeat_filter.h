#pragma once

/// @file
/// Which repeats a command takes.

#include <cstdint>
#include <limits>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tools/report/repeat.h"
#include "tools/report/unit_forms.h"

namespace quorix::tools {

/// What the options ask for; the defaults take everything.
struct FilterOptions {
  std::string unit_lengths;     ///< "A-B", "A-", "-B" or "A", in bp, inclusive
  std::int64_t min_length = 0;  ///< in bp
  double min_copies = 0;
  std::optional<std::int64_t> min_score;
  double min_perfection = 0;           ///< in percent; 0 takes also those that have none
  std::vector<std::string> motifs;     ///< in any rotation, of either strand
  std::vector<std::string> sequences;  ///< identifiers
};

/// Returns the options that leave out repeats, as the command line has them; empty if none does.
[[nodiscard]] std::string in_words(const FilterOptions& options);

class CRepeatFilter {
 public:
  /// Throws: UsageError for a range or a motif that is none.
  explicit CRepeatFilter(const FilterOptions& options);

  /// True if records with this identifier are taken; it is noted as found.
  [[nodiscard]] bool takes_sequence(const std::string& identifier);

  /// True if a repeat of such a record is taken.
  [[nodiscard]] bool takes(const Repeat& repeat);

  /// Returns a name of the option for records that no record had, or an empty text.
  [[nodiscard]] std::string missing_sequence() const;

 private:
  void set_unit_lengths(const std::string& range);
  void add_motif(const std::string& motif);
  bool takes_motif(std::string_view unit);

  FilterOptions options_;
  std::int64_t min_unit_length_ = 0;
  std::int64_t max_unit_length_ = std::numeric_limits<std::int64_t>::max();
  std::set<std::string, std::less<>> motifs_;  ///< in their normal forms
  std::set<std::string> sequences_;
  std::set<std::string> missing_sequences_;
  CUnitForms forms_;
};

}  // namespace quorix::tools
