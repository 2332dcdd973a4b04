#pragma once

/// @file
/// Where the bytes of an input come from. `CFile` reads through this interface, so that a test can
/// hand out short reads and errors, and another kind of input needs no other reader.

#include <cstddef>
#include <string>

namespace quorix {

class CByteSource {
 public:
  enum class Outcome {
    kBytes,  ///< at least one byte was read
    kEnd,    ///< there are no more bytes
    kError,  ///< the device failed, or bytes are lost; what was read before stands
  };
  struct ReadResult {
    Outcome outcome;
    std::size_t byte_count;  ///< 1 to the room given with kBytes, else 0
  };

  CByteSource() = default;
  virtual ~CByteSource() = default;
  CByteSource(const CByteSource&) = delete;
  CByteSource& operator=(const CByteSource&) = delete;

  /// Reads up to `room` bytes to `destination`; fewer come when fewer are at hand.
  /// REQUIRES: room >= 1.
  [[nodiscard]] virtual ReadResult read(char* destination, std::size_t room) = 0;

  /// Why the last read gave `kError`, in one line without its end. Empty where nothing is known.
  [[nodiscard]] virtual std::string failure_reason() const { return {}; }
};

}  // namespace quorix
