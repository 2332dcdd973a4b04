// An attack on the filters of seeds: on texts whose extensions hug the floor every valid seed is
// extended without them, and each filter is asked with a threshold equal to the score reached.
//
//   quorix_soundness_test --cases=2000 --seed=1
//   quorix_soundness_test --cases=20000 --seed=1 --target=AVX2    one kind of processor alone

#include <gtest/gtest.h>
#include <hwy/targets.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "search/extension/site_key.h"
#include "search/rules/cache_limits.h"
#include "soundness/attack_case.h"
#include "soundness/cached_extension.h"
#include "soundness/filter_questions.h"
#include "support/case_arguments.h"
#include "support/default_settings.h"
#include "support/filter/vector_targets.h"

namespace quorix::testing {
namespace {

CaseArguments arguments{1000, 1};
std::string only_target;  ///< the name of a kind of processor; empty for all of them

/// The kinds of processor to draw from. Without vectors most bounds reject nothing, so that kind is
/// drawn as often as each of the others, and no oftener.
std::vector<std::int64_t> attacked_targets() {
  std::vector<std::int64_t> targets = vector_targets();
  targets.push_back(HWY_SCALAR);
  if (only_target.empty()) return targets;
  for (const std::int64_t target : targets) {
    if (only_target == hwy::TargetName(target)) return {target};
  }
  return {};
}

/// Asks for the array's own unit length, and at times for one that is close to it.
std::string attack_once(std::uint64_t seed, const AttackCase& attack, QuestionTallies& tallies) {
  RandomEngine engine(~seed);
  std::string fault = ask_all_filters(attack, attack.unit_length, engine, tallies);
  if (!fault.empty() || !draw_chance(engine, 25)) return fault;
  const std::uint64_t unit = attack.unit_length;
  const std::uint64_t others[] = {unit - 1, unit + 1, 2 * unit, unit / 2};
  return ask_all_filters(attack, others[draw_between(engine, 0, 3)], engine, tallies);
}

std::uint64_t all_tight_questions(const std::map<std::int64_t, QuestionTallies>& tallies) {
  std::uint64_t all = 0;
  for (const auto& [target, of_target] : tallies) {
    for (const QuestionTally& tally : of_target) all += tally.tight;
  }
  return all;
}

void print_answers(std::int64_t target, const QuestionTallies& tallies) {
  std::printf("%s\n", hwy::TargetName(target));
  for (std::size_t i = 0; i < kAttackedFilters; ++i) {
    std::printf("  %-48s %10llu tight questions, %10llu others rejected\n",
                name_of(static_cast<AttackedFilter>(i)),
                static_cast<unsigned long long>(tallies[i].tight),
                static_cast<unsigned long long>(tallies[i].rejected));
  }
}

/// An attack on filters that reject nothing, or with nothing to ask, would find nothing. Without
/// vectors most bounds reject nothing.
void expect_answers(const std::map<std::int64_t, QuestionTallies>& tallies) {
  const bool has_vectors = tallies.size() > 1 || tallies.begin()->first != HWY_SCALAR;
  for (std::size_t i = 0; i < kAttackedFilters; ++i) {
    QuestionTally all;
    for (const auto& [target, of_target] : tallies) {
      all.tight += of_target[i].tight;
      all.rejected += of_target[i].rejected;
    }
    EXPECT_GT(all.tight, 0U) << name_of(static_cast<AttackedFilter>(i));
    EXPECT_TRUE(all.rejected > 0 || !has_vectors) << name_of(static_cast<AttackedFilter>(i));
  }
}

class Soundness : public CDefaultSettings {};

TEST_F(Soundness, no_filter_rejects_a_seed_for_the_score_that_it_reaches) {
  const std::vector<std::int64_t> targets = attacked_targets();
  ASSERT_FALSE(targets.empty()) << "this machine cannot stand for " << only_target;
  std::map<std::int64_t, QuestionTallies> tallies;
  for (std::uint64_t seed = arguments.first_seed;
       seed < arguments.first_seed + arguments.case_count; ++seed) {
    const AttackCase attack = draw_attack_case(seed, targets);
    const std::string fault = attack_once(seed, attack, tallies[attack.target]);
    ASSERT_TRUE(fault.empty()) << "case " << seed << " after " << all_tight_questions(tallies)
                               << " tight questions: " << fault;
  }
  use_vector_targets(0);
  for (const auto& [target, of_target] : tallies) print_answers(target, of_target);
  expect_answers(tallies);
  std::printf("%llu cases from seed %llu, %llu tight questions\n",
              static_cast<unsigned long long>(arguments.case_count),
              static_cast<unsigned long long>(arguments.first_seed),
              static_cast<unsigned long long>(all_tight_questions(tallies)));
}

TEST_F(Soundness, caches_return_what_a_fresh_extension_returns) {
  const std::vector<std::int64_t> targets = attacked_targets();
  ASSERT_FALSE(targets.empty()) << "this machine cannot stand for " << only_target;
  CachedExtensionWork of_units;
  CachedExtensionWork of_places;
  for (std::uint64_t seed = arguments.first_seed;
       seed < arguments.first_seed + arguments.case_count; ++seed) {
    const AttackCase attack = draw_attack_case(seed, targets);
    const std::uint64_t unit = attack.unit_length;
    std::string fault;
    if (unit <= kMaxCachedUnit + 2) {
      fault = compare_cached_extensions(attack, {unit}, of_units);
    } else if (unit > kWindowCharacters) {
      fault = compare_cached_extensions(attack, {unit - 1, unit, unit + 1, 2 * unit}, of_places);
    }
    ASSERT_TRUE(fault.empty()) << "case " << seed << ": " << fault;
  }
  use_vector_targets(0);
  for (const CachedExtensionWork& work : {of_units, of_places}) {
    std::printf("%llu extensions compared, %llu edits found in the cache\n",
                static_cast<unsigned long long>(work.extensions),
                static_cast<unsigned long long>(work.edits_found));
    EXPECT_GT(work.extensions, arguments.case_count);
    EXPECT_GT(work.edits_found, arguments.case_count);
  }
}

}  // namespace
}  // namespace quorix::testing

int main(int argc, char** argv) {
  constexpr std::string_view kFlag = "--target=";
  int remaining = 0;
  for (int i = 0; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument.starts_with(kFlag)) {
      quorix::testing::only_target = argument.substr(kFlag.size());
    } else {
      argv[remaining++] = argv[i];
    }
  }
  return quorix::testing::run_tests_of_cases(remaining, argv, quorix::testing::arguments);
}
