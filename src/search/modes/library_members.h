#pragma once

/// @file
/// Searches that no option of the program reaches. They belong to the face of the library.

#include <cstdio>
#include <list>

#include "report/csat.h"
#include "search/modes/search_context.h"
#include "sequence/sequence_mol.h"

namespace quorix {

/// An older exact search, in a single pass over the sequence: at each base all unit lengths,
/// skipping those whose region has been found. Appends to `found`, unsorted.
/// Throws: std::bad_alloc.
void search_exact_repeats_in_one_pass(const SearchContext& context, std::list<Csat*>& found);

/// A first-hit search: writes the head of a report block and reports the first accepted repeat at a
/// base at once; the scan goes on after it, so the repeats never overlap. Appends them to
/// `accepted`. `record` is the one that is searched. Throws: std::bad_alloc.
void report_first_hits(const SearchContext& context, CSequence_Mol& record, std::FILE* stream,
                       std::list<Csat*>& accepted);

}  // namespace quorix
