#pragma once

/// @file
/// Reads a line piece by piece and accepts only what the program prints: no other padding, no
/// leading zeros, nothing left over.

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quorix::tools {

/// A line that is not as it should be; the text says what is expected. The reader adds file and
/// line.
struct LineFault : std::runtime_error {
  explicit LineFault(const std::string& text, std::uint64_t line_count_after = 0)
      : std::runtime_error(text), lines_after(line_count_after) {}

  std::uint64_t lines_after;  ///< how many lines were read after it
};

/// Calls a step on a line after which so many lines were read: that is where its faults are told.
/// Returns what the step returns. Throws: LineFault.
template <class Step>
decltype(auto) on_earlier_line(std::uint64_t lines_after, const Step& step) {
  try {
    return step();
  } catch (const LineFault& fault) {
    throw LineFault(fault.what(), lines_after);
  }
}

class CTextCursor {
 public:
  explicit CTextCursor(std::string_view line)
      : place_(line.data()), end_(line.data() + line.size()) {}

  [[nodiscard]] std::string_view rest() const {
    return {place_, static_cast<std::size_t>(end_ - place_)};
  }

  [[nodiscard]] bool is_at_end() const { return place_ == end_; }

  /// Takes `words` if they come next, and returns whether they do.
  bool take(std::string_view words) {
    if (!rest().starts_with(words)) return false;
    place_ += words.size();
    return true;
  }

  /// Takes `words`. Throws: LineFault if something else comes.
  void expect(std::string_view words) {
    if (!take(words)) fail(words);
  }

  /// Takes the next `count` characters. REQUIRES: there are so many.
  void skip(std::size_t count) { place_ += count; }

  /// Takes and returns one character. Throws: LineFault at the end.
  char character() {
    if (is_at_end()) throw LineFault("the line ends early");
    return *place_++;
  }

  /// Takes a number of 64 bits that is right-aligned in `width` characters, or is wider than that,
  /// and the text after it. Throws: LineFault.
  std::int64_t number(std::size_t width, std::string_view suffix);

  /// The same for a number with three decimals, or for one that is none ("nan", "inf"). Returns its
  /// text without the padding. Throws: LineFault.
  std::string_view decimals(std::size_t width, std::string_view suffix);

  /// Takes the rest of the line, which must not be empty, and returns it. Throws: LineFault.
  std::string_view last_word();

  /// Throws: LineFault unless the line ends here.
  void expect_end() const {
    if (!is_at_end()) throw LineFault("the line should end before \"" + shown(rest()) + "\"");
  }

 private:
  [[noreturn]] void fail(std::string_view words) const;
  static std::string shown(std::string_view text);

  /// Skips blanks; returns the begin of the column.
  const char* skip_padding();
  /// Throws: LineFault unless the column from `column` to here is as wide as its padding allows.
  void check_width(const char* column, const char* first, std::size_t width) const;

  const char* place_;
  const char* end_;
};

}  // namespace quorix::tools
