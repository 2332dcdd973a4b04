#pragma once

/// @file
/// What a report has to say of the planted repeats.

#include <cstdint>
#include <string>
#include <vector>

#include "load/planted_bases.h"

namespace quorix::load {

/// A repeat in the extended format, with the alignment below.
struct ExpectedRepeat {
  std::uint64_t start;  ///< from 0
  std::string information;
  std::string missense;
  std::string bases;
};

/// By position. Where only exact repeats are searched, a diverged one is
/// expected as its exact parts.
[[nodiscard]] std::vector<ExpectedRepeat> expected_repeats(
    const std::vector<PlantedRepeat>& planted, bool is_exact_search);

}  // namespace quorix::load
