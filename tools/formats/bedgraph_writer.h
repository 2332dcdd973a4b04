#pragma once

/// @file
/// bedGraph: windows of each record with the share of their bases that lie in repeats. Positions
/// count from 0, the end excluded.

#include <cstdint>

#include "tools/formats/format_writer.h"

namespace quorix::tools {

/// Every window of a record is a line, the last one shorter. A base in several repeats counts once.
/// The repeats of a record must come in the order of their starts. Memory: flat.
class CBedgraphWriter : public CFormatWriter {
 public:
  /// `window` is in bp. REQUIRES: it is positive.
  CBedgraphWriter(COutput& output, std::int64_t window) : CFormatWriter(output), window_(window) {}

  void begin_sequence(const OutputSequence& sequence) override;
  void add(const OutputSequence& sequence, const Repeat& repeat) override;
  void end_sequence(const OutputSequence& sequence) override;
  [[nodiscard]] bool can_be_sorted() const override { return false; }

 private:
  void write_window(const OutputSequence& sequence);
  void write_windows_before(const OutputSequence& sequence, std::int64_t position);

  std::int64_t window_;
  std::int64_t window_begin_ = 0;   ///< of the first window that is not written
  std::int64_t covered_count_ = 0;  ///< bases of that window that lie in repeats
  std::int64_t covered_end_ = 0;    ///< the end of all repeats so far
};

}  // namespace quorix::tools
