#pragma once

/// @file
/// The output of a command: standard output, or a file that appears under its name only when it is
/// complete.

#include <charconv>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace quorix::tools {

/// A regular file is written under a temporary name beside its target and renamed by `finish`;
/// without that, it is removed again. Links are followed. Pipes and devices are written directly.
class COutput {
 public:
  /// Opens the output; "-" and an empty name are standard output. Throws: OutputError.
  explicit COutput(const std::string& name);
  COutput(const COutput&) = delete;
  COutput& operator=(const COutput&) = delete;
  ~COutput();

  /// Appends bytes. Throws: OutputError.
  void add(std::string_view text) {
    if (text.size() > buffer_.size() - used_) return add_long(text);
    std::memcpy(buffer_.data() + used_, text.data(), text.size());
    used_ += text.size();
  }

  void add(char character) { add(std::string_view(&character, 1)); }

  /// Appends a number in decimal.
  void add_number(long long number) {
    if (buffer_.size() - used_ < kNumberLength) flush();
    char* const begin = buffer_.data() + used_;
    used_ +=
        static_cast<std::size_t>(std::to_chars(begin, begin + kNumberLength, number).ptr - begin);
  }

  /// Writes what is left, closes the file and gives it its name. Throws: OutputError.
  void finish();

 private:
  static constexpr std::size_t kBufferSize = std::size_t{1} << 17U;
  static constexpr std::size_t kNumberLength = 24;

  void open_file(const std::string& name);
  void open_beside(const std::string& target);
  void add_long(std::string_view text);
  void write(std::string_view text);
  void flush();
  [[noreturn]] void fail() const;

  std::string shown_name_;
  std::string target_;          ///< empty where nothing is renamed
  std::string temporary_name_;  ///< empty once it is gone
  int descriptor_ = -1;
  std::vector<char> buffer_ = std::vector<char>(kBufferSize);
  std::size_t used_ = 0;
};

}  // namespace quorix::tools
