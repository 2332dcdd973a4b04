// One bit is one seed. A vector holds the seeds at up to 512 neighbouring bases, and bit i of a
// plane at offset o is what base i + o has:
//
//     bit i               0   1   2   3 ...            seed at base p + i
//     low plane, o = 0    a0  a1  a2  a3               first character of each unit
//     low plane, o = L    aL  .   .   .                first base after each unit
//     equal               1   0   1   1                character and base agree
//     here                1   1   0   1                seeds whose chain is in this state
//
// Invariant of `follow`: when state s is at b bases, `here` has every seed with a chain of these
// counts of edits and bases that is still alive. It gets the seeds of all states with one edit less
// (`at_sites_`, which are complete, since these states stand before s) and those that matched the
// base before. A seed leaves `here` only at a base that differs; there it is put into `at_sites_`
// of s.
//
// What is skipped, and why that is sound:
//
// - Bases before `min_bases`: that many the edits have read.
// - Bases from `end_bases` on: a chain that gets there is undecided already.
// - Blocks without a seed: bits are only cleared.
// - The plane of N's where no word of the block has one: it would change no bit of `equal`.
//
// Seeds of the words at the borders of the segment are sifted with the others and put back.
//
// Without chains, where lags serve instead, the default search of phage lambda takes 0.5 % more
// instructions.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "search/filter/chain_sieve.cpp"
#include <hwy/foreach_target.h>  // compiles the rest of this file once for each kind of processor

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include <hwy/highway.h>

#include "search/filter/chain_sieve.h"
#include "search/filter/chain_states.h"

HWY_BEFORE_NAMESPACE();
namespace quorix::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

/// The seeds at the bases of as many words as a vector has lanes.
template <bool kHasNs>
class CChainBlock {
 public:
  using Tag = hn::CappedTag<std::uint64_t, kMaxChainWords>;
  using Vector = hn::Vec<Tag>;

