// What the edits of a long array take: much less than the edits that its repeats have.

#include <cstddef>
#include <list>
#include <string>

#include "support/random_dna.h"
#include "unit/search/recorded_stream.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using testing::CRecordedStandardError;
using testing::CSearchedSequence;
using testing::draw_between;
using testing::draw_chance;
using testing::RandomEngine;

/// Copies of `unit`, of which 12 % of the bases are replaced, inserted or left out.
std::string diverged_array(const std::string& unit, std::size_t length) {
  RandomEngine random(1);
  std::string bases;
  for (std::size_t i = 0; bases.size() < length; ++i) {
    const bool is_edited = draw_chance(random, 12);
    const std::size_t kind = is_edited ? draw_between(random, 0, 2) : 3;
    if (kind == 0) continue;
    if (kind <= 1) bases += "ACGT"[draw_between(random, 0, 3)];
    bases += kind == 2 ? "ACGT"[draw_between(random, 0, 3)] : unit[i % unit.size()];
  }
  return bases;
}

std::size_t edits_of(const std::list<Csat*>& repeats) {
  std::size_t count = 0;
  for (const Csat* const repeat : repeats) count += repeat->edits().size();
  return count;
}

/// No record keeps the block in which its edits were gathered.
bool are_without_blocks(const std::list<Csat*>& repeats) {
  for (const Csat* const repeat : repeats) {
    if (repeat->missense.capacity() != 0) return false;
  }
  return true;
}

class EditMemory : public testing::CSearchSettings {
 protected:
  void SetUp() override {
    CSearchSettings::SetUp();
    set_penalties(-2, -2);
  }
};

TEST_F(EditMemory, is_a_small_part_of_what_the_edits_of_a_long_array_are) {
  CSearchedSequence sequence(diverged_array("ATTCT", 4'000));
  sequence.search.complete_imperfect_search(nullptr);
  const std::list<Csat*>& repeats = sequence.search.imperfect_sat_list.sat_list;
  const std::size_t edits = edits_of(repeats);
  ASSERT_GT(edits, 200'000U);
  EXPECT_LT(sequence.search.edit_bytes(), edits);
  EXPECT_TRUE(are_without_blocks(repeats));
}

TEST_F(EditMemory, is_as_small_where_exact_repeats_are_extended) {
  const CRecordedStandardError silent;
  CSearchedSequence sequence(diverged_array("AC", 4'000));
  sequence.search.search_exact_and_extend_to_imperfect_repeats();
  const std::list<Csat*>& repeats = sequence.search.imperfect_sat_list.sat_list;
  const std::size_t edits = edits_of(repeats);
  ASSERT_GT(edits, 50'000U);
  EXPECT_LT(sequence.search.edit_bytes(), edits);
  EXPECT_TRUE(are_without_blocks(repeats));
  EXPECT_TRUE(are_without_blocks(sat_alloc.spare_records()));
}

TEST_F(EditMemory, is_not_kept_by_the_records_of_the_pool) {
  {
    CSearchedSequence sequence(diverged_array("ATTCT", 1'000));
    sequence.search.complete_imperfect_search(nullptr);
    ASSERT_GT(edits_of(sequence.search.imperfect_sat_list.sat_list), 1'000U);
  }
  ASSERT_FALSE(sat_alloc.spare_records().empty());
  EXPECT_TRUE(are_without_blocks(sat_alloc.spare_records()));
}

}  // namespace
}  // namespace quorix
