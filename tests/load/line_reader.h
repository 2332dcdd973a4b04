#pragma once

/// @file
/// Lines of a pipe, as soon as they are in it: a reader that waited for more than it needs would
/// wait for ever, where the other side waits for its second pipe to be read.

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace quorix::load {

/// What was read is not what should be there.
class CWrongText : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class CLineReader {
 public:
  /// Opens a file or pipe. Throws: std::runtime_error.
  explicit CLineReader(const std::string& filename);
  ~CLineReader();
  CLineReader(const CLineReader&) = delete;
  CLineReader& operator=(const CLineReader&) = delete;

  /// The next line without its line feed; valid until the next call.
  /// Throws: CWrongText where the text ends, and where its last line has no end.
  std::string_view next();

  /// Takes the next line, which has to be `expected`. Throws: CWrongText.
  void expect(std::string_view expected);

  /// Throws: CWrongText if there is one more line.
  void expect_end();

  /// Throws CWrongText: `why`, with the name of the file and the number of the last line.
  [[noreturn]] void complain(const std::string& why) const;

 private:
  bool fill();

  std::string name_;
  int descriptor_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::string line_;
  unsigned long long line_number_ = 0;
};

}  // namespace quorix::load
