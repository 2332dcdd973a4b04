#pragma once

/// @file
/// A stream that the run writes to, and what became of the writes.
///
/// The texts are written by functions that look at no result. The driver asks here once a sequence,
/// and again before and after the end of the run, so that a full disk or a broken pipe never passes
/// for a finished report.

#include <cstdio>
#include <string>

#include "driver/claimed_file.h"

namespace quorix {

class COutputFile {
 public:
  /// No file.
  COutputFile() = default;
  /// Closes an open file without a look at the result: the run has failed already.
  ~COutputFile();
  COutputFile(const COutputFile&) = delete;
  COutputFile& operator=(const COutputFile&) = delete;

  /// Opens and locks `filename` for writing; what it holds stays until `begin`. A claim that is
  /// held, or that has failed, is not tried again. Gives `claim()`.
  Claim claim_name(const std::string& filename, Missing missing);

  /// What became of the last `claim_name`.
  [[nodiscard]] Claim claim() const { return claim_; }

  /// Takes out what a claimed file held and opens the stream. False if that fails or if no file is
  /// claimed.
  [[nodiscard]] bool begin();

  /// Both, for a file that is made where it is missing. False if either fails.
  [[nodiscard]] bool open(const std::string& filename);

  /// Writes to standard output, by a stream of its own where there is memory for it. What `stdout`
  /// gathers goes another way, so nothing is to be written to that as well.
  void use_standard_output();

  /// Takes `stdout` itself, to see to what others have written to it.
  void use_shared_standard_output();

  /// The stream, or null where none could be opened.
  [[nodiscard]] std::FILE* stream() const { return stream_; }

  /// For messages.
  [[nodiscard]] const std::string& name() const { return name_; }

  /// Forgets the reasons of failures elsewhere, before something is written.
  static void expect_writes();

  /// Keeps the reason, if a write has failed since `expect_writes`.
  void note_failure();

  /// Hands on what is buffered. False if any write so far has failed.
  [[nodiscard]] bool flush();

  /// Closes a file. Flushes standard output, and closes a copy of its descriptor: some file systems
  /// tell only then that they could not keep what was written. False if any of that has failed.
  [[nodiscard]] bool close();

  /// The system's reason for the first failure.
  [[nodiscard]] std::string failure_reason() const;

 private:
  [[nodiscard]] bool is_standard_output() const;
  bool fail();
  bool close_standard_output();

  std::FILE* stream_ = nullptr;
  Claim claim_ = Claim::kNone;
  int descriptor_ = -1;  ///< where the stream writes to; it reads it from here
  std::string name_;
  bool has_failed_ = false;
  int error_number_ = 0;
};

}  // namespace quorix
