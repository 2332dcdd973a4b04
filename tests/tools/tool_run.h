#pragma once

/// @file
/// Runs of quorix-tools with files of their own.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/captured_process.h"
#include "tools/command_line/command_line.h"

namespace quorix::testing {

/// A folder that goes with the test.
class CToolFolder {
 public:
  CToolFolder() {
    std::string pattern = ::testing::TempDir() + "quorix-tools-XXXXXX";
    folder_ = ::mkdtemp(pattern.data());
  }
  ~CToolFolder() { std::filesystem::remove_all(folder_); }
  CToolFolder(const CToolFolder&) = delete;
  CToolFolder& operator=(const CToolFolder&) = delete;

  [[nodiscard]] std::string path(const std::string& name) const { return folder_ / name; }

  /// Writes a file and returns its path.
  [[nodiscard]] std::string write(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
  }

  [[nodiscard]] std::string read(const std::string& name) const {
    std::ostringstream text;
    text << std::ifstream(path(name), std::ios::binary).rdbuf();
    return text.str();
  }

  /// The names of its files.
  [[nodiscard]] std::vector<std::string> files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
      names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  std::filesystem::path folder_;
};

/// How `quorix-tools` ends with these arguments, in a process of its own.
inline ProcessResult run_tool(const std::vector<std::string>& arguments) {
  std::vector<const char*> words{"quorix-tools"};
  for (const std::string& argument : arguments) words.push_back(argument.c_str());
  return run_in_child(
      [&] { return tools::run_command_line(static_cast<int>(words.size()), words.data()); });
}

}  // namespace quorix::testing
