// Two plain scans, without a filter of seeds: each unit that may start a repeat is extended.
//
// The one-pass search skips a unit that lies within an exact repeat of the same unit length or of a
// divisor of it, since it would find that repeat again. A unit that reaches out of the repeat is
// tried.
//
// The first-hit search goes on at the end of each repeat, and no later repeat extends to the left
// of that base, so all repeats lie apart.

#include "search/modes/library_members.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "report/sequence_block.h"
#include "search/extension/exact_extension.h"
#include "search/modes/sat_container.h"

namespace quorix {

namespace {

/// The lowest unit length at which there is a unit.
std::uint64_t first_unit_length(const SearchContext& context) {
  return std::max<std::uint64_t>(context.units.first, 1);
}

/// Extends units that begin at `position`, shortest first, until one is accepted; `spare` then has
/// its repeat. Returns true if there is one.
bool find_first_hit(const SearchContext& context, const char* position, const char* left_limit,
                    CSpareRecord& spare) {
  const auto bases_left = static_cast<std::uint64_t>(context.text.end - position);
  for (std::uint64_t unit_length = first_unit_length(context);
       unit_length <= context.units.last && unit_length < bases_left; ++unit_length) {
    Csat& repeat = spare.seed(position, position + unit_length);
    if (valid_starting_pattern(repeat) &&
        context.extender.extend_over_edits_and_test(repeat, left_limit, context.thresholds)) {
      return true;
    }
  }
  return false;
}

}  // namespace

void search_exact_repeats_in_one_pass(const SearchContext& context, std::list<Csat*>& found) {
  const SearchedText& text = context.text;
  const std::uint64_t last_unit_length = context.units.last;
  // By unit length, the earliest end of a unit that is tried.
  std::vector<const char*> min_unit_ends(last_unit_length + 1, text.begin);
  CSpareRecord spare(sat_alloc);
  for (const char* p = text.begin; p < text.end; ++p) {
    for (std::uint64_t unit_length = first_unit_length(context);
         unit_length <= last_unit_length && p + unit_length < text.end; ++unit_length) {
      if (p + unit_length < min_unit_ends[unit_length]) continue;
      Csat& repeat = spare.seed(p, p + unit_length);
      if (!valid_starting_pattern(repeat) ||
          !context.extender.extend_exactly_and_test(repeat, context.thresholds)) {
        continue;
      }
      for (std::uint64_t multiple = unit_length; multiple <= last_unit_length;
           multiple += unit_length) {
        min_unit_ends[multiple] = std::max(min_unit_ends[multiple], repeat.end + 1);
      }
      spare.keep_in(found);
    }
  }
}

void report_first_hits(const SearchContext& context, CSequence_Mol& record, std::FILE* stream,
                       std::list<Csat*>& accepted) {
  report_sequence_head(stream, record);
  context.extender.clear_caches();
  CSpareRecord spare(sat_alloc);
  const char* left_limit = context.text.before();
  const char* position = context.text.begin;
  while (position < context.text.end) {
    if (!find_first_hit(context, position, left_limit, spare)) {
      ++position;
      continue;
    }
    Csat& hit = spare.record();
    hit.report_sat(stream, record);
    position = hit.end;
    left_limit = hit.end - 1;
    context.extender.pack_edits(hit);
    spare.keep_in(accepted);
  }
}

}  // namespace quorix
