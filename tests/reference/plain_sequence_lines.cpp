#include "reference/plain_sequence_lines.h"

#include <algorithm>
#include <cstdint>

#include "settings/settings.h"

namespace quorix::reference {
namespace {

std::string stretch(const std::string& bases, std::int64_t begin, std::int64_t end) {
  return bases.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin));
}

std::string left_flank(const Repeat& repeat, const std::string& bases) {
  const std::int64_t begin = std::max<std::int64_t>(0, repeat.start - global_flanking);
  return stretch(bases, begin, repeat.start);
}

std::string right_flank(const Repeat& repeat, const std::string& bases) {
  const std::int64_t end =
      std::min(static_cast<std::int64_t>(bases.size()), repeat.end + global_flanking);
  return stretch(bases, repeat.end, end);
}

std::string plain_line(const Repeat& repeat, const std::string& bases) {
  const std::string own_bases = stretch(bases, repeat.start, repeat.end);
  if (global_flanking == 0) {
    return own_bases + "\n";
  }
  return left_flank(repeat, bases) + ":" + own_bases + ":" + right_flank(repeat, bases) + "\n";
}

/// The three lines of an alignment, which grow by one column at a time.
struct Alignment {
  std::string sequence;
  std::string match;
  std::string unit;

  void add(char base, char mark, char unit_character) {
    sequence += base;
    match += mark;
    unit += unit_character;
  }

  void add_beside(const std::string& text) {
    for (const char letter : text) {
      add(letter, ' ', ' ');
    }
  }
};

void align(const Repeat& repeat, const std::string& bases, Alignment& alignment) {
  std::int64_t position = repeat.start;
  std::int64_t unit_pos =
      next_unit_position(repeat.unit_pos_left, repeat.unit_begin, repeat.unit_end);
  std::size_t edit_index = 0;
  while (position != repeat.end) {
    const char base = bases[static_cast<std::size_t>(position)];
    const char expected = bases[static_cast<std::size_t>(unit_pos)];
    bool takes_base = true;
    bool takes_unit_character = true;
    if (edit_index == repeat.edits.size() || repeat.edits[edit_index].position != position) {
      alignment.add(base, base == 'N' ? '*' : '|', expected);
    } else {
      const char kind = repeat.edits[edit_index].kind;
      if (kind == 'M') {
        alignment.add(base, ' ', expected);
      } else if (kind == 'I') {
        alignment.add(base, ' ', '-');
        takes_unit_character = false;
      } else {
        alignment.add('-', ' ', expected);
        takes_base = false;
      }
      edit_index += 1;
    }
    if (takes_base) {
      position += 1;
    }
    if (takes_unit_character) {
      unit_pos = next_unit_position(unit_pos, repeat.unit_begin, repeat.unit_end);
    }
  }
}

std::string alignment_lines(const Repeat& repeat, const std::string& bases) {
  Alignment alignment;
  if (global_flanking > 0) {
    alignment.add_beside(left_flank(repeat, bases));
    alignment.add_beside(":");
  }
  align(repeat, bases, alignment);
  if (global_flanking > 0) {
    alignment.add_beside(":");
    alignment.add_beside(right_flank(repeat, bases));
  }
  return alignment.sequence + "\n" + alignment.match + "\n" + alignment.unit + "\n";
}

}  // namespace

std::string sequence_lines(const Repeat& repeat, const std::string& bases) {
  if (global_print_sat_seq_mode == kPrintSequence) {
    return plain_line(repeat, bases);
  }
  if (global_print_sat_seq_mode == kPrintAlignment) {
    return alignment_lines(repeat, bases);
  }
  return "";
}

}  // namespace quorix::reference
