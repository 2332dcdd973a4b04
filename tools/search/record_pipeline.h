#pragma once

/// @file
/// The records of a run on several threads: read one after the other, searched at once, written in
/// their order.
///
/// A thread of the team that has nothing to do reads the next record and searches it. While too
/// many records, or too many bases, were read and are not yet written, none is read; then whoever
/// has nothing to do takes parts of the searches under way. So many small records are searched at
/// once, and a large one by all threads.
///
/// A failure belongs to its record: those before it are written first, as they would be on one
/// thread. A failed write ends the run at once.

#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <vector>

#include "driver/run_files.h"
#include "sequence/sequence_mol.h"
#include "tools/search/segment_lengths.h"
#include "tools/search/thread_team.h"

namespace quorix::tools {

struct PipelineLimits {
  /// Bases of records that were read and are not yet written. Where they are fewer, one more record
  /// is read, of any length.
  std::uint64_t max_bases_in_flight = 32'000'000;
  /// And no more records than this for each thread.
  std::size_t max_records_each = 4;
  SegmentLengths segments;
};

class CRecordPipeline {
 public:
  /// Reads `files.input` and writes the outputs, on a team of `thread_count`.
  CRecordPipeline(RunFiles& files, std::size_t thread_count, const PipelineLimits& limits = {});
  ~CRecordPipeline();
  CRecordPipeline(const CRecordPipeline&) = delete;
  CRecordPipeline& operator=(const CRecordPipeline&) = delete;

  /// Processes all records, as `process_records` of the driver does. Returns `kSuccess`, or the
  /// code of a failure after its message. Throws: std::bad_alloc.
  int run();

 private:
  struct Job;

  void work(std::size_t worker);
  /// True if the thread that asks may read a record. The lock of the team is held.
  [[nodiscard]] bool may_read() const;
  /// Records whose blocks are kept to be read into again.
  [[nodiscard]] std::size_t max_spare_count() const;
  /// Reads one record, or several short ones, into `blocks` as far as these go. Returns none after
  /// the last one.
  std::vector<std::unique_ptr<Job>> read_batch(std::vector<std::unique_ptr<CSequence_Mol>>& blocks);
  /// Appends a batch to the queue. The lock is held.
  void take_over(std::vector<std::unique_ptr<Job>>& batch);
  /// Searches a batch in the order of its records, and writes what is next.
  void search_batch(const std::vector<Job*>& batch, std::size_t worker);
  /// Reads up to the next record that is to be searched. False if there is none.
  [[nodiscard]] bool read(Job& job);
  static void search(Job& job, std::size_t worker);
  /// Writes the records that are next, as far as they have been searched. The lock is held, but not
  /// while one is written.
  void write_searched(CThreadTeam::Lock& lock);
  /// Writes one, or ends the run with its failure.
  void write(Job& job);
  void begin_next();

  RunFiles& files_;
  CThreadTeam team_;
  PipelineLimits limits_;
  std::mutex line_lock_;
  std::uint64_t number_ = 0;  ///< of the last record that was read
  int code_ = 0;              ///< of the run

  // Under the lock of the team:
  std::deque<std::unique_ptr<Job>> jobs_;  ///< in the order of the records
  std::vector<std::unique_ptr<CSequence_Mol>> spare_records_;
  std::uint64_t bases_in_flight_ = 0;
  bool is_reading_ = false;
  bool is_writing_ = false;
  bool has_ended_ = false;  ///< no record is left
};

}  // namespace quorix::tools
