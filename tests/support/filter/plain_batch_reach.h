#pragma once

/// @file
/// The slow twin of search/filter/batch_bound.h: what neighbouring seeds can reach, each followed
/// over all of its own paths.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "search/filter/batch_bound.h"
#include "support/filter/plain_score_paths.h"

namespace quorix::testing {

inline constexpr std::int64_t kSeeds = kBatchSeeds;
/// The difference of bases and characters that the tables have room for, less some.
inline constexpr std::int64_t kSureDifference = 155;

/// The bit of seed `k`.
inline std::uint32_t seed_bit(std::int64_t k) {
  return std::uint32_t{1} << k;
}

/// Seeds at neighbouring bases, and what they are asked with.
struct Batch {
  std::string text;
  std::int64_t first;
  std::int64_t unit_length;
  ScoringRules scoring;

  [[nodiscard]] std::int64_t text_length() const { return static_cast<std::int64_t>(text.size()); }

  [[nodiscard]] PlainRepeat seed(std::int64_t k) const {
    const std::int64_t begin = first + k;
    const std::int64_t end = begin + unit_length;
    return {text, begin, end, begin, end, 0, unit_length - 1, 0, scoring};
  }

  /// The seeds whose units lie in the text and hold no N's.
  [[nodiscard]] std::uint32_t units_without_Ns() const {
    std::uint32_t seeds = 0;
    for (std::int64_t k = 0; k < kSeeds && first + k + unit_length <= text_length(); ++k) {
      const std::size_t N_at = text.find('N', static_cast<std::size_t>(first + k));
      if (N_at >= static_cast<std::size_t>(first + k + unit_length)) seeds |= seed_bit(k);
    }
    return seeds;
  }
};

/// What each seed can reach, nothing if paths were cut off.
using BatchReach = std::array<std::optional<Outcome>, kSeeds>;

/// Returns what each of `seeds` can reach. REQUIRES: their units lie in the text and hold no N's.
inline BatchReach reach_of(const Batch& batch, std::uint32_t seeds) {
  BatchReach reaches;
  for (std::int64_t k = 0; k < kSeeds; ++k) {
    if ((seeds & seed_bit(k)) == 0) continue;
    const Outcome outcome = follow_all_paths(batch.seed(k));
    if (outcome.is_complete) reaches[static_cast<std::size_t>(k)] = outcome;
  }
  return reaches;
}

/// True if no path of the seeds comes near the ends of the text or of the tables. Those that live
/// longest set the range of all.
inline bool is_in_reach_of_bound(const Batch& batch, std::uint32_t asked,
                                 const BatchReach& reaches) {
  std::int64_t farthest = 0;
  std::int64_t widest = 0;
  for (std::int64_t k = 0; k < kSeeds; ++k) {
    if ((asked & seed_bit(k)) == 0) continue;
    const std::optional<Outcome>& reach = reaches[static_cast<std::size_t>(k)];
    if (!reach) return false;
    farthest = std::max(farthest, reach->farthest_base);
    widest = std::max(widest, reach->widest);
  }
  const std::int64_t margin = farthest + widest / 2 + 4;
  return widest <= kSureDifference && batch.first > margin &&
         batch.first + batch.unit_length + kSeeds + margin < batch.text_length();
}

}  // namespace quorix::testing
