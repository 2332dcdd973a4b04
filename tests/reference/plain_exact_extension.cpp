#include "reference/plain_exact_extension.h"

#include "settings/settings.h"

namespace quorix::reference {
namespace {

char base_at(const std::string& bases, std::int64_t position) {
  return bases[static_cast<std::size_t>(position)];
}

}  // namespace

bool extend_exact_forward(Repeat& repeat, const std::string& bases, std::int64_t limit) {
  if (repeat.end == limit) {
    return false;
  }
  while (true) {
    const char base = base_at(bases, repeat.end);
    if (base == base_at(bases, repeat.unit_pos_right)) {
      repeat.score = saturated_score(std::int64_t{repeat.score} + 1);
      repeat.end += 1;
      repeat.unit_pos_right =
          next_unit_position(repeat.unit_pos_right, repeat.unit_begin, repeat.unit_end);
      if (repeat.end == limit) {
        return false;
      }
      continue;
    }
    if (base != 'N') {
      return true;
    }
    if (global_Ns_allowed_in_a_row == 0 || global_treat_Ns_as_missense) {
      return true;
    }
    std::int64_t run_length = 0;
    while (repeat.end + run_length != limit && base_at(bases, repeat.end + run_length) == 'N') {
      run_length += 1;
      if (run_length > global_Ns_allowed_in_a_row) {
        return false;
      }
    }
    for (std::int64_t taken = 0; taken < run_length; ++taken) {
      repeat.n_count += 1;
      repeat.end += 1;
      repeat.unit_pos_right =
          next_unit_position(repeat.unit_pos_right, repeat.unit_begin, repeat.unit_end);
    }
    if (repeat.end == limit) {
      return false;
    }
  }
}

bool extend_exact_backward(Repeat& repeat, const std::string& bases, std::int64_t limit) {
  if (repeat.start - 1 == limit) {
    return false;
  }
  while (true) {
    const char base = base_at(bases, repeat.start - 1);
    if (base == base_at(bases, repeat.unit_pos_left)) {
      repeat.score = saturated_score(std::int64_t{repeat.score} + 1);
      repeat.start -= 1;
      repeat.unit_pos_left =
          previous_unit_position(repeat.unit_pos_left, repeat.unit_begin, repeat.unit_end);
      if (repeat.start - 1 == limit) {
        return false;
      }
      continue;
    }
    if (base != 'N') {
      return true;
    }
    if (global_Ns_allowed_in_a_row == 0 || global_treat_Ns_as_missense) {
      return true;
    }
    std::int64_t run_length = 0;
    while (repeat.start - 1 - run_length != limit &&
           base_at(bases, repeat.start - 1 - run_length) == 'N') {
      run_length += 1;
      if (run_length > global_Ns_allowed_in_a_row) {
        return false;
      }
    }
    for (std::int64_t taken = 0; taken < run_length; ++taken) {
      repeat.n_count += 1;
      repeat.start -= 1;
      repeat.unit_pos_left =
          previous_unit_position(repeat.unit_pos_left, repeat.unit_begin, repeat.unit_end);
    }
    if (repeat.start - 1 == limit) {
      return false;
    }
  }
}

}  // namespace quorix::reference
