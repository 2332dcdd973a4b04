// Allocations that fail, one after another, until the run makes no more of them.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>

#include "faults/call_tracer.h"
#include "faults/fault_runs.h"
#include "faults/memory_faults.h"
#include "faults/point_log.h"
#include "support/gzip_text.h"

namespace quorix::testing {
namespace {

constexpr const char* kFaultsName = "memory faults";
constexpr const char* kSearchHead = "Search progress:";

/// The page that is shared with the failing memory of runs in a folder.
class CMemoryFaultPage {
 public:
  explicit CMemoryFaultPage(const CTemporaryFolder& folder)
      : path_(folder.file_of(kFaultsName, std::string(sizeof(MemoryFaults), '\0'))),
        library_(folder.path_of("failing_memory.so")) {
    // The loader takes a list of names between blanks, and the true name may have some.
    if (::symlink(fault_settings.failing_memory.c_str(), library_.c_str()) != 0) {
      throw std::runtime_error("no link to the failing memory");
    }
    const int descriptor = ::open(path_.c_str(), O_RDWR | O_CLOEXEC);
    void* const page =
        ::mmap(nullptr, sizeof(MemoryFaults), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    ::close(descriptor);
    if (page == MAP_FAILED) throw std::runtime_error("no page for failing memory");
    faults_ = static_cast<MemoryFaults*>(page);
  }
  ~CMemoryFaultPage() { ::munmap(faults_, sizeof(MemoryFaults)); }
  CMemoryFaultPage(const CMemoryFaultPage&) = delete;
  CMemoryFaultPage& operator=(const CMemoryFaultPage&) = delete;

  /// Sets up the next run of `plan`.
  RunPlan prepare(RunPlan plan, std::uint64_t first_failing, bool is_lasting) {
    *faults_ = {first_failing, is_lasting ? 1U : 0U, 0, 0};
    plan.environment = {"LD_PRELOAD=" + library_, std::string(kMemoryFaultsVariable) + "=" + path_};
    return plan;
  }

  [[nodiscard]] const MemoryFaults& faults() const { return *faults_; }

 private:
  std::string path_;
  std::string library_;
  MemoryFaults* faults_ = nullptr;
};

/// What is allowed when memory is refused: the run ends for lack of it; or a stream cannot be
/// opened, since that takes memory as well; or what was refused could be done without.
Expectation expect_refused_memory(const RunShape& shape) {
  Expectation expectation{
      .statuses = {{0, ""}, {152, no_memory_text()}, {153, failed_open_text(kMaskedName)}}};
  if (shape.has_report_file) expectation.statuses[154] = failed_open_text(kReportName);
  expectation.may_lack_edits = true;
  return expectation;
}

std::string describe(const RunShape& shape, std::uint64_t number, bool is_lasting) {
  return shape.name() + ", allocation " + std::to_string(number) +
         (is_lasting ? " and all later ones" : "");
}

/// Refuses every allocation of a run on `input` in turn. Adds to `lacking_count` how often the
/// edits of a repeat could not grow.
void refuse_every_allocation(const RunShape& shape, const std::string& input, bool is_lasting,
                             CPointLog& log, std::size_t& lacking_count) {
  const CFaultFolder folder;
  static_cast<void>(folder.file_of(kInputName, input));
  CMemoryFaultPage page(folder);
  const Outcome undisturbed = run_program_once(folder, page.prepare(shape.plan(), 0, false));
  ASSERT_EQ(undisturbed.status, 0);
  const std::uint64_t allocation_count = page.faults().call_count;
  for (std::uint64_t number = 1;; ++number) {
    const Outcome outcome =
        run_program_once(folder, page.prepare(shape.plan(), number, is_lasting));
    if (page.faults().failed_count == 0) {
      EXPECT_EQ(number, allocation_count + 1);
      EXPECT_EQ(find_fault(outcome, undisturbed, {.statuses = {{0, ""}}}), "");
      return;
    }
    if (lacks_edits(outcome)) ++lacking_count;
    log.judge(describe(shape, number, is_lasting), outcome, undisturbed,
              expect_refused_memory(shape));
  }
}

/// The same from the last allocation back to where the search begins. What is before that does not
/// depend on the mode.
void refuse_allocations_of_search(const RunShape& shape, bool is_lasting, CPointLog& log) {
  const CFaultFolder folder;
  CMemoryFaultPage page(folder);
  const Outcome undisturbed = run_program_once(folder, page.prepare(shape.plan(), 0, false));
  ASSERT_EQ(undisturbed.status, 0);
  const std::uint64_t allocation_count = page.faults().call_count;
  for (std::uint64_t number = allocation_count; number > 0; --number) {
    const Outcome outcome =
        run_program_once(folder, page.prepare(shape.plan(), number, is_lasting));
    EXPECT_GE(page.faults().failed_count, 1U);
    log.judge(describe(shape, number, is_lasting), outcome, undisturbed,
              expect_refused_memory(shape));
    if (outcome.messages.find(kSearchHead) == std::string::npos) return;
  }
}

TEST(RefusedAllocation, ends_the_run_with_a_message) {
  CPointLog log("refused allocations");
  std::size_t lacking_count = 0;
  refuse_every_allocation({"imperfect", true, true}, CFaultFolder::input(), false, log,
                          lacking_count);
  refuse_every_allocation({"exact", false, false}, gzip_member(CFaultFolder::input()), false, log,
                          lacking_count);
  EXPECT_GT(lacking_count, 0U);
  refuse_allocations_of_search({"extendExact", true, true}, false, log);
  refuse_allocations_of_search({"exact", false, false}, false, log);
  log.expect_no_findings(600);
}

TEST(RefusedAllocation, ends_the_run_with_a_message_when_no_more_memory_comes) {
  CPointLog log("refused allocations, and all later ones");
  std::size_t lacking_count = 0;
  refuse_every_allocation({"imperfect", true, true}, CFaultFolder::input(), true, log,
                          lacking_count);
  refuse_every_allocation({"exact", false, false}, gzip_member(CFaultFolder::input()), true, log,
                          lacking_count);
  EXPECT_GT(lacking_count, 0U);
  refuse_allocations_of_search({"extendExact", true, true}, true, log);
  refuse_allocations_of_search({"exact", false, false}, true, log);
  log.expect_no_findings(600);
}

TEST(RefusedPages, end_the_run_with_a_message) {
  CPointLog log("refused pages");
  for (const RunShape& shape : all_run_shapes()) {
    const CFaultFolder folder;
    const TracedRun undisturbed = run_traced(folder, shape.plan(), {.sees_memory = true});
    for (std::size_t i = 0; i < undisturbed.calls.size(); ++i) {
      if (undisturbed.calls[i].kind != CallKind::kMemory) continue;
      for (const bool is_lasting : {false, true}) {
        const Meddling meddling{
            .call = i, .error = ENOMEM, .is_lasting = is_lasting, .sees_memory = true};
        log.judge(describe(shape, i, is_lasting),
                  run_traced(folder, shape.plan(), meddling).outcome, undisturbed.outcome,
                  expect_refused_memory(shape));
      }
    }
  }
  log.expect_no_findings(40);
}

}  // namespace
}  // namespace quorix::testing
