#include "hostile/hostile_run.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace quorix::testing {

namespace {

constexpr std::string_view kBanner = "\n\n      Welcome to Quorix, version 3.3.2b,\n";
constexpr std::string_view kEndOfHead = "Repeat unit\n# \n";
constexpr std::string_view kMarkOfSuccess = "## Finished successfully. ##\n";

[[noreturn]] void become_program(const CRunFolder& folder, std::vector<std::string> words) {
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  const int null = ::open("/dev/null", O_RDONLY);
  if (null < 0 || ::dup2(null, STDIN_FILENO) < 0 || ::chdir(folder.path("").c_str()) != 0) {
    std::abort();
  }
  ::alarm(kLongestRun);
  ::execv(QUORIX_PROGRAM, pointers.data());
  std::abort();
}

}  // namespace

ProcessResult run_hostile(const CRunFolder& folder, const std::vector<std::string>& arguments) {
  std::vector<std::string> words{"quorix"};
  words.insert(words.end(), arguments.begin(), arguments.end());
  ProcessResult result = run_in_child([&]() -> int { become_program(folder, words); });
  EXPECT_TRUE(result.err.starts_with(kBanner)) << visible(result.err);
  if (result.status != 0) {
    EXPECT_FALSE(result.out.ends_with(kMarkOfSuccess)) << visible(result.out);
  } else if (result.out.starts_with("# Results computed with:\n")) {
    EXPECT_TRUE(result.out.ends_with(kMarkOfSuccess)) << visible(result.out);
  }
  return result;
}

std::string after_head(const std::string& report) {
  const std::size_t end_of_head = report.find(kEndOfHead);
  if (end_of_head == std::string::npos) return "(no head) " + report;
  return report.substr(end_of_head + kEndOfHead.size());
}

std::string visible(const std::string& bytes) {
  constexpr std::size_t kMax = 400;
  std::string text;
  for (const char byte : bytes.substr(0, kMax)) {
    if (byte >= ' ' && byte <= '~') {
      text += byte;
    } else {
      std::array<char, 8> escape{};
      std::snprintf(escape.data(), escape.size(), "\\%03o", static_cast<unsigned char>(byte));
      text += escape.data();
    }
  }
  return bytes.size() > kMax ? text + "..." : text;
}

}  // namespace quorix::testing
