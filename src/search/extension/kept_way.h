#pragma once

/// @file
/// A growth that follows the ways of earlier ones where it can: what depends on the way taken and
/// what does not, and how a repeat is moved along a way that is kept.

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "report/csat.h"
#include "search/extension/direction.h"
#include "search/extension/edit_memo.h"
#include "search/extension/growth_paths.h"
#include "search/rules/score.h"
#include "settings/settings.h"

namespace quorix {

/// A state of a growing repeat. During one extension the edit list only gets longer, so its length
/// is all that has to be remembered of it.
class CSnapshot {
 public:
  /// `part_count` is that of the ways followed so far.
  explicit CSnapshot(const Csat& sat, std::size_t part_count = 0)
      : start_(sat.start),
        end_(sat.end),
        unit_pos_right_(sat.unit_pos_right),
        unit_pos_left_(sat.unit_pos_left),
        score_(sat.score),
        mismatches_(sat.mismatches),
        insertions_(sat.insertions),
        deletions_(sat.deletions),
        n_count_(sat.n_count),
        edit_count_(sat.missense.size()),
        part_count_(part_count) {}

  [[nodiscard]] std::int32_t score() const { return score_; }
  [[nodiscard]] std::size_t part_count() const { return part_count_; }

  void restore(Csat& sat) const {
    sat.start = start_;
    sat.end = end_;
    sat.unit_pos_right = unit_pos_right_;
    sat.unit_pos_left = unit_pos_left_;
    sat.score = score_;
    sat.mismatches = mismatches_;
    sat.insertions = insertions_;
    sat.deletions = deletions_;
    sat.n_count = n_count_;
    sat.missense.truncate(edit_count_);
  }

 private:
  const char* start_;
  const char* end_;
  const char* unit_pos_right_;
  const char* unit_pos_left_;
  std::int32_t score_;
  std::int64_t mismatches_;
  std::int64_t insertions_;
  std::int64_t deletions_;
  std::int64_t n_count_;
  std::size_t edit_count_;
  std::size_t part_count_;
};

/// True if only the floor bounds what edits may cost from here on. Then it does so for good: no
/// score to come is higher than the present or best one and a match at each base that is left, and
/// that sum never rises.
[[nodiscard]] inline bool is_reduction_unlimited(const Csat& sat, std::int64_t best_score,
                                                 std::int64_t bases_beyond) {
  const std::int64_t highest_score = std::max<std::int64_t>(sat.score, best_score) + bases_beyond;
  return edit_threshold(highest_score, sat.unit_length()) == -sat.unit_length();
}

/// The least score from which no path of the look-ahead can fall to the floor, however many of its
/// edits it makes: an edit chosen there does not depend on the score. Above every score if a path
/// may make any number of them.
[[nodiscard]] inline std::int64_t least_free_score(std::int64_t unit_length) {
  if (global_maximum_recursion_depth > kDeepestRecursion) {
    return std::numeric_limits<std::int64_t>::max();
  }
  const std::int64_t most_lost =
      std::int64_t{global_maximum_recursion_depth} *
      std::max(-std::int64_t{global_mismatch_score}, -std::int64_t{global_indel_score});
  return most_lost - unit_length + 1;
}

/// True if the edits of growth depend on bases, unit and score alone, and the unit has a code.
template <class Direction>
[[nodiscard]] bool is_memorable(Csat& sat, const char* limit, std::int64_t best_score) {
  return sat.unit_length() <= CEditMemo::kLongestUnit && sat.recursion_depth == 0 &&
         is_reduction_unlimited(sat, best_score,
                                Direction::bases_beyond(Direction::edge(sat), limit));
}

template <class Direction>
[[nodiscard]] std::uint64_t unit_code(Csat& sat) {
  return CEditMemo::code_of(Direction::unit_cursor(sat), sat.unit_begin, sat.unit_end,
                            Direction::kIndex == Rightward::kIndex);
}

/// One growth along the ways that are kept: what it skips, and the edits that it owes.
///
/// `CGrowthPaths` asks that where the growth goes from a stop depends on edge, unit code and score
/// alone: `is_memorable`, asked at the first stop that counts, holds for all later ones. Its limit
/// is that of the text, so `paths` is null for any other. A kept way ends at a stop: the edit
/// there, the end of the text and a run of too many N's are always met on foot, and with them both
/// rules for ties between the last and the best state.
template <class Direction>
class CKeptWay {
 public:
  /// Ways are of use from so many stops on: few growths are that long.
  static constexpr int kStopsOnFoot = 32;

