// The table of sieves and bounds, as text.

#include "search/filter/filter_plan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace quorix::testing {
namespace {

constexpr ThresholdRule kDefaultScore{6, 0, 1.0F};
constexpr ThresholdRule kSeedScore{4, 0, 1.0F};
constexpr ThresholdRule kNoMinimum{0, 0, 0.0F};
constexpr std::int64_t kLastUnit = 40'000;

/// Tables of thresholds that live as long as the plan.
struct Thresholds {
  Thresholds(const ThresholdRule& score, const ThresholdRule& length,
             const ThresholdRule& user_score)
      : min_scores(score, 0), min_lengths(length, 0), user_min_scores(user_score, 0) {}

  CThresholdTable min_scores;
  CThresholdTable min_lengths;
  CThresholdTable user_min_scores;
};

CFilterPlan plan_of(SeedUse use, const ScoringRules& scoring, const Thresholds& thresholds,
                    std::int64_t last_unit_length = kLastUnit, std::int64_t max_Ns_in_a_row = 4) {
  return {use,
          scoring,
          {thresholds.min_scores, thresholds.min_lengths, thresholds.user_min_scores},
          last_unit_length,
          max_Ns_in_a_row};
}

std::string sieve_text(const UnitPlan& unit) {
  switch (unit.sieve) {
    case Sieve::kRuns:
      return unit.run_rule.near_run() > 0 ? "runs, words near longer ones" : "runs";
    case Sieve::kChains:
      return "chains of " + std::to_string(unit.chain_rule.edits) + " edits";
    case Sieve::kLags:
      return "lags";
    case Sieve::kBlocks:
      return "blocks";
    default:
      return "-";
  }
}

std::string bounds_text(const BoundPlan& bounds) {
  std::string text;
  const auto add = [&](const char* name, int min_seeds) {
    if (min_seeds == 0) return;
    if (!text.empty()) text += ", ";
    text += name;
    if (min_seeds > 1) text += " of " + std::to_string(min_seeds) + " or more";
  };
  add("groups", bounds.min_group_seeds);
  add("batches", bounds.min_batch_seeds);
  add("single seeds", bounds.min_single_seeds);
  return text.empty() ? "-" : text;
}

/// A row for each stretch of unit lengths that have the same sieve and bounds.
std::string rows_of(const std::string& name, const CFilterPlan& plan) {
  std::string rows;
  std::int64_t first = 1;
  const auto text_of = [&](std::int64_t unit_length) {
    const UnitPlan unit = plan.unit(unit_length);
    return sieve_text(unit) + " | " + bounds_text(unit.bounds);
  };
  std::string text = text_of(1);
  for (std::int64_t unit_length = 2; unit_length <= kLastUnit + 1; ++unit_length) {
    const std::string next = unit_length <= kLastUnit ? text_of(unit_length) : "";
    if (next == text) continue;
    const bool is_last = unit_length > kLastUnit;
    rows += "| " + name + " | " + std::to_string(first) +
            (is_last                    ? " and more"
             : first == unit_length - 1 ? ""
                                        : " to " + std::to_string(unit_length - 1)) +
            " | " + text + " |\n";
    first = unit_length;
    text = next;
  }
  return rows;
}

std::string default_table() {
  const Thresholds user(kDefaultScore, kNoMinimum, kDefaultScore);
  const Thresholds lax(kSeedScore, kNoMinimum, kDefaultScore);
  const ScoringRules scoring{6, 6, true};
  return "| Search | Unit lengths | Sieve | Bounds |\n|---|---|---|---|\n" +
         rows_of("`exact`", plan_of(SeedUse::kExtendExactly, scoring, user)) +
         rows_of("`extendExact`", plan_of(SeedUse::kExtendExactlyFirst, scoring, lax)) +
         rows_of("`imperfect`", plan_of(SeedUse::kExtendOverEdits, scoring, user));
}

TEST(FilterPlan, has_the_table_of_the_documents) {
  const std::string table =
      "| Search | Unit lengths | Sieve | Bounds |\n"
      "|---|---|---|---|\n"
      "| `exact` | 1 and more | runs | - |\n"
      "| `extendExact` | 1 and more | runs | - |\n"
      "| `imperfect` | 1 to 4 | runs | batches of 3 or more, single seeds |\n"
      "| `imperfect` | 5 to 6 | runs, words near longer ones | batches of 3 or more, single seeds "
      "|\n"
      "| `imperfect` | 7 to 10 | chains of 2 edits | batches of 3 or more, single seeds |\n"
      "| `imperfect` | 11 to 16 | chains of 3 edits | batches of 3 or more, single seeds |\n"
      "| `imperfect` | 17 to 22 | chains of 4 edits | batches of 3 or more, single seeds |\n"
      "| `imperfect` | 23 | lags | batches of 3 or more, single seeds |\n"
      "| `imperfect` | 24 to 63 | lags | groups of 2 or more, batches of 3 or more, single seeds "
      "|\n"
      "| `imperfect` | 64 to 750 | lags | groups of 2 or more, batches of 20 or more, single seeds "
      "|\n"
      "| `imperfect` | 751 to 4096 | blocks | groups of 2 or more, batches of 20 or more, single "
      "seeds |\n"
      "| `imperfect` | 4097 to 30000 | - | groups of 2 or more, batches of 3 or more |\n"
      "| `imperfect` | 30001 and more | - | - |\n";
  EXPECT_EQ(default_table(), table);
  std::ifstream document(QUORIX_ALGORITHM_DOCUMENT);
  const std::string text{std::istreambuf_iterator<char>(document), {}};
  ASSERT_FALSE(text.empty()) << QUORIX_ALGORITHM_DOCUMENT;
  EXPECT_NE(text.find(table), std::string::npos) << "not in " << QUORIX_ALGORITHM_DOCUMENT;
}

TEST(FilterPlan, follows_penalties) {
  const Thresholds user(kDefaultScore, kNoMinimum, kDefaultScore);
  const auto rows = [&](std::int64_t mismatch, std::int64_t indel) {
    return rows_of("", plan_of(SeedUse::kExtendOverEdits, {mismatch, indel, false}, user));
  };
  EXPECT_EQ(rows(2, 9),
            "|  | 1 to 2 | runs | batches of 3 or more, single seeds |\n"
            "|  | 3 to 23 | - | batches of 3 or more, single seeds |\n"
            "|  | 24 to 63 | - | groups of 2 or more, batches of 3 or more, single seeds |\n"
            "|  | 64 to 4096 | - | groups of 2 or more, batches of 20 or more, single seeds |\n"
            "|  | 4097 to 30000 | - | groups of 2 or more, batches of 3 or more |\n"
            "|  | 30001 and more | - | - |\n");
  EXPECT_EQ(
      rows(4, 7),
      "|  | 1 to 3 | runs | batches of 3 or more, single seeds |\n"
      "|  | 4 | runs, words near longer ones | batches of 3 or more, single seeds |\n"
      "|  | 5 to 8 | chains of 3 edits | batches of 3 or more, single seeds |\n"
      "|  | 9 to 12 | chains of 4 edits | batches of 3 or more, single seeds |\n"
      "|  | 13 to 23 | - | batches of 3 or more, single seeds |\n"
      "|  | 24 to 63 | - | groups of 2 or more, batches of 3 or more, single seeds |\n"
      "|  | 64 to 95 | - | groups of 2 or more, batches of 20 or more, single seeds |\n"
      "|  | 96 to 4096 | blocks | groups of 2 or more, batches of 20 or more, single seeds |\n"
      "|  | 4097 to 30000 | - | groups of 2 or more, batches of 3 or more |\n"
      "|  | 30001 and more | - | - |\n");
  EXPECT_EQ(
      rows(14, 12),
      "|  | 1 to 10 | runs | batches of 3 or more, single seeds |\n"
      "|  | 11 to 12 | runs, words near longer ones | batches of 3 or more, single seeds |\n"
      "|  | 13 to 23 | chains of 2 edits | batches of 3 or more, single seeds |\n"
      "|  | 24 to 28 | chains of 2 edits | groups of 2 or more, batches of 3 or more, single seeds "
      "|\n"
      "|  | 29 to 32 | chains of 3 edits | groups of 2 or more, batches of 3 or more, single seeds "
      "|\n"
      "|  | 33 to 63 | lags | groups of 2 or more, batches of 3 or more, single seeds |\n"
      "|  | 64 to 750 | lags | groups of 2 or more, batches of 20 or more, single seeds |\n"
      "|  | 751 to 4096 | blocks | groups of 2 or more, batches of 20 or more, single seeds |\n"
      "|  | 4097 to 30000 | - | groups of 2 or more, batches of 3 or more |\n"
      "|  | 30001 and more | - | - |\n");
}

TEST(FilterPlan, rejects_nothing_where_no_score_is_asked_for) {
  const Thresholds none(kNoMinimum, kNoMinimum, kNoMinimum);
  for (const SeedUse use :
       {SeedUse::kExtendExactly, SeedUse::kExtendOverEdits, SeedUse::kExtendExactlyFirst}) {
    EXPECT_EQ(rows_of("", plan_of(use, {6, 6, true}, none)), "|  | 1 and more | - | - |\n");
  }
  // A minimum length counts for exact extension.
  const Thresholds length(kNoMinimum, {20, 0, 0.0F}, kNoMinimum);
  EXPECT_EQ(rows_of("", plan_of(SeedUse::kExtendExactly, {6, 6, true}, length)),
            "|  | 1 to 19 | runs | - |\n|  | 20 and more | - | - |\n");
  EXPECT_EQ(rows_of("", plan_of(SeedUse::kExtendOverEdits, {6, 6, true}, length)),
            "|  | 1 and more | - | - |\n");
}

TEST(FilterPlan, asks_runs_for_what_each_use_needs) {
  const Thresholds thresholds({9, 0, 0.0F}, {16, 0, 0.0F}, {12, 0, 0.0F});
  const auto rule = [&](SeedUse use, std::int64_t unit_length) {
    const RunRule run = plan_of(use, {7, 9, true}, thresholds).unit(unit_length).run_rule;
    return std::vector<std::int64_t>{run.unit_length, run.min_run, run.sure_run, run.min_two_runs};
  };
  using Rule = std::vector<std::int64_t>;
  EXPECT_EQ(rule(SeedUse::kExtendExactly, 3), (Rule{3, 13, 13, 13}));
  EXPECT_EQ(rule(SeedUse::kExtendExactly, 12), (Rule{12, 9, 9, 9}));
  EXPECT_EQ(rule(SeedUse::kExtendOverEdits, 3), (Rule{3, 5, 9, 12}));
  EXPECT_EQ(rule(SeedUse::kExtendExactlyFirst, 3), (Rule{3, 13, 12, 12}));
  EXPECT_EQ(rule(SeedUse::kExtendExactlyFirst, 12), (Rule{12, 9, 12, 3}));
}

TEST(FilterPlan, looks_for_near_runs_where_short_runs_are_followed) {
  const auto near = [](const RunRule& rule) { return rule.near_run(); };
  EXPECT_EQ(near({6, 1, 6, 7}), 4);
  EXPECT_EQ(near({6, 2, 6, 7}), 4);
  EXPECT_EQ(near({6, 3, 6, 7}), 0);   // no run is short
  EXPECT_EQ(near({4, 1, 9, 31}), 3);  // as far as the lag reaches
  EXPECT_EQ(near({3, 1, 9, 31}), 0);  // which is too short a run
  EXPECT_EQ(near({60, 1, 90, 31}), 16);
  EXPECT_EQ(near({60, 1, 90, 32}), 0);  // more words would have to be read
  EXPECT_EQ(near({60, 1, 5, 31}), 5);
  EXPECT_EQ(near({60, 2, 2, 31}), 0);
}

TEST(FilterPlan, sieves_as_many_unit_lengths_by_lags_as_find_room) {
  EXPECT_EQ(CFilterPlan::lag_units_at_once(2), 512);
  EXPECT_EQ(CFilterPlan::lag_units_at_once(625'000), 512);
  EXPECT_EQ(CFilterPlan::lag_units_at_once(625'001), 511);
  EXPECT_EQ(CFilterPlan::lag_units_at_once(26'666'666), 12);
  EXPECT_EQ(CFilterPlan::lag_units_at_once(26'666'667), 11);
  EXPECT_EQ(CFilterPlan::lag_units_at_once(64'000'000), 5);
  EXPECT_EQ(CFilterPlan::lag_units_at_once(64'000'001), 4);
  EXPECT_EQ(CFilterPlan::lag_units_at_once(4'000'000'000), 4);
}

TEST(FilterPlan, sieves_at_once_no_unit_length_that_is_not_searched) {
  const Thresholds user(kDefaultScore, kNoMinimum, kDefaultScore);
  const auto last = [&](std::int64_t last_searched, std::int64_t unit_length, std::int64_t length) {
    return plan_of(SeedUse::kExtendOverEdits, {6, 6, true}, user, last_searched)
        .last_lag_unit(unit_length, length);
  };
  EXPECT_EQ(last(10'000, 100, 5000), 611);
  EXPECT_EQ(last(10'000, 500, 5000), 750);
  EXPECT_EQ(last(300, 100, 5000), 300);
  EXPECT_EQ(last(10'000, 100, 200), 199);
  EXPECT_EQ(last(10'000, 100, 64'000'001), 103);
  EXPECT_EQ(last(50, 100, 5000), 100);  // served by itself
  EXPECT_EQ(last(10'000, 751, 5000), 1262);
  EXPECT_EQ(last(10'000, 4000, 50'000), 4096);
}

TEST(FilterPlan, is_equal_to_one_of_the_same_rules_and_tables) {
  const Thresholds user(kDefaultScore, kNoMinimum, kDefaultScore);
  const Thresholds others(kDefaultScore, kNoMinimum, kDefaultScore);
  const CFilterPlan plan = plan_of(SeedUse::kExtendExactly, {6, 6, true}, user);
  EXPECT_TRUE(plan == plan_of(SeedUse::kExtendExactly, {6, 6, true}, user));
  EXPECT_FALSE(plan == plan_of(SeedUse::kExtendOverEdits, {6, 6, true}, user));
  EXPECT_FALSE(plan == plan_of(SeedUse::kExtendExactly, {6, 7, true}, user));
  EXPECT_FALSE(plan == plan_of(SeedUse::kExtendExactly, {6, 6, false}, user));
  EXPECT_FALSE(plan == plan_of(SeedUse::kExtendExactly, {6, 6, true}, others));
  EXPECT_FALSE(plan == plan_of(SeedUse::kExtendExactly, {6, 6, true}, user, 9));
  EXPECT_FALSE(plan == plan_of(SeedUse::kExtendExactly, {6, 6, true}, user, kLastUnit, 5));
}

}  // namespace
}  // namespace quorix::testing
