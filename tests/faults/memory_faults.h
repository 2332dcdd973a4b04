#pragma once

/// @file
/// How a test tells the library of failing allocations which of them fail, and how the library
/// tells what became of it: one page of a file that both have mapped.

#include <cstdint>

namespace quorix::testing {

/// The variable of the environment that names the file.
constexpr const char* kMemoryFaultsVariable = "QUORIX_MEMORY_FAULTS";

struct MemoryFaults {
  std::uint64_t first_failing;  ///< the allocation that fails, counted from 1; 0 for none
  std::uint64_t is_lasting;     ///< 1 if all later ones fail too
  std::uint64_t call_count;     ///< allocations so far
  std::uint64_t failed_count;   ///< failed ones so far
};

}  // namespace quorix::testing
