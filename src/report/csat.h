#pragma once

/// @file
/// One tandem repeat: a stretch of the sequence that holds copies of one unit, exact or with
/// mismatches, inserted bases and deleted unit characters.
///
/// A repeat owns no bases. All its pointers point into the text of the current `CSequence_Mol`, and
/// its stretches are half-open. The unit is a stretch of that text too, normally the seed. Two
/// cursors move cyclically through the unit with the two ends of the repeat: moving `end` one base
/// to the right moves `unit_pos_right` one character forward, and the same holds to the left.

#include <cstdint>
#include <cstdio>

#include "report/edit.h"
#include "report/fastvector.h"
#include "report/packed_edits.h"

namespace quorix {

class CSequence_Mol;

class Csat {
 public:
  /// Becomes one copy [unit_first, unit_last) of its unit: score 0, no edits, both cursors ready to
  /// match the neighbouring copies. `missense` keeps its block; packed edits are dropped.
  void init_from_unit(const char* unit_first, const char* unit_last);

  /// Returns the number of bases of the unit.
  [[nodiscard]] std::int64_t unit_length() const { return unit_end - unit_begin; }

  /// Returns the number of unit positions that the repeat spans, in bp: the length that is compared
  /// with the minimum length and printed as "BP".
  [[nodiscard]] std::int64_t normalized_length() const {
    return (end - start) - insertions + deletions;
  }

  /// Returns the perfection in percent, with N's counted as `global_N_and_perfection_mode` says.
  /// NaN if nothing is left to count. An unknown mode ends the process with status 2.
  [[nodiscard]] double percentagePerfection() const;

  /// Drops N's at both ends of the repeat; score and edits stay as they are.
  void remove_Ns_at_ends();

  /// Moves the edits of `missense`, whose block stays, into `store`, see `CEditStore::pack`. After
  /// that `edits` returns them as long as the store lives. Throws: std::bad_alloc.
  void pack_edits(CEditStore& store, const char* text_begin);

  /// Returns a copy of the edits, in their order: those of `missense`, or the packed ones.
  /// Throws: std::bad_alloc.
  [[nodiscard]] fastvector<Edit> edits() const;

  /// Writes the repeat in the chosen format, with its bases or its alignment, to `stream`. Writes
  /// nothing if the unit repeats a shorter unit. Positions are printed 1-based, both ends
  /// inclusive. `sequence` is the record that the repeat points into; its text becomes
  /// NUL-terminated. Throws: std::bad_alloc.
  void report_sat(std::FILE* stream, CSequence_Mol& sequence) const;

  /// Orders an edit list by position; at one position deletions come first, since a missing unit
  /// character precedes the base, then insertions, then mismatches.
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
  /// Alignment score; the first copy scores nothing. Saturates at the 32-bit limits.
  std::int32_t score = 0;
  /// The count of edits with which the look-ahead of the imperfect extension starts. Its place here
  /// fills padding, so it takes no extra memory.
  std::uint8_t recursion_depth = 0;
  std::int64_t mismatches = 0;
  /// Bases without a unit character.
  std::int64_t insertions = 0;
  /// Unit characters without a base.
  std::int64_t deletions = 0;
  /// N's inside the repeat that count as unknown.
  std::int64_t n_count = 0;
  /// The edits, in the order of `lessThan_missense` once the repeat is complete. Empty while they
  /// are packed.
  fastvector<Edit> missense;
  /// The edits of a repeat that waits in a list for its report.
  CPackedEdits packed_edits;
};

/// Orders repeat lists by start, then by end.
[[nodiscard]] bool lessThan_sat(const Csat* left, const Csat* right);

}  // namespace quorix
