// The one place where a mode is chosen. A controller lives for one record, whose bases it points
// to.

#include "driver/record_analysis.h"

#include <algorithm>

#include "console/console_texts.h"
#include "console/run_clock.h"
#include "search/search_controller.h"
#include "settings/settings.h"

namespace quorix {

namespace {

/// Runs the search of the mode. Returns the list that it fills.
CsatContainer& search(CSearchController& controller, std::FILE* report) {
  switch (global_search_mode) {
    case kSearchExact:
      controller.exact_search_2();
      return controller.exact_sat_list;
    case kSearchExtendExact:
      controller.search_exact_and_extend_to_imperfect_repeats();
      return controller.imperfect_sat_list;
    default:
      controller.complete_imperfect_search(report);
      return controller.imperfect_sat_list;
  }
}

}  // namespace

void mask_repeats(const std::list<Csat*>& repeats, CSequence_Mol& record) {
  char* const text = record.sequence.data();
  for (const Csat* const repeat : repeats) {
    std::fill(text + (repeat->start - text), text + (repeat->end - text), 'X');
  }
}

void analyse_record(std::uint64_t number, CSequence_Mol& record, std::FILE* report,
                    bool is_masked) {
  report_status(number, record.name.c_str(), global_min_unit_length, 'r');
  update_report_time();

  CSearchController controller(number, record);
  CsatContainer& repeats = search(controller, report);
  CSearchController::remove_hidden(repeats);
  controller.report_SATList(report, repeats.sat_list);
  // Repeats point into the bases, so the bases change only after the report.
  if (is_masked) mask_repeats(repeats.sat_list, record);
}

}  // namespace quorix
