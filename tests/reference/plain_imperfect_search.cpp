#include "reference/plain_imperfect_search.h"

#include <cstdint>

#include "reference/plain_exact_search.h"
#include "reference/plain_extension.h"
#include "reference/plain_seed_rules.h"
#include "reference/plain_thresholds.h"
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

/// Extends the seed both ways; true if the result is to be kept, and then its edits are in order.
bool extend_and_test(Repeat& repeat, const std::string& bases, std::int64_t left_limit) {
  extend_imperfect_forward(repeat, bases, base_count(bases));
  extend_imperfect_backward(repeat, bases, left_limit);
  remove_Ns_at_ends(repeat, bases);
  if (!passes_thresholds(repeat, ThresholdSet::kUser)) {
    return false;
  }
  sort_edits(repeat.edits);
  return true;
}

void try_seed(const std::string& bases, std::int64_t position, std::int64_t length,
              CPlainMarks& marks, std::vector<Repeat>& repeats) {
  Repeat repeat = repeat_from_unit(position, position + length);
  if (extend_and_test(repeat, bases, -1)) {
    marks.cover(repeat);
    repeats.push_back(repeat);
  }
}

void scan_unit_length_1(const std::string& bases, CPlainMarks& marks,
                        std::vector<Repeat>& repeats) {
  std::int64_t position = skip_Ns(bases, 0);
  while (position + 1 < base_count(bases)) {
    if (marks.is_free(position)) {
      try_seed(bases, position, 1, marks, repeats);
    }
    position = skip_Ns(bases, position + 1);
  }
}

void scan_unit_length(const std::string& bases, std::int64_t length, CPlainMarks& marks,
                      std::vector<Repeat>& repeats) {
  for (std::int64_t position = 0; position + length < base_count(bases); ++position) {
    if (is_open_for_seed(marks, position, length) &&
        is_valid_starting_pattern(bases, position, position + length)) {
      try_seed(bases, position, length, marks, repeats);
    }
  }
}

/// Appends the repeat of the shortest unit at `position` that passes; false if there is none.
bool find_first_hit(const std::string& bases, std::int64_t position, std::int64_t left_limit,
                    std::vector<Repeat>& hits) {
  for (std::int64_t length = global_min_unit_length;
       length <= global_max_unit_length && position + length < base_count(bases); ++length) {
    if (!is_valid_starting_pattern(bases, position, position + length)) {
      continue;
    }
    Repeat repeat = repeat_from_unit(position, position + length);
    if (extend_and_test(repeat, bases, left_limit)) {
      hits.push_back(repeat);
      return true;
    }
  }
  return false;
}

}  // namespace

std::vector<Repeat> search_exact_and_extend(const std::string& bases) {
  std::vector<Repeat> repeats;
  for (Repeat repeat : exact_search_2(bases, ThresholdSet::kIntern)) {
    if (extend_and_test(repeat, bases, -1)) {
      repeats.push_back(repeat);
    }
  }
  sort_repeats(repeats);
  return repeats;
}

std::vector<Repeat> complete_imperfect_search(const std::string& bases) {
  std::vector<Repeat> repeats;
  CPlainMarks marks(base_count(bases));
  std::int64_t length = global_min_unit_length;
  if (length == 1) {
    scan_unit_length_1(bases, marks, repeats);
    marks.clear();
    length = 2;
  }
  // A unit as long as the record has no base after it: nothing is found from there on.
  while (length <= global_max_unit_length && length < base_count(bases)) {
    scan_unit_length(bases, length, marks, repeats);
    length += 1;
  }
  sort_repeats(repeats);
  return repeats;
}

std::vector<Repeat> simple_imperfect_search(const std::string& bases) {
  std::vector<Repeat> hits;
  std::int64_t left_limit = -1;
  std::int64_t position = 0;
  while (position < base_count(bases)) {
    if (find_first_hit(bases, position, left_limit, hits)) {
      left_limit = hits.back().end - 1;
      position = hits.back().end;
    } else {
      position += 1;
    }
  }
  return hits;
}

}  // namespace quorix::reference
