#include "reference/plain_report.h"

#include <cinttypes>
#include <cstdint>
#include <cstdio>

#include "reference/plain_sequence_lines.h"
#include "reference/plain_unit_forms.h"
#include "settings/settings.h"

namespace quorix::reference {
namespace {

const char* const REPEAT_NAMES[] = {"***  ERROR  ***", "mononucleotide",  "dinucleotide",
                                    "trinucleotide",   "tetranucleotide", "pentanucleotide",
                                    "hexanucleotide"};
constexpr std::int64_t kLongestNamedUnit = 6;

/// Room for a line of numbers; the largest double alone needs more than 300 characters.
constexpr std::size_t kLineSize = 1000;

/// The unit as it is printed; reducible units are not printed at all.
LeastRotation printed_unit(const std::string& unit) {
  if (global_report_unit_mode == kUnitAsFound) {
    return {unit, is_reducible_unit(unit)};
  }
  const LeastRotation forward = least_rotation(unit);
  if (global_report_unit_mode != kUnitAlphabeticalBothStrands) {
    return forward;
  }
  const LeastRotation backward = least_rotation(reverse_complement(unit).text);
  if (backward.unit > forward.unit) {
    return {forward.unit, backward.is_reducible};
  }
  return backward;
}

/// The class name padded to the column of the two Quorix formats.
std::string name_column(std::int64_t length) {
  char text[kLineSize];
  if (length <= kLongestNamedUnit) {
    std::snprintf(text, sizeof text, "%16s", REPEAT_NAMES[length]);
  } else {
    std::snprintf(text, sizeof text, "%5" PRId64 "-nucleotide", length);
  }
  return text;
}

std::string plain_name(std::int64_t length) {
  if (length <= kLongestNamedUnit) {
    return REPEAT_NAMES[length];
  }
  char text[kLineSize];
  std::snprintf(text, sizeof text, "%" PRId64 "-nucleotide", length);
  return text;
}

/// The columns that the two Quorix formats share, without the name.
std::string shared_columns(const Repeat& repeat) {
  char text[kLineSize];
  std::snprintf(text, sizeof text,
                " %9" PRId64 " : %9" PRId64 " | %6" PRId64 " bp | %6" PRId64
                " BP | %6d pt | %7.3f %% |",
                repeat.start + 1, repeat.end, repeat.end - repeat.start, normalized_length(repeat),
                repeat.score, percentage_perfection(repeat));
  return text;
}

std::string quorix_line(const Repeat& repeat, const std::string& unit) {
  return name_column(unit_length(repeat)) + shared_columns(repeat) + " unit " + unit + "\n";
}

std::string edit_line(const Repeat& repeat) {
  std::string line = "Missense: ";
  for (const Edit& edit : repeat.edits) {
    char text[kLineSize];
    std::snprintf(text, sizeof text, "(%" PRId64 ",%c),", edit.position - repeat.start + 1,
                  edit.kind);
    line += text;
  }
  return line + "\n";
}

std::string extended_lines(const Repeat& repeat, const std::string& unit) {
  char text[kLineSize];
  std::snprintf(text, sizeof text, " %3" PRId64 " mis | %3" PRId64 " ins | %3" PRId64 " del | ",
                repeat.mismatches, repeat.insertions, repeat.deletions);
  std::string lines = name_column(unit_length(repeat)) + shared_columns(repeat) + text;
  if (!global_treat_Ns_as_missense) {
    std::snprintf(text, sizeof text, "%3" PRId64 " N | ", repeat.n_count);
    lines += text;
  }
  return lines + " unit " + unit + "\n" + edit_line(repeat);
}

std::string sputnik_line(const Repeat& repeat, const std::string& unit) {
  char text[kLineSize];
  std::snprintf(text, sizeof text,
                " %" PRId64 " : %" PRId64 " -- length %" PRId64 " score %d perfection %" PRId64
                " unit ",
                repeat.start + 1, repeat.end, normalized_length(repeat), repeat.score,
                static_cast<std::int64_t>(percentage_perfection(repeat) + 0.5));
  return plain_name(unit_length(repeat)) + text + unit + "\n";
}

std::string information_lines(const Repeat& repeat, const std::string& unit) {
  if (global_print_sat_mode == kFormatQuorix) {
    return quorix_line(repeat, unit);
  }
  if (global_print_sat_mode == kFormatSputnik) {
    return sputnik_line(repeat, unit);
  }
  return extended_lines(repeat, unit);
}

}  // namespace

std::string report_repeat(const Repeat& repeat, const std::string& bases) {
  const std::string unit = bases.substr(static_cast<std::size_t>(repeat.unit_begin),
                                        static_cast<std::size_t>(unit_length(repeat)));
  const LeastRotation printed = printed_unit(unit);
  if (printed.is_reducible) {
    return "";
  }
  return information_lines(repeat, printed.unit) + sequence_lines(repeat, bases);
}

std::string record_head(const std::string& name, const std::string& bases) {
  return std::string(">") + name.c_str() + "\nsequence length: " + std::to_string(bases.size()) +
         "\n";
}

std::string report_record(const std::string& name, const std::string& bases,
                          const std::vector<Repeat>& repeats) {
  std::string block = record_head(name, bases);
  for (const Repeat& repeat : repeats) {
    block += report_repeat(repeat, bases);
  }
  return block + "# Analysis of sequence \"" + name.c_str() + "\" completed.\n";
}

}  // namespace quorix::reference
