#pragma once

/// @file
/// One case of the attack on the filters: a text with an array whose extension hugs the floor, the
/// rules of scoring, the seeds that are looked at, and the kind of processor.

#include <cstdint>
#include <string>
#include <vector>

namespace quorix::testing {

struct AttackCase {
  std::string text;
  std::uint64_t unit_length;  ///< of the array
  /// Seeds are looked at from base `first_seed` up to, but not including, `seed_end`, 0-based.
  std::uint64_t first_seed;
  std::uint64_t seed_end;
  std::int64_t target;  ///< of the vector code, see support/filter/vector_targets.h

  /// The rules of scoring as a command line has them.
  [[nodiscard]] std::string option_text() const;
};

/// Draws a case, writes its rules into the settings, and makes the vector code choose the
/// instructions of one of `targets`. With one compiler the same seed gives the same case on every
/// processor, but for that choice.
AttackCase draw_attack_case(std::uint64_t seed, const std::vector<std::int64_t>& targets);

}  // namespace quorix::testing
