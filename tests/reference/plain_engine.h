#pragma once

/// @file
/// The plain engine as a whole: what the program reports of a record, in the plainest code.
///
/// This header gathers all parts of the engine and adds what ties them together. Everything obeys
/// the settings as they are at the time of the call. Never link it into the product.

#include <string>
#include <vector>

#include "reference/plain_exact_extension.h"
#include "reference/plain_exact_search.h"
#include "reference/plain_extension.h"
#include "reference/plain_imperfect_search.h"
#include "reference/plain_look_ahead.h"
#include "reference/plain_minimum_perfection.h"
#include "reference/plain_overlap_removal.h"
#include "reference/plain_repeat.h"
#include "reference/plain_report.h"
#include "reference/plain_seed_rules.h"
#include "reference/plain_sequence_lines.h"
#include "reference/plain_thresholds.h"
#include "reference/plain_unit_forms.h"

namespace quorix::reference {

/// The search that `global_search_mode` names; every other value than 0 and 1 is the imperfect one.
std::vector<Repeat> search(const std::string& bases);

/// The record's bases with 'X' over every base of every repeat.
std::string mask(const std::string& bases, const std::vector<Repeat>& repeats);

/// What the program prints of one record: search, removal of hidden repeats, report.
std::string run_record(const std::string& name, const std::string& bases);

}  // namespace quorix::reference
