#pragma once

/// @file
/// The points at which runs met a fault: how many there were, what became of them, and what was
/// wrong.

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "faults/verdict.h"

namespace quorix::testing {

class CPointLog {
 public:
  /// `kind` names the kind of fault in the table of all points.
  explicit CPointLog(std::string kind) : kind_(std::move(kind)) {}

  /// Counts one point and keeps what is wrong with it; `place` says how to find it again.
  void judge(const std::string& place, const Outcome& outcome, const Outcome& undisturbed,
             const Expectation& expectation);

  /// The same where the caller has judged: `fault` is what is wrong, "" if nothing is.
  void add(const std::string& place, const Outcome& outcome, const std::string& fault);

  /// One text for each point that was not as it should be.
  [[nodiscard]] const std::vector<std::string>& findings() const { return findings_; }

  [[nodiscard]] std::size_t point_count() const { return point_count_; }

  /// Adds the points to the table of all, and has the test fail on findings and where there were
  /// fewer than `least` points.
  void expect_no_findings(std::size_t least) const;

 private:
  std::string kind_;
  std::size_t point_count_ = 0;
  std::map<std::string, std::size_t> endings_;  ///< "status 0" and its like, with how often
  std::vector<std::string> findings_;
};

/// Prints the table of all points so far and returns their number.
std::size_t print_points();

}  // namespace quorix::testing
