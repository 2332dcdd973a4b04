#pragma once

/// @file
/// Texts that end or begin at a page that may not be touched, so that a read of a single byte
/// beyond them ends the process, whatever the build.

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <new>
#include <stdexcept>
#include <string_view>

namespace quorix::testing {

/// Room for one text at a time, between two such pages.
class CGuardedText {
 public:
  /// Throws: std::bad_alloc.
  explicit CGuardedText(std::size_t largest)
      : page_(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE))),
        room_((largest + page_ - 1) / page_ * page_),
        mapping_(
            ::mmap(nullptr, room_ + 2 * page_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {
    if (mapping_ == MAP_FAILED || ::mprotect(begin_of_room(), room_, PROT_READ | PROT_WRITE) != 0) {
      throw std::bad_alloc();
    }
  }
  ~CGuardedText() { ::munmap(mapping_, room_ + 2 * page_); }
  CGuardedText(const CGuardedText&) = delete;
  CGuardedText& operator=(const CGuardedText&) = delete;

  /// A copy of `text` right before the page after it. Valid until the next call. Throws:
  /// std::length_error.
  char* before_guard(std::string_view text) {
    return copy(text, begin_of_room() + room_ - text.size());
  }

  /// A copy right after the page before it.
  char* after_guard(std::string_view text) { return copy(text, begin_of_room()); }

 private:
  [[nodiscard]] char* begin_of_room() const { return static_cast<char*>(mapping_) + page_; }

  char* copy(std::string_view text, char* place) const {
    if (text.size() > room_) throw std::length_error("the text is larger than its room");
    text.copy(place, text.size());
    return place;
  }

  std::size_t page_;
  std::size_t room_;
  void* mapping_;
};

}  // namespace quorix::testing
