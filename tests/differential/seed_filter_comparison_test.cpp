// What the seed filters reject, the plain engine must not accept.
//
//   quorix_seed_filter_test --cases=1000 --seed=1

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "reference/plain_exact_extension.h"
#include "reference/plain_extension.h"
#include "reference/plain_seed_rules.h"
#include "reference/plain_thresholds.h"
#include "search/filter/seed_filter.h"
#include "search/filter/single_bound.h"
#include "search/rules/score.h"
#include "search/search_controller.h"
#include "support/case_arguments.h"
#include "support/engine_comparison.h"
#include "support/random_dna.h"
#include "support/random_options.h"
#include "support/test_record.h"

namespace quorix::testing {
namespace {

using reference::Repeat;
using reference::ThresholdSet;

CaseArguments arguments{1000, 1};

/// Seeds, by their verdicts; short units are tested by runs, long ones by lags.
struct Tally {
  std::uint64_t seeds = 0;
  std::uint64_t accepted = 0;
  std::uint64_t rejected_by_runs = 0;
  std::uint64_t rejected_by_lags = 0;
  std::uint64_t rejected_by_single = 0;
  std::uint64_t rejected_by_batches = 0;  ///< left undecided by runs or lags
  std::uint64_t rejected_at_all = 0;
} tally;

std::string draw_one_of(RandomEngine& engine, const std::vector<std::string>& values) {
  return values[draw_between(engine, 0, values.size() - 1)];
}

/// Settings that the filters obey. Only small depths: the judge tries every path.
Options draw_filter_options(RandomEngine& engine) {
  const auto penalty = [&] {
    return "-" + std::to_string(draw_chance(engine, 60) ? draw_between(engine, 5, 12)
                                                        : draw_between(engine, 2, 12));
  };
  const std::string mismatch = penalty();
  const std::string indel = draw_chance(engine, 50) ? mismatch : penalty();
  Options options{"-m", mismatch, "-g", indel, "-u", "1", "-U", "30"};
  const auto add = [&](std::size_t percent, const char* flag,
                       const std::vector<std::string>& values) {
    if (!draw_chance(engine, percent)) return;
    options.emplace_back(flag);
    options.push_back(draw_one_of(engine, values));
  };
  options.emplace_back("-r");
  options.push_back(draw_one_of(engine, {"1", "1", "1", "2"}));
  add(60, "-s", {"1", "3", "4", "6", "8", "12", "15", "25"});
  add(50, "--minScore_b", {"0", "0.1", "0.5", "0.7", "1.5"});
  add(15, "--minScore_a", {"-4", "-1", "2", "5"});
  add(25, "-l", {"0", "5", "12", "30"});
  add(15, "--minLength_b", {"0.5", "1", "2.5"});
  add(20, "-R", {"0", "2", "5", "20"});
  add(40, "-N", {"0", "1", "2", "7", "2147483647"});
  if (draw_chance(engine, 15)) options.emplace_back("--NsAsMissense");
  return options;
}

std::string draw_bases(RandomEngine& engine) {
  std::string bases =
      draw_record(engine, draw_chance(engine, 70) ? 150 : 500, draw_chance(engine, 50) ? 8 : 30);
  if (draw_chance(engine, 30)) bases += draw_letters(engine, 100, "ACGT");
  if (draw_chance(engine, 30)) bases += draw_array(engine, 120, 35, draw_between(engine, 0, 12));
  if (draw_chance(engine, 30)) std::replace(bases.begin(), bases.end(), 'N', 'A');
  return bases;
}

/// A record and everything that judges its seeds.
class CJudgedRecord {
 public:
  explicit CJudgedRecord(std::string bases) : bases_(std::move(bases)) {
    set_record(record_, "judged", bases_);
    controller_.emplace(1, record_);
  }

