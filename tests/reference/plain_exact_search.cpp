#include "reference/plain_exact_search.h"

#include <algorithm>
#include <cstdint>

#include "reference/plain_exact_extension.h"
#include "reference/plain_seed_rules.h"
#include "settings/settings.h"

namespace quorix::reference {
namespace {

std::int64_t base_count(const std::string& bases) {
  return static_cast<std::int64_t>(bases.size());
}

std::int64_t skip_Ns(const std::string& bases, std::int64_t position) {
  while (position < base_count(bases) && bases[static_cast<std::size_t>(position)] == 'N') {
    position += 1;
  }
  return position;
}

Repeat extended_exactly(const std::string& bases, std::int64_t position, std::int64_t unit_length) {
  Repeat candidate = repeat_from_unit(position, position + unit_length);
  extend_exact_forward(candidate, bases, base_count(bases));
  extend_exact_backward(candidate, bases, -1);
  remove_Ns_at_ends(candidate, bases);
  return candidate;
}

void find_mononucleotide_repeats(const std::string& bases, ThresholdSet thresholds,
                                 std::vector<Repeat>& repeats) {
  std::int64_t position = skip_Ns(bases, 0);
  while (position + 1 < base_count(bases)) {
    const Repeat candidate = extended_exactly(bases, position, 1);
    if (passes_thresholds(candidate, thresholds)) {
      repeats.push_back(candidate);
      position = candidate.end - 1;
    }
    position = skip_Ns(bases, position + 1);
  }
}

void find_repeats_of_unit_length(const std::string& bases, std::int64_t length,
                                 ThresholdSet thresholds, CPlainMarks& marks,
                                 std::vector<Repeat>& repeats) {
  for (std::int64_t position = 0; position + length < base_count(bases); ++position) {
    if (!is_open_for_seed(marks, position, length)) {
      continue;
    }
    if (!is_valid_starting_pattern(bases, position, position + length)) {
      continue;
    }
    const Repeat candidate = extended_exactly(bases, position, length);
    if (!passes_thresholds(candidate, thresholds)) {
      continue;
    }
    // What the user would not be shown closes nothing; nor does a unit of one base, which gets
    // here only when the smallest unit length is 0.
    if (length != 1 && passes_thresholds(candidate, ThresholdSet::kUser)) {
      marks.cover(candidate);
    }
    repeats.push_back(candidate);
  }
}

}  // namespace

std::vector<Repeat> exact_search_2(const std::string& bases) {
  return exact_search_2(bases, ThresholdSet::kUser);
}

std::vector<Repeat> exact_search_2(const std::string& bases, ThresholdSet thresholds) {
  std::vector<Repeat> repeats;
  CPlainMarks marks(base_count(bases));
  std::int64_t length = global_min_unit_length;
  if (length == 1) {
    find_mononucleotide_repeats(bases, thresholds, repeats);
    length = 2;
  }
  // A unit as long as the record has no base after it: nothing is found from there on.
  while (length <= global_max_unit_length && length < base_count(bases)) {
    find_repeats_of_unit_length(bases, length, thresholds, marks, repeats);
    length += 1;
  }
  sort_repeats(repeats);
  return repeats;
}

std::vector<Repeat> exact_search(const std::string& bases) {
  const std::int64_t longest_unit =
      std::min(std::int64_t{global_max_unit_length}, base_count(bases));
  std::vector<std::int64_t> next_allowed_start(static_cast<std::size_t>(longest_unit + 1), 0);
  std::vector<Repeat> repeats;
  for (std::int64_t position = 0; position < base_count(bases); ++position) {
    for (std::int64_t length = global_min_unit_length;
         length <= longest_unit && position + length < base_count(bases); ++length) {
      if (position + length < next_allowed_start[static_cast<std::size_t>(length)]) {
        continue;
      }
      if (!is_valid_starting_pattern(bases, position, position + length)) {
        continue;
      }
      const Repeat candidate = extended_exactly(bases, position, length);
      if (!passes_thresholds(candidate, ThresholdSet::kUser)) {
        continue;
      }
      repeats.push_back(candidate);
      for (std::int64_t multiple = length; multiple <= longest_unit; multiple += length) {
        std::int64_t& entry = next_allowed_start[static_cast<std::size_t>(multiple)];
        entry = std::max(entry, candidate.end + 1);
      }
    }
  }
  return repeats;
}

}  // namespace quorix::reference
