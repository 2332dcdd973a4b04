#pragma once

/// @file
/// Reading and writing FASTA text, all at once.
///
/// Blank lines and '#' lines may come before the first header. In a sequence line A, C, G, T and N
/// are kept (in upper case), U is T, the other letters for ambiguous bases are N, white space, '-'
/// and '*' are skipped; anything else is a format error. CR LF, CR and LF each end one line.

#include <cstdint>
#include <string>
#include <vector>

namespace quorix::reference {

struct FastaRecord {
  /// The header line after its '>'.
  std::string name;
  std::string bases;

  friend bool operator==(const FastaRecord&, const FastaRecord&) = default;
};

struct FastaText {
  /// The whole records; the one in which an error lies is not among them.
  std::vector<FastaRecord> records;
  /// Line (from 1) in which reading had to stop; 0 if the text is good to its end.
  std::int64_t error_line;
};

FastaText read_fasta(const std::string& text);

/// The record as FASTA text with lines of `width` bases; a name ends at its first NUL.
std::string write_fasta(const FastaRecord& record, std::int64_t width);

}  // namespace quorix::reference
