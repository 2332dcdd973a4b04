// Every failure is kept with the `errno` of the first one, which names the cause; later failures
// are mostly consequences. A file is owned: stream and descriptor are closed here. Standard output
// is not: it is flushed, and a copy of its descriptor is closed, since close() is where network
// file systems report that a write did not reach the disk.

#include "driver/output_file.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "driver/descriptor_stream.h"

namespace quorix {

COutputFile::~COutputFile() {
  if (stream_ != nullptr && stream_ != stdout) std::fclose(stream_);
  if (descriptor_ != -1 && !is_standard_output()) ::close(descriptor_);
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
  if (claim_ != Claim::kHeld) return false;
  // The stream comes first: if there is no memory for it, the content of the file is not lost.
  stream_ = open_descriptor_stream(&descriptor_);
  if (stream_ == nullptr) return false;
  if (empty_file(descriptor_)) return true;
  std::fclose(std::exchange(stream_, nullptr));
  return false;
}

bool COutputFile::open(const std::string& filename) {
  return claim_name(filename, Missing::kCreate) == Claim::kHeld && begin();
}

void COutputFile::use_standard_output() {
  use_shared_standard_output();
  std::FILE* const own_stream = open_descriptor_stream(&descriptor_);
  if (own_stream != nullptr) stream_ = own_stream;
}

void COutputFile::use_shared_standard_output() {
  name_ = "standard output";
  descriptor_ = STDOUT_FILENO;
  stream_ = stdout;
}

bool COutputFile::is_standard_output() const {
  return descriptor_ == STDOUT_FILENO;
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
  const int copy = ::dup(descriptor_);
  if (copy == -1 || ::close(copy) != 0) return fail();
  return true;
}

bool COutputFile::close() {
  if (is_standard_output()) return close_standard_output();
  bool is_written = flush();
  if (std::fclose(std::exchange(stream_, nullptr)) != 0) is_written = fail();
  // An interrupted close() is not repeated: the descriptor is released by then.
  if (::close(std::exchange(descriptor_, -1)) != 0) is_written = fail();
  return is_written;
}

std::string COutputFile::failure_reason() const {
  return error_number_ == 0 ? "unknown reason" : std::strerror(error_number_);
}

}  // namespace quorix
