#pragma once

/// @file
/// A folder of a test's own, and runs of the program in it.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "driver/run.h"
#include "support/captured_process.h"
#include "support/default_settings.h"

namespace quorix::testing {

/// An empty folder that goes away, with all that is in it, at the end of the test.
class CRunFolder {
 public:
  CRunFolder() : folder_(::testing::TempDir() + "quorix_XXXXXX") {
    if (::mkdtemp(folder_.data()) == nullptr) throw std::runtime_error("no folder: " + folder_);
  }
  ~CRunFolder() { std::filesystem::remove_all(folder_); }
  CRunFolder(const CRunFolder&) = delete;
  CRunFolder& operator=(const CRunFolder&) = delete;

  /// The path of a file in the folder.
  [[nodiscard]] std::string path(const std::string& name) const { return folder_ + "/" + name; }

  /// Writes a file and returns its path.
  std::string write(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
  }

  /// All that a file holds, or "(no such file)".
  [[nodiscard]] std::string text(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    if (!file) return "(no such file)";
    std::ostringstream all;
    all << file.rdbuf();
    return all.str();
  }

  [[nodiscard]] bool has(const std::string& name) const {
    return std::filesystem::exists(std::filesystem::symlink_status(path(name)));
  }

  /// Makes `name` a link to `target`, which is taken as it stands.
  void link(const std::string& name, const std::string& target) const {
    std::filesystem::create_symlink(target, path(name));
  }
  /// Makes `name` a second name of the file `target` of the folder.
  void hard_link(const std::string& name, const std::string& target) const {
    std::filesystem::create_hard_link(path(target), path(name));
  }
  void make_folder(const std::string& name) const { std::filesystem::create_directory(path(name)); }

  /// Runs the program, called "quorix", with these arguments. The folder is its working directory,
  /// so that it can be given bare file names.
  [[nodiscard]] ProcessResult run(std::initializer_list<const char*> arguments) const {
    return run_after([] {}, arguments);
  }

  /// The same after `prepare`, which may redirect a descriptor or set a limit of the process.
  template <class Prepare>
  [[nodiscard]] ProcessResult run_after(const Prepare& prepare,
                                        std::initializer_list<const char*> arguments) const {
    return run_in_child([&] {
      if (::chdir(folder_.c_str()) != 0) std::abort();
      prepare();
      std::vector<const char*> words{"quorix"};
      words.insert(words.end(), arguments);
      return quorix::run(static_cast<int>(words.size()), words.data());
    });
  }

 private:
  std::string folder_;
};

/// Default settings, and a folder for each test.
class CInRunFolder : public CDefaultSettings {
 protected:
  CRunFolder folder_;
};

/// True if `text` holds `part`.
inline bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace quorix::testing
