#pragma once

/// @file
/// The counts of edits that chains are followed through, and what they mean for one unit length.

#include <array>
#include <cstddef>
#include <cstdint>

#include "search/filter/chain_sieve.h"

namespace quorix {

/// Bases of a chain: whatever is longer is undecided.
inline constexpr std::ptrdiff_t kMaxChainBases = 40;
/// States with up to four edits, and with up to three, which are followed on.
inline constexpr std::size_t kMaxChainStates = 35;
inline constexpr std::size_t kMaxFollowedStates = 20;
static_assert(kMaxChainEdits == 4);
/// 64-bit words of neighbouring seeds in the widest vector.
inline constexpr std::size_t kMaxChainWords = 8;

/// Chains with the same counts of mismatches, insertions and deletions. After b bases they have
/// made b - min_bases matches.
struct ChainState {
  std::ptrdiff_t diagonal;           ///< insertions less deletions
  std::ptrdiff_t cost;               ///< of the edits, in points
  std::ptrdiff_t min_bases;          ///< mismatches and insertions
  std::ptrdiff_t min_matches;        ///< that a chain needs to come here, with score 0 on entry
  std::ptrdiff_t undecided_matches;  ///< with so many, and score 0 on entry, it is undecided
  /// A chain of so many bases is undecided: `min_bases` + `undecided_matches`, between
  /// `min_bases` and `kMaxChainBases`. A state that an edit leads to has no smaller one, and no
  /// smaller `undecided_matches`.
  std::ptrdiff_t end_bases;
  bool is_followed;  ///< another edit leads to a state
  /// States with one edit of the kind less, -1 if there is none.
  std::ptrdiff_t before_mismatch;
  std::ptrdiff_t before_insertion;
  std::ptrdiff_t before_deletion;
};

/// The states for one rule, by ascending number of edits; that without edits is the first.
struct ChainStates {
  /// REQUIRES: 1 <= rule.edits <= kMaxChainEdits, rule.unit_length <= kMaxChainUnit.
  explicit ChainStates(const ChainRule& rule);

  std::ptrdiff_t unit_length;
  std::ptrdiff_t max_edits;
  std::ptrdiff_t max_bases = 0;  ///< of a chain that is not undecided yet
  bool is_N_neutral;
  std::size_t count = 0;
  std::size_t followed_count = 0;
  std::array<ChainState, kMaxChainStates> states;
};

/// The planes of a text.
struct ChainPlanes {
  const std::uint64_t* low;
  const std::uint64_t* high;
  const std::uint64_t* is_N;  ///< null if there are none
  std::size_t word_count;
};

/// The bases that the chains of a vector of seeds may read: the words of the planes from the one
/// before the first seed on.
struct ChainWindow {
  static constexpr std::size_t kWords = kMaxChainWords + 4;
  std::uint64_t low[kWords];
  std::uint64_t high[kWords];
  std::uint64_t is_N[kWords];
};

}  // namespace quorix
