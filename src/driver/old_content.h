#pragma once

/// @file
/// The content of a file that an output is about to replace.

#include <string>

namespace quorix {

/// True if `filename` is a regular file that begins with '>', as sequences in FASTA format do and
/// no report does. False for other kinds of files, which are not opened, and where the content
/// cannot be read.
[[nodiscard]] bool begins_like_fasta(const std::string& filename);

}  // namespace quorix
