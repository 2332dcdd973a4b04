// Plays the inputs of a corpus through a harness, in the order of their names, without a fuzzer:
//
//   parse_replay FOLDER
//
// It fails if there is none, since then nothing would be tested. A finding ends the process.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/harness.h"

namespace {

constexpr int kUsage = 2;
constexpr int kNothingToPlay = 3;
constexpr int kEndedEarly = 4;

bool is_done = false;

/// What is tried must not end the process, and least of all with a status of success.
void refuse_early_end() {
  if (!is_done) std::_Exit(kEndedEarly);
}

std::vector<std::filesystem::path> inputs_in(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> inputs;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.is_regular_file()) inputs.push_back(entry.path());
  }
  std::sort(inputs.begin(), inputs.end());
  return inputs;
}

void play(const std::filesystem::path& input) {
  std::ifstream file(input, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  // In a block of exactly their size, so that the address sanitizer sees a read beyond them.
  const std::vector<std::uint8_t> data(bytes.begin(), bytes.end());
  std::printf("%s\n", input.filename().c_str());
  std::fflush(stdout);
  LLVMFuzzerTestOneInput(data.data(), data.size());
}

int play_all(const std::filesystem::path& folder) {
  const std::vector<std::filesystem::path> inputs = inputs_in(folder);
  if (inputs.empty()) {
    std::fprintf(stderr, "no inputs in %s\n", folder.c_str());
    return kNothingToPlay;
  }
  LLVMFuzzerInitialize(nullptr, nullptr);
  for (const std::filesystem::path& input : inputs) play(input);
  std::printf("%zu inputs\n", inputs.size());
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  std::atexit(refuse_early_end);
  int status = kUsage;
  try {
    if (argc == 2) {
      status = play_all(argv[1]);
    } else {
      std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
    }
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    status = kNothingToPlay;
  }
  is_done = true;
  return status;
}
