#pragma once

/// @file
/// The growable character buffer that holds the bases of a record.
///
/// It is one plain memory block. It grows by doubling, so that reading a chromosome moves it only a
/// few times, and is reused from record to record. It has no terminating NUL unless `c_str` is
/// called.

#include <cstddef>
#include <cstdlib>
#include <new>
#include <utility>

namespace quorix {

class faststring {
 public:
  faststring() = default;
  ~faststring() { std::free(data_); }
  faststring(const faststring&) = delete;
  faststring& operator=(const faststring&) = delete;
  faststring(faststring&& other) noexcept { swap(other); }
  faststring& operator=(faststring&& other) noexcept {
    swap(other);
    return *this;
  }

  /// Returns the characters in use, null before the first allocation. Valid until the block grows.
  [[nodiscard]] char* data() { return data_; }
  [[nodiscard]] const char* data() const { return data_; }
  /// Returns the number of characters in use.
  [[nodiscard]] std::size_t size() const { return size_; }
  /// Returns the number of bytes allocated.
  [[nodiscard]] std::size_t capacity() const { return capacity_; }

  /// Drops the characters and keeps the block.
  void clear() { size_ = 0; }

  /// Makes room for `count` characters and a terminator. A smaller block becomes exactly
  /// `count` + 1 bytes long. Throws: std::bad_alloc.
  void reserve(std::size_t count) {
    if (count == kMaxSize) throw std::bad_alloc();
    if (capacity_ < count + 1) reallocate(count + 1);
  }

  /// Appends one character. A full block doubles; the first block has 4 bytes.
  /// Throws: std::bad_alloc.
  void push_back(char character) {
    if (size_ == capacity_) grow();
    data_[size_++] = character;
  }

  /// Returns the number of bytes of the block that are not in use.
  [[nodiscard]] std::size_t spare_room() const { return capacity_ - size_; }

  /// Returns where the next characters go: write them there, then append them with `commit`. Null
  /// before the first allocation.
  [[nodiscard]] char* spare_begin() { return data_ + size_; }

  /// Appends the `count` characters at `spare_begin`. REQUIRES: count <= spare_room().
  void commit(std::size_t count) { size_ += count; }

  /// Returns the characters, followed by a NUL. A full block grows by exactly one byte and may
  /// move. Throws: std::bad_alloc.
  const char* c_str() {
    if (capacity_ == size_) reallocate(size_ + 1);
    data_[size_] = '\0';
    return data_;
  }

 protected:
  void swap(faststring& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
  }

 private:
  static constexpr std::size_t kMaxSize = static_cast<std::size_t>(-1);
  static constexpr std::size_t kFirstCapacity = 4;

  void grow() {
    if (capacity_ > kMaxSize / 2) throw std::bad_alloc();
    reallocate(capacity_ == 0 ? kFirstCapacity : 2 * capacity_);
  }

  void reallocate(std::size_t capacity) {
    void* const block = std::realloc(data_, capacity);
    if (block == nullptr) throw std::bad_alloc();
    data_ = static_cast<char*>(block);
    capacity_ = capacity;
  }

  char* data_ = nullptr;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace quorix
