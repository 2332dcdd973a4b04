#pragma once

/// @file
/// The attack on the extension cache: a cached extension must be that of a fresh search.

#include <cstdint>
#include <string>

#include "soundness/attack_case.h"

namespace quorix::testing {

/// Extends all valid seeds of `unit_length` in the case's stretch, in ascending order, once by a
/// search that caches edits and paths and once by one that does not. Adds the number of seeds to
/// `compared`. Returns nothing, or the first difference with the record and options that show it.
std::string compare_cached_extensions(const AttackCase& attack, std::uint64_t unit_length,
                                      std::uint64_t& compared);

}  // namespace quorix::testing
