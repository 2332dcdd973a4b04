#pragma once

/// @file
/// The form in which the unit of a repeat is reported.

#include "sequence/dna_string.h"

namespace quorix {

/// Replaces `unit` by the form that `global_report_unit_mode` asks for. Returns true if the unit
/// repeats a shorter one; the form is then undefined, and the repeat is left to the search for the
/// shorter unit. REQUIRES: `unit` is not empty. Throws: std::bad_alloc.
[[nodiscard]] bool normalize_unit(CDnaString& unit);

}  // namespace quorix
