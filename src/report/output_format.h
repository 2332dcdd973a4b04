#pragma once

/// @file
/// The output formats of the settings: their names, and the columns of a repeat line in them.

#include <cstdio>

namespace quorix {

/// Returns the name of the chosen format, as the list of the settings has it.
[[nodiscard]] const char* output_format_name();

/// Writes the legend of a repeat line's columns, which follows `global_print_sat_mode` and
/// `global_treat_Ns_as_missense`, with `prefix` at the start of every line. Write errors are left
/// to whoever owns the stream.
void print_output_format(std::FILE* stream, const char* prefix);

}  // namespace quorix
