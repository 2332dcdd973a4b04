#pragma once

/// @file
/// One sequence from its bases to its report block: searched, reported and, on request, masked.

#include <cstdint>
#include <cstdio>
#include <list>

#include "report/csat.h"
#include "sequence/sequence_mol.h"

namespace quorix {

/// Searches `record`, number `number` of its file, in the mode of the settings and writes its
/// report block. With `is_masked` every base of a repeat that the overlap removal has left becomes
/// 'X' afterwards.
/// Throws: std::bad_alloc.
void analyse_record(std::uint64_t number, CSequence_Mol& record, std::FILE* report, bool is_masked);

/// Makes every base of `repeats`, which are in `record`, an 'X'.
void mask_repeats(const std::list<Csat*>& repeats, CSequence_Mol& record);

}  // namespace quorix
