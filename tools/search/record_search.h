#pragma once

/// @file
/// The search of one record on several threads, with the result of the search on one.
///
/// The text is cut into segments. A seed belongs to the segment of its first base. Unit lengths are
/// searched one after the other, as ever, and each in two steps:
///
/// 1. **Scan**, all segments at once. Each begins with the marks of open bases as the last unit
///    length left them. It keeps a copy of those that its seeds depend on, and closes there what it
///    accepts itself. It knows nothing of what other segments accept meanwhile.
/// 2. **Commit**, from left to right, on one thread. The repeats of a segment close their bases in
///    the marks of the whole text and join the list, if the scan stands: if no repeat that was
///    committed before reaches the marks that the segment's seeds depend on. Otherwise the segment
///    is scanned again as far as it takes, now with the marks of the whole text.
///
/// Why that is the plain search:
///
/// - Whether a seed extends into an accepted repeat, and into which, depends on the text alone; the
///   marks only decide whether it is tried. So what a scan has found out about a seed stays
///   true: the bits of seeds that failed are cleared, as a sieve clears them, and an accepted
///   repeat is taken as it is if the second scan tries its seed.
/// - Before the commit of a segment the marks of the whole text are those that the plain search has
///   when it comes to the first seed of the segment: by induction, the same repeats have closed
///   them, in the same order. The second scan goes on from there as the plain search does.
/// - The second scan may end where both scans agree from then on. A seed at base p depends on marks
///   from p - 1 on. Let `reach` be the highest end of the repeats that only one of both scans
///   knows: those of other segments, committed at this unit length; those of the first scan that
///   the second one does not try; and those that the second one has found by itself. All other
///   repeats are known to both, and have closed their bases in the same order. So marks from
///   `reach` on are the same in both, and once p - 1 has come to it, the rest of the first scan
///   stands. If `reach` is no higher than the base before the segment, all of it does.
///
/// Repeats that only touch marks to their left change nothing for seeds of the same unit length:
/// those have been tried.
///
/// Runs of one base in a search of exact repeats close nothing; instead, the seeds within an
/// accepted run are passed over. All of them extend into that run, so a segment that begins inside
/// one finds it again, and the commit drops what begins before the end of the last run.
///
/// A repeat that is found again, from another seed or by another thread, is no repeat of the list
/// twice: each seed is committed once.

#include <cstdint>
#include <list>
#include <memory>
#include <vector>

#include "report/csat.h"
#include "report/sat_pool.h"
#include "search/extension/extender.h"
#include "search/extension/searched_text.h"
#include "search/filter/lag_grid.h"
#include "search/filter/seed_bounds.h"
#include "search/filter/seed_sieve.h"
#include "search/modes/sat_container.h"
#include "search/rules/thresholds.h"
#include "search/rules/unit_range.h"
#include "search/scan/anchor_seq.h"
#include "tools/search/mark_window.h"
#include "tools/search/search_watcher.h"
#include "tools/search/segment_lengths.h"
#include "tools/search/thread_team.h"

namespace quorix::tools {

/// What the commits of a search have come across.
struct CommitWork {
  std::uint64_t repeats = 0;       ///< committed
  std::uint64_t second_scans = 0;  ///< segments that were scanned again, one repeat or more before
  std::uint64_t dropped = 0;       ///< repeats of the first scan that did not stand
  std::uint64_t found_again = 0;   ///< repeats that the second scan has found by itself
};

/// The tables of `CSearchController` must be there, and stay.
class CRecordSearch {
 public:
  /// Searches `text`, which must stay where it is and end with a NUL.
  CRecordSearch(const SearchedText& text, CThreadTeam& team, CSearchWatcher& watcher,
                const SegmentLengths& lengths = {});
  ~CRecordSearch();
  CRecordSearch(const CRecordSearch&) = delete;
  CRecordSearch& operator=(const CRecordSearch&) = delete;

  /// Searches in the mode of the settings, and removes repeats that others mostly overlap if the
  /// settings say so. Called once, by thread `worker` of the team. Throws: std::bad_alloc;
  /// TeamStopped.
  void run(std::size_t worker);

  /// The repeats, in the order of `lessThan_sat`. They live as long as this.
  [[nodiscard]] const std::list<Csat*>& repeats() const { return found_.sat_list; }

