// Summaries of random reports, beside one that is counted base by base.

#include <gtest/gtest.h>

#include <algorithm>

#include "support/engine_comparison.h"
#include "tools/plain_summary.h"
#include "tools/random_reports.h"
#include "tools/report_text.h"
#include "tools/summary/summary.h"

namespace quorix::testing {
namespace {

using tools::CSummary;
using tools::GroupFigures;

/// Adds the records of a report, named by their whole names.
void add_report(CSummary& summary, const std::string& text) {
  tools::CReportReader reader(std::make_unique<CTextInput>(text), "r", false);
  summary.begin_report(reader.settings().unit_form);
  while (reader.next_sequence()) {
    summary.begin_record(reader.sequence().name, reader.sequence().length);
    while (reader.next_repeat()) summary.add(reader.repeat());
    summary.end_record(true);
  }
}

void expect_figures(const GroupFigures& figures, const PlainGroup& plain) {
  EXPECT_EQ(figures.repeat_count, plain.repeats);
  EXPECT_EQ(figures.base_count, static_cast<std::int64_t>(plain.bases.size()));
  EXPECT_NEAR(figures.copies, static_cast<double>(plain.copies), 1e-9);
  EXPECT_EQ(figures.perfection_count, plain.perfections);
  EXPECT_NEAR(static_cast<double>(figures.perfection_sum) / 1000,
              static_cast<double>(plain.perfection), 1e-6);
}

/// The units are each there once, and the first ones are the commonest.
void expect_units(const CSummary& summary, const CPlainSummary& plain) {
  ASSERT_EQ(summary.unit_count(), plain.units.size());
  const std::vector<std::uint32_t> numbers = summary.commonest_units(0);
  ASSERT_EQ(numbers.size(), plain.units.size());
  std::set<std::string> seen;
  GroupFigures previous{INT64_MAX, 0, 0, 0, 0};
  for (const std::uint32_t number : numbers) {
    const auto [unit, figures] = summary.unit_at(number);
    EXPECT_TRUE(seen.insert(unit).second) << unit;
    ASSERT_TRUE(plain.units.contains(unit)) << unit;
    expect_figures(figures, plain.units.at(unit));
    EXPECT_LE(figures.repeat_count, previous.repeat_count);
    previous = figures;
  }
  const std::vector<std::uint32_t> first = summary.commonest_units(2);
  EXPECT_EQ(first, std::vector<std::uint32_t>(
                       numbers.begin(),
                       numbers.begin() + std::min<std::ptrdiff_t>(2, std::ssize(numbers))));
}

void expect_same(const CSummary& summary, const CPlainSummary& plain) {
  expect_figures(summary.total(), plain.total);
  for (const tools::RecordSummary& record : summary.records()) {
    const auto found = plain.records.find(record.identifier);
    expect_figures(record.figures, found == plain.records.end() ? PlainGroup() : found->second);
  }
  ASSERT_EQ(summary.unit_lengths().size(), plain.unit_lengths.size());
  for (const tools::UnitLengthSummary& group : summary.unit_lengths()) {
    ASSERT_TRUE(plain.unit_lengths.contains(group.unit_length));
    expect_figures(group.figures, plain.unit_lengths.at(group.unit_length));
  }
  expect_units(summary, plain);
}

TEST(Summary, figures_are_those_that_are_counted_base_by_base) {
  silence_standard_error();
  std::size_t overlapping_count = 0;
  std::int64_t repeat_count = 0;
  for (std::uint64_t seed = 1; seed <= 400 && !HasFailure(); ++seed) {
    // Two reports of different settings in a row, whose records share no name.
    CSummary summary;
    CPlainSummary plain;
    std::int64_t length = 0;
    std::size_t base_count = 0;
    for (const std::uint64_t part : {seed, seed + 10'000}) {
      const RandomReport drawn = draw_report(part);
      SCOPED_TRACE("seed " + std::to_string(part) + ": " + joined(drawn.options));
      add_report(summary, drawn.text);
      for (const OwnedSequence& sequence : read_whole(drawn.text).sequences) {
        length += sequence.length;
        for (const OwnedRepeat& repeat : sequence.repeats) {
          plain.add(sequence.name, repeat);
          base_count += static_cast<std::size_t>(repeat.figures.length());
        }
      }
    }
    SCOPED_TRACE("seed " + std::to_string(seed));
    EXPECT_EQ(summary.searched_length(), length);
    expect_same(summary, plain);
    overlapping_count += base_count > plain.total.bases.size() ? 1 : 0;
    repeat_count += plain.total.repeats;
  }
  EXPECT_GT(repeat_count, 2000);
  EXPECT_GT(overlapping_count, 100U);
}

/// A repeat of `count` bases from `start` on.
tools::Repeat repeat_of(std::string_view unit, std::int64_t start, std::int64_t count) {
  tools::Repeat repeat;
  repeat.unit = unit;
  repeat.unit_length = static_cast<std::int64_t>(unit.size());
  repeat.start = start;
  repeat.end = start + count - 1;
  repeat.normalized_length = count;
  repeat.perfection = "100.000";
  return repeat;
}

TEST(Summary, units_are_one_by_rotation_and_strand) {
  CSummary summary;
  summary.begin_record("x", 1000);
  std::int64_t start = 1;
  for (const char* const unit : {"CAG", "CTG", "GCA", "TGC", "GAC"}) {
    summary.add(repeat_of(unit, start, 30));
    start += 50;
  }
  summary.end_record(true);
  const std::vector<std::uint32_t> numbers = summary.commonest_units(0);
  ASSERT_EQ(numbers.size(), 2U);
  EXPECT_EQ(summary.unit_at(numbers[0]).unit, "AGC");
  EXPECT_EQ(summary.unit_at(numbers[0]).figures.repeat_count, 4);
  EXPECT_EQ(summary.unit_at(numbers[1]).unit, "ACG");
}

TEST(Summary, ties_of_units_are_decided_by_bases_length_and_alphabet) {
  CSummary summary;
  summary.begin_report(tools::UnitForm::kAlphabeticalBothStrands);
  summary.begin_record("x", 1000);
  std::int64_t start = 1;
  for (const auto& [unit, count] : std::vector<std::pair<const char*, std::int64_t>>{
           {"ACT", 30}, {"AC", 30}, {"AAAANC", 36}, {"AAC", 30}, {"ACG", 30}, {"ACN", 30}}) {
    summary.add(repeat_of(unit, start, count));
    start += 50;
  }
  summary.end_record(true);
  std::vector<std::string> units;
  for (const std::uint32_t number : summary.commonest_units(0)) {
    units.push_back(summary.unit_at(number).unit);
  }
  EXPECT_EQ(units, (std::vector<std::string>{"AAAANC", "AC", "AAC", "ACG", "ACN", "ACT"}));
  EXPECT_EQ(summary.commonest_units(4).size(), 4U);
}

TEST(Summary, units_that_differ_in_length_alone_are_told_apart) {
  CSummary summary;
  summary.begin_report(tools::UnitForm::kAlphabeticalBothStrands);
  summary.begin_record("x", 1000);
  const std::set<std::string> units{"A", "AA", "AAA", "AAAA", "C", "CA", "CAA"};
  for (const std::string& unit : units) summary.add(repeat_of(unit, 1, 30));
  summary.end_record(true);
  std::set<std::string> seen;
  for (const std::uint32_t number : summary.commonest_units(0)) {
    seen.insert(summary.unit_at(number).unit);
  }
  EXPECT_EQ(seen, units);
}

TEST(Summary, copies_do_not_depend_on_the_order_of_repeats) {
  for (std::int64_t count = 10; count < 60; ++count) {
    CSummary summary;
    std::vector<std::string> units{"AC", "AAC", "AAAAC", "AAAACAC", "AAAAACAACAC"};
    for (const bool is_first : {true, false}) {
      summary.begin_record(is_first ? "x" : "y", 1000);
      for (const std::string& unit : units) summary.add(repeat_of(unit, 1, count));
      summary.end_record(true);
      std::reverse(units.begin(), units.end());
    }
    EXPECT_EQ(summary.records()[0].figures, summary.records()[1].figures) << count;
  }
}

/// Every unit of a length as a number in base 4.
std::string numbered_unit(std::size_t number, std::size_t length) {
  std::string unit;
  for (; length-- > 0; number /= 4) unit += "ACGT"[number % 4];
  return unit;
}

TEST(Summary, a_hundred_thousand_units_are_told_apart) {
  CSummary summary;
  summary.begin_report(tools::UnitForm::kAlphabeticalBothStrands);
  constexpr std::size_t kCount = 100'000;
  for (int round = 0; round < 2; ++round) {
    summary.begin_record("x" + std::to_string(round), 100);
    for (std::size_t i = 0; i < kCount; ++i) {
      summary.add(repeat_of(numbered_unit(i, 9 + i % 3), 1, 40));
    }
    summary.end_record(true);
  }
  EXPECT_EQ(summary.unit_count(), kCount);
  std::set<std::string> units;
  for (const std::uint32_t number : summary.commonest_units(0)) {
    const tools::UnitSummary unit = summary.unit_at(number);
    units.insert(unit.unit);
    EXPECT_EQ(unit.figures.repeat_count, 2);
    EXPECT_EQ(unit.figures.base_count, 80);
  }
  for (std::size_t i = 0; i < kCount; ++i) {
    ASSERT_TRUE(units.contains(numbered_unit(i, 9 + i % 3))) << i;
  }
}

TEST(Summary, a_record_that_is_cut_short_says_so) {
  CSummary summary;
  for (const bool is_complete : {true, false}) {
    summary.begin_record(is_complete ? "whole" : "cut", 100);
    summary.end_record(is_complete);
  }
  ASSERT_EQ(summary.records().size(), 2U);
  EXPECT_TRUE(summary.records()[0].is_complete);
  EXPECT_FALSE(summary.records()[1].is_complete);
  EXPECT_EQ(summary.searched_length(), 200);
}

TEST(Summary, texts_are_rounded_as_stated) {
  EXPECT_EQ(tools::share_text(0, 0), "0");
  EXPECT_EQ(tools::share_text(0, 7), "0");
  EXPECT_EQ(tools::share_text(7, 7), "1");
  EXPECT_EQ(tools::share_text(1, 3), "0.333333");
  EXPECT_EQ(tools::share_text(30, 3'000'000'000), "1e-08");
  EXPECT_EQ(tools::percent_text(1, 3), "33.3333");
  EXPECT_EQ(tools::percent_text(0, 0), "0.0000");
  EXPECT_EQ(tools::copies_text({1, 1, 4.0 / 3, 0, 0}), "1.33");
  EXPECT_EQ(tools::mean_perfection_text({2, 1, 0, 199'999, 2}), "100.000");
  EXPECT_EQ(tools::mean_perfection_text({3, 1, 0, 199'999, 3}), "66.666");
  EXPECT_EQ(tools::mean_perfection_text({3, 1, 0, 5, 3}), "0.002");
  EXPECT_EQ(tools::mean_perfection_text({3, 1, 0, -12'500, 1}), "-12.500");
  EXPECT_EQ(tools::mean_perfection_text({3, 1, 0, -1, 3}), "0.000");
  EXPECT_EQ(tools::mean_perfection_text({3, 1, 0, 0, 0}), "");
}

TEST(Summary, perfections_are_read_as_thousandths) {
  tools::Repeat repeat;
  for (const auto& [text, value] : std::vector<std::pair<const char*, std::int64_t>>{
           {"100.000", 100'000}, {"0.001", 1}, {"-12.500", -12'500}, {"96", 96'000}, {"0", 0}}) {
    repeat.perfection = text;
    EXPECT_EQ(tools::perfection_thousandths(repeat), value) << text;
  }
  for (const char* const text : {"nan", "-nan", "inf", "-inf"}) {
    repeat.perfection = text;
    EXPECT_EQ(tools::perfection_thousandths(repeat), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace quorix::testing
