#pragma once

/// @file
/// All settings as text, so that a test can say which of them an option changes, and that it
/// changes no other.

#include <array>
#include <cstddef>
#include <iomanip>
#include <sstream>
#include <string>

#include "settings/settings.h"

namespace quorix::testing {

/// Every setting but the file names as "name=value".
inline std::array<std::string, 28> all_settings() {
  const auto entry = [](const char* name, const auto& value) {
    std::ostringstream text;
    text << std::setprecision(9) << name << '=' << value;
    return text.str();
  };
  return {entry("sequence_from", global_sequence_from),
          entry("sequence_to", global_sequence_to),
          entry("search_mode", global_search_mode),
          entry("trim_mode", global_trim_mode),
          entry("N_and_perfection_mode", global_N_and_perfection_mode),
          entry("report_unit_mode", global_report_unit_mode),
          entry("print_sat_seq_mode", global_print_sat_seq_mode),
          entry("print_sat_mode", global_print_sat_mode),
          entry("flanking", global_flanking),
          entry("perfection_minimum", global_perfection_minimum),
          entry("maximum_recursion_depth", global_maximum_recursion_depth),
          entry("maximum_scorereduction", global_maximum_scorereduction),
          entry("min_unit_length", global_min_unit_length),
          entry("max_unit_length", global_max_unit_length),
          entry("treat_Ns_as_missense", global_treat_Ns_as_missense),
          entry("Ns_allowed_in_a_row", global_Ns_allowed_in_a_row),
          entry("min_score", global_min_score),
          entry("min_score_a", global_min_score_a),
          entry("min_score_bx", global_min_score_bx),
          entry("min_length", global_min_length),
          entry("min_length_a", global_min_length_a),
          entry("min_length_bx", global_min_length_bx),
          entry("mismatch_score", global_mismatch_score),
          entry("indel_score", global_indel_score),
          entry("clip_overlapping", global_clip_overlapping),
          entry("remove_mostly_hidden", global_remove_mostly_hidden),
          entry("mask_repeats", global_mask_repeats),
          entry("run_status", run_status)};
}

/// The settings that `change` leaves with another value than they have before it, as
/// "name=value name=value", in the order of their declaration.
template <class Change>
std::string settings_changed_by(const Change& change) {
  const auto before = all_settings();
  change();
  const auto after = all_settings();
  std::string changed;
  for (std::size_t i = 0; i < after.size(); ++i) {
    if (after[i] == before[i]) continue;
    if (!changed.empty()) changed += ' ';
    changed += after[i];
  }
  return changed;
}

}  // namespace quorix::testing
