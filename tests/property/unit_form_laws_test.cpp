// Laws of the normal forms of a unit.

#include <algorithm>

#include "property/generators.h"
#include "sequence/dna_string.h"
#include "sequence/reducible_unit.h"

namespace quorix::testing {
namespace {

std::string unit_of(std::size_t shortest) {
  auto unit = *rc::gen::container<std::string>(rc::gen::element('A', 'C', 'G', 'T'));
  RC_PRE(unit.size() >= shortest);
  return unit;
}

std::string least_rotation(const std::string& unit) {
  CDnaString least;
  least.setToMinAlphaRepModCyclicPermOf(CDnaString(unit));
  return std::string(least.view());
}

RC_GTEST_PROP(UnitFormLaws, all_rotations_of_a_unit_have_one_form, ()) {
  std::string unit = unit_of(1);
  const std::string form = least_rotation(unit);
  const auto shift = *rc::gen::inRange<std::size_t>(0, unit.size());
  std::rotate(unit.begin(), unit.begin() + static_cast<std::ptrdiff_t>(shift), unit.end());
  RC_ASSERT(least_rotation(unit) == form);
}

RC_GTEST_PROP(UnitFormLaws, the_form_is_a_rotation_and_no_rotation_is_less, ()) {
  std::string unit = unit_of(1);
  const std::string form = least_rotation(unit);
  bool is_rotation = false;
  for (std::size_t shift = 0; shift < unit.size(); ++shift) {
    is_rotation = is_rotation || unit == form;
    RC_ASSERT(form <= unit);
    std::rotate(unit.begin(), unit.begin() + 1, unit.end());
  }
  RC_ASSERT(is_rotation);
}

RC_GTEST_PROP(UnitFormLaws, the_reverse_complement_of_the_reverse_complement_is_the_unit, ()) {
  const CDnaString unit(unit_of(0));
  CDnaString once;
  CDnaString twice;
  RC_ASSERT(once.setToReverseComplementOf(unit) == 0);
  RC_ASSERT(twice.setToReverseComplementOf(once) == 0);
  RC_ASSERT(twice.view() == unit.view());
}

RC_GTEST_PROP(UnitFormLaws, copies_of_a_unit_are_reducible, ()) {
  const std::string unit = unit_of(2);
  const auto copy_count = *rc::gen::inRange(2, 6);
  std::string copies;
  for (int copy = 0; copy < copy_count; ++copy) copies += unit;
  RC_ASSERT(isReducibleUnit_global(copies.data(), copies.data() + copies.size()));
  CDnaString least;
  RC_ASSERT(least.setToMinAlphaRepModCyclicPermOf(CDnaString(copies)));
}

}  // namespace
}  // namespace quorix::testing
