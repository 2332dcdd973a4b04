#pragma once

/// @file
/// The block of text that records the settings of a run, so that every report says how it was
/// made.

#include <cstdio>

namespace quorix {

/// Writes the settings to `stream`, one a line, each line after `prefix`. Lines that a search
/// mode does not use (recursion, score reduction, mismatch and indel score in exact mode) and the
/// output file's line, when there is none, are left out.
void print_search_parameters(std::FILE* stream, const char* prefix);

}  // namespace quorix
