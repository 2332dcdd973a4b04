#pragma once

/// @file
/// Random reports: records with planted repeats, and options that vary all that a report obeys.

#include <cstdint>
#include <string>
#include <vector>

#include "support/random_options.h"
#include "support/record_runs.h"

namespace quorix::testing {

struct RandomReport {
  Options options;
  std::vector<NamedBases> records;
  std::string text;
};

/// Draws and writes a report; the settings are applied. Names have two words and differ in the
/// first.
RandomReport draw_report(std::uint64_t seed);

}  // namespace quorix::testing
