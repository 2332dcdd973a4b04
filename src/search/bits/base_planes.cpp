// In ASCII two bits distinguish A, C, T and G, and a third marks N. A word of a plane has one of
// these bits of each of 64 letters:
//
//     letter      A     C     T     G     N
//     bit 1       0     1     0     1     1        low plane
//     bit 2       0     0     1     1     1        high plane
//     bit 3       0     0     0     0     1        plane of N's
//
// Matches at a lag are the planes compared with themselves, moved up by the lag. A moved word has
// bits of two words:
//
//     word w - whole - 1         word w - whole
//     [ ......... upper part ]   [ lower part ......... ]
//                    \_____________/
//                         word w
//
// Words below the first one that the lag leaves are 0, and the bits below the lag are cleared in
// it. Words are read up to the last one of the text, never the spare one, and bits after the text
// are cleared again, since two clear bits there would count as a match.

#include "search/bits/base_planes.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <vector>

#include "search/bits/byte_bits.h"

namespace quorix {

namespace {

using Words = std::vector<std::uint64_t>;

/// Bits of 64 bases: A, C, T and G differ in bits 1 and 2 of their letters, and only N has bit 3.
struct PlaneWords {
  std::uint64_t low = 0;
  std::uint64_t high = 0;
  std::uint64_t is_N = 0;
};

PlaneWords read_word(const char* bases) {
  PlaneWords word;
  for (unsigned i = 0; i < kWordBits; i += 8) {
    const std::uint64_t bytes = load_eight(bases + i);
    word.low |= gather_lowest_bits(bytes >> 1U) << i;
    word.high |= gather_lowest_bits(bytes >> 2U) << i;
    word.is_N |= gather_lowest_bits(bytes >> 3U) << i;
  }
  return word;
}

/// A plane moved up by a lag, see above.
struct Lag {
  std::size_t whole;  ///< words
  unsigned part;      ///< bits, 0 to 63

  [[nodiscard]] std::uint64_t first_word(const Words& plane) const { return plane[0] << part; }

  /// REQUIRES: w > whole.
  [[nodiscard]] std::uint64_t word(const Words& plane, std::size_t w) const {
    // Two steps, since a shift by all 64 bits is not defined.
    const std::uint64_t lower = plane[w - whole - 1] >> 1U >> (kWordBits - 1 - part);
    return plane[w - whole] << part | lower;
  }
};

}  // namespace

CBasePlanes::CBasePlanes(const char* bases, std::uint64_t length)
    : low_bits_(length), high_bits_(length), bits_of_Ns_(length) {
  std::uint64_t any_N = 0;
  const auto store = [&](std::size_t w, const PlaneWords& word) {
    low_bits_.words()[w] = word.low;
    high_bits_.words()[w] = word.high;
    bits_of_Ns_.words()[w] = word.is_N;
    any_N |= word.is_N;
  };
  const std::uint64_t whole_words = length / kWordBits;
  for (std::uint64_t w = 0; w < whole_words; ++w) store(w, read_word(bases + w * kWordBits));
  char rest[kWordBits] = {};
  std::copy(bases + whole_words * kWordBits, bases + length, rest);
  store(whole_words, read_word(rest));
  has_Ns_ = any_N != 0;
}

bool CBasePlanes::has_N_near(std::uint64_t first, std::uint64_t last) const {
  if (!has_Ns_) return false;
  const Words& words = bits_of_Ns_.words();
  const std::uint64_t first_word = first / kWordBits == 0 ? 0 : first / kWordBits - 1;
  const std::uint64_t last_word = std::min<std::uint64_t>(last / kWordBits + 1, words.size() - 1);
  for (std::uint64_t w = first_word; w <= last_word; ++w) {
    if (words[w] != 0) return true;
  }
  return false;
}

void CBasePlanes::find_matches(std::uint64_t lag, bool is_N_wild, CBitSet& matches) const {
  assert(lag >= 1);
  matches.reset(length());
  if (lag >= length()) return;
  const Words& low = low_bits_.words();
  const Words& high = high_bits_.words();
  const Words& is_N = bits_of_Ns_.words();
  Words& result = matches.words();

  const Lag shift{lag / kWordBits, static_cast<unsigned>(lag % kWordBits)};
  const std::size_t first = shift.whole;
  const std::size_t end = length() / kWordBits + 1;
  const auto combine = [&](std::size_t w, const auto& moved) {
    const std::uint64_t differs = (low[w] ^ moved(low)) | (high[w] ^ moved(high));
    if (!has_Ns_) return ~differs;
    const std::uint64_t either_N = is_N[w] | moved(is_N);
    return is_N_wild ? ~differs | either_N : ~(differs | either_N);
  };
  result[first] = combine(first, [&](const Words& plane) { return shift.first_word(plane); });
  for (std::size_t w = first + 1; w < end; ++w) {
    result[w] = combine(w, [&](const Words& plane) { return shift.word(plane, w); });
  }
  result[first] &= ~std::uint64_t{0} << shift.part;
  result[end - 1] &= ~(~std::uint64_t{0} << (length() % kWordBits));
}

}  // namespace quorix
