#include "reference/plain_repeat.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "settings/settings.h"

namespace quorix::reference {

Repeat repeat_from_unit(std::int64_t begin, std::int64_t end) {
  Repeat repeat{};
  repeat.start = begin;
  repeat.end = end;
  repeat.unit_pos_right = begin;
  repeat.unit_pos_left = end - 1;
  repeat.unit_begin = begin;
  repeat.unit_end = end;
  return repeat;
}

std::int64_t unit_length(const Repeat& repeat) {
  return repeat.unit_end - repeat.unit_begin;
}

std::int64_t normalized_length(const Repeat& repeat) {
  return repeat.end - repeat.start - repeat.insertions + repeat.deletions;
}

double percentage_perfection(const Repeat& repeat) {
  const std::int64_t length = normalized_length(repeat);
  const std::int64_t edit_count = repeat.mismatches + repeat.insertions + repeat.deletions;
  std::int64_t numerator = 0;
  std::int64_t denominator = 0;
  switch (global_N_and_perfection_mode) {
    case kNAsMismatch:
      numerator = length - edit_count - repeat.n_count;
      denominator = length;
      break;
    case kNAsNeutral:
      numerator = length - edit_count - repeat.n_count;
      denominator = length - repeat.n_count;
      break;
    case kNAsMatch:
      numerator = length - edit_count;
      denominator = length;
      break;
    default:
      std::exit(2);
  }
  // The quotient comes first: the product first would round some values differently.
  return static_cast<double>(numerator) / static_cast<double>(denominator) * 100.0;
}

void remove_Ns_at_ends(Repeat& repeat, const std::string& bases) {
  while (bases[static_cast<std::size_t>(repeat.end - 1)] == 'N') {
    repeat.end -= 1;
    repeat.unit_pos_right =
        previous_unit_position(repeat.unit_pos_right, repeat.unit_begin, repeat.unit_end);
    repeat.n_count -= 1;
  }
  while (bases[static_cast<std::size_t>(repeat.start)] == 'N') {
    repeat.start += 1;
    repeat.unit_pos_left =
        next_unit_position(repeat.unit_pos_left, repeat.unit_begin, repeat.unit_end);
    repeat.n_count -= 1;
  }
}

bool comes_before(const Repeat& left, const Repeat& right) {
  if (left.start != right.start) {
    return left.start < right.start;
  }
  return left.end < right.end;
}

void sort_repeats(std::vector<Repeat>& repeats) {
  std::stable_sort(repeats.begin(), repeats.end(), comes_before);
}

void sort_edits(std::vector<Edit>& edits) {
  std::stable_sort(edits.begin(), edits.end(), [](const Edit& left, const Edit& right) {
    if (left.position != right.position) {
      return left.position < right.position;
    }
    // The letters happen to stand in the wanted order: D, I, M.
    return left.kind < right.kind;
  });
}

std::int64_t next_unit_position(std::int64_t position, std::int64_t unit_begin,
                                std::int64_t unit_end) {
  position += 1;
  if (position == unit_end) {
    return unit_begin;
  }
  return position;
}

std::int64_t previous_unit_position(std::int64_t position, std::int64_t unit_begin,
                                    std::int64_t unit_end) {
  if (position == unit_begin) {
    return unit_end - 1;
  }
  return position - 1;
}

int saturated_score(std::int64_t sum) {
  if (sum > std::numeric_limits<int>::max()) {
    return std::numeric_limits<int>::max();
  }
  if (sum < std::numeric_limits<int>::min()) {
    return std::numeric_limits<int>::min();
  }
  return static_cast<int>(sum);
}

}  // namespace quorix::reference
