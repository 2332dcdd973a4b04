// Laws of packed edits: any lists come out of a store as they went in.

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "property/generators.h"
#include "report/packed_edits.h"

namespace quorix::testing {
namespace {

constexpr char kText[] = "A";

using Edits = std::vector<std::pair<std::int64_t, char>>;

/// Distances about where their code gets longer, and any others.
rc::Gen<std::int64_t> distance_generator() {
  return rc::gen::oneOf(
      rc::gen::inRange<std::int64_t>(0, 3), rc::gen::inRange<std::int64_t>(60, 68),
      rc::gen::inRange<std::int64_t>(185, 195), rc::gen::inRange<std::int64_t>(0, 200'000),
      rc::gen::inRange<std::int64_t>((std::int64_t{1} << 32U) - 2, std::int64_t{1} << 33U));
}

Edits any_edits() {
  Edits edits;
  std::int64_t offset = *rc::gen::inRange<std::int64_t>(0, 1000);
  for (const auto& [distance, kind] : *rc::gen::container<Edits>(
           rc::gen::pair(distance_generator(), rc::gen::element('M', 'I', 'D')))) {
    offset += distance;
    edits.emplace_back(offset, kind);
  }
  return edits;
}

fastvector<Edit> edits_of(const Edits& edits) {
  fastvector<Edit> list;
  for (const auto& [offset, kind] : edits) list.push_back({kText + offset, kind});
  return list;
}

void assert_unpacked(const CPackedEdits& packed, const Edits& edits) {
  fastvector<Edit> list;
  packed.unpack_to(list);
  RC_ASSERT(packed.edit_count() == edits.size());
  RC_ASSERT(std::equal(list.begin(), list.end(), edits.begin(), edits.end(),
                       [](const Edit& edit, const std::pair<std::int64_t, char>& expected) {
                         return edit.position == kText + expected.first &&
                                edit.kind == expected.second;
                       }));
}

RC_GTEST_PROP(PackedEditsLaws, lists_come_out_as_they_went_in, ()) {
  CEditStore store;
  std::vector<Edits> lists;
  std::vector<CPackedEdits> packed;
  const auto pack = [&](const Edits& edits) {
    lists.push_back(edits);
    packed.push_back(store.pack(edits_of(edits), kText));
  };
  for (int i = 0; i < 4; ++i) {
    const Edits edits = any_edits();
    pack(edits);
    if (edits.empty()) continue;
    // The same from somewhere on, which shares chunks with it.
    const auto skipped =
        *rc::gen::inRange<std::ptrdiff_t>(0, static_cast<std::ptrdiff_t>(edits.size()));
    pack(Edits(edits.begin() + skipped, edits.end()));
  }
  for (std::size_t i = 0; i < lists.size(); ++i) assert_unpacked(packed[i], lists[i]);
}

}  // namespace
}  // namespace quorix::testing