  explicit CKeptWay(CGrowthPaths* paths) : paths_(paths) {}

  [[nodiscard]] std::size_t part_count() const { return parts_.size(); }

  /// At a stop: moves `sat` on as far as the way is known, and `best` to what is best on it.
  void follow(Csat& sat, const char* limit, CSnapshot& best) {
    if (paths_ == nullptr || ++stops_ <= kStopsOnFoot) return;
    if (stops_ == kStopsOnFoot + 1 && !begin(sat, limit, best)) return;
    while (true) {
      const CGrowthPaths::Way way = paths_->follow(stop_of(sat), free_score_, best.score());
      if (way.from == CGrowthPaths::kNone) return;
      CGrowthPaths::StopId at = way.from;
      if (way.best != CGrowthPaths::kNone) {
        move(sat, at, way.best);
        best = CSnapshot(sat, part_count());
        at = way.best;
      }
      if (at != way.to) move(sat, at, way.to);
    }
  }

  /// Notes the edit that is made next.
  void note(Csat& sat, char kind) {
    if (paths_ != nullptr && stops_ > kStopsOnFoot) paths_->note(stop_of(sat), free_score_, kind);
  }

  /// Ends the growth with `part_count` parts, and adds the edits of these to those of `sat`.
  void end(Csat& sat, std::size_t part_count) {
    if (paths_ == nullptr || stops_ <= kStopsOnFoot) return;
    paths_->end_way();
    parts_.resize(part_count);
    if (parts_.empty()) return;
    std::size_t place = parts_.front().edits_before;
    const std::vector<Edit> own(sat.missense.begin() + place, sat.missense.end());
    const std::size_t first = place;
    sat.missense.truncate(first);
    const auto add_own_up_to = [&](std::size_t end) {
      for (; place < end; ++place) sat.missense.push_back(own[place - first]);
    };
    for (const Part& part : parts_) {
      add_own_up_to(part.edits_before);
      paths_->append_edits(part.from, part.to, Direction::kIndex == Rightward::kIndex ? 0 : -1,
                           sat.missense);
    }
    add_own_up_to(first + own.size());
  }

 private:
  struct Part {
    std::size_t edits_before;  ///< own edits of the repeat before this part
    CGrowthPaths::StopId from;
    CGrowthPaths::StopId to;
  };

  bool begin(Csat& sat, const char* limit, const CSnapshot& best) {
    const std::int64_t highest_score = std::max<std::int64_t>(sat.score, best.score()) +
                                       Direction::bases_beyond(Direction::edge(sat), limit);
    if (!is_memorable<Direction>(sat, limit, best.score()) ||
        highest_score > CGrowthPaths::kHighestScore) {
      paths_ = nullptr;
      return false;
    }
    free_score_ = least_free_score(sat.unit_length());
    paths_->begin_way();
    return true;
  }

  static GrowthStop stop_of(Csat& sat) {
    return {Direction::edge(sat),
            unit_code<Direction>(sat),
            sat.score,
            sat.mismatches,
            sat.insertions,
            sat.deletions,
            sat.n_count};
  }

  void move(Csat& sat, CGrowthPaths::StopId from, CGrowthPaths::StopId to) {
    const CGrowthPaths::Stretch stretch = paths_->between(from, to);
    const std::int64_t characters = Direction::distance(Direction::edge(sat), stretch.edge) -
                                    stretch.insertions + stretch.deletions;
    const char*& cursor = Direction::unit_cursor(sat);
    cursor = Direction::character_beyond(cursor, characters, sat.unit_begin, sat.unit_end);
    assert(characters >= 0);
    Direction::edge(sat) = stretch.edge;
    sat.score = saturated_score(sat.score + stretch.score);
    sat.mismatches += stretch.mismatches;
    sat.insertions += stretch.insertions;
    sat.deletions += stretch.deletions;
    sat.n_count += stretch.n_count;
    parts_.push_back({sat.missense.size(), from, to});
  }

  CGrowthPaths* paths_;
  int stops_ = 0;
  std::int64_t free_score_ = 0;
  std::vector<Part> parts_;
};

}  // namespace quorix
