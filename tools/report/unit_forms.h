#pragma once

/// @file
/// The normal forms of a unit: how a report prints it, and whether two units are one motif.

#include <string>
#include <string_view>

#include "sequence/dna_string.h"
#include "tools/report/report_settings.h"

namespace quorix::tools {

/// The letters are ACGTN. Cost of each member: O(length). Nothing is allocated once a text as long
/// has been seen.
class CUnitForms {
 public:
  /// Returns the least rotation of `unit` and, if `form` asks for it, of its reverse complement,
  /// whichever is less; valid until the next call. REQUIRES: `unit` is not empty.
  std::string_view normal_form(std::string_view unit, UnitForm form);

  /// True if the last unit repeats a shorter one.
  [[nodiscard]] bool is_reducible() const { return is_reducible_; }

  /// Throws: LineFault unless `unit` is how a report in this form prints a repeat with `motif`,
  /// which is empty if it is not known.
  void check_printed_unit(std::string_view unit, std::string_view motif, UnitForm form);

 private:
  void set_normal_form(std::string_view unit, UnitForm form);

  CDnaString normal_form_;
  CDnaString complement_;
  CDnaString source_;
  std::string other_;
  bool is_reducible_ = false;
};

}  // namespace quorix::tools
