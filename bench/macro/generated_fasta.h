#pragma once

/// @file
/// What the generators of inputs share: bases from a seed, and FASTA on standard output. The same
/// seed gives the same bytes everywhere: only what the standard pins of <random> is used, its
/// engine, and not its distributions.

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

  /// A whole number from `first` to `last`, both inclusive.
  std::size_t between(std::size_t first, std::size_t last) {
    return first + static_cast<std::size_t>(engine_() % (last - first + 1));
  }

  /// True in `percent` of all draws.
  bool chance(std::size_t percent) { return between(1, 100) <= percent; }

  char base() { return kBases[between(0, 3)]; }

  /// A base that is not `other`.
  char base_but(char other) {
    const std::size_t index = kBases.find(other);
    return kBases[(index + between(1, 3)) % kBases.size()];
  }

  std::string bases(std::size_t count) {
    std::string drawn(count, ' ');
    for (char& drawn_base : drawn) drawn_base = base();
    return drawn;
  }

  /// `length` bases of copies of `unit`, of which `percent` are hit by an edit: half of them
  /// substitutions, a quarter each insertions and deletions.
  std::string array(const std::string& unit, std::size_t length, std::size_t percent) {
    std::string grown;
    for (std::size_t i = 0; grown.size() < length; ++i) {
      const char unit_base = unit[i % unit.size()];
      if (!chance(percent)) {
        grown += unit_base;
        continue;
      }
      const std::size_t kind = between(0, 3);
      if (kind <= 1) grown += base_but(unit_base);
      if (kind == 2) grown += {unit_base, base()};
    }
    grown.resize(length);
    return grown;
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
