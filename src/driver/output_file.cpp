#include "driver/output_file.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace quorix {

COutputFile::~COutputFile() {
  if (stream_ != nullptr && stream_ != stdout) std::fclose(stream_);
}

bool COutputFile::open(const std::string& filename) {
  name_ = filename;
  stream_ = std::fopen(filename.c_str(), "w");
  return stream_ != nullptr;
}

void COutputFile::use_standard_output() {
  name_ = "standard output";
  stream_ = stdout;
}

void COutputFile::expect_writes() {
  errno = 0;
}

void COutputFile::note_failure() {
  if (std::ferror(stream_) != 0) fail();
}

bool COutputFile::fail() {
  if (!has_failed_) error_number_ = errno;
  has_failed_ = true;
  return false;
}

bool COutputFile::flush() {
  if (std::ferror(stream_) != 0) return fail();
  if (std::fflush(stream_) != 0) return fail();
  return !has_failed_;
}

bool COutputFile::close_standard_output() {
  if (!flush()) return false;
  const int copy = ::dup(::fileno(stream_));
  if (copy == -1 || ::close(copy) != 0) return fail();
  return true;
}

bool COutputFile::close() {
  if (stream_ == stdout) return close_standard_output();
  const bool is_written = flush();
  std::FILE* const closing = stream_;
  stream_ = nullptr;
  if (std::fclose(closing) != 0) return fail();
  return is_written;
}

std::string COutputFile::failure_reason() const {
  return error_number_ == 0 ? "unknown reason" : std::strerror(error_number_);
}

}  // namespace quorix
