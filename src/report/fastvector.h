#pragma once

/// @file
/// A growable array of plain elements in one memory block: the edit list of a repeat. It keeps its
/// block when it is emptied, since records are reused.

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <type_traits>
#include <utility>

namespace quorix {

/// Called if a block cannot grow. That of the program prints so to standard output and ends the
/// process with status 0: scripts rely on the text and the status. It is a library of its own, so
/// that what must not end the process can link another one, which may throw std::bad_alloc.
[[noreturn]] void end_on_failed_realloc();

template <class Element>
class fastvector {
  static_assert(std::is_trivially_copyable_v<Element>, "elements move with their memory block");

 public:
  fastvector() = default;
  ~fastvector() { std::free(data_); }

  /// The block of the copy has exactly the size of the source.
  fastvector(const fastvector& other) { copy_from(other); }

  /// The block grows only if the source does not fit in it.
  fastvector& operator=(const fastvector& other) {
    if (this != &other) copy_from(other);
    return *this;
  }

  [[nodiscard]] std::size_t size() const { return size_; }
  [[nodiscard]] std::size_t capacity() const { return capacity_; }
  [[nodiscard]] bool empty() const { return size_ == 0; }

  [[nodiscard]] Element* begin() { return data_; }
  [[nodiscard]] Element* end() { return data_ + size_; }
  [[nodiscard]] const Element* begin() const { return data_; }
  [[nodiscard]] const Element* end() const { return data_ + size_; }
  [[nodiscard]] const Element& operator[](std::size_t index) const { return data_[index]; }

  /// Drops all elements after the first `count` and keeps the block. REQUIRES: count <= size().
  void truncate(std::size_t count) { size_ = count; }

  /// Exchanges elements and blocks with `other`.
  void swap(fastvector& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
  }

  /// Makes room for `count` elements in all. A smaller block becomes exactly that large. If a block
  /// cannot grow, `end_on_failed_realloc` is called and the elements are as they were.
  /// Throws: std::bad_alloc if the first block cannot be allocated.
  void reserve(std::size_t count) {
    if (capacity_ >= count) return;
    constexpr std::size_t kMaxCount = static_cast<std::size_t>(-1) / sizeof(Element);
    void* const block = count > kMaxCount ? nullptr : std::realloc(data_, count * sizeof(Element));
    if (block == nullptr) {
      if (data_ == nullptr) throw std::bad_alloc();
      end_on_failed_realloc();
    }
    data_ = static_cast<Element*>(block);
    capacity_ = count;
  }

  /// Appends one element. A full block doubles; the first block has room for 4.
  /// Fails as `reserve` does.
  void push_back(const Element& element) {
    const Element copy = element;
    if (size_ == capacity_) reserve(capacity_ == 0 ? kFirstCapacity : 2 * size_);
    data_[size_++] = copy;
  }

 private:
  static constexpr std::size_t kFirstCapacity = 4;

  void copy_from(const fastvector& other) {
    reserve(other.size_);
    std::copy(other.begin(), other.end(), data_);
    size_ = other.size_;
  }

  Element* data_ = nullptr;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace quorix
