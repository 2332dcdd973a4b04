#pragma once

/// @file
/// A folder of its own for a test that needs real files.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace quorix::testing {

class CTemporaryFolder {
 public:
  CTemporaryFolder() : path_((std::filesystem::temp_directory_path() / "quorix-XXXXXX").string()) {
    if (::mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary folder");
  }
  ~CTemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  CTemporaryFolder(const CTemporaryFolder&) = delete;
  CTemporaryFolder& operator=(const CTemporaryFolder&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }

  /// The path of a name in the folder.
  [[nodiscard]] std::string path_of(std::string_view name) const {
    return path_ + "/" + std::string(name);
  }

  /// Writes a file and returns its path.
  [[nodiscard]] std::string file_of(std::string_view name, std::string_view bytes) const {
    const std::string path = path_of(name);
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }

 private:
  std::string path_;
};

}  // namespace quorix::testing
