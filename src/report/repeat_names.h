#pragma once

/// @file
/// The class names of repeats, by unit length.

#include <array>
#include <cstdint>

namespace quorix {

/// Names of the unit lengths 1 to 6; index 0 is no unit length.
inline constexpr std::array<const char*, 7> REPEAT_NAMES = {
    "***  ERROR  ***", "mononucleotide",  "dinucleotide",   "trinucleotide",
    "tetranucleotide", "pentanucleotide", "hexanucleotide",
};

/// Returns the class name of a unit length in bp: the entry of the table up to 6, above that
/// "7-nucleotide" and so on, in one static buffer that the next call overwrites.
const char* get_repeat_name(std::int64_t unit_length);

}  // namespace quorix
