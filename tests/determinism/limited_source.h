#pragma once

/// @file
/// The bytes of a file in reads that give no more than a program wants. A program that links
/// `limited_source.cpp` gets it in the place of the library's own way to open a file.

#include <cstddef>

namespace quorix::testing {

/// The most that a read gives, in bytes; 0 is no limit.
extern std::size_t longest_read;

}  // namespace quorix::testing
