// Exact repeats told by their perfection. An exact repeat falls short of a minimum perfection only
// by its N's, and only where N's count as mismatches; such a repeat is broken up into the parts
// that reach it.

#include "search/search_controller.h"
#include "settings/settings.h"

namespace quorix {

namespace {

/// The unit character that an exact repeat aligns with the base at `position`.
const char* unit_character_at(const Csat& sat, const char* position) {
  const std::int64_t phase_at_start = (sat.unit_pos_left - sat.unit_begin) + 1;
  return sat.unit_begin + (phase_at_start + (position - sat.start)) % sat.unit_length();
}

/// A part of `sat` that starts and ends at `from`. Its score makes up for the first unit, which is
/// not scored.
Csat empty_part_of(const Csat& sat, const char* from) {
  Csat part;
  part.start = part.end = from;
  part.unit_begin = sat.unit_begin;
  part.unit_end = sat.unit_end;
  part.unit_pos_right = unit_character_at(sat, from);
  part.unit_pos_left =
      (part.unit_pos_right == part.unit_begin ? part.unit_end : part.unit_pos_right) - 1;
  part.score = static_cast<std::int32_t>(-sat.unit_length());
  return part;
}

void take_next_base(Csat& part) {
  if (*part.end == *part.unit_pos_right) {
    ++part.score;
  } else if (*part.end == 'N') {
    ++part.n_count;
  } else {
    ++part.mismatches;
  }
  ++part.end;
  ++part.unit_pos_right;
  if (part.unit_pos_right == part.unit_end) part.unit_pos_right = part.unit_begin;
}

}  // namespace

void CSearchController::report_exact_sat_with_minimum_perfection(std::FILE* stream) {
  report_head(stream);
  for (const Csat* const repeat : exact_sat_list.sat_list) {
    if (repeat->percentagePerfection() >= double{global_perfection_minimum}) {
      repeat->report_sat(stream, sequence_record);
    } else {
      find_and_report_all_sat_with_minimum_perfection_in_previously_determined_exact_sat(stream,
                                                                                         *repeat);
    }
  }
}

void CSearchController::
    find_and_report_all_sat_with_minimum_perfection_in_previously_determined_exact_sat(
        std::FILE* stream, const Csat& sat) {
  if (global_N_and_perfection_mode != kNAsMismatch) {
    sat.report_sat(stream, sequence_record);
    return;
  }
  Csat best;
  for (const char* position = sat.start; position != sat.end;) {
    find_one_exact_sat_with_minimum_perfection_in_previously_determined_exact_repeat(sat, position,
                                                                                     best);
    if (best.start != nullptr && passes_active_thresholds(best)) {
      best.report_sat(stream, sequence_record);
      position = best.end;
    } else {
      ++position;
    }
  }
}

void CSearchController::
    find_one_exact_sat_with_minimum_perfection_in_previously_determined_exact_repeat(
        const Csat& sat, const char* from, Csat& best) {
  Csat trial = empty_part_of(sat, from);
  best = Csat();
  best.score = trial.score;
  while (trial.end != sat.end) {
    take_next_base(trial);
    if (trial.percentagePerfection() >= double{global_perfection_minimum} &&
        trial.score >= best.score) {
      best = trial;
    }
  }
}

}  // namespace quorix
