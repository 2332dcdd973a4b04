// Files that may not be made, written or read, and names that no file can have.

#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "faults/fault_runs.h"
#include "faults/point_log.h"

namespace quorix::testing {
namespace {

/// In the new process: gives up what lets root pass over the rights of files. Others have nothing
/// to give up.
void obey_rights_of_files() {
  for (const int capability : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH}) {
    if (::geteuid() == 0 && ::prctl(PR_CAPBSET_DROP, capability, 0, 0, 0) != 0) ::_exit(125);
  }
}

/// A folder with the input, with a second one in it that changes its rights and gives them back.
class CReadOnly : public ::testing::Test {
 protected:
  CReadOnly() : inner_(folder_.path_of("inner")), inner_input_(inner_ + "/" + kInputName) {
    ::mkdir(inner_.c_str(), 0755);
    static_cast<void>(folder_.file_of("inner/in.fa", CFaultFolder::input()));
    static_cast<void>(folder_.file_of("old report", kOldText));
  }
  ~CReadOnly() override { ::chmod(inner_.c_str(), 0755); }
  CReadOnly(const CReadOnly&) = delete;
  CReadOnly& operator=(const CReadOnly&) = delete;

  /// Runs each mode with these arguments after it.
  void expect_status(const std::vector<std::string>& arguments, int status,
                     const std::string& message) {
    for (const std::string& mode : search_modes()) {
      RunPlan plan{fault_settings.program, {"-M", mode}, {}, obey_rights_of_files};
      plan.arguments.insert(plan.arguments.end(), arguments.begin(), arguments.end());
      const Outcome outcome = run_program_once(folder_, plan);
      log_.judge(arguments.back(), outcome, {}, {.statuses = {{status, message}}});
    }
  }

  static constexpr const char* kOldText = "an earlier report\n";
  CFaultFolder folder_;
  std::string inner_;
  std::string inner_input_;
  CPointLog log_{"files without rights"};
};

using ReadOnly = CReadOnly;

TEST_F(ReadOnly, folder_takes_no_report) {
  ASSERT_EQ(::chmod(inner_.c_str(), 0555), 0);
  expect_status({kInputName, "inner/report"}, 154, failed_open_text("inner/report"));
  log_.expect_no_findings(search_modes().size());
}

// The masked copy is missed when the first record is to be written to it; nothing of the report
// has to be lost by then.
TEST_F(ReadOnly, folder_takes_no_masked_copy) {
  ASSERT_EQ(::chmod(inner_.c_str(), 0555), 0);
  for (const std::string& mode : search_modes()) {
    RunPlan plan{fault_settings.program, {"-M", mode, inner_input_, kReportName}, {}, {}};
    const Outcome undisturbed = run_program_once(folder_, plan);
    plan.prepare = obey_rights_of_files;
    plan.arguments.emplace_back("--maskX");
    Outcome outcome = run_program_once(folder_, plan);
    EXPECT_NE(outcome.report.find("\n# Analysis of sequence \"mismatch\" completed."),
              std::string::npos);
    outcome.report.clear();  // its head names the masked copy
    log_.judge(mode, outcome, undisturbed,
               {.statuses = {{153, failed_open_text(inner_input_ + ".masked")}}});
  }
  log_.expect_no_findings(search_modes().size());
}

TEST_F(ReadOnly, report_stays_as_it_was) {
  ASSERT_EQ(::chmod(folder_.path_of("old report").c_str(), 0444), 0);
  expect_status({kInputName, "old report"}, 154, failed_open_text("old report"));
  EXPECT_EQ(file_bytes(folder_.path_of("old report")), kOldText);
  log_.expect_no_findings(search_modes().size());
}

TEST_F(ReadOnly, input_that_may_not_be_read_is_reported) {
  const std::string message =
      "Sorry! The input file \n   \"" + inner_input_ + "\"\ncould not be opened.";
  ASSERT_EQ(::chmod(inner_input_.c_str(), 0222), 0);
  expect_status({inner_input_}, 155, message);
  ASSERT_EQ(::chmod(inner_input_.c_str(), 0444), 0);
  ASSERT_EQ(::chmod(inner_.c_str(), 0444), 0);  // nothing in it can be reached
  expect_status({inner_input_}, 155, message);
  log_.expect_no_findings(search_modes().size() * 2);
}

TEST_F(ReadOnly, names_that_cannot_be_files_take_no_report) {
  const std::string long_name(5000, 'n');
  for (const std::string& name :
       {std::string("old report/report"), std::string("inner"), std::string("."),
        std::string("none/report"), std::string("/proc/report"), long_name}) {
    expect_status({kInputName, name}, 154, failed_open_text(name));
  }
  log_.expect_no_findings(search_modes().size() * 6);
}

}  // namespace
}  // namespace quorix::testing
