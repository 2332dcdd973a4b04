// An input that ends at any byte: what the program makes of it is what the plain engine makes of
// what is left.

#include <gtest/gtest.h>

#include "faults/fault_runs.h"
#include "faults/point_log.h"
#include "reference/plain_fasta.h"
#include "support/default_settings.h"
#include "support/gzip_text.h"
#include "support/random_options.h"
#include "support/record_runs.h"

namespace quorix::testing {
namespace {

constexpr int kInputReadError = 231;

using CutInput = CDefaultSettings;

/// The report up to its first block. It holds no word of the input.
std::string head_of(const std::string& report) {
  return report.substr(0, report.find("\n>") + 1);
}

/// What a run has to come to on this input, by the plain engine under the settings in force.
Outcome plain_outcome(const std::string& input, const std::string& head) {
  const reference::FastaText text = reference::read_fasta(input);
  std::vector<NamedBases> records;
  for (const auto& [name, bases] : text.records) records.push_back({name, bases});
  const RunOutput output = run_plain_engine(records);
  Outcome outcome;
  outcome.report = head + output.report;
  outcome.masked = output.masked;
  if (text.error_line == 0) {
    outcome.status = 0;
    outcome.report += kSuccessMark;
  } else {
    outcome.status = kInputReadError;
    outcome.messages = "File position: line " + std::to_string(text.error_line) + "\n";
  }
  return outcome;
}

std::string compare(const Outcome& outcome, const Outcome& expected) {
  if (outcome.status != expected.status)
    return "expected was status " + std::to_string(expected.status);
  if (outcome.report != expected.report) return "another report than the plain engine's";
  if (outcome.masked != expected.masked) return "another masked copy than the plain engine's";
  if (expected.status == 0) return {};
  return outcome.messages.ends_with(expected.messages) ? ""
                                                       : "another line than the plain engine's";
}

/// Cuts `input` to each length that is a multiple of `step`: with 1 at every byte, and after the
/// last one.
void cut_everywhere(const std::string& mode, const std::string& input, std::size_t step,
                    CPointLog& log) {
  const CFaultFolder folder;
  const RunShape shape{mode, true, true};
  ASSERT_TRUE(apply_options({"-M", mode, "--maskX"}));
  const std::string head = head_of(run_program_once(folder, shape.plan()).report);
  for (std::size_t length = 0; length <= input.size(); length += step) {
    const std::string cut = input.substr(0, length);
    static_cast<void>(folder.file_of(kInputName, cut));
    const Outcome outcome = run_program_once(folder, shape.plan());
    log.add(shape.name() + ", cut to " + std::to_string(length) + " bytes", outcome,
            compare(outcome, plain_outcome(cut, head)));
  }
}

TEST_F(CutInput, is_searched_up_to_its_end) {
  CPointLog log("cut inputs");
  for (const std::string& mode : search_modes()) {
    const std::size_t step = fault_settings.is_brief ? 3 : mode == "imperfect" ? 1 : 5;
    cut_everywhere(mode, CFaultFolder::input(), step, log);
  }
  log.expect_no_findings(CFaultFolder::input().size() / 3);
}

// Line ends of all kinds, white space, names with odd bytes, and at the end a line that no cut
// makes right.
TEST_F(CutInput, has_the_error_of_what_is_left) {
  CPointLog log("cut inputs");
  const std::string input =
      "\n \t# one\r\n\r# two\r\n >name 100%s \xc3\xa9\r\nAC GT\r\n\r\nacgu-*N\r>\r\n"
      "RYKMSWBDHVX\n>x\rACACACACACACAC\r\r\n>last >one\nGTGTGTGTGTGT>\nACGT\n>never\nACGT\n";
  cut_everywhere("imperfect", input, 1, log);
  log.expect_no_findings(input.size());
}

/// What is wrong with the outcome of a run on compressed input that was cut.
std::string find_clean_end(const Outcome& outcome) {
  if (outcome.status != kInputReadError) return "expected was status 231";
  if (outcome.report.find(kSuccessMark) != std::string::npos) return "a mark of success";
  return outcome.messages.find("\nGzip member at offset ") == std::string::npos ? "no reason" : "";
}

TEST_F(CutInput, that_is_compressed_has_no_clean_end) {
  CPointLog log("cut compressed inputs");
  const CFaultFolder folder;
  const RunShape shape{"exact", true, true};
  const std::string half = CFaultFolder::input().substr(0, 300);
  const std::string input = gzip_member(half) + gzip_member(CFaultFolder::input().substr(300));
  const std::size_t boundary = gzip_member(half).size();
  for (std::size_t length = 2; length < input.size(); ++length) {
    if (length == boundary) continue;  // the end of the first member is one of a file as well
    static_cast<void>(folder.file_of(kInputName, input.substr(0, length)));
    const Outcome outcome = run_program_once(folder, shape.plan());
    log.add(shape.name() + ", cut to " + std::to_string(length) + " bytes", outcome,
            find_clean_end(outcome));
  }
  log.expect_no_findings(100);
}

}  // namespace
}  // namespace quorix::testing
