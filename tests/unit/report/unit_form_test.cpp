#include "report/unit_form.h"

#include <gtest/gtest.h>

#include <string>

#include "settings/settings.h"
#include "support/default_settings.h"

namespace quorix::testing {
namespace {

class UnitForm : public CDefaultSettings {
 protected:
  /// Returns the form of a unit, or "reducible".
  static std::string form_of(const char* letters, int mode) {
    global_report_unit_mode = mode;
    CDnaString unit(letters);
    if (normalize_unit(unit)) return "reducible";
    return std::string(unit.view());
  }
};

TEST_F(UnitForm, is_the_unit_as_found) {
  EXPECT_EQ(form_of("TTAG", kUnitAsFound), "TTAG");
}

TEST_F(UnitForm, is_the_least_rotation) {
  EXPECT_EQ(form_of("TTAG", kUnitAlphabetical), "AGTT");
}

TEST_F(UnitForm, is_the_least_rotation_of_both_strands) {
  // The other strand has CTAA.
  EXPECT_EQ(form_of("TTAG", kUnitAlphabeticalBothStrands), "AACT");
}

TEST_F(UnitForm, of_a_unit_that_repeats_a_shorter_one_there_is_none) {
  for (const int mode : {kUnitAsFound, kUnitAlphabetical, kUnitAlphabeticalBothStrands}) {
    EXPECT_EQ(form_of("ATAT", mode), "reducible") << mode;
  }
}

TEST_F(UnitForm, of_prime_length_is_tested_by_rotation_alone) {
  EXPECT_EQ(form_of("AAA", kUnitAsFound), "AAA");
  EXPECT_EQ(form_of("AAA", kUnitAlphabetical), "reducible");
}

}  // namespace
}  // namespace quorix::testing
