// Where records go: from the pool to a scan, to a list, and back.

#include "search/modes/sat_container.h"

#include <gtest/gtest.h>

#include <list>
#include <optional>

namespace quorix {
namespace {

constexpr char kText[] = "ACGTACGT";

TEST(SatContainer, gives_its_records_to_the_end_of_its_pool_in_their_order) {
  Csat_garbagecollector pool;
  Csat* const spare = pool.acquire(kText, kText + 1);
  Csat* const first = pool.acquire(kText, kText + 2);
  Csat* const second = pool.acquire(kText, kText + 3);
  pool.release(spare);
  {
    CsatContainer container(&pool);
    EXPECT_EQ(container.pool, &pool);
    EXPECT_TRUE(container.sat_list.empty());
    container.sat_list = {first, second};
    EXPECT_EQ(pool.spare_records(), (std::list<Csat*>{spare}));
  }
  EXPECT_EQ(pool.spare_records(), (std::list<Csat*>{spare, first, second}));
}

TEST(SatContainer, leaves_its_pool_alone_when_it_is_empty) {
  Csat_garbagecollector pool;
  pool.release(pool.acquire(kText, kText + 1));
  const std::list<Csat*> before = pool.spare_records();
  { const CsatContainer container(&pool); }
  EXPECT_EQ(pool.spare_records(), before);
}

TEST(SpareRecord, takes_no_record_before_the_first_seed) {
  Csat_garbagecollector pool;
  pool.release(pool.acquire(kText, kText + 1));
  {
    const CSpareRecord spare(pool);
    EXPECT_EQ(pool.spare_records().size(), 1U);
  }
  EXPECT_EQ(pool.spare_records().size(), 1U);
}

TEST(SpareRecord, takes_the_last_record_of_the_pool_and_makes_it_one_unit_copy) {
  Csat_garbagecollector pool;
  Csat* const older = pool.acquire(kText, kText + 1);
  Csat* const newer = pool.acquire(kText, kText + 1);
  pool.release(older);
  pool.release(newer);
  CSpareRecord spare(pool);
  const Csat& seed = spare.seed(kText + 1, kText + 4);
  EXPECT_EQ(&seed, newer);
  EXPECT_EQ(&spare.record(), newer);
  EXPECT_EQ(seed.start, kText + 1);
  EXPECT_EQ(seed.end, kText + 4);
  EXPECT_EQ(pool.spare_records(), (std::list<Csat*>{older}));
}

TEST(SpareRecord, uses_a_rejected_record_for_the_next_seed) {
  Csat_garbagecollector pool;
  CSpareRecord spare(pool);
  Csat& rejected = spare.seed(kText, kText + 2);
  rejected.score = 5;
  rejected.mismatches = 1;
  rejected.missense.push_back({kText, 'M'});
  const Csat& next = spare.seed(kText + 2, kText + 4);
  EXPECT_EQ(&next, &rejected);
  EXPECT_EQ(next.unit_begin, kText + 2);
  EXPECT_EQ(next.score, 0);
  EXPECT_EQ(next.mismatches, 0);
  EXPECT_TRUE(next.missense.empty());
}

TEST(SpareRecord, puts_a_kept_record_at_the_end_of_a_list_and_takes_another_one) {
  Csat_garbagecollector pool;
  CSpareRecord spare(pool);
  std::list<Csat*> kept;
  Csat* const first = &spare.seed(kText, kText + 1);
  spare.keep_in(kept);
  Csat* const second = &spare.seed(kText, kText + 2);
  spare.keep_in(kept);
  EXPECT_NE(first, second);
  EXPECT_EQ(kept, (std::list<Csat*>{first, second}));
  for (Csat* const record : kept) pool.release(record);
}

TEST(SpareRecord, goes_back_to_the_end_of_the_pool_unless_it_was_kept) {
  Csat_garbagecollector pool;
  Csat* const other = pool.acquire(kText, kText + 1);
  std::optional<CSpareRecord> spare(std::in_place, pool);
  Csat* const left_over = &spare->seed(kText, kText + 1);
  pool.release(other);
  spare.reset();
  EXPECT_EQ(pool.spare_records(), (std::list<Csat*>{other, left_over}));

  std::list<Csat*> kept;
  spare.emplace(pool);
  EXPECT_EQ(&spare->seed(kText, kText + 1), left_over);
  spare->keep_in(kept);
  spare.reset();
  EXPECT_EQ(pool.spare_records(), (std::list<Csat*>{other}));
  pool.release(kept.front());
}

}  // namespace
}  // namespace quorix
