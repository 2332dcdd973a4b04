#include "faults/point_log.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace quorix::testing {

namespace {

constexpr std::size_t kMaxShown = 10;

struct Row {
  std::size_t point_count = 0;
  std::map<std::string, std::size_t> endings;
};

std::map<std::string, Row>& table() {
  static std::map<std::string, Row> rows;
  return rows;
}

std::string ending_of(const Outcome& outcome) {
  return outcome.signal != 0 ? "signal " + std::to_string(outcome.signal)
                             : "status " + std::to_string(outcome.status);
}

}  // namespace

void CPointLog::judge(const std::string& place, const Outcome& outcome, const Outcome& undisturbed,
                      const Expectation& expectation) {
  add(place, outcome, find_fault(outcome, undisturbed, expectation));
}

void CPointLog::add(const std::string& place, const Outcome& outcome, const std::string& fault) {
  ++point_count_;
  ++endings_[ending_of(outcome)];
  if (fault.empty()) return;
  findings_.push_back(place + ": " + fault + " (" + ending_of(outcome) + ")\n" +
                      outcome.messages.substr(outcome.messages.find("Search progress:") + 1));
}

void CPointLog::expect_no_findings(std::size_t least) const {
  Row& row = table()[kind_];
  row.point_count += point_count_;
  for (const auto& [ending, count] : endings_) row.endings[ending] += count;

  EXPECT_GE(point_count_, least) << kind_;
  for (std::size_t i = 0; i < findings_.size() && i < kMaxShown; ++i) {
    ADD_FAILURE() << kind_ << ", " << findings_[i];
  }
  EXPECT_EQ(findings_.size(), 0U) << "of " << point_count_ << " points of " << kind_;
}

std::size_t print_points() {
  std::size_t all = 0;
  for (const auto& [kind, row] : table()) {
    std::printf("%6zu points: %s (", row.point_count, kind.c_str());
    const char* before = "";
    for (const auto& [ending, count] : row.endings) {
      std::printf("%s%zu %s", before, count, ending.c_str());
      before = ", ";
    }
    std::printf(")\n");
    all += row.point_count;
  }
  std::printf("%6zu points in all\n", all);
  return all;
}

}  // namespace quorix::testing
