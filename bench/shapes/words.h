#pragma once

/// @file
/// Words of the theory of words as bases: regular without being periodic, or with every short word
/// once. Each function gives exactly `length` bases.

#include <cstddef>
#include <string>
#include <string_view>

namespace quorix::bench {

/// The first so many bases of copies of `unit`. REQUIRES: it is not empty.
std::string copies(std::string_view unit, std::size_t length);

/// The word that the letters grow into when `first` and all that follows is replaced by its rule
/// again and again; `rules` holds the replacements of the letters of `letters`, in their order.
/// REQUIRES: a rule for each letter, the one of `first` beginning with it and longer than it.
std::string grown_word(std::size_t length, std::string_view letters,
                       const std::string_view (&rules)[4], char first);

/// Every word of `order` letters of `letters` once, the least of the cyclic orders, over and over.
std::string de_bruijn_word(std::size_t length, std::string_view letters, std::size_t order);

/// At i, whether the binary digits of i hold 11 an even (A) or an odd (C) number of times.
std::string rudin_shapiro_word(std::size_t length);

/// a b a c a b a d ...: the letter at i is the number of 2's in i, by turns of four.
std::string ruler_word(std::size_t length);

/// The binary numbers 1, 10, 11, 100, ... behind each other, as A and C.
std::string counting_word(std::size_t length);

/// The letter at i is i * i / `slowness` modulo 4: a period that changes all the time.
std::string chirp_word(std::size_t length, std::size_t slowness);

/// The reverse complement.
std::string other_strand(std::string_view bases);

}  // namespace quorix::bench
