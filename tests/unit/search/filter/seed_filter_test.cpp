// How few seeds the filter leaves undecided. A bound that rejects fewer changes no result, it only
// costs time; so the counts are pinned here. They were read off the filter, whose soundness other
// tests show: fewer are welcome if those hold.

#include "search/filter/seed_filter.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <string>
#include <vector>

#include "search/rules/score.h"
#include "support/filter/vector_targets.h"
#include "support/random_dna.h"
#include "unit/search/hard_text.h"
#include "unit/search/searched_sequence.h"

namespace quorix::testing {
namespace {

/// On both sides of where one kind of bound takes over from another.
const std::vector<std::uint64_t> kLengths{1,  2,  3,  5,  6,   7,   8,   12,  17,  22,
                                          23, 24, 40, 90, 200, 400, 749, 750, 751, 800};

class SeedFilter : public CSearchSettings {
 protected:
  /// Seeds that the filter leaves undecided, unit length by unit length.
  static std::vector<std::uint64_t> seed_counts(SeedUse use,
                                                const std::vector<std::uint64_t>& lengths) {
    CSearchedSequence sequence(text());
    CSeedFilter filter = filter_of(sequence, use);
    std::vector<std::uint64_t> counts;
    for (const std::uint64_t unit_length : lengths) {
      counts.push_back(count(filter.seeds(unit_length)));
    }
    return counts;
  }

  /// Those of them that the bounds leave undecided, if their neighbours are likely to be asked for.
  static std::vector<std::uint64_t> undecided_counts(const std::vector<std::uint64_t>& lengths) {
    CSearchedSequence sequence(text());
    CSeedFilter filter = filter_of(sequence, SeedUse::kExtendOverEdits);
    std::vector<std::uint64_t> counts;
    for (const std::uint64_t unit_length : lengths) {
      const CBitSet seeds = filter.seeds(unit_length);
      std::uint64_t undecided = 0;
      for (std::uint64_t p = seeds.find_set(0); p < seeds.size(); p = seeds.find_set(p + 1)) {
        const std::uint64_t next_N = filter.bits_of_Ns().find_set(p);
        if (next_N < p + unit_length) continue;
        if (!filter.has_verdict(p)) filter.decide(p, ~std::uint64_t{0});
        if (filter.is_undecided(p)) ++undecided;
      }
      counts.push_back(undecided);
    }
    return counts;
  }

  static const std::string& text() {
    static const std::string bases = hard_text();
    return bases;
  }

  static CSeedFilter filter_of(CSearchedSequence& sequence, SeedUse use,
                               std::size_t length = text().size()) {
    const SeedThresholds thresholds{*CSearchController::minScores_user,
                                    *CSearchController::minLengths_user,
                                    *CSearchController::minScores_user};
    return {sequence.at(0), length,
            CFilterPlan(use, scoring_rules_of_settings(), thresholds, global_max_unit_length,
                        global_Ns_allowed_in_a_row)};
  }

