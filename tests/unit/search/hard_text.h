#pragma once

/// @file
/// A text with something for each sieve and bound.

#include <cstddef>
#include <string>

#include "support/random_dna.h"

namespace quorix::testing {

/// Noise, arrays of short and of long units with a few edits, and gaps: some 6,000 bases.
inline std::string hard_text(std::size_t seed = 71) {
  RandomEngine engine(seed);
  std::string text = draw_letters(engine, 1500, "ACGT");
  for (const std::size_t longest : {6U, 20U, 40U, 120U, 300U}) {
    const std::string noise = draw_letters(engine, 100, "ACGT");
    text += draw_array(engine, 400, longest, 9) + noise;
  }
  const std::string noise = draw_letters(engine, 900, "AACGT");
  return text + "NNN" + draw_array(engine, 900, 850, 2) + noise;
}

}  // namespace quorix::testing
