#include "driver/output_file.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace quorix {

COutputFile::~COutputFile() {
  if (stream_ != nullptr && stream_ != stdout) std::fclose(stream_);
  if (descriptor_ != -1) ::close(descriptor_);
}

Claim COutputFile::claim_name(const std::string& filename, Missing missing) {
  if (claim_ == Claim::kHeld || claim_ == Claim::kFailed) return claim_;
  name_ = filename;
  const ClaimedFile file = claim_file(filename, missing);
  claim_ = file.claim;
  descriptor_ = file.descriptor;
  return claim_;
}

bool COutputFile::begin() {
  if (descriptor_ == -1) return false;
  // The stream comes first: if there is no memory for it, what the file holds is not lost.
  stream_ = ::fdopen(descriptor_, "w");
  if (stream_ == nullptr) return false;
  const int descriptor = std::exchange(descriptor_, -1);
  if (empty_file(descriptor)) return true;
  std::fclose(stream_);
  stream_ = nullptr;
  return false;
}

bool COutputFile::open(const std::string& filename) {
  return claim_name(filename, Missing::kCreate) == Claim::kHeld && begin();
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
