#pragma once

/// @file
/// BED: positions from 0, the end excluded, and figures of the repeat as further columns.

#include "tools/formats/format_writer.h"

namespace quorix::tools {

/// The name is the unit as printed. The score is that of the report, held between 0 and 1000; the
/// report's own is a column as well. The strand is ".", since a unit in normal form stands for
/// both.
class CBedWriter : public CFormatWriter {
 public:
  using CFormatWriter::CFormatWriter;

  void begin() override;
  void begin_sequence(const OutputSequence& sequence) override;
  void add(const OutputSequence& sequence, const Repeat& repeat) override;
};

}  // namespace quorix::tools
