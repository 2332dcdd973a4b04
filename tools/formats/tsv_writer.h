#pragma once

/// @file
/// Tab-separated columns with one line of names: all that a report tells, positions as it has them.

#include "tools/formats/format_writer.h"

namespace quorix::tools {

/// Positions are 1-based, and both ends belong to the repeat.
class CTsvWriter : public CFormatWriter {
 public:
  using CFormatWriter::CFormatWriter;

  void begin() override;
  void begin_sequence(const OutputSequence& sequence) override;
  void add(const OutputSequence& sequence, const Repeat& repeat) override;
};

}  // namespace quorix::tools
