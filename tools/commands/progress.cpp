#include "tools/commands/progress.h"

#include <unistd.h>

#include <cstdio>

namespace quorix::tools {

CProgress::CProgress()
    : is_shown_(::isatty(STDERR_FILENO) == 1), last_(std::chrono::steady_clock::now()) {}

CProgress::~CProgress() {
  clear();
}

void CProgress::clear() {
  if (has_line_) std::fputs("\r\033[K", stderr);
  has_line_ = false;
}

void CProgress::look_at_clock(const std::string& name, std::uint64_t byte_count) {
  constexpr std::uint64_t kMegabyte = 1'000'000;
  const auto now = std::chrono::steady_clock::now();
  if (now - last_ < std::chrono::seconds(1)) return;
  last_ = now;
  has_line_ = true;
  std::fprintf(stderr, "\r\033[K%s: %llu MB", name.c_str(),
               static_cast<unsigned long long>(byte_count / kMegabyte));
}

}  // namespace quorix::tools
