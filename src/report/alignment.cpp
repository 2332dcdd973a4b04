// The lines are built from edit to edit: the bases between two edits are appended in one piece,
// with as many characters of consecutive copies of the unit. The first base of a repeat need not
// match the first character of its unit; the left cursor says which one it matches.

#include "report/alignment.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace quorix {

namespace {

void append_column(Alignment& alignment, char base, char mark, char unit_character) {
  alignment.bases += base;
  alignment.marks += mark;
  alignment.unit += unit_character;
}

void append_beside_repeat(Alignment& alignment, const char* first, const char* last) {
  const auto count = static_cast<std::size_t>(last - first);
  alignment.bases.append(first, count);
  alignment.marks.append(count, ' ');
  alignment.unit.append(count, ' ');
}

/// Appends a mark for each of `bases`, none of which has an edit.
void append_marks(std::string& marks, std::string_view bases) {
  const std::size_t start = marks.size();
  marks.append(bases.size(), '|');
  for (std::size_t i = bases.find('N'); i != std::string_view::npos; i = bases.find('N', i + 1)) {
    marks[start + i] = '*';
  }
}

/// Appends `count` characters of consecutive copies of `unit`, starting at its character `offset`,
/// 0-based.
void append_copies(std::string& line, std::string_view unit, std::size_t offset,
                   std::size_t count) {
  const std::size_t start = line.size();
  const std::size_t end = start + count;
  line += unit.substr(offset, count);
  line += unit.substr(0, std::min(offset, end - line.size()));
  // What is appended so far repeats too, and doubles each time.
  while (line.size() < end) {
    line.append(line, start, std::min(line.size() - start, end - line.size()));
  }
}

/// Steps through the bases, the unit and the sorted edits together, from edit to edit.
void append_repeat(Alignment& alignment, const Csat& repeat) {
  const std::string_view unit(repeat.unit_begin, static_cast<std::size_t>(repeat.unit_length()));
  const fastvector<Edit> edits = repeat.edits();
  const Edit* edit = edits.begin();
  const char* base = repeat.start;
  // The unit character for the base, 0-based.
  auto offset =
      static_cast<std::size_t>(repeat.unit_pos_left + 1 - repeat.unit_begin) % unit.size();

  while (base != repeat.end) {
    if (edit == edits.end() || edit->position != base) {
      const bool is_edit_ahead = edit != edits.end() && edit->position > base;
      const char* const next = is_edit_ahead ? std::min(edit->position, repeat.end) : repeat.end;
      const std::string_view run(base, static_cast<std::size_t>(next - base));
      alignment.bases += run;
      append_marks(alignment.marks, run);
      append_copies(alignment.unit, unit, offset, run.size());
      offset = (offset + run.size()) % unit.size();
      base = next;
      continue;
    }
    const char kind = edit->kind;
    append_column(alignment, kind == 'D' ? '-' : *base, ' ', kind == 'I' ? '-' : unit[offset]);
    if (kind != 'D') ++base;
    if (kind != 'I') offset = offset + 1 == unit.size() ? 0 : offset + 1;
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
  // A column for each base, each deletion and both colons: the lines are allocated once.
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
