#pragma once

/// @file
/// Common parts of the input generators: bases from a seed, and FASTA on standard output. The same
/// seed produces the same bytes everywhere: of <random> only the engine is used, which the standard
/// defines exactly, and not the distributions.

#include <cstddef>
#include <cstdint>
#include <iostream>
#include <random>
#include <string>
#include <string_view>

namespace quorix::bench {

constexpr std::string_view kBases = "ACGT";

class CRandomBases {
 public:
  explicit CRandomBases(std::uint64_t seed) : engine_(seed) {}

  /// Returns a whole number from `first` to `last`, both inclusive.
  std::size_t between(std::size_t first, std::size_t last) {
    return first + static_cast<std::size_t>(engine_() % (last - first + 1));
  }

  /// Returns true in `percent` of all draws.
  bool chance(std::size_t percent) { return between(1, 100) <= percent; }

  char base() { return kBases[between(0, 3)]; }

  /// Returns a base other than `other`.
  char base_other_than(char other) {
    const std::size_t index = kBases.find(other);
    return kBases[(index + between(1, 3)) % kBases.size()];
  }

  std::string bases(std::size_t count) {
    std::string drawn(count, ' ');
    for (char& drawn_base : drawn) drawn_base = base();
    return drawn;
  }

  /// Returns `length` bases of copies of `unit`, diverged by `percent`: half of the edits are
  /// substitutions, a quarter each insertions and deletions.
  std::string array(const std::string& unit, std::size_t length, std::size_t percent) {
    std::string drawn;
    for (std::size_t i = 0; drawn.size() < length; ++i) {
      const char unit_base = unit[i % unit.size()];
      if (!chance(percent)) {
        drawn += unit_base;
        continue;
      }
      const std::size_t kind = between(0, 3);
      if (kind <= 1) drawn += base_other_than(unit_base);
      if (kind == 2) drawn += {unit_base, base()};
    }
    drawn.resize(length);
    return drawn;
  }

 private:
  std::mt19937_64 engine_;
};

/// Writes a record in lines of 70 bases.
inline void write_record(std::string_view name, std::string_view bases) {
  constexpr std::size_t kLineLength = 70;
  std::cout << '>' << name << '\n';
  for (std::size_t start = 0; start < bases.size(); start += kLineLength) {
    std::cout << bases.substr(start, kLineLength) << '\n';
  }
}

}  // namespace quorix::bench
