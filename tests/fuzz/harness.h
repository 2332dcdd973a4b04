#pragma once

/// @file
/// What the fuzz harnesses share: the entry that each of them defines, and how a finding is
/// reported.

#include <cstddef>
#include <cstdint>
#include <string>

/// Tries one input. Whatever it finds wrong ends the process. Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Called once before the first input, so that findings go to the standard error that the process
/// began with.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace quorix::fuzz {

/// Reports something that must not be, and ends the process as a crash.
[[noreturn]] void report_finding(const std::string& text);

/// The bytes of `text` so that a person can read them and a compiler take them: "a\x00b".
std::string quoted(const std::string& text);

/// Ends the process with what `describe` gives unless `is_right`.
template <class Describe>
void expect(bool is_right, const Describe& describe) {
  if (!is_right) report_finding(describe());
}

}  // namespace quorix::fuzz
