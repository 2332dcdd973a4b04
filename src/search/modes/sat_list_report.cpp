// The report block of one sequence.

#include "search/search_controller.h"

namespace quorix {

void CSearchController::report_head(std::FILE* stream) const {
  std::fprintf(stream, ">%s\nsequence length: %llu\n", sequence_record.name.c_str(),
               static_cast<unsigned long long>(text_length()));
}

void CSearchController::report_SATList(std::FILE* stream, std::list<Csat*> repeats) {
  report_head(stream);
  for (const Csat* const repeat : repeats) repeat->report_sat(stream, sequence_record);
  std::fprintf(stream, "# Analysis of sequence \"%s\" completed.\n", sequence_record.name.c_str());
  std::fflush(stream);
}

}  // namespace quorix
