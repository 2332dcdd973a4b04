// The searches and the report that no mode of the program selects, against their plain twins:
// every field of every repeat, in order.

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "reference/plain_engine.h"
#include "search/search_controller.h"
#include "support/engine_comparison.h"
#include "support/memory_stream.h"
#include "support/test_record.h"

namespace quorix::testing {
namespace {

constexpr std::uint64_t kCaseCount = 3000;

reference::Repeat with_offsets(const Csat& sat, const char* text) {
  reference::Repeat repeat{sat.start - text,
                           sat.end - text,
                           sat.unit_pos_right - text,
                           sat.unit_pos_left - text,
                           sat.unit_begin - text,
                           sat.unit_end - text,
                           sat.score,
                           sat.mismatches,
                           sat.insertions,
                           sat.deletions,
                           sat.n_count,
                           {}};
  for (const Edit& edit : sat.edits()) repeat.edits.push_back({edit.position - text, edit.kind});
  return repeat;
}

std::vector<reference::Repeat> with_offsets(const CsatContainer& container, const char* text) {
  std::vector<reference::Repeat> repeats;
  for (const Csat* const sat : container.sat_list) repeats.push_back(with_offsets(*sat, text));
  return repeats;
}

/// Calls `compare` with the record and its text for each seed.
template <class Compare>
void for_each_case(const Compare& compare) {
  static CSequence_Mol record;
  silence_standard_error();
  for (std::uint64_t seed = 1; seed <= kCaseCount; ++seed) {
    RandomEngine engine(seed);
    const Options options = draw_options(engine, false);
    const std::string bases = draw_record(engine, 80, draw_chance(engine, 70) ? 4 : 12);
    set_record(record, "older", bases);
    SCOPED_TRACE("seed " + std::to_string(seed) + "\n>older\n" + bases + "\nquorix " +
                 joined(options));
    compare(record, bases);
    if (::testing::Test::HasFailure()) return;
  }
}

TEST(OlderSearches, exact_search_agrees_with_its_plain_twin) {
  std::size_t repeat_count = 0;
  for_each_case([&](CSequence_Mol& record, const std::string& bases) {
    CSearchController controller(1, record);
    controller.exact_search();
    const auto found = with_offsets(controller.exact_sat_list, record.sequence.data());
    EXPECT_EQ(found, reference::exact_search(bases));
    repeat_count += found.size();
  });
  EXPECT_GT(repeat_count, kCaseCount);
}

TEST(OlderSearches, first_hit_scan_agrees_with_its_plain_twin) {
  std::size_t repeat_count = 0;
  for_each_case([&](CSequence_Mol& record, const std::string& bases) {
    CSearchController controller(1, record);
    const std::string report =
        printed_by([&](std::FILE* stream) { controller.simple_imperfect_search(stream); });
    const auto found = with_offsets(controller.imperfect_sat_list, record.sequence.data());
    EXPECT_EQ(found, reference::simple_imperfect_search(bases));
    std::string expected = ">older\nsequence length: " + std::to_string(bases.size()) + "\n";
    for (const reference::Repeat& repeat : found) {
      expected += reference::report_repeat(repeat, bases);
    }
    EXPECT_EQ(report, expected);
    repeat_count += found.size();
  });
  EXPECT_GT(repeat_count, kCaseCount / 2);
}

TEST(OlderSearches, report_by_minimum_perfection_agrees_with_its_plain_twin) {
  std::size_t broken_count = 0;
  for_each_case([&](CSequence_Mol& record, const std::string& bases) {
    global_perfection_minimum = static_cast<float>(60 + bases.size() % 41);
    CSearchController controller(1, record);
    controller.exact_search_2();
    for (const Csat* const sat : controller.exact_sat_list.sat_list) {
      if (sat->percentagePerfection() < double{global_perfection_minimum}) ++broken_count;
    }
    EXPECT_EQ(
        printed_by([&](std::FILE* stream) {
          controller.report_exact_sat_with_minimum_perfection(stream);
        }),
        reference::report_minimum_perfection("older", bases, reference::exact_search_2(bases)));
  });
  EXPECT_GT(broken_count, 100U);
}

}  // namespace
}  // namespace quorix::testing
