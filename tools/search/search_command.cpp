#include "tools/search/search_command.h"

#include <sched.h>

#include <algorithm>

#include "driver/command_line.h"
#include "driver/run.h"
#include "tools/search/record_pipeline.h"

namespace quorix::tools {

namespace {

/// Processors that this process may use, 1 or more.
int processor_count() {
  cpu_set_t processors;
  CPU_ZERO(&processors);
  if (::sched_getaffinity(0, sizeof processors, &processors) != 0) {
    return 1;  // there are more of them than the set has room for
  }
  return std::clamp(CPU_COUNT(&processors), 1, kMaxThreads);
}

}  // namespace

int search(int argc, const char* const* argv) {
  int thread_count = processor_count();
  RunMethod method;
  method.thread_count = &thread_count;
  method.process_records = [&](RunFiles& files, CSequence_Mol& record) {
    if (thread_count == 1) return process_records(files, record);
    return CRecordPipeline(files, static_cast<std::size_t>(thread_count)).run();
  };
  return run_process(argc, argv, method);
}

}  // namespace quorix::tools
