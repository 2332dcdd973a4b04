#pragma once

/// @file
/// The attack on the extension cache: a cached extension must be that of a fresh search.

#include <cstdint>
#include <string>
#include <vector>

#include "soundness/attack_case.h"

namespace quorix::testing {

/// How much was compared.
struct CachedExtensionWork {
  std::uint64_t extensions = 0;
  std::uint64_t edits_found = 0;  ///< in the cache
};

/// Extends all valid seeds of each of the unit lengths in the case's stretch, in ascending order,
/// once by a search that caches edits and paths of all of them and once by one that does not. Adds
/// to `work`. Returns nothing, or the first difference with the record and options that show it.
std::string compare_cached_extensions(const AttackCase& attack,
                                      const std::vector<std::uint64_t>& unit_lengths,
                                      CachedExtensionWork& work);

}  // namespace quorix::testing
