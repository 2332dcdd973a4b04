#pragma once

/// @file
/// Cache of the paths of earlier extensions, one half of the extension cache: see
/// search/extension/extension_cache.h for the idea and for what the caller ensures.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "report/csat.h"
#include "search/rules/cache_limits.h"

namespace quorix {

/// An edit site, as an extension to one side arrives there: the base beyond the edge differs from
/// the unit character that it has to match.
struct EditSite {
  const char* edge;
  std::uint64_t unit_code;  ///< see `unit_code_of`
  std::int32_t score;
  std::int64_t mismatches;
  std::int64_t insertions;
  std::int64_t deletions;
  std::int64_t n_count;
};

/// The work of a path cache since it was made.
struct PathCacheWork {
  std::uint64_t hits = 0;       ///< sites from which a cached path led on
  std::uint64_t misses = 0;     ///< sites from which none did
  std::uint64_t steps = 0;      ///< along cached paths; a skip over many sites is one
  std::uint64_t stored = 0;     ///< sites stored
  std::uint64_t forgotten = 0;  ///< sites forgotten because the cache was full
  std::uint64_t placed = 0;     ///< sites that got a slot again when slots were added
};

class CPathCache {
 public:
  using SiteId = std::uint32_t;
  static constexpr SiteId kNone = 0xFFFFFFFFU;

  /// A part of a cached path: it begins at `from`; `best` is the site with the highest score above
  /// the best so far, or `kNone`; `to` is the last site that the extension is sure to reach.
  struct Section {
    SiteId from;
    SiteId best;
    SiteId to;
  };

  /// What lies between two sites of a path, summed up.
  struct Sums {
    const char* edge;  ///< of the later site
    std::int64_t score;
    std::int64_t mismatches;
    std::int64_t insertions;
    std::int64_t deletions;
    std::int64_t n_count;
  };

  /// Stores no more than `max_sites`. A path for which there is no room is dropped, and the next
  /// path begins with an empty cache. REQUIRES: max_sites <= `kMaxCachedSites`.
  explicit CPathCache(std::size_t max_sites = kMaxCachedSites) : max_sites_(max_sites) {}

  /// Begins a path. Ids from former paths are not valid any more.
  void begin_path();

  /// Stores what was noted of the path. Throws: std::bad_alloc.
  void end_path();

  /// Notes that the extension makes the edit `kind` at `site`. `safe_score` is that of the unit,
  /// see `min_safe_score`. Throws: std::bad_alloc.
  void note(const EditSite& site, std::int64_t safe_score, char kind);

  /// Returns the section of a cached path that an extension takes which arrives at `site`; its
  /// `from` is `kNone` if no path leads on from there. Stores the noted sites, which join that
  /// path. Throws: std::bad_alloc. O(log sites) steps if all scores are safe.
  [[nodiscard]] Section follow(const EditSite& site, std::int64_t safe_score,
                               std::int64_t best_score);

  /// Returns the sums between two sites of a path, of which `from` comes first.
  [[nodiscard]] Sums between(SiteId from, SiteId to) const;

  /// Appends the edits made from `from` up to, but not at, `to`. The base beyond an edge is at
  /// edge + `base_offset`. Throws: std::bad_alloc. O(edits).
  void append_edits(SiteId from, SiteId to, std::ptrdiff_t base_offset,
                    fastvector<Edit>& edits) const;

  /// Forgets everything. The counts of work stay.
  void clear();

  [[nodiscard]] const PathCacheWork& work() const { return work_; }

 private:
  struct NotedSite {
    EditSite site;
    std::int64_t safe_score;
    char kind;
  };

  /// Bits of an id, and of a count of sites.
  static constexpr unsigned kIdBits = 20;
  static constexpr std::uint32_t kIdMask = (1U << kIdBits) - 1;

  /// A site in the tree. Sums are those up to the root, the last site of a path. Long arrays fill
  /// the processor's caches, so a node is packed as densely as possible.
  struct Node {
    const char* edge;
    std::uint64_t unit_code;
    std::int32_t score;              ///< of the extension that stored the node
    std::int32_t height;             ///< score above that of the root
    std::int32_t min_height;         ///< of the sites before `skip`, this one included
    std::int32_t max_height;         ///< of the sites after this one, up to `skip`
    std::uint64_t next : kIdBits;    ///< the parent; means nothing at the root
    std::uint64_t skip : kIdBits;    ///< the skip pointer; the root itself at the root
    std::uint64_t max_at : kIdBits;  ///< the first site with `max_height`
    std::uint64_t is_safe : 1;       ///< the edit holds for all safe scores
    std::uint64_t is_skip_safe : 1;  ///< and so do all edits before `skip`
    /// An extension that arrives with `score` reproduces every score up to the root.
    std::uint64_t repeats_scores_to_root : 1;
    std::uint64_t is_root : 1;
    std::uint64_t edits : kIdBits;
    std::uint64_t mismatches : kIdBits;
    std::uint64_t insertions : kIdBits;
    std::uint64_t kind : 2;  ///< of the edit that is made here, as an index of `kKinds`
  };
  static_assert(sizeof(Node) == 48);

  static constexpr unsigned kBlockBits = 8;
  static constexpr std::size_t kBlockSize = std::size_t{1} << kBlockBits;

  [[nodiscard]] std::size_t slot_of(const char* edge, std::uint64_t unit_code, std::int32_t score,
                                    bool is_safe) const;
  [[nodiscard]] SiteId find(const EditSite& site, std::int64_t safe_score) const;
  [[nodiscard]] Section follow_path(SiteId from, std::int64_t score, std::int64_t safe_score,
                                    std::int64_t best_score);
  void store_noted_before(SiteId id, const EditSite& site);
  [[nodiscard]] bool has_room_for_noted();
  [[nodiscard]] SiteId store_root(const NotedSite& last);
  void set_skip(Node& node) const;
  [[nodiscard]] SiteId store(const Node& node, std::uint32_t n_count);
  void store_n_count(SiteId id, std::uint32_t n_count);
  [[nodiscard]] std::uint32_t n_count_at(SiteId id) const {
    return n_counts_.empty() ? 0 : n_counts_[id];
  }
  [[nodiscard]] const Node& node_at(SiteId id) const {
    return blocks_[id >> kBlockBits][id & (kBlockSize - 1)];
  }
  void assign_slots(std::size_t count);

  std::size_t max_sites_;
  std::vector<NotedSite> noted_;
  std::vector<std::unique_ptr<Node[]>> blocks_;  ///< of `kBlockSize` nodes each
  SiteId site_count_ = 0;
  /// The N's from each site to its root. Most texts have none there, and then this is empty.
  std::vector<std::uint32_t> n_counts_;
  const char* origin_ = nullptr;  ///< edge of the first site: slots do not depend on addresses
  std::vector<SiteId> slots_;     ///< a power of two of them; none until the first site is stored
  bool is_full_ = false;
  PathCacheWork work_;
};

}  // namespace quorix
