// An output file whose failures nobody notices. The tests of faults are run against a program that
// has it in the place of the real one, and must find it out.

#include <cstdio>

#include "driver/output_file.h"

namespace quorix {

COutputFile::~COutputFile() {
  if (stream_ != nullptr && stream_ != stdout) std::fclose(stream_);
}

Claim COutputFile::claim_name(const std::string& filename, Missing missing) {
  name_ = filename;
  claim_ = missing == Missing::kCreate ? Claim::kHeld : Claim::kMissing;
  return claim_;
}

bool COutputFile::begin() {
  return open(name_);
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

void COutputFile::use_shared_standard_output() {
  use_standard_output();
}

void COutputFile::expect_writes() {}

void COutputFile::note_failure() {}

bool COutputFile::fail() {
  return false;
}

bool COutputFile::flush() {
  std::fflush(stream_);
  return true;
}

bool COutputFile::close() {
  if (stream_ != stdout) std::fclose(stream_);
  stream_ = nullptr;
  return true;
}

std::string COutputFile::failure_reason() const {
  return "unknown reason";
}

}  // namespace quorix
