#pragma once

/// @file
/// Writes loci as rows of a catalogue.

#include <string>
#include <string_view>

#include "tools/catalogues/catalogue.h"
#include "tools/formats/format_writer.h"

namespace quorix::tools {

/// Takes the loci that a `CLocusSelection` hands on, in any order. Memory: flat.
class CCatalogueWriter : public CFormatWriter {
 public:
  /// `catalogue` must stay where it is.
  CCatalogueWriter(COutput& output, const Catalogue& catalogue)
      : CFormatWriter(output), catalogue_(catalogue) {}

  void begin() override;
  /// Throws: InputError if the rows cannot hold the identifier.
  void begin_sequence(const OutputSequence& sequence) override;
  void add(const OutputSequence& sequence, const Repeat& locus) override;
  void end() override;

 private:
  void check_identifier(std::string_view identifier) const;
  void set_identifier(std::string_view identifier);
  void add_field(char mark, const Repeat& locus);
  void add_locus_id(const Repeat& locus);

  const Catalogue& catalogue_;
  std::string_view identifier_;   ///< whose form in a row follows
  std::string shown_identifier_;  ///< with escapes in JSON
  bool has_rows_ = false;
};

}  // namespace quorix::tools
