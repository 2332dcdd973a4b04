#include "fuzz/harness.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>

namespace {

/// Standard error as it was before the fuzzer or the harness silenced it.
int finding_descriptor = STDERR_FILENO;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  finding_descriptor = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0);
  return 0;
}

namespace quorix::fuzz {

void report_finding(const std::string& text) {
  ::dprintf(finding_descriptor, "FINDING: %s\n", text.c_str());
  std::abort();
}

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char character : text) {
    if (character >= ' ' && character <= '~' && character != '"' && character != '\\') {
      result += character;
    } else {
      std::array<char, 5> code{};
      std::snprintf(code.data(), code.size(), "\\x%02x", static_cast<unsigned char>(character));
      result += code.data();
    }
  }
  return result + "\"";
}

}  // namespace quorix::fuzz
