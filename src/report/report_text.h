#pragma once

/// @file
/// The columns of a report: texts and numbers, right-aligned in a width. A wider one is never cut
/// off.

#include <cstddef>
#include <string_view>

#include "sequence/stream_text.h"

namespace quorix {

/// Appends `column`, padded with blanks on the left to `width` characters, as printf's "%*s" does.
void add_column(CStreamText& text, std::string_view column, std::size_t width);

/// Appends a number in decimal, as printf's "%*lld" does.
void add_number(CStreamText& text, long long number, std::size_t width = 0);

/// Appends a number with three decimals in seven characters, as printf's "%7.3f" does: a number
/// half-way between two decimals, such as 0.0625, is rounded to the even one.
void add_decimals(CStreamText& text, double number);

}  // namespace quorix