  static std::uint64_t count(const CBitSet& seeds) {
    std::uint64_t set = 0;
    for (const std::uint64_t word : seeds.words())
      set += static_cast<std::uint64_t>(std::popcount(word));
    return set;
  }
};

using Counts = std::vector<std::uint64_t>;

/// Wide vectors hold more seeds at a time, all of which are undecided if one is.
void expect_one_of(const Counts& counts, const Counts& narrow, const Counts& wide) {
  EXPECT_EQ(counts, counts == narrow ? narrow : wide);
}

TEST_F(SeedFilter, leaves_few_seeds_undecided) {
  for_each_vector_target([](const char* target) {
    EXPECT_EQ(seed_counts(SeedUse::kExtendOverEdits, kLengths),
              (Counts{907,  969,  1012, 1534, 2093, 834, 920, 913, 907, 1519,
                      1282, 1338, 1207, 1375, 1362, 0,   349, 329, 0,   0}))
        << target;
    EXPECT_EQ(undecided_counts(kLengths), (Counts{692, 619, 569, 514, 505, 571, 689, 577, 409, 353,
                                                  347, 340, 197, 0,   0,   0,   0,   1,   0,   0}))
        << target;
    EXPECT_EQ(seed_counts(SeedUse::kExtendExactly, kLengths),
              (Counts{907, 903, 916, 817, 777, 719, 854, 630, 387, 285,
                      227, 226, 189, 0,   0,   0,   0,   0,   0,   0}))
        << target;
  });
}

TEST_F(SeedFilter, leaves_few_seeds_undecided_with_other_penalties) {
  set_penalties(-4, -7);
  require_score(9);
  for_each_vector_target([](const char* target) {
    EXPECT_EQ(seed_counts(SeedUse::kExtendOverEdits, kLengths),
              (Counts{1098, 1244, 1681, 679,  711,  843,  1026, 1080, 5786, 5781,
                      5780, 5779, 5763, 5713, 5475, 5115, 4670, 4669, 4668, 4523}))
        << target;
    expect_one_of(
        undecided_counts(kLengths),
        {655, 615, 577, 509, 565, 577, 743, 654, 582, 488, 514, 469, 304, 77, 32, 0, 64, 0, 0, 0},
        {655, 615, 577, 509, 565, 577, 743, 654, 614, 504, 530, 469, 304, 77, 32, 0, 64, 0, 0, 0});
  });
}

TEST_F(SeedFilter, leaves_few_seeds_undecided_with_high_penalties) {
  set_penalties(-14, -12);
  require_score(20);
  for_each_vector_target([](const char* target) {
    EXPECT_EQ(seed_counts(SeedUse::kExtendOverEdits, kLengths),
              (Counts{725, 746, 761,  778,  749, 880, 1124, 2049, 550, 711,
                      775, 855, 1076, 1069, 112, 0,   0,    0,    128, 288}))
        << target;
    EXPECT_EQ(undecided_counts(kLengths), (Counts{535, 496, 450, 383, 362, 337, 400, 309, 242, 238,
                                                  234, 246, 189, 35,  0,   0,   0,   0,   0,   0}))
        << target;
  });
}

TEST_F(SeedFilter, finds_seeds_by_their_lags_once_for_512_unit_lengths) {
  search_units_from_to(1, 800);
  CSearchedSequence sequence(text());
  CSeedFilter filter = filter_of(sequence, SeedUse::kExtendOverEdits);
  const auto tables_with = [&](std::uint64_t unit_length) {
    (void)filter.seeds(unit_length);
    return filter.work().lags.tables;
  };
  const std::uint64_t tables = tables_with(100);
  EXPECT_GT(tables, 0U);
  EXPECT_EQ(tables_with(611), tables);
  EXPECT_EQ(tables_with(100), tables);
  EXPECT_GT(tables_with(612), tables);
  const std::uint64_t more_tables = filter.work().lags.tables;
  EXPECT_EQ(tables_with(750), more_tables);
  EXPECT_GT(tables_with(611), more_tables);
}

TEST_F(SeedFilter, rejects_as_many_seeds_beside_long_runs_of_Ns_as_elsewhere) {
  search_units_from_to(30, 200);
  RandomEngine engine(11);
  const std::string half = draw_letters(engine, 4000, "ACGT");
  const auto counts_of = [](const std::string& bases) {
    CSearchedSequence sequence(bases);
    CSeedFilter filter = filter_of(sequence, SeedUse::kExtendOverEdits, bases.size());
    Counts counts;
    for (const std::uint64_t unit_length : {30U, 100U, 200U}) {
      const CBitSet seeds = filter.seeds(unit_length);
      std::uint64_t with_unit = 0;
      for (std::uint64_t p = seeds.find_set(0); p < seeds.size(); p = seeds.find_set(p + 1)) {
        with_unit += filter.bits_of_Ns().find_set(p) >= p + unit_length ? 1 : 0;
      }
      counts.push_back(with_unit);
    }
    return counts;
  };
  const Counts without = counts_of(half + half);
  const Counts beside = counts_of(half + std::string(5000, 'N') + half);
  for (std::size_t i = 0; i < without.size(); ++i) EXPECT_LE(beside[i], without[i]) << i;
}

TEST_F(SeedFilter, decides_for_open_neighbours_too) {
  search_units_of(200);
  CSearchedSequence sequence(hard_text());
  CSeedFilter filter = filter_of(sequence, SeedUse::kExtendOverEdits);
  const CBitSet seeds = filter.seeds(200);
  std::uint64_t neighbours = 0;
  for (const std::uint64_t open : {std::uint64_t{0}, ~std::uint64_t{0}, std::uint64_t{0xF0}}) {
    for (std::uint64_t p = seeds.find_set(0); p < seeds.size(); p = seeds.find_set(p + 70)) {
      ASSERT_FALSE(filter.has_verdict(p));
      filter.decide(p, open);
      ASSERT_TRUE(filter.has_verdict(p));
      for (std::uint64_t k = 1; k < 64 && p + k < seeds.size(); ++k) {
        if (!filter.has_verdict(p + k)) continue;
        EXPECT_TRUE(seeds.test(p + k) && (open >> k & 1) != 0) << p << " + " << k;
        ++neighbours;
      }
    }
    (void)filter.seeds(201);
    EXPECT_FALSE(filter.has_verdict(seeds.find_set(0)));
    (void)filter.seeds(200);
  }
  EXPECT_GT(neighbours, 100U);
}

}  // namespace
}  // namespace quorix::testing
