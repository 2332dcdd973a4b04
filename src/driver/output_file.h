#pragma once

/// @file
/// A stream that the run writes to, and the outcome of its writes.
///
/// The functions that write the texts ignore write errors. The driver asks here once a sequence,
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
  /// Closes an open file and ignores the result: the run has failed already.
  ~COutputFile();
  COutputFile(const COutputFile&) = delete;
  COutputFile& operator=(const COutputFile&) = delete;

  /// Opens and locks `filename` for writing; its content stays until `begin`. A claim that is held,
  /// or that has failed, is not tried again. Returns `claim()`.
  Claim claim_name(const std::string& filename, Missing missing);

  /// The outcome of the last `claim_name`.
  [[nodiscard]] Claim claim() const { return claim_; }

  /// Empties the claimed file and opens the stream. False if that fails or if no file is claimed.
  [[nodiscard]] bool begin();

  /// Claims and begins `filename`, which is created if it is missing. False if either step fails.
  [[nodiscard]] bool open(const std::string& filename);

  /// Writes to standard output, through a stream of its own if there is memory for it. That stream
  /// and `stdout` have separate buffers, so nothing else may be written to `stdout`.
  void use_standard_output();

  /// Takes `stdout` itself, to check what others have written to it.
  void use_shared_standard_output();

  /// The stream, or null where none could be opened.
  [[nodiscard]] std::FILE* stream() const { return stream_; }

  /// For messages.
  [[nodiscard]] const std::string& name() const { return name_; }

  /// Clears `errno` before something is written, so that it does not hold the reason of a failure
  /// elsewhere.
  static void expect_writes();

  /// Keeps the reason if a write has failed since `expect_writes`.
  void note_failure();

  /// Writes out the buffer. False if any write so far has failed.
  [[nodiscard]] bool flush();

  /// Closes a file. Flushes standard output, and closes a copy of its descriptor: some file systems
  /// report only then that they could not store what was written. False if any of that fails.
  [[nodiscard]] bool close();

  /// The system's text for the first failure.
  [[nodiscard]] std::string failure_reason() const;

 private:
  [[nodiscard]] bool is_standard_output() const;
  bool fail();
  bool close_standard_output();

  std::FILE* stream_ = nullptr;
  Claim claim_ = Claim::kNone;
  int descriptor_ = -1;  ///< the stream writes to it, and reads it from here
  std::string name_;
  bool has_failed_ = false;
  int error_number_ = 0;
};

}  // namespace quorix
