#pragma once

/// @file
/// One tandem repeat: a stretch of the sequence text that is a run of copies of one unit, exact or
/// with mismatches, inserted bases and deleted unit characters.
///
/// A record owns no bases. All its pointers point into the text of the current `CSequence_Mol`;
/// stretches are half-open. The unit is a stretch of the same text too, normally the first copy.
/// Two cursors walk the unit cyclically with the two ends of the repeat: moving `end` one base to
/// the right moves `unit_pos_right` one character forward, and the same holds to the left.

#include <cstdint>
#include <cstdio>

#include "report/edit.h"
#include "report/fastvector.h"
#include "report/packed_edits.h"

namespace quorix {

class CSequence_Mol;

class Csat {
 public:
  /// Becomes one unit copy [unit_first, unit_last): score 0, no edits, both cursors ready to match
  /// the neighbouring copies. `missense` keeps its block; packed edits are forgotten.
  void init_from_unit(const char* unit_first, const char* unit_last);

  /// Bases of the unit.
  [[nodiscard]] std::int64_t unit_length() const { return unit_end - unit_begin; }

  /// Unit positions that the repeat spans, in bp: the length that is tested against the minimum
  /// lengths and printed as "BP".
  [[nodiscard]] std::int64_t normalized_length() const {
    return (end - start) - insertions + deletions;
  }

  /// The perfection in percent, with N's counted as `global_N_and_perfection_mode` says. NaN when
  /// nothing is left to count. An unknown mode ends the process with status 2.
  [[nodiscard]] double percentagePerfection() const;

  /// Gives back N's at both ends of the repeat; score and edits stay as they are.
  void remove_Ns_at_ends();

  /// Moves the edits of `missense`, whose block stays, into `store`, see `CEditStore::pack`: from
  /// now on `edits` has them, as long as the store lives. Throws: std::bad_alloc.
  void pack_edits(CEditStore& store, const char* text_begin);

  /// A copy of the edits, in their order: those of `missense`, or the packed ones.
  /// Throws: std::bad_alloc.
  [[nodiscard]] fastvector<Edit> edits() const;

  /// Writes the record in the chosen format, with its bases or its alignment, to `stream`. Nothing
  /// is written when the unit is a repetition of a shorter unit. Positions are printed 1-based,
  /// both ends inclusive. `sequence` is the record that the repeat points into; its text becomes
  /// NUL-terminated. Throws: std::bad_alloc.
  void report_sat(std::FILE* stream, CSequence_Mol& sequence) const;

  /// The order of an edit list: by position, and at one position deletions first, since a missing
  /// unit character comes before the base, then insertions, then mismatches.
  struct lessThan_missense {
    bool operator()(const Edit& left, const Edit& right) const;
  };

  /// First base of the repeat.
  const char* start = nullptr;
  /// One past its last base.
  const char* end = nullptr;
  /// The unit character that the base at `end` has to match.
  const char* unit_pos_right = nullptr;
  /// The unit character that the base before `start` has to match.
  const char* unit_pos_left = nullptr;
  /// First character of the unit.
  const char* unit_begin = nullptr;
  /// One past its last character.
  const char* unit_end = nullptr;
  /// Alignment score; the first unit copy scores nothing. Saturates at the 32-bit limits.
  std::int32_t score = 0;
  /// Level at which the look-ahead of the imperfect extension starts. Here it takes no room of its
  /// own.
  std::uint8_t recursion_depth = 0;
  std::int64_t mismatches = 0;
  /// Bases without a unit character.
  std::int64_t insertions = 0;
  /// Unit characters without a base.
  std::int64_t deletions = 0;
  /// N's that were walked over as unknown.
  std::int64_t n_count = 0;
  /// The edits, in the order of `lessThan_missense` once the repeat is complete. Empty while they
  /// are packed.
  fastvector<Edit> missense;
  /// The edits of a repeat that waits in a list to be reported.
  CPackedEdits packed_edits;
};

/// The order of repeat lists: by start, then by end.
[[nodiscard]] bool lessThan_sat(const Csat* left, const Csat* right);

}  // namespace quorix
