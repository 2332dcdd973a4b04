#include "reference/plain_look_ahead.h"

#include <algorithm>

#include "reference/plain_repeat.h"
#include "settings/settings.h"

namespace quorix::reference {
namespace {

char base_at(const std::string& bases, std::int64_t position) {
  return bases[static_cast<std::size_t>(position)];
}

bool is_unknown_base(char base) {
  return base == 'N' && global_Ns_allowed_in_a_row != 0 && !global_treat_Ns_as_missense;
}

}  // namespace

std::int64_t drop_off_limit(std::int64_t unit_length, int best_score) {
  return std::max(-unit_length,
                  std::int64_t{best_score} - std::int64_t{global_maximum_scorereduction});
}

int extend_imperfect_forward_leap_ahead(const std::string& bases, std::int64_t pos,
                                        std::int64_t unit_pos, std::int64_t unit_begin,
                                        std::int64_t unit_end, int score, std::int64_t unit_length,
                                        std::uint8_t level, std::int64_t limit, int best_score) {
  while (pos != limit) {
    if (base_at(bases, pos) == base_at(bases, unit_pos)) {
      score = saturated_score(std::int64_t{score} + 1);
      pos += 1;
      unit_pos = next_unit_position(unit_pos, unit_begin, unit_end);
    } else if (is_unknown_base(base_at(bases, pos))) {
      pos += 1;
      unit_pos = next_unit_position(unit_pos, unit_begin, unit_end);
      int run_length = 1;
      while (pos != limit && base_at(bases, pos) == 'N' &&
             run_length < global_Ns_allowed_in_a_row) {
        pos += 1;
        unit_pos = next_unit_position(unit_pos, unit_begin, unit_end);
        run_length += 1;
      }
      if (run_length > global_Ns_allowed_in_a_row) {
        return score;
      }
    } else {
      break;
    }
  }

  if (level == global_maximum_recursion_depth || pos == limit) {
    return score;
  }
  if (score > best_score) {
    best_score = score;
  }

  const std::int64_t threshold = drop_off_limit(unit_length, best_score);
  const std::int64_t mismatch_sum = std::int64_t{score} + global_mismatch_score;
  const std::int64_t indel_sum = std::int64_t{score} + global_indel_score;
  const auto next_level = static_cast<std::uint8_t>(level + 1);
  const std::int64_t next_unit_pos = next_unit_position(unit_pos, unit_begin, unit_end);

  std::int64_t best_value = -unit_length - 1;
  bool is_any_tried = false;

  if (mismatch_sum > threshold) {
    is_any_tried = true;
    best_value = extend_imperfect_forward_leap_ahead(bases, pos + 1, next_unit_pos, unit_begin,
                                                     unit_end, saturated_score(mismatch_sum),
                                                     unit_length, next_level, limit, best_score);
  }
  if (indel_sum > threshold) {
    is_any_tried = true;
    const int insertion_value = extend_imperfect_forward_leap_ahead(
        bases, pos + 1, unit_pos, unit_begin, unit_end, saturated_score(indel_sum), unit_length,
        next_level, limit, best_score);
    if (insertion_value > best_value) {
      best_value = insertion_value;
    }
    const int deletion_value = extend_imperfect_forward_leap_ahead(
        bases, pos, next_unit_pos, unit_begin, unit_end, saturated_score(indel_sum), unit_length,
        next_level, limit, best_score);
    if (deletion_value > best_value) {
      best_value = deletion_value;
    }
  }

  if (!is_any_tried) {
    return score;
  }
  if (best_value > score) {
    return saturated_score(best_value);
  }
  return score;
}

int extend_imperfect_backward_leap_ahead(const std::string& bases, std::int64_t pos,
                                         std::int64_t unit_pos, std::int64_t unit_begin,
                                         std::int64_t unit_end, int score, std::int64_t unit_length,
                                         std::uint8_t level, std::int64_t limit, int best_score) {
  while (pos - 1 != limit) {
    if (base_at(bases, pos - 1) == base_at(bases, unit_pos)) {
      score = saturated_score(std::int64_t{score} + 1);
      pos -= 1;
      unit_pos = previous_unit_position(unit_pos, unit_begin, unit_end);
    } else if (is_unknown_base(base_at(bases, pos - 1))) {
      pos -= 1;
      unit_pos = previous_unit_position(unit_pos, unit_begin, unit_end);
      int run_length = 1;
      while (pos - 1 != limit && base_at(bases, pos - 1) == 'N' &&
             run_length < global_Ns_allowed_in_a_row) {
        pos -= 1;
        unit_pos = previous_unit_position(unit_pos, unit_begin, unit_end);
        run_length += 1;
      }
      if (run_length > global_Ns_allowed_in_a_row) {
        return score;
      }
    } else {
      break;
    }
  }

  if (level == global_maximum_recursion_depth || pos - 1 == limit) {
    return score;
  }
  if (score > best_score) {
    best_score = score;
  }

  const std::int64_t threshold = drop_off_limit(unit_length, best_score);
  const std::int64_t mismatch_sum = std::int64_t{score} + global_mismatch_score;
  const std::int64_t indel_sum = std::int64_t{score} + global_indel_score;
  const auto next_level = static_cast<std::uint8_t>(level + 1);
  const std::int64_t previous_unit_pos = previous_unit_position(unit_pos, unit_begin, unit_end);

  std::int64_t best_value = -unit_length - 1;
  bool is_any_tried = false;

  if (mismatch_sum > threshold) {
    is_any_tried = true;
    best_value = extend_imperfect_backward_leap_ahead(bases, pos - 1, previous_unit_pos, unit_begin,
                                                      unit_end, saturated_score(mismatch_sum),
                                                      unit_length, next_level, limit, best_score);
  }
  if (indel_sum > threshold) {
    is_any_tried = true;
    const int insertion_value = extend_imperfect_backward_leap_ahead(
        bases, pos - 1, unit_pos, unit_begin, unit_end, saturated_score(indel_sum), unit_length,
        next_level, limit, best_score);
    if (insertion_value > best_value) {
      best_value = insertion_value;
    }
    const int deletion_value = extend_imperfect_backward_leap_ahead(
        bases, pos, previous_unit_pos, unit_begin, unit_end, saturated_score(indel_sum),
        unit_length, next_level, limit, best_score);
    if (deletion_value > best_value) {
      best_value = deletion_value;
    }
  }

  if (!is_any_tried) {
    return score;
  }
  if (best_value > score) {
    return saturated_score(best_value);
  }
  return score;
}

}  // namespace quorix::reference
