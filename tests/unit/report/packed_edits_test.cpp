// Edits that wait to be reported: what comes out is what went in, and what they take.

#include "report/packed_edits.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "report/csat.h"
#include "support/random_dna.h"

namespace quorix {
namespace {

using testing::draw_between;
using testing::RandomEngine;

/// Offsets and kinds. Nothing is read where a position points to, so a text may be as long as we
/// like.
using Edits = std::vector<std::pair<std::int64_t, char>>;

constexpr char kOneBase[] = "A";

fastvector<Edit> edits_of(const Edits& edits) {
  fastvector<Edit> list;
  for (const auto& [offset, kind] : edits) list.push_back({kOneBase + offset, kind});
  return list;
}

Edits in_pairs(const fastvector<Edit>& list) {
  Edits edits;
  for (const Edit& edit : list) edits.emplace_back(edit.position - kOneBase, edit.kind);
  return edits;
}

Edits unpacked(const CPackedEdits& packed) {
  fastvector<Edit> list;
  packed.unpack_to(list);
  return in_pairs(list);
}

Edits packed_and_unpacked(const Edits& edits) {
  CEditStore store;
  const CPackedEdits packed = store.pack(edits_of(edits), kOneBase);
  EXPECT_EQ(packed.edit_count(), edits.size());
  return unpacked(packed);
}

/// Edits at random distances up to `most`, the first of them at `first`.
Edits drawn_edits(std::size_t count, std::int64_t first, std::size_t most, std::uint64_t seed) {
  RandomEngine random(seed);
  Edits edits;
  std::int64_t offset = first;
  for (std::size_t i = 0; i < count; ++i) {
    edits.emplace_back(offset, "MID"[draw_between(random, 0, 2)]);
    offset += static_cast<std::int64_t>(draw_between(random, 1, most));
  }
  return edits;
}

TEST(PackedEdits, are_none_without_a_list_and_take_nothing) {
  CEditStore store;
  const CPackedEdits packed = store.pack(fastvector<Edit>(), kOneBase);
  EXPECT_TRUE(packed.empty());
  EXPECT_EQ(packed.edit_count(), 0U);
  EXPECT_EQ(unpacked(packed), Edits());
  EXPECT_EQ(store.byte_count(), 0U);
}

TEST(PackedEdits, keep_every_kind_at_every_distance) {
  for (const std::int64_t distance :
       {std::int64_t{0}, std::int64_t{1}, std::int64_t{61}, std::int64_t{62}, std::int64_t{63},
        std::int64_t{64}, std::int64_t{65}, std::int64_t{63 + 127}, std::int64_t{63 + 128},
        std::int64_t{63 + 16383}, std::int64_t{63 + 16384}, (std::int64_t{1} << 32U) - 1,
        std::int64_t{1} << 32U, (std::int64_t{1} << 40U) + 5}) {
    for (const char first : {'M', 'I', 'D'}) {
      for (const char second : {'M', 'I', 'D'}) {
        const Edits edits = {{7, first}, {7 + distance, second}, {7 + 2 * distance, first}};
        EXPECT_EQ(packed_and_unpacked(edits), edits) << distance << first << second;
      }
    }
  }
}

TEST(PackedEdits, keep_all_edits_at_one_position) {
  const Edits edits = {{3, 'D'}, {3, 'D'}, {3, 'I'}, {3, 'M'}, {4, 'D'}, {4, 'M'}};
  EXPECT_EQ(packed_and_unpacked(edits), edits);
  // More than a chunk has room for, wherever it may end.
  const Edits many(20'000, {3, 'D'});
  EXPECT_EQ(packed_and_unpacked(many), many);
}

TEST(PackedEdits, keep_lists_of_many_chunks) {
  for (const std::size_t most : {1U, 2U, 63U, 100U, 100'000U}) {
    const Edits edits = drawn_edits(5'000, 11, most, most);
    EXPECT_EQ(packed_and_unpacked(edits), edits) << most;
  }
}

TEST(PackedEdits, replace_what_a_list_had_and_use_its_block) {
  CEditStore store;
  const CPackedEdits packed = store.pack(edits_of({{5, 'I'}, {6, 'M'}}), kOneBase);
  fastvector<Edit> list = edits_of({{1, 'M'}, {2, 'M'}, {3, 'M'}});
  const Edit* const block = list.begin();
  packed.unpack_to(list);
  EXPECT_EQ(in_pairs(list), (Edits{{5, 'I'}, {6, 'M'}}));
  EXPECT_EQ(list.begin(), block);
  CPackedEdits().unpack_to(list);
  EXPECT_TRUE(list.empty());
}

TEST(PackedEdits, are_copied_as_a_handle) {
  CEditStore store;
  CPackedEdits copy;
  {
    const CPackedEdits packed = store.pack(edits_of({{5, 'I'}}), kOneBase);
    copy = packed;
  }
  EXPECT_EQ(unpacked(copy), (Edits{{5, 'I'}}));
}

TEST(EditStore, packs_an_edit_into_about_a_byte) {
  constexpr std::size_t kCount = 100'000;
  CEditStore store;
  const CPackedEdits packed = store.pack(edits_of(drawn_edits(kCount, 0, 16, 1)), kOneBase);
  EXPECT_EQ(packed.edit_count(), kCount);
  EXPECT_LT(store.byte_count(), kCount * 5 / 4 + 1024);
}

TEST(EditStore, keeps_what_lists_have_in_common_once) {
  constexpr std::size_t kCount = 5'000;
  constexpr std::size_t kLists = 1'000;
  const Edits common = drawn_edits(kCount, 0, 16, 2);
  CEditStore store;
  std::vector<Edits> lists;
  std::vector<CPackedEdits> packed;
  // Each list has an edit of its own somewhere, and begins and ends somewhere else.
  RandomEngine random(3);
  for (std::size_t i = 0; i < kLists; ++i) {
    Edits list(common.begin() + static_cast<std::ptrdiff_t>(draw_between(random, 0, 50)),
               common.end() - static_cast<std::ptrdiff_t>(draw_between(random, 0, 50)));
    char& kind = list[draw_between(random, 0, list.size() - 1)].second;
    kind = kind == 'M' ? 'I' : 'M';
    packed.push_back(store.pack(edits_of(list), kOneBase));
    lists.push_back(std::move(list));
  }
  for (std::size_t i = 0; i < kLists; ++i) ASSERT_EQ(unpacked(packed[i]), lists[i]) << i;
  EXPECT_LT(store.byte_count(), kLists * kCount / 5);
}

TEST(EditStore, takes_a_list_alone_for_one_that_it_has) {
  CEditStore store;
  const fastvector<Edit> edits = edits_of(drawn_edits(1'000, 0, 16, 4));
  const CPackedEdits first = store.pack(edits, kOneBase);
  const std::size_t bytes = store.byte_count();
  const CPackedEdits second = store.pack(edits, kOneBase);
  EXPECT_LE(store.byte_count() - bytes, 1'000U / 4);
  EXPECT_EQ(unpacked(second), unpacked(first));
}

TEST(EditStore, does_not_confuse_equal_distances_at_other_positions) {
  CEditStore store;
  std::vector<CPackedEdits> packed;
  for (std::int64_t first = 0; first < 500; ++first) {
    packed.push_back(store.pack(edits_of({{first, 'M'}, {first + 9, 'D'}}), kOneBase));
  }
  for (std::int64_t first = 0; first < 500; ++first) {
    EXPECT_EQ(unpacked(packed[static_cast<std::size_t>(first)]),
              (Edits{{first, 'M'}, {first + 9, 'D'}}));
  }
}

TEST(Csat, has_the_same_edits_when_they_are_packed) {
  const Edits edits = drawn_edits(300, 2, 9, 5);
  Csat repeat;
  EXPECT_EQ(in_pairs(repeat.edits()), Edits());
  repeat.missense = edits_of(edits);
  EXPECT_EQ(in_pairs(repeat.edits()), edits);
  EXPECT_EQ(repeat.missense.size(), 300U);

  CEditStore store;
  repeat.pack_edits(store, kOneBase);
  EXPECT_TRUE(repeat.missense.empty());
  EXPECT_EQ(in_pairs(repeat.edits()), edits);
  EXPECT_EQ(in_pairs(Csat(repeat).edits()), edits);
}

TEST(Csat, forgets_packed_edits_when_it_is_used_again) {
  CEditStore store;
  Csat repeat;
  repeat.missense = edits_of({{5, 'I'}});
  repeat.pack_edits(store, kOneBase);
  repeat.init_from_unit(kOneBase, kOneBase + 1);
  EXPECT_EQ(in_pairs(repeat.edits()), Edits());
}

TEST(Csat, takes_no_more_room_than_a_pointer_besides_its_figures) {
  EXPECT_EQ(sizeof(Csat), 15 * sizeof(void*));
}

}  // namespace
}  // namespace quorix
