#pragma once

/// @file
/// A byte source that plays a script: which bytes come with which read, where the input ends and
/// where the device fails. So a test decides where the blocks of a reader begin.

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "sequence/byte_source.h"

namespace quorix::testing {

/// What one read gives. Bytes that do not fit into the room of a read are left for the next one.
struct ScriptedRead {
  CByteSource::Outcome outcome;
  std::string bytes;        ///< not empty with kBytes, else empty
  std::string reason = {};  ///< why it failed, with kError
};

using ReadScript = std::vector<ScriptedRead>;

inline ScriptedRead read_of(std::string_view bytes) {
  return {CByteSource::Outcome::kBytes, std::string(bytes)};
}

inline ScriptedRead end_of_input() {
  return {CByteSource::Outcome::kEnd, {}};
}

inline ScriptedRead read_error(std::string_view reason = {}) {
  return {CByteSource::Outcome::kError, {}, std::string(reason)};
}

/// Reads of `piece_length` bytes each that give `text` together. REQUIRES: piece_length >= 1.
inline ReadScript in_pieces(std::string_view text, std::size_t piece_length) {
  ReadScript script;
  for (std::size_t start = 0; start < text.size(); start += piece_length) {
    script.push_back(read_of(text.substr(start, piece_length)));
  }
  return script;
}

/// The same, with `last` after the pieces.
inline ReadScript in_pieces(std::string_view text, std::size_t piece_length, ScriptedRead last) {
  ReadScript script = in_pieces(text, piece_length);
  script.push_back(std::move(last));
  return script;
}

class CScriptedSource : public CByteSource {
 public:
  /// Plays `script` once; after it the input has ended.
  explicit CScriptedSource(ReadScript script) : script_(std::move(script)) {}

  [[nodiscard]] ReadResult read(char* destination, std::size_t room) override {
    rooms_asked_.push_back(room);
    if (next_ == script_.size()) return {Outcome::kEnd, 0};
    const ScriptedRead& step = script_[next_];
    const std::size_t count = std::min(room, step.bytes.size() - given_);
    std::memcpy(destination, step.bytes.data() + given_, count);
    given_ += count;
    failure_reason_ = step.reason;
    if (given_ == step.bytes.size()) {
      ++next_;
      given_ = 0;
    }
    return {step.outcome, count};
  }

  [[nodiscard]] std::string failure_reason() const override { return failure_reason_; }

  /// The room of every read so far, in bytes.
  [[nodiscard]] const std::vector<std::size_t>& rooms_asked() const { return rooms_asked_; }

 private:
  ReadScript script_;
  std::string failure_reason_;
  std::size_t next_ = 0;   ///< the step that plays next
  std::size_t given_ = 0;  ///< how many of its bytes are given already
  std::vector<std::size_t> rooms_asked_;
};

}  // namespace quorix::testing