  /// Looks at every seed of `unit_length`. Empty, or what is wrong.
  [[nodiscard]] std::string judge(std::uint64_t unit_length) {
    if (unit_length >= bases_.size()) return "";
    const SeedThresholds user{*CSearchController::minScores_user,
                              *CSearchController::minLengths_user,
                              *CSearchController::minScores_user};
    const SeedThresholds intern{*CSearchController::minScores_intern,
                                *CSearchController::minLengths_intern,
                                *CSearchController::minScores_user};
    const CBitSet exact = seeds_for(unit_length, SeedUse::kExtendExactly, user);
    CSeedFilter edit_filter = filter_for(SeedUse::kExtendOverEdits, user);
    const CBitSet& edited = edit_filter.seeds(unit_length);
    const CBitSet extended = seeds_for(unit_length, SeedUse::kExtendExactlyFirst, intern);
    const bool is_tested_by_lags = static_cast<std::int64_t>(unit_length) >=
                                   -std::max(global_mismatch_score, global_indel_score);

    const auto signed_length = static_cast<std::int64_t>(unit_length);
    for (std::int64_t p = 0; p + signed_length < length(); ++p) {
      if (!reference::is_valid_starting_pattern(bases_, p, p + signed_length)) continue;
      const Repeat seed = reference::repeat_from_unit(p, p + signed_length);
      const Repeat run = extended_exactly(seed);
      const Repeat repeat = extended_over_edits(seed);
      const auto at = static_cast<std::uint64_t>(p);

      ++tally.seeds;
      if (!exact.test(at) && reference::passes_thresholds(run, ThresholdSet::kUser)) {
        return describe("exact extension", run);
      }
      const bool is_accepted = reference::passes_thresholds(repeat, ThresholdSet::kUser);
      if (is_accepted) ++tally.accepted;
      const bool is_bounded = !may_reach(seed);
      if ((!edited.test(at) || is_bounded) && is_accepted) {
        return describe(is_bounded ? "the single bound" : "extension over edits", repeat);
      }
      // As a scan asks: only for seeds that the sieves leave undecided, in ascending order.
      if (edited.test(at) && !edit_filter.has_verdict(at))
        edit_filter.decide(at, ~std::uint64_t{0});
      if (edited.test(at) && !edit_filter.is_undecided(at)) {
        ++tally.rejected_by_batches;
        if (is_accepted)
          return describe("extension over edits, asked for with its neighbours", repeat);
      }
      if (!edited.test(at)) ++(is_tested_by_lags ? tally.rejected_by_lags : tally.rejected_by_runs);
      if (is_bounded) ++tally.rejected_by_single;
      if (is_bounded || !edited.test(at)) ++tally.rejected_at_all;

      if (!reference::passes_thresholds(run, ThresholdSet::kIntern)) continue;
      const Repeat extension = extended_over_edits(run);
      const bool is_extended = reference::passes_thresholds(extension, ThresholdSet::kUser);
      if (is_extended && (!extended.test(at) || !may_reach(run))) {
        return describe("exact extension with edits after it", extension);
      }
      // Such a run closes its bases to the seeds of longer units.
      if (!extended.test(at) && reference::passes_thresholds(run, ThresholdSet::kUser)) {
        return describe("exact extension before edits", run);
      }
    }
    return "";
  }

 private:
  [[nodiscard]] std::int64_t length() const { return static_cast<std::int64_t>(bases_.size()); }

  [[nodiscard]] CSeedFilter filter_for(SeedUse use, const SeedThresholds& thresholds) const {
    return {record_.sequence.data(), bases_.size(),
            CFilterPlan(use, scoring_rules_of_settings(), thresholds, global_max_unit_length,
                        global_Ns_allowed_in_a_row)};
  }

  [[nodiscard]] CBitSet seeds_for(std::uint64_t unit_length, SeedUse use,
                                  const SeedThresholds& thresholds) const {
    return filter_for(use, thresholds).seeds(unit_length);
  }

  [[nodiscard]] Repeat extended_exactly(Repeat repeat) const {
    reference::extend_exact_forward(repeat, bases_, length());
    reference::extend_exact_backward(repeat, bases_, -1);
    reference::remove_Ns_at_ends(repeat, bases_);
    return repeat;
  }

  [[nodiscard]] Repeat extended_over_edits(Repeat repeat) const {
    reference::extend_imperfect_forward(repeat, bases_, length());
    reference::extend_imperfect_backward(repeat, bases_, -1);
    reference::remove_Ns_at_ends(repeat, bases_);
    return repeat;
  }

  [[nodiscard]] bool may_reach(const Repeat& repeat) {
    const char* const text = record_.sequence.data();
    BoundWork work;
    return may_repeat_reach(
        {text, text + length(), scoring_rules_of_settings()},
        {text + repeat.start, text + repeat.end, text + repeat.unit_begin, text + repeat.unit_end,
         repeat.unit_pos_right - repeat.unit_begin, repeat.unit_pos_left - repeat.unit_begin,
         repeat.score},
        reference::min_score(ThresholdSet::kUser, reference::unit_length(repeat)), work);
  }

  [[nodiscard]] std::string describe(const std::string& how, const Repeat& repeat) const {
    return "rejected, but accepted by " + how + ": unit [" + std::to_string(repeat.unit_begin) +
           "," + std::to_string(repeat.unit_end) + ") extends to [" + std::to_string(repeat.start) +
           "," + std::to_string(repeat.end) + ") of " + bases_ + " with score " +
           std::to_string(repeat.score);
  }

