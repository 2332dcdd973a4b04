#pragma once

/// @file
/// Summaries as MultiQC shows them: one table, a row a sample.

#include <string>
#include <string_view>

#include "tools/io/output.h"
#include "tools/summary/summary.h"

namespace quorix::tools {

/// Writes a file of "custom content", which MultiQC finds by a name that ends in "_mqc.json".
class CMultiqcWriter {
 public:
  /// Writes what comes before the samples.
  explicit CMultiqcWriter(COutput& output);

  /// Writes a sample, whose name no other one has. Throws: InputError if that is not UTF-8.
  void add_sample(std::string_view name, const CSummary& summary);

  /// Writes what comes after the samples.
  void end();

 private:
  COutput& output_;
  bool has_sample_ = false;
};

}  // namespace quorix::tools
