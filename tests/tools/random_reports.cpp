#include "tools/random_reports.h"

#include "tools/report_text.h"

namespace quorix::testing {

RandomReport draw_report(std::uint64_t seed) {
  RandomEngine engine(seed);
  RandomReport report;
  report.options = seed % 5 == 0 ? draw_long_unit_options(engine) : draw_options(engine, false);
  report.records.resize(draw_between(engine, 0, 3));
  for (std::size_t i = 0; i < report.records.size(); ++i) {
    report.records[i].name = "seq" + std::to_string(i) + " of " + std::to_string(seed);
    report.records[i].bases = draw_record(engine, 300, 12);
  }
  report.text = whole_report(report.records);
  return report;
}

}  // namespace quorix::testing
