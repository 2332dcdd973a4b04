#pragma once

/// @file
/// The head and the foot of the report block of one sequence. The repeats stand between them.

#include <cstdio>

#include "sequence/sequence_mol.h"

namespace quorix {

/// Writes the name of the sequence and its length in bp.
void report_sequence_head(std::FILE* stream, const CSequence_Mol& record);

/// Writes the line that closes the block, and flushes.
void report_sequence_foot(std::FILE* stream, const CSequence_Mol& record);

}  // namespace quorix