  [[nodiscard]] const CommitWork& work() const { return work_; }

 private:
  /// What a thread needs for itself.
  struct Worker {
    explicit Worker(const SearchedText& text) : extender(text) {}
    Csat_garbagecollector pool;
    CExtender extender;
    CMarkWindow window;
    std::uint64_t extended_count = 0;
    std::unique_ptr<CSeedBounds> bounds;  ///< of the sieve in use
    std::unique_ptr<CLagGrid> grid;       ///< of the rule in use
  };

  /// A part of the text, and what a scan of the unit length has found there.
  struct TextSegment {
    Segment bases;
    std::list<Csat*> accepted;
  };

  [[nodiscard]] Worker& worker_at(std::size_t index);
  void begin_bounds(Worker& worker);

  void search_exactly(SeedUse use, std::size_t worker);
  void search_over_edits(std::size_t worker);
  void extend_exact_repeats(std::size_t worker);
  void extend_exact_chunk(const std::vector<Csat*>& exact, std::vector<char>& is_accepted,
                          std::size_t first, std::size_t end, Worker& worker);

  void make_sieve(SeedUse use);
  void cut_text();
  /// Begins a unit length and sifts the text for it and longer ones at once, if need be.
  void begin_unit_length(std::uint64_t unit_length, std::size_t worker);
  void sift_by_lags(std::size_t worker);
  void sift_by_blocks(std::size_t worker);
  void sift_lag_segment(std::int64_t index, Worker& worker);

  void search_unit_length(std::uint64_t unit_length, std::size_t worker);
  void scan(TextSegment& segment, Worker& worker);
  void commit(TextSegment& segment, Worker& worker);
  void scan_again(TextSegment& segment, Worker& worker);
  void search_runs(std::size_t worker);
  void scan_runs(TextSegment& segment, Worker& worker);

  /// The first N that a unit of a seed in [first, end) may hold, or any position after them.
  [[nodiscard]] std::uint64_t first_N(std::uint64_t first, std::uint64_t end) const;
  /// The first seed of [first, end) that `marks` let be tried, or `end`.
  template <class Marks>
  [[nodiscard]] std::uint64_t next_seed(std::uint64_t first, std::uint64_t end,
                                        std::uint64_t& next_N, const Marks& marks) const;
  template <class Marks>
  [[nodiscard]] bool is_rejected(std::uint64_t p, std::uint64_t end, const Marks& marks,
                                 Worker& worker);
  /// Extends the seed at p. Returns its repeat, in `spare`, or null if it fails.
  template <class Marks>
  [[nodiscard]] Csat* extend(std::uint64_t p, std::uint64_t end, const Marks& marks,
                             CSpareRecord& spare, Worker& worker);
  [[nodiscard]] bool closes_bases(const Csat& repeat) const;
  /// Closes the bases of the first repeat of `from`, whose edits have been packed, and moves it to
  /// the end of the list.
  void keep_first(std::list<Csat*>& from);
  /// Returns the first repeat of `from` to the pool.
  void drop_first(std::list<Csat*>& from);
  [[nodiscard]] std::uint64_t offset(const char* position) const {
    return static_cast<std::uint64_t>(position - text_.begin);
  }

  SearchedText text_;
  UnitRange units_;
  Thresholds user_thresholds_;
  Thresholds thresholds_;  ///< of the search under way
  bool is_exact_ = false;  ///< it extends exactly
  CThreadTeam& team_;
  CSearchWatcher& watcher_;
  SegmentLengths lengths_;

  Csat_garbagecollector pool_;
  std::vector<std::unique_ptr<Worker>> workers_;  ///< null until a thread takes part
  CsatContainer found_;
  CsatContainer exact_;  ///< that wait to be extended

  // Of the search under way:
  std::unique_ptr<CSeedSieve> sieve_;
  std::unique_ptr<CAnchorSeq> marks_;
  std::vector<TextSegment> segments_;
  std::list<Csat*>* list_ = nullptr;  ///< where accepted repeats go
  std::uint64_t unit_length_ = 0;
  std::uint64_t committed_end_ = 0;  ///< the highest end of the unit length's repeats
  fastvector<Edit> edits_;           ///< for unpacking
  CommitWork work_;
};

}  // namespace quorix::tools
