// A controller lives for one record, whose bases it points to.

#include "driver/record_analysis.h"

#include <algorithm>

#include "console/console_texts.h"
#include "console/run_clock.h"
#include "search/search_controller.h"
#include "settings/settings.h"

namespace quorix {

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
  CsatContainer& repeats = controller.search_in_mode_of_settings(report);
  CSearchController::remove_hidden(repeats);
  controller.report_SATList(report, repeats.sat_list);
  // Repeats point into the bases, so the bases change only after the report.
  if (is_masked) mask_repeats(repeats.sat_list, record);
}

}  // namespace quorix
