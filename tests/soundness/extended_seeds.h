#pragma once

/// @file
/// What each seed reaches, without any filter, cache or stored path.

#include <cstdint>
#include <vector>

#include "soundness/attack_case.h"

namespace quorix::testing {

/// Score and normalized length in bp of a repeat, and where it lies in the text, half-open.
struct Reach {
  std::int64_t score;
  std::int64_t normalized_length;
  std::uint64_t start;
  std::uint64_t end;
};

/// A seed of one unit length, and what it reaches by each kind of extension.
struct ExtendedSeed {
  std::uint64_t start;    ///< 0-based
  Reach exact;            ///< over matches alone
  Reach edited;           ///< over edits, from the unit
  Reach edited_from_run;  ///< over edits, from where exact extension has ended
};

/// All valid seeds of `unit_length` in the case's stretch, in ascending order.
std::vector<ExtendedSeed> extend_all_seeds(const AttackCase& attack, std::uint64_t unit_length);

}  // namespace quorix::testing
