#include "reference/plain_minimum_perfection.h"

#include "reference/plain_report.h"
#include "reference/plain_thresholds.h"
#include "settings/settings.h"

namespace quorix::reference {
namespace {

bool is_perfect_enough(const Repeat& repeat) {
  return percentage_perfection(repeat) >= static_cast<double>(global_perfection_minimum);
}

std::string report_parts(const Repeat& repeat, const std::string& bases) {
  if (global_N_and_perfection_mode != kNAsMismatch) {
    return report_repeat(repeat, bases);
  }
  std::string text;
  std::int64_t position = repeat.start;
  while (position < repeat.end) {
    const std::optional<Repeat> part = find_one_part(repeat, bases, position);
    if (part && passes_thresholds(*part, ThresholdSet::kUser)) {
      text += report_repeat(*part, bases);
      position = part->end;
    } else {
      position += 1;
    }
  }
  return text;
}

}  // namespace

std::optional<Repeat> find_one_part(const Repeat& repeat, const std::string& bases,
                                    std::int64_t from) {
  const std::int64_t length = unit_length(repeat);

  Repeat trial{};
  trial.start = from;
  trial.end = from;
  trial.unit_begin = repeat.unit_begin;
  trial.unit_end = repeat.unit_end;
  trial.unit_pos_right =
      next_unit_position(repeat.unit_pos_left, repeat.unit_begin, repeat.unit_end) +
      (from - repeat.start);
  while (trial.unit_pos_right >= trial.unit_end) {
    trial.unit_pos_right -= length;
  }
  trial.unit_pos_left =
      previous_unit_position(trial.unit_pos_right, trial.unit_begin, trial.unit_end);
  trial.score = saturated_score(-length);

  std::optional<Repeat> best;
  int best_score = trial.score;
  while (trial.end < repeat.end) {
    const char base = bases[static_cast<std::size_t>(trial.end)];
    if (base == bases[static_cast<std::size_t>(trial.unit_pos_right)]) {
      trial.score = saturated_score(std::int64_t{trial.score} + 1);
    } else if (base == 'N') {
      trial.n_count += 1;
    } else {
      trial.mismatches += 1;
    }
    trial.end += 1;
    trial.unit_pos_right =
        next_unit_position(trial.unit_pos_right, trial.unit_begin, trial.unit_end);
    if (is_perfect_enough(trial) && trial.score >= best_score) {
      best = trial;
      best_score = trial.score;
    }
  }
  return best;
}

std::string report_minimum_perfection(const std::string& name, const std::string& bases,
                                      const std::vector<Repeat>& exact) {
  std::string text = record_head(name, bases);
  for (const Repeat& repeat : exact) {
    if (is_perfect_enough(repeat)) {
      text += report_repeat(repeat, bases);
    } else {
      text += report_parts(repeat, bases);
    }
  }
  return text;
}

}  // namespace quorix::reference
