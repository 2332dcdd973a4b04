#pragma once

/// @file
/// One JSON object a line and repeat; repeat.schema.json beside this file describes it.

#include "tools/formats/format_writer.h"

namespace quorix::tools {

/// The keys are the columns of tsv, with the same positions: 1-based, both ends included. What the
/// report does not tell has no key.
class CJsonlWriter : public CFormatWriter {
 public:
  using CFormatWriter::CFormatWriter;

  /// Throws: InputError if the identifier is not UTF-8, which JSON is made of.
  void begin_sequence(const OutputSequence& sequence) override;
  void add(const OutputSequence& sequence, const Repeat& repeat) override;

 private:
  void set_identifier(std::string_view identifier);

  std::string_view identifier_;  ///< whose quoted form follows
  std::string quoted_identifier_;
};

}  // namespace quorix::tools
