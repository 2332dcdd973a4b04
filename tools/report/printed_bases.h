#pragma once

/// @file
/// The lines below the figures of a repeat: its bases, or its alignment with perfect copies of the
/// unit. They are checked against the figures, and show which rotation of the unit the repeat
/// begins with.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/report/edit_list.h"
#include "tools/report/repeat.h"
#include "tools/report/report_settings.h"

namespace quorix::tools {

/// Splits a printed line of bases into the flanks and the repeat between them, members of `repeat`.
/// Throws: LineFault if a flank is not as long as the setting and the ends of the sequence ask for.
void split_flanks(std::string_view line, const ReportSettings& settings,
                  std::int64_t sequence_length, Repeat& repeat);

/// How many lines of an alignment follow the line of bases, and the line of marks.
inline constexpr std::uint64_t kLinesAfterBases = 2;
inline constexpr std::uint64_t kLinesAfterMarks = 1;

/// Throws: LineFault for the line of an alignment that is not as long as the two others.
void check_line_lengths(std::string_view bases, std::string_view marks, std::string_view unit);

/// Takes the part below the repeat out of a line of the alignment, which has blanks below flanks.
/// REQUIRES: the line is as long as that of the bases. Throws: LineFault if something is below a
/// flank.
[[nodiscard]] std::string_view part_below(std::string_view line, const ReportSettings& settings,
                                          const Repeat& repeat);

/// Checks the lines one by one and keeps what it needs from repeat to repeat.
class CPrintedBases {
 public:
  /// Checks bases without an alignment. Where the edits are known, `edits` are they, and the motif
  /// becomes known unless none of the copies has one of its bases. Throws: LineFault.
  void check_bases(Repeat& repeat, bool are_edits_known, const std::vector<ReportedEdit>& edits);

  /// Checks an alignment column by column, with the edits if the report lists them; the motif
  /// becomes known. Throws: LineFault for the line that contradicts the others, which may be that
  /// of the edits.
  void check_alignment(Repeat& repeat, const std::vector<ReportedEdit>& edits);

 private:
  void set_motif(Repeat& repeat);

  std::string motif_;
};

}  // namespace quorix::tools
