#pragma once

/// @file
/// The edits of repeats that wait to be reported, packed and shared.
///
/// A long array can hold thousands of accepted repeats with thousands of edits each, nearly all of
/// them shared with others: extensions from different seeds soon follow the same path. Until the
/// overlap removal has chosen among the repeats, nobody reads these edits. So a store packs them
/// into about one byte each and cuts the lists into chunks. The text, not the list, decides where
/// to cut: lists with the same edits over a stretch of the text have the same chunks there, and the
/// store keeps each chunk once.

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <string>
#include <string_view>
#include <vector>

#include "report/edit.h"
#include "report/fastvector.h"

namespace quorix {

/// A handle to the edits of one repeat. They lie in a store; the handle may be copied, and is valid
/// as long as that store lives.
class CPackedEdits {
 public:
  /// No edits.
  CPackedEdits() = default;

  [[nodiscard]] bool empty() const { return list_ == nullptr; }
  [[nodiscard]] std::size_t edit_count() const { return empty() ? 0 : list_->edit_count; }

  /// Replaces the elements of `edits` by the packed ones, in the order in which they were packed.
  /// The block of `edits` grows if needed, and fails as `fastvector::reserve` does.
  void unpack_to(fastvector<Edit>& edits) const;

 private:
  friend class CEditStore;

  /// Consecutive edits. `byte_count` bytes follow the header, see the .cpp file.
  struct Chunk {
    std::uint32_t byte_count;
    std::uint32_t hash;
  };

  /// A list. `chunk_count` pointers to its chunks follow.
  struct List {
    std::size_t edit_count;
    std::size_t chunk_count;
  };

  static std::string_view bytes_of(const Chunk* chunk) {
    return {static_cast<const char*>(static_cast<const void*>(chunk + 1)), chunk->byte_count};
  }
  static const Chunk* const* chunks_of(const List* list) {
    return static_cast<const Chunk* const*>(static_cast<const void*>(list + 1));
  }

  const List* list_ = nullptr;
};

/// The store of packed edits. It frees nothing before it is destroyed.
class CEditStore {
 public:
  CEditStore() = default;
  CEditStore(const CEditStore&) = delete;
  CEditStore& operator=(const CEditStore&) = delete;

  /// Packs `edits`, which stay as they are, and returns the handle. Lists packed with the same
  /// `text_begin` share chunks. REQUIRES: the edits are in ascending order of their positions in
  /// the text that begins at `text_begin`; kinds are 'M', 'I' and 'D'. Throws: std::bad_alloc.
  [[nodiscard]] CPackedEdits pack(const fastvector<Edit>& edits, const char* text_begin);

  /// Returns the bytes that lists, chunks and the table of chunks occupy.
  [[nodiscard]] std::size_t byte_count() const {
    return arena_bytes_ + table_.capacity() * sizeof(const Chunk*);
  }

 private:
  using Chunk = CPackedEdits::Chunk;
  using List = CPackedEdits::List;

  [[nodiscard]] void* allocate(std::size_t size);
  [[nodiscard]] const Chunk* shared_chunk();
  [[nodiscard]] const Chunk** place_of(std::string_view bytes, std::uint32_t hash);
  void make_room_in_table();

  std::pmr::monotonic_buffer_resource arena_;
  std::size_t arena_bytes_ = 0;
  std::vector<const Chunk*> table_;  ///< a power of two of places; null where free
  std::size_t chunk_count_ = 0;
  // Of the list that is being packed:
  std::string bytes_;                 ///< of its next chunk
  std::vector<const Chunk*> chunks_;  ///< complete so far
};

}  // namespace quorix
