#pragma once

/// @file
/// A stream that keeps what reaches it, and a stand-in for standard error made of one.

#include <cstddef>
#include <cstdio>
#include <functional>
#include <string>
#include <utility>

namespace quorix::testing {

/// A buffered stream: it receives what is flushed, not what is merely printed.
class CRecordedStream {
 public:
  /// `on_arrival` is called each time that a flush has delivered something.
  explicit CRecordedStream(std::function<void()> on_arrival = {})
      : on_arrival_(std::move(on_arrival)),
        stream_(::fopencookie(this, "w",
                              {.read = nullptr,
                               .write = &CRecordedStream::receive,
                               .seek = nullptr,
                               .close = nullptr})) {}
  ~CRecordedStream() { std::fclose(stream_); }
  CRecordedStream(const CRecordedStream&) = delete;
  CRecordedStream& operator=(const CRecordedStream&) = delete;

  [[nodiscard]] std::FILE* stream() const { return stream_; }
  [[nodiscard]] const std::string& received() const { return received_; }

 private:
  static ::ssize_t receive(void* recorder, const char* bytes, std::size_t count) {
    auto* const self = static_cast<CRecordedStream*>(recorder);
    self->received_.append(bytes, count);
    if (self->on_arrival_) self->on_arrival_();
    return static_cast<::ssize_t>(count);
  }

  std::function<void()> on_arrival_;
  std::string received_;
  std::FILE* stream_;
};

/// While it lives, standard error goes to a recorded stream.
class CRecordedStandardError {
 public:
  explicit CRecordedStandardError(std::function<void()> on_arrival = {})
      : recorder_(std::move(on_arrival)), original_(std::exchange(stderr, recorder_.stream())) {}
  ~CRecordedStandardError() { stderr = original_; }
  CRecordedStandardError(const CRecordedStandardError&) = delete;
  CRecordedStandardError& operator=(const CRecordedStandardError&) = delete;

  [[nodiscard]] const std::string& received() const { return recorder_.received(); }

 private:
  CRecordedStream recorder_;
  std::FILE* original_;
};

}  // namespace quorix::testing
