// An exact repeat falls short of a minimum perfection only by its N's, and only where N's count as
// mismatches; such a repeat is broken up into the parts that reach it.
//
// Parts are found one after the other: from each base every end is tried, the best part is reported
// if it passes the thresholds, and the next part begins after it. That costs O(length^2) for a
// repeat without any such part.

#include "search/modes/minimum_perfection.h"

#include "report/sequence_block.h"
#include "search/extension/extender.h"
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

/// Extends a part by one base to the right and scores it: a match, an N or a mismatch.
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

void report_exact_repeats_by_perfection(std::FILE* stream, const std::list<Csat*>& repeats,
                                        const Thresholds& thresholds, CSequence_Mol& record) {
  report_sequence_head(stream, record);
  for (const Csat* const repeat : repeats) {
    if (repeat->percentagePerfection() >= double{global_perfection_minimum}) {
      repeat->report_sat(stream, record);
    } else {
      report_parts_of_minimum_perfection(stream, *repeat, thresholds, record);
    }
  }
}

void report_parts_of_minimum_perfection(std::FILE* stream, const Csat& sat,
                                        const Thresholds& thresholds, CSequence_Mol& record) {
  if (global_N_and_perfection_mode != kNAsMismatch) {
    sat.report_sat(stream, record);
    return;
  }
  Csat best;
  for (const char* position = sat.start; position != sat.end;) {
    find_part_of_minimum_perfection(sat, position, best);
    if (best.start != nullptr && passes(best, thresholds)) {
      best.report_sat(stream, record);
      position = best.end;
    } else {
      ++position;
    }
  }
}

void find_part_of_minimum_perfection(const Csat& sat, const char* from, Csat& best) {
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
