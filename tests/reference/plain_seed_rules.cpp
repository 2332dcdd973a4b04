#include "reference/plain_seed_rules.h"

namespace quorix::reference {

CPlainMarks::CPlainMarks(std::int64_t base_count)
    : marks_(static_cast<std::size_t>(base_count + 2), 'a') {}

bool CPlainMarks::is_free(std::int64_t position) const {
  return marks_[static_cast<std::size_t>(position + 1)] == 'a';
}

void CPlainMarks::set(std::int64_t position, char mark) {
  marks_[static_cast<std::size_t>(position + 1)] = mark;
}

void CPlainMarks::cover(const Repeat& repeat) {
  for (std::int64_t position = repeat.start; position < repeat.end; ++position) {
    set(position, ' ');
  }
  for (const Edit& edit : repeat.edits) {
    set(edit.position, 'a');
  }
}

void CPlainMarks::clear() {
  marks_.assign(marks_.size(), 'a');
}

bool is_open_for_seed(const CPlainMarks& marks, std::int64_t position, std::int64_t unit_length) {
  const std::int64_t next = position + unit_length;
  return (marks.is_free(position) && (marks.is_free(next - 1) || marks.is_free(next))) ||
         (marks.is_free(position - 1) && marks.is_free(next - 1));
}

bool is_valid_starting_pattern(const std::string& bases, std::int64_t unit_begin,
                               std::int64_t unit_end) {
  if (unit_begin == unit_end) {
    return false;
  }
  for (std::int64_t position = unit_begin; position < unit_end; ++position) {
    if (bases[static_cast<std::size_t>(position)] == 'N') {
      return false;
    }
  }
  if (unit_end - unit_begin == 1) {
    return true;
  }
  for (std::int64_t position = unit_begin; position + 1 < unit_end; ++position) {
    if (bases[static_cast<std::size_t>(position)] !=
        bases[static_cast<std::size_t>(position + 1)]) {
      return true;
    }
  }
  return false;
}

}  // namespace quorix::reference
