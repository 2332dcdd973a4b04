#pragma once

/// @file
/// One repeat, as the plain engine holds it.
///
/// The plain engine is the slow twin of the product: it follows the rules of the search step by
/// step, with nothing clever, so that the two can be compared byte for byte. It is linked by tests
/// and benchmarks alone and shares only the settings (`settings/settings.h`) with the product.
///
/// Positions are 0-based offsets into the text of one record, stretches are half-open. The unit is
/// itself a stretch of that text and is read cyclically by two cursors, one for each direction in
/// which a repeat can be extended. Bases are upper-case A, C, G, T and N.

#include <cstdint>
#include <string>
#include <vector>

namespace quorix::reference {

/// One difference between a repeat and perfect copies of its unit.
struct Edit {
  /// 'M' and 'I': the base concerned. 'D': the base to the right of the missing unit character.
  std::int64_t position;
  /// 'M' a mismatch, 'I' an inserted base, 'D' a missing unit character.
  char kind;

  friend bool operator==(const Edit&, const Edit&) = default;
};

/// A stretch [start, end) that follows its unit [unit_begin, unit_end) again and again.
struct Repeat {
  std::int64_t start;
  std::int64_t end;
  /// The unit character that the base at `end` must equal.
  std::int64_t unit_pos_right;
  /// The unit character that the base before `start` must equal.
  std::int64_t unit_pos_left;
  std::int64_t unit_begin;
  std::int64_t unit_end;
  int score;
  std::int64_t mismatches;
  std::int64_t insertions;
  std::int64_t deletions;
  /// N's that were walked over as unknown bases.
  std::int64_t n_count;
  std::vector<Edit> edits;

  friend bool operator==(const Repeat&, const Repeat&) = default;
};

/// A fresh candidate: one copy of the unit at [begin, end), which scores nothing.
Repeat repeat_from_unit(std::int64_t begin, std::int64_t end);

/// Length of the unit in bp.
std::int64_t unit_length(const Repeat& repeat);

/// Unit positions that the repeat spans: its bases, less the inserted, plus the missing ones.
std::int64_t normalized_length(const Repeat& repeat);

/// Perfection in percent; `global_N_and_perfection_mode` says how N's count. An unknown mode ends
/// the process with status 2. REQUIRES: a denominator other than zero, so not a repeat of N's alone
/// when N's are neutral.
double percentage_perfection(const Repeat& repeat);

/// Drops N's at both ends, with cursors and count. REQUIRES: at least one base of the repeat is not
/// N.
void remove_Ns_at_ends(Repeat& repeat, const std::string& bases);

/// The order of repeat lists: by start, then by end.
bool comes_before(const Repeat& left, const Repeat& right);

/// Sorts the list with `comes_before`; equal repeats keep their order.
void sort_repeats(std::vector<Repeat>& repeats);

/// Sorts edits by position; at one position 'D' comes before 'I' and 'I' before 'M'.
void sort_edits(std::vector<Edit>& edits);

/// The unit position after `position`; the first one follows the last.
std::int64_t next_unit_position(std::int64_t position, std::int64_t unit_begin,
                                std::int64_t unit_end);

/// The unit position before `position`; the last one precedes the first.
std::int64_t previous_unit_position(std::int64_t position, std::int64_t unit_begin,
                                    std::int64_t unit_end);

/// The 32-bit score nearest to a sum formed in 64 bits.
int saturated_score(std::int64_t sum);

}  // namespace quorix::reference
