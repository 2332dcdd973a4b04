#pragma once

/// @file
/// Words from combinatorics as bases: regular without being periodic, or with every short word
/// once. Each function returns exactly `length` bases.

#include <cstddef>
#include <string>
#include <string_view>

namespace quorix::bench {

/// The first `length` bases of copies of `unit`. REQUIRES: it is not empty.
std::string copies(std::string_view unit, std::size_t length);

/// The word that results when every letter is replaced by its rule again and again, beginning with
/// `first`. `rules` holds the replacements of `letters`, in their order.
/// REQUIRES: every letter has a rule; that of `first` begins with `first` and is longer than it.
std::string substitution_word(std::size_t length, std::string_view letters,
                              const std::string_view (&rules)[4], char first);

/// The least cyclic word that holds every word of `order` letters of `letters` once, repeated.
std::string de_bruijn_word(std::size_t length, std::string_view letters, std::size_t order);

/// The letter at i is A if the binary digits of i hold 11 an even number of times, else C.
std::string rudin_shapiro_word(std::size_t length);

/// a b a c a b a d ...: the letter at i is how often 2 divides i + 1, modulo 4.
std::string ruler_word(std::size_t length);

/// The binary numbers 1, 10, 11, 100, ... one after the other, as A and C.
std::string counting_word(std::size_t length);

/// The letter at i is i * i / `slowness` modulo 4: a period that changes constantly.
std::string chirp_word(std::size_t length, std::size_t slowness);

/// The reverse complement.
std::string other_strand(std::string_view bases);

}  // namespace quorix::bench
