#pragma once

/// @file
/// Whole reports as the program writes them, and what a report reader makes of a text.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "support/record_runs.h"
#include "tools/io/byte_input.h"
#include "tools/report/report_reader.h"

namespace quorix::testing {

/// Bytes of a text in memory, in pieces of up to `piece_length`.
class CTextInput : public tools::CByteInput {
 public:
  explicit CTextInput(std::string text, std::size_t piece_length = std::size_t{1} << 20U)
      : text_(std::move(text)), piece_length_(piece_length) {}

  std::size_t read(char* block, std::size_t size) override;

 private:
  std::string text_;
  std::size_t piece_length_;
  std::size_t taken_ = 0;
};

/// The report of the program on these records with the current settings, head and closing line
/// included.
std::string whole_report(const std::vector<NamedBases>& records);

/// A report with defaults and a repeat of each kind: exact, with each edit, with unknown bases.
std::string example_report();

/// A repeat with texts of its own.
struct OwnedRepeat {
  explicit OwnedRepeat(const tools::Repeat& repeat);

  tools::Repeat figures;  ///< its texts are gone
  std::string perfection;
  std::string unit;
  std::string motif;
  std::string edits;
  std::string bases;
  std::string marks;
  std::string aligned_unit;
  std::string left_flank;
  std::string right_flank;
};

struct OwnedSequence {
  std::string name;
  std::int64_t length;
  std::vector<OwnedRepeat> repeats;
};

struct OwnedReport {
  tools::ReportSettings settings;
  std::vector<OwnedSequence> sequences;
  std::string cut_message;
};

/// Reads a report that is named "r" in messages. Throws: InputError.
OwnedReport read_whole(const std::string& text, bool allow_incomplete = false,
                       std::size_t piece_length = std::size_t{1} << 20U,
                       std::size_t block_size = tools::CLineReader::kBlockSize);

/// The message with which a report is refused, or an empty text.
std::string refusal_of(const std::string& text);

}  // namespace quorix::testing
