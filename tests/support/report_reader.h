#pragma once

/// @file
/// Reads a report as a script would, by what its lines look like and by nothing else: what it gives
/// is what a reader can know of the run.

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorix::testing {

struct ReadEdit {
  std::int64_t position;  ///< within the repeat, from 1
  char kind;

  friend bool operator==(const ReadEdit&, const ReadEdit&) = default;
};

/// One repeat of a report. What its format does not tell is left out.
struct ReadRepeat {
  std::int64_t unit_length;
  std::int64_t first_position;  ///< from 1
  std::int64_t last_position;   ///< inclusive
  std::optional<std::int64_t> length;
  std::int64_t normalized_length;
  std::int64_t score;
  std::string perfection;
  std::optional<std::int64_t> mismatches;
  std::optional<std::int64_t> insertions;
  std::optional<std::int64_t> deletions;
  std::optional<std::int64_t> n_count;
  std::string unit;
  std::optional<std::vector<ReadEdit>> edits;
  /// The line of bases, or the three lines of the alignment.
  std::vector<std::string> lines;
};

struct ReadBlock {
  std::string name;
  std::int64_t sequence_length;
  std::vector<ReadRepeat> repeats;
};

struct ReadReport {
  /// The settings by their labels, such as "Minimum score".
  std::map<std::string, std::string> settings;
  /// The meanings of the columns, in their order.
  std::vector<std::string> columns;
  std::vector<ReadBlock> blocks;
};

/// Reads a whole report, up to its closing line. Throws std::runtime_error that tells the place and
/// what should be there, if it is none.
[[nodiscard]] ReadReport read_report(std::string_view text);

}  // namespace quorix::testing
