#pragma once

/// @file
/// What the head of a report says of the run that wrote it.

#include <cstdint>
#include <optional>
#include <string>

namespace quorix::tools {

enum class SearchMode { kExact, kExtendExact, kImperfect };
enum class NPerfection { kMismatch, kNeutral, kMatch };
enum class UnitForm { kAsFound, kAlphabetical, kAlphabeticalBothStrands };
enum class ReportFormat { kQuorix, kExtendedQuorix, kSputnik };
enum class SequenceMode { kNone, kBases, kAlignment };

/// A minimum as a function of the unit length: the larger one of `constant` and
/// `offset` + `factor` * unit length.
struct Threshold {
  std::int32_t constant = 0;
  std::int32_t offset = 0;
  double factor = 0;
};

/// The settings by their lines. What mode `exact` does not print has no value.
struct ReportSettings {
  std::string version;  ///< such as "3.3.2b"
  std::string input_name;
  std::optional<std::string> output_name;      ///< none for standard output
  std::uint32_t first_sequence = 1;            ///< from 1
  std::optional<std::uint32_t> last_sequence;  ///< inclusive; none for the last one
  SearchMode search_mode = SearchMode::kImperfect;
  std::optional<std::int32_t> recursion_depth;
  std::optional<std::int32_t> max_score_reduction;  ///< none also where there is no limit
  std::uint32_t min_unit_length = 1;                ///< in bp
  std::uint32_t max_unit_length = 1;                ///< in bp, inclusive
  Threshold min_score;
  Threshold min_length;  ///< in bp
  bool treats_ns_as_missense = false;
  std::int32_t max_successive_ns = 0;
  std::optional<std::int32_t> mismatch_score;
  std::optional<std::int32_t> indel_score;
  double min_perfection = 0;      ///< in percent
  std::int32_t flank_length = 0;  ///< in bp
  bool removes_overlaps = true;
  bool masks = false;
  NPerfection n_perfection = NPerfection::kMismatch;
  UnitForm unit_form = UnitForm::kAlphabeticalBothStrands;
  ReportFormat format = ReportFormat::kExtendedQuorix;
  SequenceMode sequence_mode = SequenceMode::kAlignment;

  /// True if the edits of repeats are known: listed, or none at all.
  [[nodiscard]] bool tells_edits() const {
    return format == ReportFormat::kExtendedQuorix || search_mode == SearchMode::kExact;
  }

  /// True if motifs follow from the lines below the figures, but for some among unknown bases.
  [[nodiscard]] bool tells_motifs() const {
    return sequence_mode == SequenceMode::kAlignment ||
           (sequence_mode == SequenceMode::kBases && tells_edits());
  }

  /// True if the lines of repeats count N's.
  [[nodiscard]] bool has_n_column() const {
    return format == ReportFormat::kExtendedQuorix && !treats_ns_as_missense;
  }
};

}  // namespace quorix::tools
