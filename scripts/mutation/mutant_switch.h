#pragma once

/// @file
/// Which mutant a test program of a mutation run is to be: `QUORIX_MUTANT` in its environment. The
/// run includes this before every file that it compiles, and gives each function that it mutates
/// one body a mutant, chosen by this number. Number 0, or none, is the program as it is.

#include <cstdlib>

inline int quorix_chosen_mutant = 0;

namespace quorix_mutation {

// Before all other initialisation, so that initialisers are mutants, too.
[[gnu::constructor(101)]] static void choose_mutant() {
  const char* const text = std::getenv("QUORIX_MUTANT");
  quorix_chosen_mutant = text == nullptr ? 0 : std::atoi(text);
}

}  // namespace quorix_mutation
