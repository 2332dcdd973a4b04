#pragma once

/// @file
/// A source of input bytes. `CFile` reads through this interface, so that tests can supply short
/// reads and errors, and a new kind of input needs no new reader.

#include <cstddef>
#include <string>

namespace quorix {

class CByteSource {
 public:
  enum class Outcome {
    kBytes,  ///< at least one byte was read
    kEnd,    ///< there are no more bytes
    kError,  ///< the device failed, or bytes are lost; earlier reads stay valid
  };
  struct ReadResult {
    Outcome outcome;
    std::size_t byte_count;  ///< 1 to `room` with kBytes, else 0
  };

  CByteSource() = default;
  virtual ~CByteSource() = default;
  CByteSource(const CByteSource&) = delete;
  CByteSource& operator=(const CByteSource&) = delete;

  /// Reads up to `room` bytes to `destination`; fewer if fewer are available.
  /// REQUIRES: room >= 1.
  [[nodiscard]] virtual ReadResult read(char* destination, std::size_t room) = 0;

  /// Returns why the last read returned `kError`, in one line without a line end. Empty if the
  /// reason is unknown.
  [[nodiscard]] virtual std::string failure_reason() const { return {}; }

  /// True if the last read returned `kError` because bytes are missing at the end. Those before
  /// are good.
  [[nodiscard]] virtual bool is_cut_short() const { return false; }
};

}  // namespace quorix
