#pragma once

/// @file
/// Exact repeats reported by their perfection. No option of the program reaches this; it belongs
/// to the face of the library.

#include <cstdio>
#include <list>

#include "report/csat.h"
#include "search/rules/thresholds.h"
#include "sequence/sequence_mol.h"

namespace quorix {

/// Writes the head of a report block and each repeat of `repeats`: whole if its perfection is at
/// least `global_perfection_minimum`, else the parts that reach it. `record` is the one that they
/// point into. Throws: std::bad_alloc.
void report_exact_repeats_by_perfection(std::FILE* stream, const std::list<Csat*>& repeats,
                                        const Thresholds& thresholds, CSequence_Mol& record);

/// Writes, from left to right, each part of the exact repeat `sat` that has the minimum perfection
/// and passes `thresholds`; or the whole repeat, if N's do not count as mismatches.
/// Throws: std::bad_alloc.
void report_parts_of_minimum_perfection(std::FILE* stream, const Csat& sat,
                                        const Thresholds& thresholds, CSequence_Mol& record);

/// Finds the best part of `sat` that begins at `from`: `best` becomes the longest of those with the
/// highest score; its `start` is null when there is none.
void find_part_of_minimum_perfection(const Csat& sat, const char* from, Csat& best);

}  // namespace quorix
