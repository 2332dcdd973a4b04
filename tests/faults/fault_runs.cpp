#include "faults/fault_runs.h"

#include <unistd.h>

namespace quorix::testing {

FaultSettings fault_settings;

std::string RunShape::name() const {
  return mode + (has_report_file ? ", report in a file" : ", report on standard output") +
         (is_masked ? ", masked copy" : "");
}

RunPlan RunShape::plan() const {
  RunPlan plan{fault_settings.program, {"-M", mode}, {}, {}};
  if (is_masked) plan.arguments.emplace_back("--maskX");
  plan.arguments.emplace_back(kInputName);
  if (has_report_file) plan.arguments.emplace_back(kReportName);
  return plan;
}

std::string RunShape::report_target() const {
  return has_report_file ? kReportName : "standard output";
}

std::vector<std::string> search_modes() {
  if (fault_settings.is_brief) return {"imperfect"};
  return {"exact", "extendExact", "imperfect"};
}

std::vector<RunShape> all_run_shapes() {
  std::vector<RunShape> shapes;
  for (const std::string& mode : search_modes()) {
    for (const bool has_report_file : {false, true}) {
      for (const bool is_masked : {false, true})
        shapes.push_back({mode, has_report_file, is_masked});
    }
  }
  return shapes;
}

std::vector<RunShape> three_file_shapes() {
  std::vector<RunShape> shapes;
  for (const std::string& mode : search_modes()) shapes.push_back({mode, true, true});
  return shapes;
}

void close_streams(unsigned bits) {
  for (int descriptor = 0; descriptor < 3; ++descriptor) {
    if ((bits >> descriptor & 1U) != 0) ::close(descriptor);
  }
}

CFaultFolder::CFaultFolder() {
  static_cast<void>(file_of(kInputName, input()));
}

const std::string& CFaultFolder::input() {
  static const std::string text =
      "# made by hand\n"
      ">mismatch\nGATTCGTCACACACACACGCACACACACACTGGATC\n"
      ">insertion and deletion\nTCCGTTAGCAGCAGCAGCTAGCAGCAGCAGCAGCTTACCGT\n"
      "TTGCTGATAGATAGATGATAGATAGATAGATCGGCTA\n"
      ">\nACGTTGCACC\n"
      ">unknown bases\nCGTTAGAAGAAGAANNAGAAGAAGCTTCGTCACACACACACNNNNNNACACACACACTTGC\n"
      ">empty\n"
      ">overlaps\nTGCCTTTTTTTTTTCTTTTTTTTTTCTTTTTTTTTTCTTTGCA\n"
      "GCTCTTCAAAAAAAAAAAAAGAAAAGAAAAGAAAAGAAAAGCTTGC\n"
      ">many edits\nACACACACACTCACACACACATCACACACACAACACACACAGACACACACATACACACACACCACACACAC\n"
      ">letters\nGTCTTGacacacacrcaca-cacacGTUCGGA\n";
  return text;
}

}  // namespace quorix::testing
