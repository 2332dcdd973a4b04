// The nets of blocks, against a table filled pair by pair.

#include "search/filter/block_nets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "support/filter/plain_block_nets.h"
#include "support/filter/vector_targets.h"
#include "support/random_dna.h"
#include "unit/search/searched_sequence.h"

namespace quorix::testing {
namespace {

constexpr std::int64_t kBucket = CBlockNets::kBucketLags;

/// A number from `low` to `high`, neither of which is negative.
std::int64_t draw_between_signed(RandomEngine& engine, std::int64_t low, std::int64_t high) {
  return draw_number(engine, static_cast<std::size_t>(low), static_cast<std::size_t>(high));
}

constexpr BlockPath kPaths[] = {BlockPath::kThrough, BlockPath::kInto, BlockPath::kOutOf,
                                BlockPath::kWithin};

std::string draw_text_of_arrays(RandomEngine& engine, std::size_t length) {
  std::string text;
  while (text.size() < length) {
    text += draw_array(engine, draw_between(engine, 1, 400), 60, 5);
    if (draw_chance(engine, 20)) text += std::string(draw_between(engine, 1, 9), 'N');
    text += draw_letters(engine, draw_between(engine, 0, 200), "ACGT");
  }
  return text.substr(0, length);
}

/// Asks for ranges of lags of all kinds of paths. What is asked for is rounded to buckets.
void expect_nets_of(const std::string& text, const ScoringRules& scoring, BlockSide side,
                    std::int64_t block, RandomEngine& engine) {
  const CPlainBlock twin(text, scoring, side, block);
  const CBases bases(text);
  struct Question {
    BlockPath path;
    LagRange lags;
  };
  std::vector<Question> questions;
  for (int i = 0; i < 12; ++i) {
    const std::int64_t low = draw_number(engine, 0, CPlainBlock::kMaxLag - 100);
    const std::int64_t width = draw_chance(engine, 50) ? 40 : CPlainBlock::kMaxLag;
    questions.push_back(
        {kPaths[draw_between(engine, 0, 3)],
         {low,
          draw_between_signed(engine, low, std::min(low + width, CPlainBlock::kMaxLag - 20))}});
  }
  for_each_vector_target([&](const char* target) {
    CBlockNets nets(bases.begin(), text.size(), scoring, CPlainBlock::kMaxLag, 3);
    for (const auto& [path, lags] : questions) {
      const std::int64_t low = lags.low / kBucket * kBucket;
      const std::int64_t high = lags.high / kBucket * kBucket + kBucket - 1;
      ASSERT_EQ(nets.highest(side, path, block, lags), twin.highest(path, low, high))
          << target << " path " << static_cast<int>(path) << " lags " << lags.low << " to "
          << lags.high << " block " << block << (side == BlockSide::kRight ? " right" : " left")
          << " of " << text << " penalties " << scoring.mismatch_penalty << ","
          << scoring.indel_penalty << (scoring.is_N_neutral ? " neutral N's" : "");
    }
  });
}

TEST(BlockNets, are_the_highest_of_all_paths) {
  RandomEngine engine(61);
  for (int round = 0; round < 60; ++round) {
    const std::string text = draw_text_of_arrays(engine, draw_between(engine, 33, 3000));
    const ScoringRules scoring{draw_number(engine, 2, 12), draw_number(engine, 3, 12),
                               draw_chance(engine, 50)};
    const auto last_block = static_cast<std::int64_t>(text.size()) / kBlockCharacters;
    const BlockSide side = draw_chance(engine, 50) ? BlockSide::kRight : BlockSide::kLeft;
    ASSERT_NO_FATAL_FAILURE(expect_nets_of(text, scoring, side,
                                           draw_between_signed(engine, 0, last_block + 2), engine));
  }
}

TEST(BlockNets, are_read_bucket_by_bucket) {
  RandomEngine engine(63);
  const std::string text = draw_text_of_arrays(engine, 4000);
  const CBases bases(text);
  CBlockNets nets(bases.begin(), text.size(), {6, 7, true}, 3000, 3);
  CBlockNets::BucketNets read;
  for (int round = 0; round < 50; ++round) {
    const std::int64_t block = draw_number(engine, 0, 120);
    const BlockPath path = kPaths[draw_between(engine, 0, 3)];
    const std::int64_t first = draw_number(engine, 0, 100);
    const std::int64_t count = draw_number(engine, 0, 80);
    nets.read(BlockSide::kLeft, path, block, first, count, read);
    for (std::int64_t i = 0; i < count; ++i) {
      const std::int64_t lag = (first + i) * CBlockNets::kBucketLags;
      EXPECT_EQ(read[static_cast<std::size_t>(i)],
                nets.highest(BlockSide::kLeft, path, block, {lag, lag}));
    }
  }
}

TEST(BlockNets, remember_neighbouring_blocks) {
  RandomEngine engine(62);
  const std::string text = draw_text_of_arrays(engine, 2000);
  const CBases bases(text);
  CBlockNets nets(bases.begin(), text.size(), {6, 6, true}, 500, 3);
  const auto ask = [&](std::int64_t block) {
    return nets.highest(BlockSide::kRight, BlockPath::kInto, block, {100, 130});
  };
  const int first = ask(4);
  EXPECT_EQ(nets.filled_count(), 1U);
  EXPECT_EQ(ask(4), first);
  EXPECT_EQ(nets.filled_count(), 1U);
  (void)ask(5);
  (void)ask(6);
  EXPECT_EQ(ask(4), first);
  EXPECT_EQ(nets.filled_count(), 3U);
  (void)ask(7);  // in the place of block 4
  EXPECT_EQ(ask(4), first);
  EXPECT_EQ(nets.filled_count(), 5U);
}

// Some compilers build for processors with vectors alone.
#if (HWY_TARGETS & HWY_SCALAR) != 0
TEST(BlockNets, are_full_without_vectors) {
  const std::string text(500, 'A');
  with_no_vectors([&] {
    CBlockNets nets(text.data(), text.size(), {6, 6, true}, 400, 3);
    for (const BlockPath path : kPaths) {
      EXPECT_EQ(nets.highest(BlockSide::kLeft, path, 2, {33, 300}), kBlockCharacters);
    }
  });
}
#endif

}  // namespace
}  // namespace quorix::testing
