// Genomes consist of A, C, G, T and N, in either case, apart from a few other letters and the line
// ends. So letters are copied sixteen at a time in upper case, as two words, and the words are
// tested for any other letter. Only a group that has one is done again, by the table.

#include "sequence/base_letters.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace quorix {

namespace {

/// Bytes that are not listed stay `kNoLetter`.
constexpr std::array<char, 256> make_base_table() {
  std::array<char, 256> bases{};
  const auto set = [&bases](std::string_view letters, char base) {
    for (const char letter : letters) bases[static_cast<unsigned char>(letter)] = base;
  };
  set("Aa", 'A');
  set("Cc", 'C');
  set("Gg", 'G');
  set("TtUu", 'T');
  set("NnXxRrYyKkMmSsWwBbDdHhVv", 'N');
  set(" \t\n\v\f\r-*", kDroppedLetter);
  return bases;
}

constexpr std::array<char, 256> kBaseOf = make_base_table();

/// Letters that are tested together.
constexpr std::size_t kGroupSize = 16;
using LetterGroup = std::array<std::uint64_t, kGroupSize / sizeof(std::uint64_t)>;

/// Returns a word of eight times the same byte.
constexpr std::uint64_t word_of(std::uint8_t byte) {
  return 0x0101010101010101U * byte;
}

/// Returns a word in which a byte has its highest bit set exactly if that byte of `letters` is not
/// `letter`. The other bits are undefined. No byte can carry into the next.
constexpr std::uint64_t differences(std::uint64_t letters, char letter) {
  constexpr std::uint64_t kLowBits = word_of(0x7F);
  const std::uint64_t difference = letters ^ word_of(static_cast<std::uint8_t>(letter));
  return ((difference & kLowBits) + kLowBits) | difference;
}

/// Copies a group in upper case. Returns true if it has the letters of the five bases only;
/// otherwise the copy is worthless.
bool copy_common_group(const char* letters, char* bases) {
  constexpr std::uint64_t kHighestBits = word_of(0x80);
  constexpr std::uint64_t kUpperCase = word_of(0xDF);  // clears the bit of lower case
  LetterGroup group{};
  std::memcpy(group.data(), letters, kGroupSize);
  std::uint64_t others = 0;
  for (std::uint64_t& word : group) {
    word &= kUpperCase;
    others |= differences(word, 'A') & differences(word, 'C') & differences(word, 'G') &
              differences(word, 'T') & differences(word, 'N');
  }
  std::memcpy(bases, group.data(), kGroupSize);
  return (others & kHighestBits) == 0;
}

/// Does what `copy_bases` does, letter by letter.
std::size_t copy_by_table(const char* letters, std::size_t count, char* bases) {
  for (std::size_t i = 0; i < count; ++i) {
    const char base = kBaseOf[static_cast<unsigned char>(letters[i])];
    if (base == kDroppedLetter || base == kNoLetter) return i;
    bases[i] = base;
  }
  return count;
}

}  // namespace

char base_of(int byte) {
  return kBaseOf[static_cast<std::size_t>(byte)];
}

std::size_t copy_bases(const char* letters, std::size_t count, char* bases) {
  std::size_t done = 0;
  while (count - done >= kGroupSize) {
    if (!copy_common_group(letters + done, bases + done)) {
      const std::size_t copied = copy_by_table(letters + done, kGroupSize, bases + done);
      if (copied < kGroupSize) return done + copied;
    }
    done += kGroupSize;
  }
  if (done == count) return count;
  if (done == 0) return copy_by_table(letters, count, bases);
  // The last group ends with the last letter, so it overlaps the one before.
  const std::size_t last = count - kGroupSize;
  if (copy_common_group(letters + last, bases + last)) return count;
  return last + copy_by_table(letters + last, kGroupSize, bases + last);
}

}  // namespace quorix