  // Large tables, written before they are read.
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init)
  explicit CChainBlock(const ChainStates& states)
      : states_(states), unit_length_(states.unit_length), max_bases_(states.max_bases) {
    // Entries that `follow` never writes stay empty.
    for (std::size_t s = 0; s < states.followed_count; ++s) {
      for (std::ptrdiff_t bases = 0; bases <= max_bases_; ++bases) {
        hn::Store(hn::Zero(Tag()), Tag(), at_sites_[s][bases]);
      }
    }
  }

  /// The bits of the seeds that may live, of those at the bases of `window`.
  Vector sift(const ChainWindow& window) {
    shift_planes(window);
    for (std::ptrdiff_t score = 0; score <= max_bases_; ++score) {
      hn::Store(hn::Zero(Tag()), Tag(), at_least_[score]);
    }
    const Vector undecided = follow<true>();
    // A chain gains one point at a time, so `at_least_` has each seed at all scores up to its best.
    return hn::Or(undecided, follow<false>());
  }

 private:
  using Words = std::uint64_t[kMaxChainWords];

  /// Moves the planes: those at offset o have the bases o after those of the seeds.
  void shift_planes(const ChainWindow& window) {
    const Tag d;
    const auto shift = [&](const std::uint64_t* words, std::ptrdiff_t offset) {
      const std::ptrdiff_t bit = offset + 64;  // the words begin one before the seeds
      const std::uint64_t* const from = words + bit / 64;
      const auto part = static_cast<int>(bit % 64);
      const Vector upper = hn::ShiftLeftSame(hn::LoadU(d, from + 1), 63 - part);
      return hn::Or(hn::ShiftRightSame(hn::LoadU(d, from), part), hn::ShiftLeft<1>(upper));
    };
    for (std::ptrdiff_t offset = -max_bases_; offset < unit_length_ + max_bases_; ++offset) {
      const std::ptrdiff_t i = offset + kMaxChainBases;
      hn::Store(shift(window.low, offset), d, low_[i]);
      hn::Store(shift(window.high, offset), d, high_[i]);
      if constexpr (kHasNs) hn::Store(shift(window.is_N, offset), d, is_N_[i]);
    }
  }

  /// Where the base `bases` after the first one read equals its unit character.
  template <bool kIsRightward>
  [[nodiscard]] Vector equal_bases(std::ptrdiff_t bases, std::ptrdiff_t character) const {
    const Tag d;
    const std::ptrdiff_t at = kMaxChainBases + (kIsRightward ? unit_length_ + bases : -1 - bases);
    const std::ptrdiff_t unit_at =
        kMaxChainBases + (kIsRightward ? character : unit_length_ - 1 - character);
    const Vector differs = hn::Or(hn::Xor(hn::Load(d, low_[at]), hn::Load(d, low_[unit_at])),
                                  hn::Xor(hn::Load(d, high_[at]), hn::Load(d, high_[unit_at])));
    if constexpr (kHasNs) {
      const Vector is_N = hn::Load(d, is_N_[at]);
      if (states_.is_N_neutral) return hn::Or(is_N, hn::Not(differs));
      return hn::Not(hn::Or(is_N, differs));
    }
    return hn::Not(differs);
  }

  template <bool kIsRightward>
  void compare_bases() {
    for (std::ptrdiff_t diagonal = -states_.max_edits; diagonal <= states_.max_edits; ++diagonal) {
      std::ptrdiff_t bases = std::max<std::ptrdiff_t>(diagonal, 0);
      std::ptrdiff_t character = (bases - diagonal) % unit_length_;
      for (; bases < max_bases_; ++bases) {
        hn::Store(equal_bases<kIsRightward>(bases, character), Tag(),
                  equal_[diagonal + kMaxChainEdits][bases]);
        if (++character == unit_length_) character = 0;
      }
    }
  }

  /// `bits` of the seeds whose score on entry makes up for `missing` matches.
  template <bool kIsRightward>
  [[nodiscard]] Vector of_score(Vector bits, std::ptrdiff_t missing) const {
    if (missing <= 0) return bits;
    if (kIsRightward || missing > max_bases_) return hn::Zero(Tag());
    return hn::And(bits, hn::Load(Tag(), at_least_[missing]));
  }

  /// The seeds that an edit brings to a state after `bases` bases.
  [[nodiscard]] Vector arrivals(const ChainState& state, std::ptrdiff_t bases) const {
    const Tag d;
    Vector arrived = hn::Zero(d);
    if (bases > 0 && state.before_mismatch >= 0) {
      arrived = hn::Or(arrived, hn::Load(d, at_sites_[state.before_mismatch][bases - 1]));
    }
    if (bases > 0 && state.before_insertion >= 0) {
      arrived = hn::Or(arrived, hn::Load(d, at_sites_[state.before_insertion][bases - 1]));
    }
    if (state.before_deletion >= 0) {
      arrived = hn::Or(arrived, hn::Load(d, at_sites_[state.before_deletion][bases]));
    }
    return arrived;
  }

  /// Follows all chains in one direction. Returns the seeds that may live beyond them.
  template <bool kIsRightward>
  Vector follow() {
    const Tag d;
    compare_bases<kIsRightward>();
    Vector undecided = hn::Zero(d);
    for (std::size_t s = 0; s < states_.count; ++s) {
      const ChainState& state = states_.states[s];
      const auto& equal = equal_[state.diagonal + kMaxChainEdits];
      Vector here = s == 0 ? hn::Not(hn::Zero(d)) : hn::Zero(d);
      std::ptrdiff_t bases = state.min_bases;
      for (; bases < state.end_bases; ++bases) {
        const std::ptrdiff_t matches = bases - state.min_bases;
        const Vector arrived = arrivals(state, bases);
        here = hn::Or(here, of_score<kIsRightward>(arrived, state.min_matches - matches));
        const std::ptrdiff_t score = matches - state.cost;
        if constexpr (kIsRightward) {
          if (score > 0) {
            hn::Store(hn::Or(here, hn::Load(d, at_least_[score])), d, at_least_[score]);
          }
        } else {
          undecided = hn::Or(undecided, of_score<false>(here, state.undecided_matches - matches));
        }
        const Vector is_equal = hn::Load(d, equal[bases]);
        if (state.is_followed) hn::Store(hn::AndNot(is_equal, here), d, at_sites_[s][bases]);
        here = hn::And(here, is_equal);
      }
      here = hn::Or(here,
                    of_score<kIsRightward>(arrivals(state, bases),
                                           state.min_matches - state.end_bases + state.min_bases));
      undecided = hn::Or(undecided, here);
    }
    return undecided;
  }

  const ChainStates& states_;
  std::ptrdiff_t unit_length_;
  std::ptrdiff_t max_bases_;
  HWY_ALIGN Words low_[3 * kMaxChainBases];
  HWY_ALIGN Words high_[3 * kMaxChainBases];
  HWY_ALIGN Words is_N_[3 * kMaxChainBases];
  HWY_ALIGN Words equal_[2 * kMaxChainEdits + 1][kMaxChainBases];
  HWY_ALIGN Words at_sites_[kMaxFollowedStates][kMaxChainBases + 1];
  HWY_ALIGN Words at_least_[kMaxChainBases + 1];  ///< seeds with that rightward score or more
};

