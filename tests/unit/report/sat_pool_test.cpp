#include "report/sat_pool.h"

#include <gtest/gtest.h>

#include <iterator>
#include <list>
#include <string_view>
#include <vector>

namespace quorix {
namespace {

constexpr std::string_view kText = "ACGTACGTACGT";
const char* const kFirst = kText.data();

std::vector<const Csat*> spare_records_of(const Csat_garbagecollector& pool) {
  return {pool.spare_records().begin(), pool.spare_records().end()};
}

TEST(SatPool, of_the_process_is_empty_at_first) {
  EXPECT_TRUE(sat_alloc.spare_records().empty());
}

TEST(SatPool, makes_a_new_record_of_one_unit_copy_when_none_is_spare) {
  Csat_garbagecollector pool;
  Csat* const first = pool.acquire(kFirst, kFirst + 3);
  Csat* const second = pool.acquire(kFirst + 1, kFirst + 3);
  EXPECT_NE(first, second);
  EXPECT_EQ(first->start, kFirst);
  EXPECT_EQ(first->end, kFirst + 3);
  EXPECT_EQ(second->unit_begin, kFirst + 1);
  EXPECT_EQ(second->unit_length(), 2);
  EXPECT_EQ(first->missense.capacity(), 0U);
  EXPECT_TRUE(pool.spare_records().empty());
  pool.release(first);
  pool.release(second);
}

TEST(SatPool, puts_a_released_record_after_all_other_spare_ones) {
  Csat_garbagecollector pool;
  Csat* const first = pool.acquire(kFirst, kFirst + 1);
  Csat* const second = pool.acquire(kFirst, kFirst + 1);
  Csat* const third = pool.acquire(kFirst, kFirst + 1);
  pool.release(second);
  pool.release(third);
  pool.release(first);
  EXPECT_EQ(spare_records_of(pool), (std::vector<const Csat*>{second, third, first}));
}

TEST(SatPool, hands_out_the_record_that_came_last_first) {
  Csat_garbagecollector pool;
  Csat* const first = pool.acquire(kFirst, kFirst + 1);
  Csat* const second = pool.acquire(kFirst, kFirst + 1);
  pool.release(first);
  pool.release(second);
  EXPECT_EQ(pool.acquire(kFirst, kFirst + 1), second);
  EXPECT_EQ(pool.acquire(kFirst, kFirst + 1), first);
  EXPECT_TRUE(pool.spare_records().empty());
  pool.release(second);
  pool.release(first);
}

TEST(SatPool, leaves_a_released_record_as_it_is_until_it_is_acquired_again) {
  Csat_garbagecollector pool;
  Csat* const record = pool.acquire(kFirst, kFirst + 3);
  record->score = 17;
  record->missense.push_back({kFirst, 'M'});
  pool.release(record);
  EXPECT_EQ(pool.spare_records().back()->score, 17);
  EXPECT_EQ(pool.spare_records().back()->missense.size(), 1U);
}

TEST(SatPool, starts_a_used_record_anew_but_keeps_its_edit_block) {
  Csat_garbagecollector pool;
  Csat* const record = pool.acquire(kFirst, kFirst + 3);
  for (int i = 0; i < 5; ++i) record->missense.push_back({kFirst + i, 'M'});
  const Edit* const block = record->missense.begin();
  record->score = 17;
  record->mismatches = record->insertions = record->deletions = record->n_count = 3;
  record->recursion_depth = 2;
  pool.release(record);

  Csat* const again = pool.acquire(kFirst + 4, kFirst + 6);
  ASSERT_EQ(again, record);
  EXPECT_EQ(again->start, kFirst + 4);
  EXPECT_EQ(again->unit_end, kFirst + 6);
  EXPECT_EQ(again->score, 0);
  EXPECT_EQ(again->mismatches + again->insertions + again->deletions + again->n_count, 0);
  EXPECT_EQ(again->recursion_depth, 0);
  EXPECT_TRUE(again->missense.empty());
  EXPECT_EQ(again->missense.capacity(), 8U);
  EXPECT_EQ(again->missense.begin(), block);
  pool.release(again);
}

TEST(SatPool, takes_over_a_list_in_its_order_after_all_other_spare_records) {
  Csat_garbagecollector pool;
  Csat* const spare = pool.acquire(kFirst, kFirst + 1);
  std::list<Csat*> results;
  for (int i = 0; i < 3; ++i) results.push_back(pool.acquire(kFirst, kFirst + 1));
  const std::vector<const Csat*> expected = {spare, results.front(), *std::next(results.begin()),
                                             results.back()};
  pool.release(spare);
  pool.take(results, results.begin(), results.end());
  EXPECT_TRUE(results.empty());
  EXPECT_EQ(spare_records_of(pool), expected);
  EXPECT_EQ(pool.acquire(kFirst, kFirst + 1), expected.back());
  pool.release(const_cast<Csat*>(expected.back()));
}

TEST(SatPool, takes_over_a_part_of_a_list_and_leaves_the_rest) {
  Csat_garbagecollector pool;
  std::list<Csat*> results;
  for (int i = 0; i < 4; ++i) results.push_back(pool.acquire(kFirst, kFirst + 1));
  const std::list<Csat*> all = results;
  pool.take(results, std::next(results.begin()), std::prev(results.end()));
  EXPECT_EQ(results, (std::list<Csat*>{all.front(), all.back()}));
  EXPECT_EQ(spare_records_of(pool),
            (std::vector<const Csat*>{*std::next(all.begin()), *std::next(all.begin(), 2)}));
  for (Csat* const record : results) pool.release(record);
}

}  // namespace
}  // namespace quorix