  std::string bases_;
  CSequence_Mol record_;
  std::optional<CSearchController> controller_;  ///< makes the tables of thresholds
};

/// Random bases and arrays, three unit lengths.
void run_case(std::uint64_t seed) {
  RandomEngine engine(seed);
  Options options = draw_filter_options(engine);
  while (!apply_options(options)) options = draw_filter_options(engine);
  CJudgedRecord record(draw_bases(engine));
  for (int i = 0; i < 3; ++i) {
    const std::string fault = record.judge(draw_between(engine, 1, 30));
    ASSERT_EQ(fault, "") << joined(options);
  }
}

/// Copies of a long unit, whose scores the bounds hold in 8 or 16 bits: one copy begins or ends
/// with many mismatches, which those after it have to pay for.
void run_case_of_a_long_unit(std::uint64_t seed) {
  RandomEngine engine(seed);
  const std::size_t unit_length = draw_between(engine, 150, 700);
  const std::size_t penalty = draw_between(engine, 5, 30);
  const std::size_t max_mismatches = unit_length / penalty;
  const std::size_t mismatches = draw_between(engine, max_mismatches / 2, max_mismatches);
  const std::string unit = draw_letters(engine, mismatches, "CGT") +
                           draw_letters(engine, unit_length - mismatches, "ACGT");
  const std::string hit = std::string(mismatches, 'A') + unit.substr(mismatches);
  std::string bases = unit + hit + unit + unit.substr(0, draw_between(engine, 0, unit_length));
  bases += draw_letters(engine, 100, "ACGT");
  if (draw_chance(engine, 50)) std::reverse(bases.begin(), bases.end());

  const std::string length_text = std::to_string(unit_length);
  const std::string penalty_text = "-" + std::to_string(penalty);
  const Options options{
      "-u", length_text,  "-U",           length_text,
      "-m", penalty_text, "-g",           penalty_text,
      "-r", "1",          "--minScore_b", draw_one_of(engine, {"0.1", "0.5", "1", "1.3"})};
  ASSERT_TRUE(apply_options(options)) << joined(options);
  CJudgedRecord record(bases);
  ASSERT_EQ(record.judge(unit_length), "") << joined(options);
}

TEST(SeedFilter, rejects_no_seed_that_the_plain_engine_accepts) {
  silence_standard_error();
  ASSERT_NO_FATAL_FAILURE(run_cases(arguments, run_case));
  std::printf(
      "%llu seeds, %llu accepted, rejected: %llu by runs, %llu by lags, %llu by single bounds, "
      "%llu more among their neighbours\n",
      static_cast<unsigned long long>(tally.seeds), static_cast<unsigned long long>(tally.accepted),
      static_cast<unsigned long long>(tally.rejected_by_runs),
      static_cast<unsigned long long>(tally.rejected_by_lags),
      static_cast<unsigned long long>(tally.rejected_by_single),
      static_cast<unsigned long long>(tally.rejected_by_batches));
  EXPECT_GT(tally.accepted, tally.seeds / 100);
  EXPECT_GT(tally.rejected_at_all, tally.seeds / 4);
  EXPECT_GT(tally.rejected_by_runs, tally.seeds / 20);
  EXPECT_GT(tally.rejected_by_lags, tally.seeds / 20);
  EXPECT_GT(tally.rejected_by_single, tally.seeds / 20);
  EXPECT_GT(tally.rejected_by_batches, tally.seeds / 100);
}

TEST(SeedFilter, rejects_no_seed_of_long_units_that_the_plain_engine_accepts) {
  const Tally before = tally;
  for (std::uint64_t seed = arguments.first_seed;
       seed < arguments.first_seed + arguments.case_count / 200 + 5; ++seed) {
    ASSERT_NO_FATAL_FAILURE(run_case_of_a_long_unit(seed)) << "seed " << seed;
  }
  const std::uint64_t seeds = tally.seeds - before.seeds;
  std::printf(
      "%llu seeds of long units, %llu accepted, rejected: %llu by lags, %llu by single bounds\n",
      static_cast<unsigned long long>(seeds),
      static_cast<unsigned long long>(tally.accepted - before.accepted),
      static_cast<unsigned long long>(tally.rejected_by_lags - before.rejected_by_lags),
      static_cast<unsigned long long>(tally.rejected_by_single - before.rejected_by_single));
  EXPECT_GT(tally.accepted - before.accepted, seeds / 20);
  EXPECT_GT(tally.rejected_by_lags - before.rejected_by_lags, 0U);
  EXPECT_GT(tally.rejected_by_single - before.rejected_by_single, 0U);
}

}  // namespace
}  // namespace quorix::testing

int main(int argc, char** argv) {
  return quorix::testing::run_tests_of_cases(argc, argv, quorix::testing::arguments);
}
