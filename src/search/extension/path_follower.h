#pragma once

/// @file
/// Moves a repeat along cached paths during one extension: see
/// search/extension/extension_cache.h.
///
/// A path is followed up to an edit site and never further: the last edit, the end of the text and
/// a run of too many N's are always met base by base, and with them both rules for ties between
/// the last and the best state.
///
/// Edits that a section skips are not added at once, since the extension may return to a best state
/// before that section. They are merged with the repeat's own edits when the extension has ended:
///
///     own edits      a b         c           d e
///     sections            [1]         [2]            -> a b 1... c 2... d e

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "report/csat.h"
#include "search/extension/direction.h"
#include "search/extension/path_cache.h"
#include "search/extension/repeat_snapshot.h"
#include "search/extension/site_key.h"
#include "search/rules/cache_limits.h"
#include "search/rules/score.h"

namespace quorix {

template <class Direction>
class CPathFollower {
 public:
  /// `paths` is null if the text or the limit is not the one that they are for.
  explicit CPathFollower(CPathCache* paths) : paths_(paths) {}

  /// Sections followed so far.
  [[nodiscard]] std::size_t section_count() const { return sections_.size(); }

  /// Called at each edit site: moves `sat` on as far as a cached path is sure, and `best` to the
  /// best state on it. Throws: std::bad_alloc.
  void follow(Csat& sat, const char* limit, CRepeatSnapshot& best) {
    if (paths_ == nullptr || ++sites_ <= kUncachedSites) return;
    if (sites_ == kUncachedSites + 1 && !begin(sat, limit, best)) return;
    while (true) {
      const CPathCache::Section section = paths_->follow(site_of(sat), safe_score_, best.score());
      if (section.from == CPathCache::kNone) return;
      CPathCache::SiteId at = section.from;
      if (section.best != CPathCache::kNone) {
        move(sat, at, section.best);
        best = CRepeatSnapshot(sat, section_count());
        at = section.best;
      }
      if (at != section.to) move(sat, at, section.to);
    }
  }

  /// Notes the edit that is made next. Throws: std::bad_alloc.
  void note(Csat& sat, char kind) {
    if (is_active()) paths_->note(site_of(sat), safe_score_, kind);
  }

  /// Ends the extension at a state with `section_count` sections, and merges their edits into those
  /// of `sat`. Throws: std::bad_alloc. O(edits).
  void end(Csat& sat, std::size_t section_count) {
    if (!is_active()) return;
    paths_->end_path();
    sections_.resize(section_count);
    if (sections_.empty()) return;
    const std::size_t first = sections_.front().edits_before;
    const std::vector<Edit> own(sat.missense.begin() + first, sat.missense.end());
    sat.missense.truncate(first);
    std::size_t added = 0;
    const auto add_own_up_to = [&](std::size_t count) {
      for (; added < count; ++added) sat.missense.push_back(own[added]);
    };
    for (const FollowedSection& section : sections_) {
      add_own_up_to(section.edits_before - first);
      paths_->append_edits(section.from, section.to,
                           Direction::kIndex == Rightward::kIndex ? 0 : -1, sat.missense);
    }
    add_own_up_to(own.size());
  }

 private:
  struct FollowedSection {
    std::size_t edits_before;  ///< own edits of the repeat before this section
    CPathCache::SiteId from;
    CPathCache::SiteId to;
  };

  [[nodiscard]] bool is_active() const { return paths_ != nullptr && sites_ > kUncachedSites; }

  /// Returns false if this extension may not use cached paths. What `is_cacheable` finds here holds
  /// at all later sites.
  bool begin(Csat& sat, const char* limit, const CRepeatSnapshot& best) {
    const std::int64_t max_score = std::max<std::int64_t>(sat.score, best.score()) +
                                   Direction::bases_beyond(Direction::edge(sat), limit);
    if (!is_cacheable<Direction>(sat, limit, best.score()) || max_score > kMaxCachedScore) {
      paths_ = nullptr;
      return false;
    }
    safe_score_ = min_safe_score(sat.unit_length());
    paths_->begin_path();
    return true;
  }

  /// Returns the edit site at the edge of `sat`.
  static EditSite site_of(Csat& sat) {
    return {Direction::edge(sat),
            unit_code_of<Direction>(sat),
            sat.score,
            sat.mismatches,
            sat.insertions,
            sat.deletions,
            sat.n_count};
  }

  /// Moves `sat` from one site of a cached path to a later one.
  void move(Csat& sat, CPathCache::SiteId from, CPathCache::SiteId to) {
    const CPathCache::Sums sums = paths_->between(from, to);
    // Each base takes a unit character, except an inserted one; so does each deletion.
    const std::int64_t characters =
        Direction::distance(Direction::edge(sat), sums.edge) - sums.insertions + sums.deletions;
    assert(characters >= 0);
    const char*& cursor = Direction::unit_cursor(sat);
    cursor = Direction::character_beyond(cursor, characters, sat.unit_begin, sat.unit_end);
    Direction::edge(sat) = sums.edge;
    sat.score = saturated_score(sat.score + sums.score);
    sat.mismatches += sums.mismatches;
    sat.insertions += sums.insertions;
    sat.deletions += sums.deletions;
    sat.n_count += sums.n_count;
    sections_.push_back({sat.missense.size(), from, to});
  }

  CPathCache* paths_;                      ///< null if this extension uses no cached paths
  int sites_ = 0;                          ///< edit sites met so far, each on its own
  std::int64_t safe_score_ = 0;            ///< of the unit length
  std::vector<FollowedSection> sections_;  ///< in the order in which they were followed
};

}  // namespace quorix
