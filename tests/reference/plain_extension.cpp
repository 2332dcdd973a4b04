#include "reference/plain_extension.h"

#include "reference/plain_exact_extension.h"
#include "reference/plain_look_ahead.h"
#include "settings/settings.h"

namespace quorix::reference {
namespace {

constexpr char kNoEdit = ' ';
constexpr char kMismatch = 'M';
constexpr char kInsertion = 'I';
constexpr char kDeletion = 'D';

/// The edit to apply before a base at `repeat.end` that differs, or `kNoEdit`.
char choose_edit_forward(const Repeat& repeat, const std::string& bases, std::int64_t limit,
                         int best_score) {
  const std::int64_t length = unit_length(repeat);
  const std::int64_t threshold = drop_off_limit(length, best_score);
  const std::int64_t mismatch_sum = std::int64_t{repeat.score} + global_mismatch_score;
  const std::int64_t indel_sum = std::int64_t{repeat.score} + global_indel_score;
  const std::int64_t next_unit_pos =
      next_unit_position(repeat.unit_pos_right, repeat.unit_begin, repeat.unit_end);
  const std::uint8_t first_level = 1;

  char choice = kNoEdit;
  std::int64_t best_value = -length - 1;
  if (mismatch_sum > threshold) {
    choice = kMismatch;
    best_value = extend_imperfect_forward_leap_ahead(
        bases, repeat.end + 1, next_unit_pos, repeat.unit_begin, repeat.unit_end,
        saturated_score(mismatch_sum), length, first_level, limit, best_score);
  }
  if (indel_sum > threshold) {
    const int insertion_value = extend_imperfect_forward_leap_ahead(
        bases, repeat.end + 1, repeat.unit_pos_right, repeat.unit_begin, repeat.unit_end,
        saturated_score(indel_sum), length, first_level, limit, best_score);
    if (insertion_value > best_value) {
      choice = kInsertion;
      best_value = insertion_value;
    }
    const int deletion_value = extend_imperfect_forward_leap_ahead(
        bases, repeat.end, next_unit_pos, repeat.unit_begin, repeat.unit_end,
        saturated_score(indel_sum), length, first_level, limit, best_score);
    if (deletion_value > best_value) {
      choice = kDeletion;
    }
  }
  return choice;
}

void apply_edit_forward(Repeat& repeat, char choice) {
  const std::int64_t next_unit_pos =
      next_unit_position(repeat.unit_pos_right, repeat.unit_begin, repeat.unit_end);
  repeat.edits.push_back({repeat.end, choice});
  if (choice == kMismatch) {
    repeat.end += 1;
    repeat.score = saturated_score(std::int64_t{repeat.score} + global_mismatch_score);
    repeat.mismatches += 1;
    repeat.unit_pos_right = next_unit_pos;
  } else if (choice == kInsertion) {
    repeat.end += 1;
    repeat.score = saturated_score(std::int64_t{repeat.score} + global_indel_score);
    repeat.insertions += 1;
  } else {
    repeat.score = saturated_score(std::int64_t{repeat.score} + global_indel_score);
    repeat.deletions += 1;
    repeat.unit_pos_right = next_unit_pos;
  }
}

/// The edit to apply before a base before `repeat.start` that differs, or `kNoEdit`.
char choose_edit_backward(const Repeat& repeat, const std::string& bases, std::int64_t limit,
                          int best_score) {
  const std::int64_t length = unit_length(repeat);
  const std::int64_t threshold = drop_off_limit(length, best_score);
  const std::int64_t mismatch_sum = std::int64_t{repeat.score} + global_mismatch_score;
  const std::int64_t indel_sum = std::int64_t{repeat.score} + global_indel_score;
  const std::int64_t previous_unit_pos =
      previous_unit_position(repeat.unit_pos_left, repeat.unit_begin, repeat.unit_end);
  const std::uint8_t first_level = 1;

  char choice = kNoEdit;
  std::int64_t best_value = -length - 1;
  if (mismatch_sum > threshold) {
    choice = kMismatch;
    best_value = extend_imperfect_backward_leap_ahead(
        bases, repeat.start - 1, previous_unit_pos, repeat.unit_begin, repeat.unit_end,
        saturated_score(mismatch_sum), length, first_level, limit, best_score);
  }
  if (indel_sum > threshold) {
    const int insertion_value = extend_imperfect_backward_leap_ahead(
        bases, repeat.start - 1, repeat.unit_pos_left, repeat.unit_begin, repeat.unit_end,
        saturated_score(indel_sum), length, first_level, limit, best_score);
    if (insertion_value > best_value) {
      choice = kInsertion;
      best_value = insertion_value;
    }
    const int deletion_value = extend_imperfect_backward_leap_ahead(
        bases, repeat.start, previous_unit_pos, repeat.unit_begin, repeat.unit_end,
        saturated_score(indel_sum), length, first_level, limit, best_score);
    if (deletion_value > best_value) {
      choice = kDeletion;
    }
  }
  return choice;
}

void apply_edit_backward(Repeat& repeat, char choice) {
  const std::int64_t previous_unit_pos =
      previous_unit_position(repeat.unit_pos_left, repeat.unit_begin, repeat.unit_end);
  if (choice == kMismatch) {
    repeat.start -= 1;
    repeat.edits.push_back({repeat.start, choice});
    repeat.score = saturated_score(std::int64_t{repeat.score} + global_mismatch_score);
    repeat.mismatches += 1;
    repeat.unit_pos_left = previous_unit_pos;
  } else if (choice == kInsertion) {
    repeat.start -= 1;
    repeat.edits.push_back({repeat.start, choice});
    repeat.score = saturated_score(std::int64_t{repeat.score} + global_indel_score);
    repeat.insertions += 1;
  } else {
    repeat.edits.push_back({repeat.start, choice});
    repeat.score = saturated_score(std::int64_t{repeat.score} + global_indel_score);
    repeat.deletions += 1;
    repeat.unit_pos_left = previous_unit_pos;
  }
}

}  // namespace

void extend_imperfect_forward(Repeat& repeat, const std::string& bases, std::int64_t limit) {
  Repeat best = repeat;
  while (true) {
    if (!extend_exact_forward(repeat, bases, limit)) {
      // At the end of the text a tie goes to the earlier, shorter state.
      if (!(repeat.score > best.score)) {
        repeat = best;
      }
      return;
    }
    if (repeat.score > best.score) {
      best = repeat;
    }
    const char choice = choose_edit_forward(repeat, bases, limit, best.score);
    if (choice == kNoEdit) {
      // Out of permitted edits a tie goes to the state at hand, which may be longer.
      if (!(best.score <= repeat.score)) {
        repeat = best;
      }
      return;
    }
    apply_edit_forward(repeat, choice);
  }
}

void extend_imperfect_backward(Repeat& repeat, const std::string& bases, std::int64_t limit) {
  Repeat best = repeat;
  while (true) {
    if (!extend_exact_backward(repeat, bases, limit)) {
      if (!(repeat.score > best.score)) {
        repeat = best;
      }
      return;
    }
    if (repeat.score > best.score) {
      best = repeat;
    }
    const char choice = choose_edit_backward(repeat, bases, limit, best.score);
    if (choice == kNoEdit) {
      if (!(best.score <= repeat.score)) {
        repeat = best;
      }
      return;
    }
    apply_edit_backward(repeat, choice);
  }
}

}  // namespace quorix::reference
