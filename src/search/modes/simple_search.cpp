// The first-hit scan: at each base the shortest unit whose repeat is accepted wins, is reported at
// once, and the scan goes on behind it.

#include "search/search_controller.h"

namespace quorix {

bool CSearchController::find_first_hit(const char* position, const char* left_limit,
                                       CSpareRecord& spare) {
  const std::uint64_t longest_unit = last_unit_length();
  const auto bases_left = static_cast<std::uint64_t>(text_end() - position);
  for (std::uint64_t unit_length = first_unit_length();
       unit_length <= longest_unit && unit_length < bases_left; ++unit_length) {
    Csat& candidate = spare.seed(position, position + unit_length);
    if (valid_starting_pattern(candidate) && grow_and_test(candidate, left_limit)) return true;
  }
  return false;
}

void CSearchController::simple_imperfect_search(std::FILE* stream) {
  report_head(stream);
  forget_growth();
  CSpareRecord spare(sat_alloc);
  const char* left_limit = before_text();
  const char* position = text_begin();
  while (position < text_end()) {
    if (!find_first_hit(position, left_limit, spare)) {
      ++position;
      continue;
    }
    Csat& hit = spare.record();
    hit.report_sat(stream, sequence_record);
    position = hit.end;
    left_limit = hit.end - 1;
    pack_edits(hit);
    spare.keep_in(imperfect_sat_list.sat_list);
  }
}

}  // namespace quorix
