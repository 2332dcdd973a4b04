#include "load/planted_bases.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "load/expected_repeats.h"

namespace quorix::load {
namespace {

constexpr std::uint64_t kMillion = (std::uint64_t{1} << 20U) + 1;
constexpr std::uint64_t kOddSeed = 1;
constexpr std::uint64_t kEvenSeed = 2;

/// All bases of a record, asked for in pieces of a length.
std::string read_all(CPlantedBases& bases, std::size_t piece_length) {
  std::string all;
  for (std::string_view piece = bases.next(piece_length); !piece.empty();
       piece = bases.next(piece_length)) {
    all += piece;
  }
  return all;
}

std::string record_of(std::uint64_t length, std::uint64_t seed, std::size_t piece_length) {
  CPlantedBases bases(seed);
  bases.begin_record(length);
  return read_all(bases, piece_length);
}

TEST(PlantedBases, gives_the_same_bases_in_pieces_of_any_length) {
  const std::string whole = record_of(kMillion, 1, CPlantedBases::kMaxBases);
  EXPECT_EQ(whole.size(), kMillion);
  for (const std::size_t piece_length : {1U, 60U, 80U, 4095U}) {
    EXPECT_TRUE(record_of(kMillion, 1, piece_length) == whole) << piece_length;
  }
  EXPECT_TRUE(record_of(kMillion, 2, 60) != whole);
}

TEST(PlantedBases, holds_what_it_says_is_planted) {
  CPlantedBases bases(3);
  bases.begin_record(kMillion);
  const std::string all = read_all(bases, 60);
  std::uint64_t last_end = 0;
  for (const PlantedRepeat& repeat : bases.planted()) {
    EXPECT_GE(repeat.start, last_end);
    EXPECT_EQ(all.substr(repeat.start, repeat.bases.size()), repeat.bases);
    last_end = repeat.end();
  }
  EXPECT_EQ(bases.planted().front().start, 0);
  EXPECT_EQ(last_end, kMillion);
}

template <class Predicate>
long count_planted(const CPlantedBases& bases, const Predicate& is_so) {
  return std::count_if(bases.planted().begin(), bases.planted().end(), is_so);
}

void expect_planted_at(const CPlantedBases& bases, std::uint64_t power) {
  const auto crosses = [power](const PlantedRepeat& repeat) {
    return repeat.start < power && power < repeat.end();
  };
  const auto is_near = [power](const PlantedRepeat& repeat) {
    return repeat.start + 700 > power && power + 700 > repeat.end();
  };
  const auto is_diverged_near = [&](const PlantedRepeat& repeat) {
    return is_near(repeat) && !repeat.edits.empty();
  };
  EXPECT_EQ(count_planted(bases, crosses), 1) << power;
  EXPECT_EQ(count_planted(bases, is_near), 2) << power;
  EXPECT_EQ(count_planted(bases, is_diverged_near), 1) << power;
}

TEST(PlantedBases, plants_both_kinds_across_and_near_every_power_of_two) {
  for (const std::uint64_t seed : {kOddSeed, kEvenSeed}) {
    for (const std::uint64_t length : {kMillion, kMillion + 5000}) {
      CPlantedBases bases(seed);
      bases.begin_record(length);
      for (std::uint64_t power = CPlantedBases::kMinPlantedLength; power < length; power *= 2) {
        expect_planted_at(bases, power);
      }
    }
  }
}

TEST(PlantedBases, turns_kinds_round_with_the_seed) {
  for (const std::uint64_t seed : {kOddSeed, kEvenSeed}) {
    CPlantedBases bases(seed);
    bases.begin_record(kMillion);
    // The second, after that of the begin, lies across the least power of two.
    EXPECT_EQ(bases.planted().at(1).edits.empty(), seed == kEvenSeed);
  }
}

TEST(PlantedBases, goes_on_with_other_bases_in_the_next_record) {
  CPlantedBases bases(1);
  bases.begin_record(10);
  const std::string first = read_all(bases, 7);
  bases.begin_record(10);
  EXPECT_EQ(first.size(), 10);
  EXPECT_NE(read_all(bases, 7), first);
  EXPECT_TRUE(bases.planted().empty());
  bases.begin_record(0);
  EXPECT_EQ(bases.next(7), "");
}

TEST(ExpectedRepeats, have_a_diverged_repeat_as_the_report_prints_it) {
  const PlantedRepeat diverged{
      99, "ACC", "ACCACCTCCACCGACCACCCCACCA", {{7, 'M'}, {13, 'I'}, {20, 'D'}}};
  const auto whole = expected_repeats({diverged}, false);
  ASSERT_EQ(whole.size(), 1);
  EXPECT_EQ(whole[0].start, 99);
  // 25 bases: 2 are edits and 3 the first copy, which leaves 20 matches less 18 for three edits.
  EXPECT_EQ(
      whole[0].information,
      "   trinucleotide       100 :       124 |     25 bp |     25 BP |      2 pt |  88.000 % "
      "|   1 mis |   1 ins |   1 del |   0 N |  unit ACC");
  EXPECT_EQ(whole[0].missense, "Missense: (7,M),(13,I),(20,D),");
}

TEST(ExpectedRepeats,
     have_the_exact_parts_of_a_diverged_repeat_where_only_exact_ones_are_searched) {
  const PlantedRepeat diverged{
      99, "ACC", "ACCACCTCCACCGACCACCCCACCA", {{7, 'M'}, {13, 'I'}, {20, 'D'}}};
  const auto parts = expected_repeats({diverged}, true);
  ASSERT_EQ(parts.size(), 4);
  EXPECT_EQ(parts[0].bases, "ACCACC");
  EXPECT_EQ(parts[1].bases, "CCACC");
  EXPECT_EQ(parts[2].bases, "ACCACC");
  EXPECT_EQ(parts[3].bases, "CCACCA");
  EXPECT_EQ(parts[3].start, 99 + 19);
  EXPECT_EQ(parts[3].missense, "Missense: ");
}

}  // namespace
}  // namespace quorix::load
