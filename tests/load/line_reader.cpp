#include "load/line_reader.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace quorix::load {

namespace {

constexpr std::size_t kBufferSize = 1'000'000;
constexpr std::size_t kMaxQuoted = 200;

std::string quoted(std::string_view text) {
  return '"' + std::string(text.substr(0, kMaxQuoted)) + '"';
}

}  // namespace

CLineReader::CLineReader(const std::string& filename)
    : name_(filename),
      descriptor_(::open(filename.c_str(), O_RDONLY | O_CLOEXEC)),
      buffer_(kBufferSize) {
  if (descriptor_ < 0) throw std::runtime_error("cannot open " + filename);
}

CLineReader::~CLineReader() {
  ::close(descriptor_);
}

/// False at the end of the text. REQUIRES: all that was read has been taken.
bool CLineReader::fill() {
  ssize_t count = 0;
  do {
    count = ::read(descriptor_, buffer_.data(), buffer_.size());
  } while (count < 0 && errno == EINTR);
  if (count < 0) throw std::runtime_error("cannot read " + name_);
  begin_ = 0;
  end_ = static_cast<std::size_t>(count);
  return count > 0;
}

std::string_view CLineReader::next() {
  ++line_number_;
  line_.clear();
  while (true) {
    const std::string_view text(buffer_.data() + begin_, end_ - begin_);
    const std::size_t length = text.find('\n');
    if (length != std::string_view::npos) {
      begin_ += length + 1;
      if (line_.empty()) return text.substr(0, length);
      line_ += text.substr(0, length);
      return line_;
    }
    line_ += text;
    if (!fill()) complain("the text ends early");
  }
}

void CLineReader::expect(std::string_view expected) {
  const std::string_view line = next();
  if (line != expected) complain("is " + quoted(line) + ", not " + quoted(expected));
}

void CLineReader::expect_end() {
  if (begin_ != end_ || fill()) complain("more lines follow");
}

void CLineReader::complain(const std::string& why) const {
  throw CWrongText(name_ + ":" + std::to_string(line_number_) + ": " + why);
}

}  // namespace quorix::load
