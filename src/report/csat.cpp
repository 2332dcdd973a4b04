// The figures of one repeat, and the orders of edits and of repeats; report_sat.cpp writes it. Ends
// and unit cursors move together: a base that is dropped from an end moves that end's cursor back
// by one unit character.

#include "report/csat.h"

#include <cstdlib>

#include "settings/settings.h"

namespace quorix {

namespace {

/// Exit status for a perfection mode that the command line refuses, so only a caller of the library
/// can have set it.
constexpr int kUnknownPerfectionMode = 2;

/// Returns the place of a kind in the order in which an alignment consumes edits at one base:
/// deletion, insertion, mismatch.
int rank_of(char kind) {
  switch (kind) {
    case 'D':
      return 0;
    case 'I':
      return 1;
    default:
      return 2;
  }
}

}  // namespace

void Csat::init_from_unit(const char* unit_first, const char* unit_last) {
  start = unit_begin = unit_pos_right = unit_first;
  end = unit_end = unit_last;
  unit_pos_left = unit_last - 1;
  score = 0;
  mismatches = insertions = deletions = n_count = 0;
  recursion_depth = 0;
  missense.truncate(0);
  packed_edits = CPackedEdits();
}

void Csat::pack_edits(CEditStore& store, const char* text_begin) {
  packed_edits = store.pack(missense, text_begin);
  missense.truncate(0);
}

fastvector<Edit> Csat::edits() const {
  fastvector<Edit> all(missense);
  if (!packed_edits.empty()) packed_edits.unpack_to(all);
  return all;
}

double Csat::percentagePerfection() const {
  const std::int64_t edit_count = mismatches + insertions + deletions;
  std::int64_t matched = normalized_length() - edit_count;
  std::int64_t counted = normalized_length();
  switch (global_N_and_perfection_mode) {
    case kNAsMismatch:
      matched -= n_count;
      break;
    case kNAsNeutral:
      matched -= n_count;
      counted -= n_count;
      break;
    case kNAsMatch:
      break;
    default:
      std::exit(kUnknownPerfectionMode);
  }
  // The order of these operations matters: 23 of 40 is just below 57.5 and must round to 57.
  return static_cast<double>(matched) / static_cast<double>(counted) * 100.0;
}

void Csat::remove_Ns_at_ends() {
  while (end > start && end[-1] == 'N') {
    --end;
    unit_pos_right = (unit_pos_right == unit_begin ? unit_end : unit_pos_right) - 1;
    --n_count;
  }
  while (start < end && *start == 'N') {
    ++start;
    ++unit_pos_left;
    if (unit_pos_left == unit_end) unit_pos_left = unit_begin;
    --n_count;
  }
}

bool Csat::lessThan_missense::operator()(const Edit& left, const Edit& right) const {
  if (left.position != right.position) return left.position < right.position;
  return rank_of(left.kind) < rank_of(right.kind);
}

bool lessThan_sat(const Csat* left, const Csat* right) {
  if (left->start != right->start) return left->start < right->start;
  return left->end < right->end;
}

}  // namespace quorix
