#pragma once

/// @file
/// The verdict of a bound on one seed, held against the best score of all paths of the seed.

#include <gtest/gtest.h>

#include <cstdint>

namespace quorix::testing {

/// Counts verdicts, so that a test can show that it met enough of each.
struct VerdictTally {
  std::int64_t undecided = 0;
  std::int64_t rejected = 0;
  std::int64_t had_to_be_rejected = 0;
  std::int64_t with_16_bits = 0;  ///< rejected with scores that do not fit 8 bits
};

/// A seed and the score asked for.
struct JudgedSeed {
  std::int64_t unit_length;
  std::int64_t best_score;  ///< of all paths
  std::int64_t min_score;
  bool is_exact;  ///< nothing hinders the bound from being exact
};

/// Expects a bound to reject no seed that has a path of `min_score`, and, where it can be exact,
/// all others. `describe` returns a text for failures.
template <class Describe>
void expect_verdict(bool is_undecided, const JudgedSeed& seed, VerdictTally& tally,
                    const Describe& describe) {
  const bool must_be_rejected = seed.is_exact && seed.best_score < seed.min_score;
  ASSERT_TRUE(is_undecided || seed.best_score < seed.min_score) << describe();
  ASSERT_FALSE(is_undecided && must_be_rejected) << describe();
  ++(is_undecided ? tally.undecided : tally.rejected);
  if (must_be_rejected) ++tally.had_to_be_rejected;
  if (!is_undecided && seed.unit_length + seed.min_score >= 256) ++tally.with_16_bits;
}

}  // namespace quorix::testing
