#pragma once

/// @file
/// The lines of a report with a name for messages, and the two ways in which they disappoint: a
/// report that is wrong, and one that ends too early.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tools/io/line_reader.h"

namespace quorix::tools {

class CReportLines {
 public:
  /// `name` is that of the input in messages, `block_size` that of the reader's buffer.
  CReportLines(std::unique_ptr<CByteInput> input, std::string name, std::size_t block_size)
      : reader_(std::move(input), block_size), name_(std::move(name)) {}

  /// Returns the next line, valid until the next call. Throws: InputCutShort if there is none.
  std::string_view next();

  /// Throws: InputError if anything is left, InputCutShort if compressed data end early.
  void expect_end();

  /// Throws: InputError for the line after which so many were read.
  [[noreturn]] void fail(std::string_view reason, std::uint64_t lines_after = 0) const;

  [[nodiscard]] CLineReader& reader() { return reader_; }
  [[nodiscard]] const CLineReader& reader() const { return reader_; }

 private:
  [[noreturn]] void fail_as_cut() const;

  CLineReader reader_;
  std::string name_;
};

}  // namespace quorix::tools
