#pragma once

/// @file
/// Random DNA that a repeat finder finds hard: planted arrays with mutations, overlapping and
/// nested ones, runs of one base, runs of N, and plain noise between them.

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

namespace quorix::testing {

using RandomEngine = std::mt19937_64;

/// A whole number from `first` to `last`, both inclusive.
std::size_t draw_between(RandomEngine& engine, std::size_t first, std::size_t last);

/// The same with a sign, as positions and scores have one.
std::int64_t draw_number(RandomEngine& engine, std::size_t first, std::size_t last);

/// True in `percent` of all draws.
bool draw_chance(RandomEngine& engine, std::size_t percent);

/// `length` letters of `alphabet`, each as likely as the others.
std::string draw_letters(RandomEngine& engine, std::size_t length, const std::string& alphabet);

/// `length` bases of an array of a random unit, each hit by a substitution, an insertion, a
/// deletion or an N in `divergence_percent` of all cases.
std::string draw_array(RandomEngine& engine, std::size_t length, std::size_t longest_unit,
                       std::size_t divergence_percent);

/// `length` bases of an array of `unit_length` whose copies all have one edit of the same kind, a
/// substitution, an insertion or a deletion, at the same place or at places of their own.
std::string draw_array_edited_alike(RandomEngine& engine, std::size_t length,
                                    std::size_t unit_length);

/// A record of up to `longest` bases, of noise and arrays in random order.
std::string draw_record(RandomEngine& engine, std::size_t longest, std::size_t longest_unit);

}  // namespace quorix::testing
