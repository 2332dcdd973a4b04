// One thread at a time reads, and one writes; which one changes from record to record. The lock of
// the team guards the queue and is not held during the work itself.

#include "tools/search/record_pipeline.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <iterator>
#include <utility>

#include "console/exit_status.h"
#include "driver/record_analysis.h"
#include "driver/record_loop.h"
#include "report/sequence_block.h"
#include "search/search_controller.h"
#include "settings/settings.h"
#include "tools/search/progress_lines.h"
#include "tools/search/record_search.h"

namespace quorix::tools {

namespace {

/// The block of a record that is kept for others. A larger one is given back.
constexpr std::uint64_t kMaxSpareBases = 10'000'000;

/// Short records are read several at a time, since a lock for each would take longer than its
/// search.
constexpr std::size_t kBatchRecords = 16;
/// A longer record ends a batch.
constexpr std::uint64_t kMaxBatchedBases = 4'000;

SearchedText text_of(CSequence_Mol& record) {
  record.sequence.c_str();  // before a pointer is taken: it may move the text
  const char* const begin = record.sequence.data();
  return {begin, begin + record.sequence.size()};
}

}  // namespace

/// A record on its way.
struct CRecordPipeline::Job {
  std::unique_ptr<CSequence_Mol> record;
  std::uint64_t base_count = 0;  ///< that count as in flight
  std::unique_ptr<CProgressLines> lines;
  std::unique_ptr<CRecordSearch> search;
  bool is_format_error = false;
  std::atomic<bool> is_searched = false;  ///< or has failed
  std::exception_ptr failure;             ///< of reading or of the search

