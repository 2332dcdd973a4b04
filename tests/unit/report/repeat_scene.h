#pragma once

/// @file
/// A sequence with one repeat in it, put together from what a person can read.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "report/csat.h"
#include "sequence/sequence_mol.h"
#include "settings/settings.h"
#include "support/default_settings.h"
#include "support/memory_stream.h"
#include "support/test_record.h"

namespace quorix::testing {

/// The sequence is `left`, `bases` and `right` in a row; the repeat covers `bases`.
class CRepeatScene {
 public:
  /// The first `unit_length` bases of the repeat are its unit.
  CRepeatScene(std::string_view left, std::string_view bases, std::string_view right,
               std::size_t unit_length) {
    set_record(record, "scene", std::string(left) + std::string(bases) + std::string(right));
    const char* const start = record.sequence.data() + left.size();
    repeat.init_from_unit(start, start + unit_length);
    repeat.end = start + bases.size();
  }

  /// Makes the unit begin at a position of the repeat (1-based) and its first base be aligned with
  /// the unit character of that number (1-based).
  void set_unit(std::int64_t begin_position, std::int64_t length, std::int64_t first_character) {
    repeat.unit_begin = repeat.start + begin_position - 1;
    repeat.unit_end = repeat.unit_begin + length;
    repeat.unit_pos_left = repeat.unit_begin + (first_character + length - 2) % length;
  }

  /// Counts an edit and notes it at a position of the repeat (1-based).
  void add_edit(std::int64_t position, char kind) {
    repeat.missense.push_back({repeat.start + position - 1, kind});
    (kind == 'M' ? repeat.mismatches : kind == 'I' ? repeat.insertions : repeat.deletions) += 1;
  }

  /// What the report of the repeat prints.
  std::string report() {
    return printed_by([this](std::FILE* stream) { repeat.report_sat(stream, record); });
  }

  CSequence_Mol record;
  Csat repeat;
};

/// Chooses what a report looks like.
inline void set_report(int format, int unit_mode, int print_mode, int flanking = 0) {
  global_print_sat_mode = format;
  global_report_unit_mode = unit_mode;
  global_print_sat_seq_mode = print_mode;
  global_flanking = flanking;
}

}  // namespace quorix::testing
