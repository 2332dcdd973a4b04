#pragma once

/// @file
/// Common parts of the micro benchmarks: random bases and default settings.

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

#include "search/search_controller.h"
#include "settings/settings.h"

namespace quorix::bench {

/// Returns `count` random bases, the same ones for the same seed.
inline std::string random_bases(std::size_t count, std::uint64_t seed) {
  std::mt19937_64 engine(seed);
  std::string bases(count, ' ');
  for (char& base : bases) base = "ACGT"[engine() % 4];
  return bases;
}

/// Returns `length` random bases in which every second block of 30 bases is an array of a unit of 1
/// to 6 bases.
inline std::string repeat_rich_bases(std::size_t length, std::uint64_t seed) {
  constexpr std::size_t kBlock = 30;
  std::string bases = random_bases(length, seed);
  for (std::size_t start = 0; start + kBlock <= length; start += 2 * kBlock) {
    const std::size_t unit_length = 1 + start / (2 * kBlock) % 6;
    for (std::size_t i = unit_length; i < kBlock; ++i) {
      bases[start + i] = bases[start + i - unit_length];
    }
  }
  return bases;
}

/// Sets the default settings for units of up to `max_unit_length` bases, and their threshold
/// tables.
inline void use_default_settings(std::uint32_t max_unit_length = 6) {
  init_param();
  global_max_unit_length = max_unit_length;
  CSearchController::reset_minimum_arrays();
}

}  // namespace quorix::bench
