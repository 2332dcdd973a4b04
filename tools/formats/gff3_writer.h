#pragma once

/// @file
/// GFF3: features with types of the Sequence Ontology. Positions are 1-based, and both ends belong
/// to the feature.

#include "tools/formats/format_writer.h"

namespace quorix::tools {

/// A record with bases has a line `##sequence-region`. The ID of a repeat is its record's
/// identifier and its number among all repeats that the report has of that record, so filters do
/// not change it.
class CGff3Writer : public CFormatWriter {
 public:
  using CFormatWriter::CFormatWriter;

  void begin() override;
  void begin_sequence(const OutputSequence& sequence) override;
  void add(const OutputSequence& sequence, const Repeat& repeat) override;

 private:
  void set_identifier(std::string_view identifier);

  std::string_view identifier_;  ///< whose escaped forms follow
  std::string column_;
  std::string attribute_;
};

}  // namespace quorix::tools