/// Copies the words from `first` - 1 on; those outside the text are 0.
void copy_window(const std::uint64_t* words, std::size_t word_count, std::size_t first,
                 std::uint64_t* window) {
  for (std::size_t i = 0; i < ChainWindow::kWords; ++i) {
    const std::size_t w = first + i;
    window[i] = w >= 1 && w <= word_count ? words[w - 1] : 0;
  }
}

bool has_any(const std::uint64_t* words, std::size_t count) {
  return std::any_of(words, words + count, [](std::uint64_t word) { return word != 0; });
}

/// The seeds of the words [first_word, word_end).
void sift_words(const ChainPlanes& planes, const ChainStates& states, std::uint64_t* seeds,
                std::size_t first_word, std::size_t word_end) {
  const CChainBlock<false>::Tag d;
  const std::size_t lanes = hn::Lanes(d);
  CChainBlock<false> block(states);
  CChainBlock<true> block_with_Ns(states);
  ChainWindow window{};
  HWY_ALIGN std::uint64_t undecided[kMaxChainWords];
  for (std::size_t w = first_word; w < word_end; w += lanes) {
    const std::size_t count = std::min(lanes, word_end - w);
    if (!has_any(seeds + w, count)) continue;
    copy_window(planes.low, planes.word_count, w, window.low);
    copy_window(planes.high, planes.word_count, w, window.high);
    bool is_N_near = false;
    if (planes.is_N != nullptr) {
      copy_window(planes.is_N, planes.word_count, w, window.is_N);
      is_N_near = has_any(window.is_N, ChainWindow::kWords);
    }
    hn::Store(is_N_near ? block_with_Ns.sift(window) : block.sift(window), d, undecided);
    for (std::size_t i = 0; i < count; ++i) seeds[w + i] &= undecided[i];
  }
}

}  // namespace
}  // namespace quorix::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace quorix {

namespace {

HWY_EXPORT(sift_words);

}  // namespace

void sift_by_chains(const CBasePlanes& planes, const ChainRule& rule, const Segment& segment,
                    CBitSet& seeds) {
  const std::uint64_t seed_end = std::min(segment.end, seeds.size());
  if (segment.first >= seed_end) return;
  const ChainStates states(rule);
  const std::vector<std::uint64_t>& is_N = planes.bits_of_Ns().words();
  const ChainPlanes words{planes.low_bits().words().data(), planes.high_bits().words().data(),
                          planes.has_Ns() ? is_N.data() : nullptr, is_N.size()};
  // Whole words are sifted; what belongs to other segments is put back.
  const std::size_t first_word = segment.first / kWordBits;
  const std::size_t last_word = (seed_end - 1) / kWordBits;
  std::uint64_t* const bits = seeds.words().data();
  const std::uint64_t before =
      bits[first_word] & ~(~std::uint64_t{0} << (segment.first % kWordBits));
  const std::uint64_t from_end =
      ~(~std::uint64_t{0} >> (kWordBits - 1 - (seed_end - 1) % kWordBits));
  const std::uint64_t after = bits[last_word] & from_end;
  HWY_DYNAMIC_DISPATCH(sift_words)(words, states, bits, first_word, last_word + 1);
  bits[first_word] |= before;
  bits[last_word] |= after;
}

}  // namespace quorix

#endif
