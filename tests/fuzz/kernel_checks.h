#pragma once

/// @file
/// One check for each kernel: it takes a case from a fuzz input, and ends the process if the kernel
/// and its slow twin do not agree on it.

#include "fuzz/fuzz_input.h"

namespace quorix::fuzz {

/// search/bits/match_run.h
void check_match_runs(CFuzzInput& input);

/// `copy_bases` of sequence/base_letters.h
void check_copied_bases(CFuzzInput& input);

/// search/bits/bit_set.h, over a series of operations
void check_bit_set(CFuzzInput& input);

/// search/bits/base_planes.h
void check_base_planes(CFuzzInput& input);

/// search/bits/match_window.h
void check_match_window(CFuzzInput& input);

/// search/filter/run_sieve.h
void check_run_sieve(CFuzzInput& input);

/// search/filter/lag_sieve.h and lag_grid.h
void check_lag_sieve(CFuzzInput& input);

/// search/filter/single_bound.h
void check_single_bound(CFuzzInput& input);

/// search/filter/batch_bound.h
void check_batch_bound(CFuzzInput& input);

/// search/filter/chain_sieve.h: no seed is rejected that a path can take to the minimum score
void check_chain_sieve(CFuzzInput& input);

/// search/filter/group_bound.h, likewise
void check_group_bound(CFuzzInput& input);

}  // namespace quorix::fuzz
