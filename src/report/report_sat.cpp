// The report of one repeat: its unit in the chosen normal form, an information line in one of three
// formats, and on request its bases or its alignment. Other programs parse these lines, so every
// width, blank and label stays as it is.
//
// The text is gathered in a block on the stack and handed to the stream in one piece, see
// sequence/stream_text.h.

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

#include "report/alignment.h"
#include "report/csat.h"
#include "report/repeat_names.h"
#include "report/report_text.h"
#include "report/unit_form.h"
#include "sequence/dna_string.h"
#include "sequence/sequence_mol.h"
#include "sequence/stream_text.h"
#include "settings/settings.h"

namespace quorix {

namespace {

/// Bytes of the buffer for the report of a repeat; nearly every report fits.
constexpr std::size_t kBlockSize = 4096;

/// The figures of an information line, whatever its format.
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

/// The class name, 16 characters wide for unit lengths of up to five digits.
void add_class_name(CStreamText& report, long long unit_length) {
  if (unit_length < static_cast<long long>(REPEAT_NAMES.size())) {
    add_column(report, REPEAT_NAMES[static_cast<std::size_t>(unit_length)], 16);
  } else {
    add_number(report, unit_length, 5);
    report.add("-nucleotide");
  }
}

/// Appends a number and the text after it.
void add_figure(CStreamText& report, long long number, std::size_t width, std::string_view suffix) {
  add_number(report, number, width);
  report.add(suffix);
}

/// Appends the columns that both quorix formats share.
void add_common_columns(CStreamText& report, const Csat& repeat, const RepeatFigures& figures) {
  add_class_name(report, figures.unit_length);
  report.add(' ');
  add_figure(report, figures.first_position, 9, " : ");
  add_figure(report, figures.last_position, 9, " | ");
  add_figure(report, figures.length, 6, " bp | ");
  add_figure(report, figures.normalized_length, 6, " BP | ");
  add_figure(report, repeat.score, 6, " pt | ");
  add_decimals(report, figures.perfection);
  report.add(" % |");
}

/// Appends the end of an information line.
void add_unit(CStreamText& report, std::string_view unit) {
  report.add(" unit ");
  report.add(unit);
  report.add('\n');
}

/// Appends the line of the plain format.
void add_quorix_format(CStreamText& report, const Csat& repeat, const RepeatFigures& figures,
                       std::string_view unit) {
  add_common_columns(report, repeat, figures);
  add_unit(report, unit);
}

/// Appends the shared columns, counts of edits, and a second line with each edit: its 1-based
/// position in the repeat, and its kind.
void add_extended_format(CStreamText& report, const Csat& repeat, const RepeatFigures& figures,
                         std::string_view unit) {
  add_common_columns(report, repeat, figures);
  report.add(' ');
  add_figure(report, repeat.mismatches, 3, " mis | ");
  add_figure(report, repeat.insertions, 3, " ins | ");
  add_figure(report, repeat.deletions, 3, " del | ");
  if (!global_treat_Ns_as_missense) add_figure(report, repeat.n_count, 3, " N | ");
  add_unit(report, unit);
  report.add("Missense: ");
  for (const Edit& edit : repeat.edits()) {
    report.add('(');
    add_figure(report, (edit.position - repeat.start) + 1, 0, ",");
    report.add(edit.kind);
    report.add("),");
  }
  report.add('\n');
}

/// Appends the line of the sputnik compatible format, with the perfection in whole percent.
void add_sputnik_format(CStreamText& report, const Csat& repeat, const RepeatFigures& figures,
                        std::string_view unit) {
  // A repeat of N's alone has no perfection, and NaN must not become a number.
  const long long rounded_perfection =
      std::isfinite(figures.perfection) ? static_cast<long long>(figures.perfection + 0.5) : 0;
  report.add(get_repeat_name(figures.unit_length));
  report.add(' ');
  add_figure(report, figures.first_position, 0, " : ");
  add_figure(report, figures.last_position, 0, " -- length ");
  add_figure(report, figures.normalized_length, 0, " score ");
  add_figure(report, repeat.score, 0, " perfection ");
  add_figure(report, rounded_perfection, 0, "");
  add_unit(report, unit);
}

/// Appends the information line in the chosen format.
void add_information(CStreamText& report, const Csat& repeat, const SequenceText& text,
                     std::string_view unit) {
  const RepeatFigures figures = figures_of(repeat, text);
  switch (global_print_sat_mode) {
    case kFormatQuorix:
      return add_quorix_format(report, repeat, figures, unit);
    case kFormatSputnik:
      return add_sputnik_format(report, repeat, figures, unit);
    default:
      return add_extended_format(report, repeat, figures, unit);
  }
}

void add_bases(CStreamText& report, const char* first, const char* last, char end_mark) {
  report.add(std::string_view(first, static_cast<std::size_t>(last - first)));
  report.add(end_mark);
}

/// Appends the line of bases, with flanks set off by colons.
void add_sequence(CStreamText& report, const Csat& repeat, const SequenceText& text) {
  if (global_flanking <= 0) return add_bases(report, repeat.start, repeat.end, '\n');
  const Flanks flanks = flanks_of(repeat, text, global_flanking);
  add_bases(report, flanks.left_begin, repeat.start, ':');
  add_bases(report, repeat.start, repeat.end, ':');
  add_bases(report, repeat.end, flanks.right_end, '\n');
}

/// Appends the three lines of the alignment.
void add_alignment(CStreamText& report, const Csat& repeat, const SequenceText& text) {
  const Alignment alignment = align(repeat, text, global_flanking);
  for (const std::string* line : {&alignment.bases, &alignment.marks, &alignment.unit}) {
    report.add(*line);
    report.add('\n');
  }
}

}  // namespace

void Csat::report_sat(std::FILE* stream, CSequence_Mol& sequence) const {
  const char* const text_begin = sequence.sequence.c_str();
  const SequenceText text{text_begin, text_begin + sequence.sequence.size()};

  CDnaString unit(std::string_view(unit_begin, static_cast<std::size_t>(unit_length())));
  // A repeat of ATAT is one of AT, so it is left to the search for AT.
  if (normalize_unit(unit)) return;

  char block[kBlockSize];
  CStreamText report(stream, block);
  add_information(report, *this, text, unit.view());
  if (global_print_sat_mode == kFormatSputnik) {
    // A program that reads this format in a pipe gets each line at once.
    report.hand_over();
    std::fflush(stream);
  }
  if (global_print_sat_seq_mode == kPrintSequence) add_sequence(report, *this, text);
  if (global_print_sat_seq_mode == kPrintAlignment) add_alignment(report, *this, text);
}

}  // namespace quorix
