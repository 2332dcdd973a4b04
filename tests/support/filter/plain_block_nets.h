#pragma once

/// @file
/// The slow twin of search/filter/block_nets.h: one pair of a base and a character after the other.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "search/filter/block_nets.h"

namespace quorix::testing {

/// The nets of one block of a text to one side, for lags up to `kMaxLag`.
class CPlainBlock {
 public:
  static constexpr std::int64_t kMaxLag = 2200;

  CPlainBlock(const std::string& text, const ScoringRules& scoring, BlockSide side,
              std::int64_t block)
      : text_(text), scoring_(scoring), is_right_(side == BlockSide::kRight), block_(block) {
    for (const bool ends_inside : {false, true}) fill(ends_inside);
  }

  /// The highest net over the rows of these lags, of the first character.
  [[nodiscard]] std::int64_t highest(BlockPath path, std::int64_t low, std::int64_t high) const {
    const bool begins_inside = path == BlockPath::kOutOf || path == BlockPath::kWithin;
    const bool ends_inside = path == BlockPath::kInto || path == BlockPath::kWithin;
    std::int64_t best = CBlockNets::kMinNet;
    for (std::int64_t lag = low; lag <= high; ++lag) {
      for (std::int64_t k = 0; k < (begins_inside ? kBlockCharacters : 1); ++k) {
        best = std::max(best, net(k, lag - k, ends_inside));
      }
    }
    return best;
  }

 private:
  /// Bases that are compared, in steps from the first character.
  static constexpr std::int64_t kFirstBase = -kBlockCharacters;
  static constexpr std::int64_t kLastBase = kMaxLag + 200;

  /// The letter `steps` on from the first character of the block; NUL beyond the text.
  [[nodiscard]] char letter(std::int64_t steps) const {
    const std::int64_t first = kBlockCharacters * block_;
    const std::int64_t at = is_right_ ? first + steps : first + kBlockCharacters - 1 - steps;
    return 0 <= at && at < static_cast<std::int64_t>(text_.size())
               ? text_[static_cast<std::size_t>(at)]
               : '\0';
  }

  [[nodiscard]] std::int64_t points(char base, char character) const {
    if (base == 'N' && scoring_.is_N_neutral) return 0;
    return base != '\0' && base == character ? 1 : -scoring_.mismatch_penalty;
  }

  [[nodiscard]] std::size_t place(std::int64_t k, std::int64_t base) const {
    return static_cast<std::size_t>((base - kFirstBase) * (kBlockCharacters + 1) + k);
  }
  [[nodiscard]] std::int64_t net(std::int64_t k, std::int64_t base, bool ends_inside) const {
    return nets_[ends_inside ? 1 : 0][place(k, base)];
  }

  void fill(bool ends_inside) {
    std::vector<std::int64_t>& nets = nets_[ends_inside ? 1 : 0];
    nets.assign(place(0, kLastBase + 2), CBlockNets::kMinNet);
    const std::int64_t lowest = ends_inside ? 0 : CBlockNets::kMinNet;
    for (std::int64_t base = kLastBase + 1; base >= kFirstBase; --base) {
      nets[place(kBlockCharacters, base)] = 0;
      if (base > kLastBase) continue;
      for (std::int64_t k = kBlockCharacters - 1; k >= 0; --k) {
        nets[place(k, base)] =
            std::max({lowest, net(k + 1, base + 1, ends_inside) + points(letter(base), letter(k)),
                      net(k, base + 1, ends_inside) - scoring_.indel_penalty,
                      net(k + 1, base, ends_inside) - scoring_.indel_penalty});
      }
    }
  }

  const std::string& text_;
  ScoringRules scoring_;
  bool is_right_;
  std::int64_t block_;
  std::array<std::vector<std::int64_t>, 2> nets_;  ///< of paths that leave, and that end anywhere
};

}  // namespace quorix::testing
