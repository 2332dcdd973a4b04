#include "report/alignment.h"

#include <algorithm>

namespace quorix {

namespace {

void append_column(Alignment& alignment, char base, char mark, char unit_character) {
  alignment.bases += base;
  alignment.marks += mark;
  alignment.unit += unit_character;
}

void append_beside_repeat(Alignment& alignment, const char* first, const char* last) {
  for (const char* base = first; base != last; ++base) append_column(alignment, *base, ' ', ' ');
}

/// Walks the bases, the unit and the sorted edits in step.
void append_repeat(Alignment& alignment, const Csat& repeat) {
  const auto next_in_unit = [&repeat](const char* character) {
    return character + 1 == repeat.unit_end ? repeat.unit_begin : character + 1;
  };
  const Edit* edit = repeat.missense.begin();
  const char* unit_character = next_in_unit(repeat.unit_pos_left);
  const char* base = repeat.start;

  while (base != repeat.end) {
    if (edit == repeat.missense.end() || edit->position != base) {
      append_column(alignment, *base, *base == 'N' ? '*' : '|', *unit_character);
      ++base;
      unit_character = next_in_unit(unit_character);
      continue;
    }
    const char kind = edit->kind;
    append_column(alignment, kind == 'D' ? '-' : *base, ' ', kind == 'I' ? '-' : *unit_character);
    if (kind != 'D') ++base;
    if (kind != 'I') unit_character = next_in_unit(unit_character);
    ++edit;
  }
}

}  // namespace

Flanks flanks_of(const Csat& repeat, const SequenceText& text, std::int64_t flanking_length) {
  return {repeat.start - std::min<std::int64_t>(flanking_length, repeat.start - text.begin),
          repeat.end + std::min<std::int64_t>(flanking_length, text.end - repeat.end)};
}

Alignment align(const Csat& repeat, const SequenceText& text, std::int64_t flanking_length) {
  const Flanks flanks = flanks_of(repeat, text, flanking_length);
  const auto column_count =
      static_cast<std::size_t>((flanks.right_end - flanks.left_begin) + repeat.deletions + 2);
  Alignment alignment;
  for (std::string* line : {&alignment.bases, &alignment.marks, &alignment.unit}) {
    line->reserve(column_count);
  }

  if (flanking_length > 0) {
    append_beside_repeat(alignment, flanks.left_begin, repeat.start);
    append_column(alignment, ':', ' ', ' ');
  }
  append_repeat(alignment, repeat);
  if (flanking_length > 0) {
    append_column(alignment, ':', ' ', ' ');
    append_beside_repeat(alignment, repeat.end, flanks.right_end);
  }
  return alignment;
}

}  // namespace quorix
