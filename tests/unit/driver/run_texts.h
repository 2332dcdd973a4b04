#pragma once

/// @file
/// The parts of what a run writes, for tests that look at one of them.

#include <cstddef>
#include <string>

#include "support/head_texts.h"

namespace quorix::testing {

inline constexpr const char* kGoodBye =
    "\nAnalysis finished successfully.\n\nQuorix says goodbye.\n\n";

inline constexpr const char* kSuccessMark = "## Finished successfully. ##\n";

/// The last words after a failure.
inline std::string aborted_with(int code) {
  return "\nAnalysis has been aborted due to errors. Error number: " + std::to_string(code) +
         "\n\n";
}

/// What follows `mark`, or all of the text after a remark if there is no such mark.
inline std::string text_after(const std::string& mark, const std::string& text) {
  const std::size_t found = text.find(mark);
  return found == std::string::npos ? "(without its head) " + text
                                    : text.substr(found + mark.size());
}

/// The blocks of a report, without the comments at its head.
inline std::string blocks_of(const std::string& report) {
  return text_after(": Repeat unit\n# \n", report);
}

/// What a run wrote to standard error below the head of the progress table.
inline std::string progress_of(const std::string& messages) {
  return text_after(std::string(72, '-') + "\n", messages);
}

/// What a run wrote to standard error between the banner and its end, where it never came to
/// search.
inline std::string messages_after_banner(const std::string& messages) {
  return text_after(kBanner, messages);
}

/// The block of a record that is ten bases long and in which nothing is found.
inline std::string empty_block(const std::string& name) {
  return ">" + name + "\nsequence length: 10\n# Analysis of sequence \"" + name + "\" completed.\n";
}

}  // namespace quorix::testing
