#pragma once

/// @file
/// What a run with default settings prints before the first record, to standard error and to the
/// report.

#include <cstddef>
#include <string>

namespace quorix::testing {

/// The greeting of every run.
inline constexpr const char* kBanner =
    "\n\n"
    "      Welcome to Quorix, version 3.3.2b,\n"
    "      a microsatellite and satellite search tool.\n"
    "\n"
    "      Important note: The search mode: Search for repeats with\n"
    "                      a minimum percentage perfection is not\n"
    "                      fully implemented in this version.\n"
    "\n\n";

/// Returns the parameters of a search of the file `input` with default settings. Without `output`
/// the report goes to standard output.
inline std::string default_parameters(const std::string& input, const std::string& output = "") {
  return "Parameter settings used in this search:\n"
         "Input file name:                    " +
         input + "\n" +
         (output.empty() ? "" : "Output file name:                   " + output + "\n") +
         "   Sequence range to process:       1 - last sequence\n"
         "   Satellites searched for:         imperfect repeats\n"
         "   Recursion depth:                 5\n"
         "   Maximum score reduction:         -\n"
         "   Minimum unit length:             1\n"
         "   Maximum unit length:             6\n"
         "   Minimum score:                   maximum (6, 0+1*unitlength )\n"
         "   Minimum length:                  maximum (1, 0+0*unitlength )\n"
         "   Treat N's as:                    neutral\n"
         "   Max. succesive N's allowed:      4\n"
         "   Mismatch score:                  -6\n"
         "   Indel score:                     -6\n"
         "   Minimum perfection:              0 %\n"
         "   Number of flanking nucletides:   0\n"
         "   Remove mostly overlapping satellites: yes\n"
         "   Write file with masked seq.:     no\n"
         "   Computing perfections treat N's: asMismatch\n"
         "   Report units as:                 alphabetical normal form using reverse complement\n"
         "   Output format:                   extended quorix format\n"
         "   Print sequence mode:             print alignment\n";
}

/// The columns that each format has.
inline constexpr const char* kFirstSevenColumns =
    "\n"
    "Columns in lines of output providing repeat information:\n"
    "Column  1: Repeat unit length\n"
    "Column  2: Position at which repeat starts in current sequence\n"
    "Column  3: Position at which repeat ends in current sequence\n"
    "Column  4: Length of repeat in original sequence, i.e. (end-start+1)\n"
    "Column  5: Normalized repeat length, i.e. (end-start+1-insertions+deletions)\n"
    "Column  6: Repeat score\n"
    "Column  7: Repeat perfection\n";

/// The columns that only the extended format has; it is the default.
inline constexpr const char* kLastFiveColumns =
    "Column  8: Number of mismatches\n"
    "Column  9: Number of insertions\n"
    "Column 10: Number of deletions\n"
    "Column 11: Number of N's\n"
    "Column 12: Repeat unit\n"
    "\n";

/// Returns `text` with `prefix` before each of its lines.
inline std::string with_prefix(const std::string& prefix, const std::string& text) {
  std::string lines;
  for (std::size_t line = 0; line < text.size();) {
    const std::size_t next = text.find('\n', line) + 1;
    lines += prefix + text.substr(line, next - line);
    line = next;
  }
  return lines;
}

}  // namespace quorix::testing
