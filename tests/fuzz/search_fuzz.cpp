// Bytes to settings and a sequence: what the program reports and masks of it is what the plain
// engine does, byte for byte.

#include <string>

#include "driver/parameter_report.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzz_settings.h"
#include "fuzz/harness.h"
#include "support/engine_comparison.h"
#include "support/memory_stream.h"

namespace quorix::fuzz {
namespace {

std::string describe(const testing::NamedBases& record, const testing::Comparison& comparison) {
  return "the engines differ on " + record.bases + "\n" +
         testing::printed_by([](std::FILE* stream) { print_search_parameters(stream, "# "); }) +
         "Program:\n" + comparison.program.report + comparison.program.masked + "Plain engine:\n" +
         comparison.plain.report + comparison.plain.masked;
}

}  // namespace
}  // namespace quorix::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quorix;
  fuzz::CFuzzInput input(data, size);
  const std::size_t longest = fuzz::take_search_settings(input);
  if (longest == 0) return 0;
  fuzz::take_report_settings(input);
  const testing::NamedBases record{"fuzzed", input.take_bases(longest)};
  const testing::Comparison comparison = testing::compare_engines(record);
  fuzz::expect(comparison.is_equal(), [&] { return fuzz::describe(record, comparison); });
  return 0;
}
