// The report of one repeat: its unit in the chosen normal form, an information line in one of three
// formats, and on request its bases or its alignment.

#include <cmath>
#include <cstring>
#include <string_view>

#include "report/alignment.h"
#include "report/csat.h"
#include "report/repeat_names.h"
#include "sequence/dna_string.h"
#include "sequence/reducible_unit.h"
#include "sequence/sequence_mol.h"
#include "settings/settings.h"

namespace quorix {

namespace {

/// What an information line tells, whatever its format.
struct RepeatFigures {
  long long unit_length;
  long long first_position;  ///< 1-based
  long long last_position;   ///< 1-based, inclusive
  long long length;
  long long normalized_length;
  double perfection;
};

RepeatFigures figures_of(const Csat& repeat, const SequenceText& text) {
  return {repeat.unit_length(),       (repeat.start - text.begin) + 1,
          repeat.end - text.begin,    repeat.end - repeat.start,
          repeat.normalized_length(), repeat.percentagePerfection()};
}

/// Makes `unit` what is printed of it. True if it is a repetition of a shorter unit. The test of
/// the unit as found overlooks prime lengths, the rotation test does not: both are the rule.
bool bring_unit_into_form(CDnaString& unit) {
  if (global_report_unit_mode == kUnitAsFound) {
    const char* const letters = unit.c_str();
    return isReducibleUnit_global(letters, letters + unit.size());
  }
  CDnaString least;
  const bool is_reducible = least.setToMinAlphaRepModCyclicPermOf(unit);
  if (global_report_unit_mode != kUnitAlphabeticalBothStrands) {
    unit.assign(least.view());
    return is_reducible;
  }
  CDnaString complement;
  complement.setToReverseComplementOf(unit);
  CDnaString least_complement;
  const bool is_complement_reducible = least_complement.setToMinAlphaRepModCyclicPermOf(complement);
  const bool is_complement_greater = std::strcmp(least_complement.c_str(), least.c_str()) > 0;
  unit.assign(is_complement_greater ? least.view() : least_complement.view());
  return is_complement_reducible;
}

/// The class name, 16 characters wide for unit lengths of up to five digits.
void print_class_name(std::FILE* stream, long long unit_length) {
  if (unit_length < static_cast<long long>(REPEAT_NAMES.size())) {
    std::fprintf(stream, "%16s", REPEAT_NAMES[static_cast<std::size_t>(unit_length)]);
  } else {
    std::fprintf(stream, "%5lld-nucleotide", unit_length);
  }
}

/// The columns that the two formats of our own share.
void print_common_columns(std::FILE* stream, const Csat& repeat, const RepeatFigures& figures) {
  print_class_name(stream, figures.unit_length);
  std::fprintf(stream, " %9lld : %9lld | %6lld bp | %6lld BP | %6d pt | %7.3f %% |",
               figures.first_position, figures.last_position, figures.length,
               figures.normalized_length, repeat.score, figures.perfection);
}

void print_quorix_format(std::FILE* stream, const Csat& repeat, const RepeatFigures& figures,
                         const char* unit) {
  print_common_columns(stream, repeat, figures);
  std::fprintf(stream, " unit %s\n", unit);
}

void print_extended_format(std::FILE* stream, const Csat& repeat, const RepeatFigures& figures,
                           const char* unit) {
  print_common_columns(stream, repeat, figures);
  std::fprintf(stream, " %3lld mis | %3lld ins | %3lld del | ",
               static_cast<long long>(repeat.mismatches), static_cast<long long>(repeat.insertions),
               static_cast<long long>(repeat.deletions));
  if (!global_treat_Ns_as_missense) {
    std::fprintf(stream, "%3lld N | ", static_cast<long long>(repeat.n_count));
  }
  std::fprintf(stream, " unit %s\nMissense: ", unit);
  for (const Edit& edit : repeat.missense) {
    std::fprintf(stream, "(%lld,%c),", static_cast<long long>(edit.position - repeat.start) + 1,
                 edit.kind);
  }
  std::fputc('\n', stream);
}

void print_sputnik_format(std::FILE* stream, const Csat& repeat, const RepeatFigures& figures,
                          const char* unit) {
  // A repeat of N's alone has no perfection; no number of percent may be made of it.
  const long long rounded_perfection =
      std::isfinite(figures.perfection) ? static_cast<long long>(figures.perfection + 0.5) : 0;
  std::fprintf(stream, "%s %lld : %lld -- length %lld score %d perfection %lld unit %s\n",
               get_repeat_name(figures.unit_length), figures.first_position, figures.last_position,
               figures.normalized_length, repeat.score, rounded_perfection, unit);
  std::fflush(stream);
}

void print_information(std::FILE* stream, const Csat& repeat, const SequenceText& text,
                       const char* unit) {
  const RepeatFigures figures = figures_of(repeat, text);
  switch (global_print_sat_mode) {
    case kFormatQuorix:
      return print_quorix_format(stream, repeat, figures, unit);
    case kFormatSputnik:
      return print_sputnik_format(stream, repeat, figures, unit);
    default:
      return print_extended_format(stream, repeat, figures, unit);
  }
}

void print_bases(std::FILE* stream, const char* first, const char* last, char end_mark) {
  std::fwrite(first, 1, static_cast<std::size_t>(last - first), stream);
  std::fputc(end_mark, stream);
}

void print_sequence(std::FILE* stream, const Csat& repeat, const SequenceText& text) {
  if (global_flanking <= 0) return print_bases(stream, repeat.start, repeat.end, '\n');
  const Flanks flanks = flanks_of(repeat, text, global_flanking);
  print_bases(stream, flanks.left_begin, repeat.start, ':');
  print_bases(stream, repeat.start, repeat.end, ':');
  print_bases(stream, repeat.end, flanks.right_end, '\n');
}

void print_alignment(std::FILE* stream, const Csat& repeat, const SequenceText& text) {
  const Alignment alignment = align(repeat, text, global_flanking);
  for (const std::string* line : {&alignment.bases, &alignment.marks, &alignment.unit}) {
    print_bases(stream, line->data(), line->data() + line->size(), '\n');
  }
}

}  // namespace

void Csat::report_sat(std::FILE* stream, CSequence_Mol& sequence) const {
  const char* const text_begin = sequence.sequence.c_str();
  const SequenceText text{text_begin, text_begin + sequence.sequence.size()};

  CDnaString unit(std::string_view(unit_begin, static_cast<std::size_t>(unit_length())));
  if (bring_unit_into_form(unit)) return;

  print_information(stream, *this, text, unit.c_str());
  if (global_print_sat_seq_mode == kPrintSequence) print_sequence(stream, *this, text);
  if (global_print_sat_seq_mode == kPrintAlignment) print_alignment(stream, *this, text);
}

}  // namespace quorix
