#pragma once

/// @file
/// Whole runs over FASTA text in memory: what the program reports and masks, without its heads.

#include <cstddef>
#include <string>
#include <vector>

namespace quorix::testing {

/// A record of a test.
struct NamedBases {
  std::string name;
  std::string bases;
};

/// The report blocks of all records, and the masked copy.
struct RunOutput {
  std::string report;
  std::string masked;

  friend bool operator==(const RunOutput&, const RunOutput&) = default;
};

/// The records as FASTA text in lines of `line_length` bases that end with `line_end`.
std::string fasta_text(const std::vector<NamedBases>& records, std::size_t line_length = 70,
                       const std::string& line_end = "\n");

/// What the program makes of FASTA text with the current settings: every record is read, searched,
/// reported and masked. Throws std::runtime_error on a format error.
RunOutput run_program(const std::string& fasta);

/// What the plain engine makes of the records.
RunOutput run_plain_engine(const std::vector<NamedBases>& records);

}  // namespace quorix::testing
