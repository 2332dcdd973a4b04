// A chunk holds the position of its first edit as a pointer, and a code for each edit: its kind and
// its distance from the edit before it, 0 for the first. Kind and distance share one byte, the kind
// in the two high bits and the distance in the six low ones. If the distance does not fit, all six
// bits are set and the rest follows in bytes of seven bits, lowest first; all but the last have the
// high bit set. Most distances fit, since a repeat whose edits are far apart has few of them.
//
// A chunk ends after each edit whose offset in the text hashes to zero, one in 128. Two lists that
// differ only at some places thus share the chunks everywhere else.

#include "report/packed_edits.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <functional>

namespace quorix {

namespace {

constexpr std::string_view kKinds = "MID";
constexpr unsigned kKindShift = 6;
constexpr std::uint64_t kFarDistance = (1U << kKindShift) - 1;
constexpr unsigned kRestShift = 7;
constexpr std::uint64_t kRestMask = (1U << kRestShift) - 1;

/// An odd factor that spreads offsets over all 64 bits; the top seven decide.
constexpr std::uint64_t kMixer = 0x9E3779B97F4A7C15U;
constexpr unsigned kHashShift = 57;
/// A chunk ends at this size, whatever its offsets are; one edit may exceed it.
constexpr std::size_t kMaxChunkBytes = 4096;
constexpr std::size_t kMinTableSize = 64;

/// Returns true if an edit at this offset ends its chunk, in whatever list it stands.
bool is_end_of_chunk(std::uint64_t offset) {
  return (offset * kMixer) >> kHashShift == 0;
}

void append_byte(std::string& bytes, std::uint64_t byte) {
  bytes.push_back(static_cast<char>(static_cast<unsigned char>(byte)));
}

/// Appends the code of an edit, as described above.
void append_code(std::string& bytes, char kind, std::uint64_t distance) {
  assert(kKinds.find(kind) != std::string_view::npos);
  const unsigned code = kind == 'M' ? 0 : kind == 'I' ? 1 : 2;
  append_byte(bytes, code << kKindShift | std::min(distance, kFarDistance));
  if (distance < kFarDistance) return;
  std::uint64_t rest = distance - kFarDistance;
  for (; rest > kRestMask; rest >>= kRestShift) {
    append_byte(bytes, (rest & kRestMask) | (kRestMask + 1));
  }
  append_byte(bytes, rest);
}

/// Reads the rest of a distance that does not fit into the first byte, and moves `from` after it.
std::uint64_t take_rest(const char*& from) {
  std::uint64_t rest = 0;
  for (unsigned shift = 0;; shift += kRestShift) {
    const std::uint64_t byte = static_cast<unsigned char>(*from++);
    rest |= (byte & kRestMask) << shift;
    if (byte <= kRestMask) return rest;
  }
}

/// Appends the edits of one chunk.
void append_edits(std::string_view bytes, fastvector<Edit>& edits) {
  const char* position = nullptr;
  std::memcpy(&position, bytes.data(), sizeof position);
  const char* from = bytes.data() + sizeof position;
  const char* const end = bytes.data() + bytes.size();
  while (from != end) {
    const unsigned code = static_cast<unsigned char>(*from++);
    std::uint64_t distance = code & kFarDistance;
    if (distance == kFarDistance) distance += take_rest(from);
    position += distance;
    edits.push_back({position, kKinds[code >> kKindShift]});
  }
}

}  // namespace

void CPackedEdits::unpack_to(fastvector<Edit>& edits) const {
  edits.truncate(0);
  if (empty()) return;
  edits.reserve(list_->edit_count);
  const Chunk* const* const chunks = chunks_of(list_);
  for (std::size_t i = 0; i < list_->chunk_count; ++i) append_edits(bytes_of(chunks[i]), edits);
}

CPackedEdits CEditStore::pack(const fastvector<Edit>& edits, const char* text_begin) {
  CPackedEdits packed;
  if (edits.empty()) return packed;
  chunks_.clear();
  bytes_.clear();
  const char* previous = nullptr;
  for (const Edit& edit : edits) {
    if (bytes_.empty()) {
      previous = edit.position;
      bytes_.resize(sizeof previous);
      std::memcpy(bytes_.data(), &previous, sizeof previous);
    }
    assert(edit.position >= previous);
    append_code(bytes_, edit.kind, static_cast<std::uint64_t>(edit.position - previous));
    previous = edit.position;
    if (is_end_of_chunk(static_cast<std::uint64_t>(edit.position - text_begin)) ||
        bytes_.size() >= kMaxChunkBytes) {
      chunks_.push_back(shared_chunk());
      bytes_.clear();
    }
  }
  if (!bytes_.empty()) chunks_.push_back(shared_chunk());

  // The list is allocated once its length is known: pointers follow it in the same block.
  const List list{edits.size(), chunks_.size()};
  const std::size_t pointer_bytes = chunks_.size() * sizeof(const Chunk*);
  auto* const block = static_cast<char*>(allocate(sizeof list + pointer_bytes));
  packed.list_ = new (block) List(list);
  std::memcpy(block + sizeof list, chunks_.data(), pointer_bytes);
  return packed;
}

/// Returns the stored chunk with the content of `bytes_`, and stores it first if it is new.
const CPackedEdits::Chunk* CEditStore::shared_chunk() {
  make_room_in_table();
  const auto hash = static_cast<std::uint32_t>(std::hash<std::string_view>()(bytes_));
  const Chunk*& place = *place_of(bytes_, hash);
  if (place == nullptr) {
    auto* const block = static_cast<char*>(allocate(sizeof(Chunk) + bytes_.size()));
    std::memcpy(block + sizeof(Chunk), bytes_.data(), bytes_.size());
    place = new (block) Chunk{static_cast<std::uint32_t>(bytes_.size()), hash};
    ++chunk_count_;
  }
  return place;
}

/// Returns the place of `bytes` in the table, or the free place for them.
const CPackedEdits::Chunk** CEditStore::place_of(std::string_view bytes, std::uint32_t hash) {
  const std::size_t mask = table_.size() - 1;
  std::size_t index = hash & mask;
  while (table_[index] != nullptr &&
         (table_[index]->hash != hash || CPackedEdits::bytes_of(table_[index]) != bytes)) {
    index = (index + 1) & mask;
  }
  return &table_[index];
}

/// Doubles the table where less than a quarter of it would be free.
void CEditStore::make_room_in_table() {
  if (4 * (chunk_count_ + 1) <= 3 * table_.size()) return;
  std::vector<const Chunk*> former(std::max(kMinTableSize, 2 * table_.size()));
  former.swap(table_);
  for (const Chunk* const chunk : former) {
    if (chunk != nullptr) *place_of(CPackedEdits::bytes_of(chunk), chunk->hash) = chunk;
  }
}

void* CEditStore::allocate(std::size_t size) {
  void* const block = arena_.allocate(size, alignof(List));
  arena_bytes_ += size;
  return block;
}

}  // namespace quorix
