#pragma once

/// @file
/// Cache of chosen edits, one half of the extension cache: see search/extension/extension_cache.h.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "search/extension/site_key.h"

namespace quorix {

/// The work of an edit cache since it was made.
struct EditCacheWork {
  std::uint64_t hits = 0;    ///< edits found
  std::uint64_t misses = 0;  ///< edits not found
  std::uint64_t stored = 0;  ///< edits stored
  std::uint64_t moved = 0;   ///< entries moved to another slot when slots were added
};

class CEditCache {
 public:
  /// Returns the edit chosen at a site by an extension with `limit`, or NUL if it is not stored.
  [[nodiscard]] char find(const SiteKey& site, const char* limit);

  /// Stores the edit `kind`, in the slot of another one if need be. NUL says that none is allowed,
  /// and is not found. Throws: std::bad_alloc.
  void store(const SiteKey& site, const char* limit, char kind);

  /// Forgets everything. The counts of work stay.
  void clear();

  [[nodiscard]] const EditCacheWork& work() const { return work_; }

 private:
  struct Entry {
    SiteKey site;
    const char* limit;
    char kind;  ///< NUL in an empty slot, and where no edit is allowed
  };

  [[nodiscard]] std::size_t slot_of(const SiteKey& site, const char* limit) const;
  void add_slots();

  std::vector<Entry> entries_;    ///< a power of two of slots; none until the first edit is stored
  std::size_t stored_count_ = 0;  ///< since the last clearing, overwritten ones included
  EditCacheWork work_;
};

}  // namespace quorix
