#pragma once

/// @file
/// Whole runs of the program over ranges of records, and of quorix-tools on what they write.

#include <string>
#include <vector>

#include "tools/tool_run.h"

namespace quorix::testing {

/// Runs in folders of their own, all with the same names: "in.fa", its masked copy, and "report".
class CRangeRuns {
 public:
  /// The runs search this FASTA text with these options.
  CRangeRuns(const std::string& fasta, std::vector<std::string> options);

  /// Runs the program in a new folder with further options, such as a range. Fails the test unless
  /// it succeeds.
  void run(const std::string& name, const std::vector<std::string>& range = {}) const;

  /// Runs quorix-tools in a folder beside those of the runs.
  [[nodiscard]] ProcessResult run_tool(const std::vector<std::string>& arguments) const;

  /// Returns the report and the masked copy of a run, by names that hold where `run_tool` runs.
  static std::string report_of(const std::string& name) { return "../" + name + "/report"; }
  static std::string masked_of(const std::string& name) { return "../" + name + "/in.fa.masked"; }

  /// Returns the text of a file by such a name.
  [[nodiscard]] std::string read(const std::string& name) const {
    return folder_.read("tools/" + name);
  }

  /// Writes a file into the folder in which `run_tool` runs.
  void write(const std::string& name, const std::string& text) const {
    static_cast<void>(folder_.write("tools/" + name, text));
  }

  /// The files of that folder.
  [[nodiscard]] std::vector<std::string> files() const;

 private:
  CToolFolder folder_;
  std::vector<std::string> options_;
};

}  // namespace quorix::testing
