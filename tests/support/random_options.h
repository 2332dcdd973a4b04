#pragma once

/// @file
/// Command lines as test inputs: what a case ran with is what its failure prints.

#include <string>
#include <vector>

#include "support/random_dna.h"

namespace quorix::testing {

using Options = std::vector<std::string>;

/// Options as one line of text.
std::string joined(const Options& options);

/// Reads the options into the settings, as the program does, and forgets the threshold tables of
/// the settings before. False if they are refused.
[[nodiscard]] bool apply_options(const Options& options);

/// Options that vary everything that a search or a report obeys, valid ones only, and applied. With
/// `may_be_unlimited` the recursion may have no limit, which short records alone can bear.
Options draw_options(RandomEngine& engine, bool may_be_unlimited);

/// The same for units of up to 60 bases, with penalties and depths that records of some hundred
/// bases can bear.
Options draw_long_unit_options(RandomEngine& engine);

}  // namespace quorix::testing
