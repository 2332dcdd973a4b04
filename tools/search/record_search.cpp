// The steps are those of the modes in search/modes/, with a loop over the segments where the plain
// search has one scan. What a thread changes while others work is its own, or the bits of seeds of
// its segment, which are words of their own.

#include "tools/search/record_search.h"

#include <algorithm>
#include <cassert>
#include <iterator>

#include "search/extension/exact_extension.h"
#include "search/filter/block_sieve.h"
#include "search/filter/lag_sieve.h"
#include "search/modes/extend_exact_search.h"
#include "search/modes/overlap_removal.h"
#include "search/modes/sat_sort.h"
#include "search/rules/score.h"
#include "search/search_controller.h"
#include "settings/settings.h"

namespace quorix::tools {

namespace {

/// An extension over edits takes a microsecond, or a thousand.
constexpr std::uint64_t kExtensionsBetweenPasses = 64;

}  // namespace

CRecordSearch::CRecordSearch(const SearchedText& text, CThreadTeam& team, CSearchWatcher& watcher,
                             const SegmentLengths& lengths)
    : text_(text),
      units_(unit_range_of(text.length())),
      user_thresholds_{CSearchController::minScores_user.get(),
                       CSearchController::minLengths_user.get()},
      thresholds_(user_thresholds_),
      team_(team),
      watcher_(watcher),
      lengths_(lengths),
      workers_(team.size()),
      found_(&pool_),
      exact_(&pool_) {
  cut_text();
}

CRecordSearch::~CRecordSearch() {
  // A search that was stopped leaves repeats that no list has taken over.
  for (TextSegment& segment : segments_) {
    pool_.take(segment.accepted, segment.accepted.begin(), segment.accepted.end());
  }
}

void CRecordSearch::cut_text() {
  const std::uint64_t count = lengths_.count_for_each_thread * team_.size();
  const std::uint64_t wanted = std::clamp(text_.length() / count, lengths_.min, lengths_.max);
  const std::uint64_t length = (wanted + lengths_.grain - 1) / lengths_.grain * lengths_.grain;
  for (std::uint64_t first = 0; first < text_.length(); first += length) {
    segments_.push_back({{first, std::min(first + length, text_.length())}, {}});
  }
}

CRecordSearch::Worker& CRecordSearch::worker_at(std::size_t index) {
  std::unique_ptr<Worker>& worker = workers_[index];
  if (worker == nullptr) worker = std::make_unique<Worker>(text_);
  return *worker;
}

void CRecordSearch::begin_bounds(Worker& worker) {
  if (worker.bounds == nullptr) {
    worker.bounds = std::make_unique<CSeedBounds>(sieve_->scored_text());
  }
  worker.bounds->begin(sieve_->unit());
}

void CRecordSearch::run(std::size_t worker) {
  switch (global_search_mode) {
    case kSearchExact:
      list_ = &found_.sat_list;
      search_exactly(SeedUse::kExtendExactly, worker);
      break;
    case kSearchExtendExact:
      extend_exact_repeats(worker);
      break;
    default:
      list_ = &found_.sat_list;
      search_over_edits(worker);
  }
  sieve_.reset();
  marks_.reset();
  remove_hidden(found_);
}

void CRecordSearch::make_sieve(SeedUse use) {
  is_exact_ = use != SeedUse::kExtendOverEdits;
  const CFilterPlan plan(
      use, scoring_rules_of_settings(),
      {*thresholds_.min_scores, *thresholds_.min_lengths, *user_thresholds_.min_scores},
      static_cast<std::int64_t>(units_.last), std::int64_t{global_Ns_allowed_in_a_row});
  sieve_ = std::make_unique<CSeedSieve>(text_.begin, text_.length(), plan);
  marks_ = std::make_unique<CAnchorSeq>(text_.begin, text_.length());
}

void CRecordSearch::search_over_edits(std::size_t worker) {
  if (units_.last == 0) return;
  make_sieve(SeedUse::kExtendOverEdits);
  for (std::uint64_t length = std::max<std::uint64_t>(units_.first, 1); length <= units_.last;
       ++length) {
    search_unit_length(length, worker);
    if (length == 1 && units_.first == 1) marks_->open_all();
  }
  sort_by_position(found_.sat_list);
}

void CRecordSearch::search_exactly(SeedUse use, std::size_t worker) {
  if (units_.last == 0) return;
  make_sieve(use);
  if (units_.first == 1) search_runs(worker);
  for (std::uint64_t length = units_.first == 1 ? 2 : std::max<std::uint64_t>(units_.first, 1);
       length <= units_.last; ++length) {
    search_unit_length(length, worker);
  }
  sort_by_position(*list_);
}

void CRecordSearch::extend_exact_repeats(std::size_t worker) {
  watcher_.begin_part(kSearchesExactRepeats);
  thresholds_ = {CSearchController::minScores_intern.get(),
                 CSearchController::minLengths_intern.get()};
  list_ = &exact_.sat_list;
  search_exactly(SeedUse::kExtendExactlyFirst, worker);
  sieve_.reset();
  marks_.reset();
  watcher_.begin_part(kExtendsExactRepeats);
  thresholds_ = user_thresholds_;

  const std::vector<Csat*> exact(exact_.sat_list.begin(), exact_.sat_list.end());
  std::vector<char> is_accepted(exact.size());
  const std::size_t count = lengths_.count_for_each_thread * team_.size();
  const std::size_t chunk = std::max<std::size_t>(exact.size() / count, lengths_.min_chunk);
  team_.for_each((exact.size() + chunk - 1) / chunk, worker,
                 [&](std::size_t part, std::size_t helper) {
                   const std::size_t first = part * chunk;
                   extend_exact_chunk(exact, is_accepted, first,
                                      std::min(first + chunk, exact.size()), worker_at(helper));
                 });
  for (const char is_kept : is_accepted) {
    const auto first = exact_.sat_list.begin();
    if (is_kept != 0) {
      found_.sat_list.splice(found_.sat_list.end(), exact_.sat_list, first);
    } else {
      pool_.take(exact_.sat_list, first, std::next(first));
    }
  }
  sort_by_position(found_.sat_list);
}

void CRecordSearch::extend_exact_chunk(const std::vector<Csat*>& exact,
                                       std::vector<char>& is_accepted, std::size_t first,
                                       std::size_t end, Worker& worker) {
  for (std::size_t i = first; i < end; ++i) {
    Csat& repeat = *exact[i];
    if (worker.extender.is_rejected(repeat, thresholds_) ||
        !worker.extender.extend_over_edits_and_test(repeat, text_.before(), thresholds_)) {
      continue;
    }
    worker.extender.pack_edits(repeat);
    is_accepted[i] = 1;
  }
}

void CRecordSearch::begin_unit_length(std::uint64_t unit_length, std::size_t worker) {
  unit_length_ = unit_length;
  committed_end_ = 0;
  watcher_.pass(unit_length_);
  sieve_->begin(unit_length);
  if (sieve_->needs_lags()) sift_by_lags(worker);
  if (sieve_->needs_blocks()) sift_by_blocks(worker);
}

void CRecordSearch::sift_by_lags(std::size_t worker) {
  for (const std::unique_ptr<Worker>& one : workers_) {
    if (one != nullptr) one->grid.reset();
  }
  Worker& own = worker_at(worker);
  own.grid =
      std::make_unique<CLagGrid>(sieve_->scored_text().begin, text_.length(), sieve_->lag_rule());
  const auto count = static_cast<std::size_t>(own.grid->segment_count());
  // Neighbouring segments have words of bits in common. So every second one is sifted first.
  for (std::size_t first = 0; first < std::min<std::size_t>(count, 2); ++first) {
    team_.for_each((count - first + 1) / 2, worker, [&](std::size_t part, std::size_t helper) {
      sift_lag_segment(static_cast<std::int64_t>(first + 2 * part), worker_at(helper));
    });
  }
  for (const std::unique_ptr<Worker>& one : workers_) {
    if (one != nullptr) one->grid.reset();
  }
}

void CRecordSearch::sift_by_blocks(std::size_t worker) {
  const auto sift = [&](const Segment& segment) {
    quorix::sift_by_blocks(sieve_->scored_text().begin, text_.length(), sieve_->lag_rule(), segment,
                           sieve_->lag_seeds());
    watcher_.pass(unit_length_);
  };
  // This sieve judges whole words of seeds.
  if (lengths_.grain % kWordBits != 0) return sift({0, text_.length()});
  team_.for_each(segments_.size(), worker,
                 [&](std::size_t part, std::size_t) { sift(segments_[part].bases); });
}

void CRecordSearch::sift_lag_segment(std::int64_t index, Worker& worker) {
  if (worker.grid == nullptr) {
    worker.grid =
        std::make_unique<CLagGrid>(sieve_->scored_text().begin, text_.length(), sieve_->lag_rule());
  }
  quorix::sift_by_lags(*worker.grid, worker.grid->segment(index), sieve_->lag_seeds());
  watcher_.pass(unit_length_);
}

void CRecordSearch::search_unit_length(std::uint64_t unit_length, std::size_t worker) {
  begin_unit_length(unit_length, worker);
  const bool is_one = segments_.size() == 1;
  team_.for_each(segments_.size(), worker, [&](std::size_t part, std::size_t helper) {
    TextSegment& segment = segments_[part];
    sieve_->sift(segment.bases);
    if (!is_one) scan(segment, worker_at(helper));
    watcher_.pass(unit_length_);
  });
  // A single segment needs no copy of the marks.
  if (is_one) committed_end_ = text_.length();
  Worker& own = worker_at(worker);
  for (TextSegment& segment : segments_) commit(segment, own);
}

std::uint64_t CRecordSearch::first_N(std::uint64_t first, std::uint64_t end) const {
  return first < end ? sieve_->bits_of_Ns().find_set(first, end + unit_length_) : end;
}

template <class Marks>
std::uint64_t CRecordSearch::next_seed(std::uint64_t first, std::uint64_t end,
                                       std::uint64_t& next_N, const Marks& marks) const {
  const CBitSet& seeds = sieve_->seeds();
  const CBitSet& all_Ns = sieve_->bits_of_Ns();
  for (std::uint64_t p = seeds.find_set(first, end); p < end; p = seeds.find_set(p, end)) {
    if (next_N < p) next_N = first_N(p, end);
    if (next_N < p + unit_length_) {  // no unit that reaches the N's is valid
      p = all_Ns.find_clear(next_N, end + unit_length_);
      if (p >= end) return end;
      continue;
    }
    const char* const base = text_.begin + p;
    if (marks.may_seed(base, unit_length_) &&
        valid_starting_pattern(base, base + unit_length_, text_.begin + next_N)) {
      return p;
    }
    ++p;
  }
  return end;
}

template <class Marks>
bool CRecordSearch::is_rejected(std::uint64_t p, std::uint64_t end, const Marks& marks,
                                Worker& worker) {
  CSeedBounds& bounds = *worker.bounds;
  // A unit of one base is extended faster than it is bounded.
  if (unit_length_ == 1 || !bounds.has_bounds()) return false;
  if (!bounds.has_verdict(p)) {
    const std::uint64_t open = marks.may_seed_from(text_.begin + p, unit_length_) | 1;
    bounds.decide(p, sieve_->seeds().bits_from(p, end) & open);
  }
  return !bounds.is_undecided(p);
}

template <class Marks>
Csat* CRecordSearch::extend(std::uint64_t p, std::uint64_t end, const Marks& marks,
                            CSpareRecord& spare, Worker& worker) {
  const char* const base = text_.begin + p;
  if (!is_rejected(p, end, marks, worker)) {
    if (++worker.extended_count % kExtensionsBetweenPasses == 0) watcher_.pass(unit_length_);
    Csat& repeat = spare.seed(base, base + unit_length_);
    const bool is_accepted =
        is_exact_ ? worker.extender.extend_exactly_and_test(repeat, thresholds_)
                  : worker.extender.extend_over_edits_and_test(repeat, text_.before(), thresholds_);
    if (is_accepted) return &repeat;
  }
  sieve_->seeds().clear(p);  // nobody has to try it again
  return nullptr;
}

bool CRecordSearch::closes_bases(const Csat& repeat) const {
  return !is_exact_ || (unit_length_ != 1 && passes(repeat, user_thresholds_));
}

void CRecordSearch::scan(TextSegment& segment, Worker& worker) {
  const std::uint64_t end = std::min(segment.bases.end, sieve_->seeds().size());
  begin_bounds(worker);
  CSpareRecord spare(worker.pool);
  CMarkWindow& window = worker.window;
  window.begin(*marks_, text_.begin + end, unit_length_);
  std::uint64_t next_N = first_N(segment.bases.first, end);
  for (std::uint64_t p = next_seed(segment.bases.first, end, next_N, window); p < end;
       p = next_seed(p + 1, end, next_N, window)) {
    Csat* const repeat = extend(p, end, window, spare, worker);
    if (repeat == nullptr) continue;
    if (closes_bases(*repeat)) window.close_repeat(*repeat, text_.begin + p);
    if (!is_exact_) worker.extender.pack_edits(*repeat);
    spare.keep_in(segment.accepted);
  }
}

void CRecordSearch::keep_first(std::list<Csat*>& from) {
  const Csat& repeat = *from.front();
  if (closes_bases(repeat)) {
    edits_.truncate(0);
    if (!repeat.packed_edits.empty()) repeat.packed_edits.unpack_to(edits_);
    close_within(*marks_, repeat, edits_, text_.begin, text_.end + 1);
  }
  committed_end_ = std::max(committed_end_, offset(repeat.end));
  list_->splice(list_->end(), from, from.begin());
  ++work_.repeats;
}

void CRecordSearch::drop_first(std::list<Csat*>& from) {
  pool_.take(from, from.begin(), std::next(from.begin()));
  ++work_.dropped;
}

void CRecordSearch::commit(TextSegment& segment, Worker& worker) {
  if (committed_end_ >= segment.bases.first) scan_again(segment, worker);
  while (!segment.accepted.empty()) keep_first(segment.accepted);
}

void CRecordSearch::scan_again(TextSegment& segment, Worker& worker) {
  const std::uint64_t end = std::min(segment.bases.end, sieve_->seeds().size());
  begin_bounds(worker);
  CSpareRecord spare(worker.pool);
  std::list<Csat*> own;
  ++work_.second_scans;
  std::uint64_t reach = committed_end_;
  std::uint64_t next_N = first_N(segment.bases.first, end);
  std::list<Csat*>& first_scan = segment.accepted;
  for (std::uint64_t p = segment.bases.first;; ++p) {
    p = next_seed(p, end, next_N, *marks_);
    // Repeats of the first scan whose seeds may not be tried.
    while (!first_scan.empty() && offset(first_scan.front()->unit_begin) < p) {
      assert(offset(first_scan.front()->unit_begin) <= reach);
      reach = std::max(reach, offset(first_scan.front()->end));
      drop_first(first_scan);
    }
    if (p >= end || p > reach) return;
    if (!first_scan.empty() && offset(first_scan.front()->unit_begin) == p) {
      keep_first(first_scan);
      continue;
    }
    Csat* const repeat = extend(p, end, *marks_, spare, worker);
    if (repeat == nullptr) continue;
    reach = std::max(reach, offset(repeat->end));
    if (!is_exact_) worker.extender.pack_edits(*repeat);
    spare.keep_in(own);
    keep_first(own);
    ++work_.found_again;
  }
}

void CRecordSearch::search_runs(std::size_t worker) {
  begin_unit_length(1, worker);
  team_.for_each(segments_.size(), worker, [&](std::size_t part, std::size_t helper) {
    sieve_->sift(segments_[part].bases);
    scan_runs(segments_[part], worker_at(helper));
  });
  for (TextSegment& segment : segments_) {
    while (!segment.accepted.empty()) {
      if (offset(segment.accepted.front()->unit_begin) >= committed_end_) {
        keep_first(segment.accepted);
      } else {
        pool_.take(segment.accepted, segment.accepted.begin(), std::next(segment.accepted.begin()));
      }
    }
  }
}

void CRecordSearch::scan_runs(TextSegment& segment, Worker& worker) {
  const std::uint64_t end = std::min(segment.bases.end, sieve_->seeds().size());
  begin_bounds(worker);
  CSpareRecord spare(worker.pool);
  std::uint64_t next_N = first_N(segment.bases.first, end);
  for (std::uint64_t p = next_seed(segment.bases.first, end, next_N, *marks_); p < end;) {
    const Csat* const repeat = extend(p, end, *marks_, spare, worker);
    ++p;
    if (repeat != nullptr) {
      p = offset(repeat->end);
      spare.keep_in(segment.accepted);
    }
    p = next_seed(p, end, next_N, *marks_);
  }
}

}  // namespace quorix::tools