  /// True if nothing can be read after it.
  [[nodiscard]] bool ends_input() const { return is_format_error || failure != nullptr; }
};

CRecordPipeline::CRecordPipeline(RunFiles& files, std::size_t thread_count,
                                 const PipelineLimits& limits)
    : files_(files), team_(thread_count), limits_(limits) {}

CRecordPipeline::~CRecordPipeline() = default;

int CRecordPipeline::run() {
  CSearchController::prepare_thresholds();
  team_.run([this](std::size_t worker) {
    try {
      work(worker);
    } catch (const TeamStopped&) {
      // Whoever stopped the team knows why.
    }
  });
  return code_;
}

std::size_t CRecordPipeline::max_spare_count() const {
  return (limits_.max_records_each + kBatchRecords) * team_.size();
}

bool CRecordPipeline::may_read() const {
  return !has_ended_ && !is_reading_ && bases_in_flight_ < limits_.max_bases_in_flight &&
         jobs_.size() < limits_.max_records_each * team_.size();
}

void CRecordPipeline::work(std::size_t worker) {
  CThreadTeam::Lock lock = team_.take_lock();
  while (true) {
    team_.wait(lock, worker, [this] {
      return may_read() || team_.is_stopped() || (has_ended_ && jobs_.empty());
    });
    if (team_.is_stopped() || !may_read()) return;

    is_reading_ = true;
    std::vector<std::unique_ptr<CSequence_Mol>> blocks;
    blocks.swap(spare_records_);
    lock.unlock();
    std::vector<std::unique_ptr<Job>> batch = read_batch(blocks);
    std::vector<Job*> to_search;
    to_search.reserve(batch.size());
    for (const std::unique_ptr<Job>& job : batch) to_search.push_back(job.get());
    lock.lock();
    is_reading_ = false;
    std::move(blocks.begin(), blocks.end(), std::back_inserter(spare_records_));
    take_over(batch);
    team_.notify();
    lock.unlock();
    search_batch(to_search, worker);
    lock.lock();
  }
}

std::vector<std::unique_ptr<CRecordPipeline::Job>> CRecordPipeline::read_batch(
    std::vector<std::unique_ptr<CSequence_Mol>>& blocks) {
  std::vector<std::unique_ptr<Job>> batch;
  while (batch.size() < kBatchRecords) {
    auto job = std::make_unique<Job>();
    if (!blocks.empty()) {
      job->record = std::move(blocks.back());
      blocks.pop_back();
    }
    if (!read(*job)) break;
    batch.push_back(std::move(job));
    const Job& last = *batch.back();
    if (last.ends_input() || last.base_count > kMaxBatchedBases) break;
  }
  return batch;
}

void CRecordPipeline::take_over(std::vector<std::unique_ptr<Job>>& batch) {
  if (batch.empty() || batch.back()->ends_input()) has_ended_ = true;
  const bool is_first = jobs_.empty();
  for (std::unique_ptr<Job>& job : batch) {
    bases_in_flight_ += job->base_count;
    jobs_.push_back(std::move(job));
  }
  if (is_first && !jobs_.empty()) begin_next();
}

void CRecordPipeline::search_batch(const std::vector<Job*>& batch, std::size_t worker) {
  for (std::size_t i = 0; i < batch.size(); ++i) {
    const bool is_last = i + 1 == batch.size();
    // A job that is searched may be gone as soon as others see that.
    const bool is_next_large = !is_last && batch[i + 1]->base_count > kMaxBatchedBases;
    search(*batch[i], worker);
    batch[i]->is_searched = true;
    if (!is_last && !is_next_large) continue;
    CThreadTeam::Lock lock = team_.take_lock();
    write_searched(lock);
    team_.notify();
  }
}

bool CRecordPipeline::read(Job& job) {
  try {
    if (job.record == nullptr) job.record = std::make_unique<CSequence_Mol>();
    do {
      if (files_.input.has_ended_cleanly()) return false;
      ++number_;
      job.record->readFastaSequence(files_.input);
      job.is_format_error = files_.input.has_format_error();
      if (job.is_format_error) return true;
    } while (!is_in_sequence_range(number_));
    job.base_count = job.record->sequence.size();
    job.lines = std::make_unique<CProgressLines>(line_lock_, number_, job.record->name);
    job.search =
        std::make_unique<CRecordSearch>(text_of(*job.record), team_, *job.lines, limits_.segments);
  } catch (...) {
    job.failure = std::current_exception();
  }
  return true;
}

void CRecordPipeline::search(Job& job, std::size_t worker) {
  if (job.failure || job.is_format_error) return;
  try {
    job.search->run(worker);
  } catch (const TeamStopped&) {
    throw;
  } catch (...) {
    job.failure = std::current_exception();
  }
}

void CRecordPipeline::begin_next() {
  // After a failure nothing more is said.
  if (team_.is_stopped()) return;
  if (jobs_.front()->lines != nullptr) jobs_.front()->lines->become_first();
}

void CRecordPipeline::write_searched(CThreadTeam::Lock& lock) {
  if (is_writing_) return;
  while (!jobs_.empty() && jobs_.front()->is_searched && !team_.is_stopped()) {
    Job& job = *jobs_.front();
    is_writing_ = true;
    lock.unlock();
    write(job);
    lock.lock();
    is_writing_ = false;
    bases_in_flight_ -= job.base_count;
    if (job.record->sequence.size() <= kMaxSpareBases &&
        spare_records_.size() < max_spare_count()) {
      spare_records_.push_back(std::move(job.record));
    }
    jobs_.pop_front();
    if (!jobs_.empty()) begin_next();
  }
}

void CRecordPipeline::write(Job& job) {
  if (job.failure) std::rethrow_exception(job.failure);
  int code = kSuccess;
  if (job.is_format_error) {
    code = end_on_read_error(files_.input);
  } else {
    std::FILE* const report = files_.report.stream();
    const std::list<Csat*>& repeats = job.search->repeats();
    COutputFile::expect_writes();
    report_sequence_head(report, *job.record);
    for (const Csat* const repeat : repeats) repeat->report_sat(report, *job.record);
    report_sequence_foot(report, *job.record);
    if (global_mask_repeats) mask_repeats(repeats, *job.record);
    code = finish_record(*job.record, files_);
  }
  job.search.reset();
  job.lines.reset();
  if (code == kSuccess) return;
  code_ = code;
  team_.stop();
}

}  // namespace quorix::tools
