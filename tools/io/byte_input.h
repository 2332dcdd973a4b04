#pragma once

/// @file
/// Bytes of an input, plain or compressed, behind one interface. Nothing above knows which it is.

#include <cstddef>
#include <memory>
#include <string>

namespace quorix::tools {

class CByteInput {
 public:
  CByteInput() = default;
  CByteInput(const CByteInput&) = delete;
  CByteInput& operator=(const CByteInput&) = delete;
  virtual ~CByteInput() = default;

  /// Reads up to `size` bytes into `block`, at least one unless the input has ended. Returns their
  /// number, 0 at the end. REQUIRES: `size` is not 0. Throws: InputError.
  virtual std::size_t read(char* block, std::size_t size) = 0;

  /// Returns why the end that `read` has met is no clean one, or an empty text.
  [[nodiscard]] virtual std::string cut_reason() const { return {}; }
};

/// Opens a file, or standard input for "-". Data in gzip's format are known by their first two
/// bytes and read as their text, all members of them. Throws: InputError.
std::unique_ptr<CByteInput> open_input(const std::string& name);

/// Returns how messages call an input: its name, or "standard input" for "-".
std::string shown_input_name(const std::string& name);

}  // namespace quorix::tools
