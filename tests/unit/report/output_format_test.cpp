#include "report/output_format.h"

#include <gtest/gtest.h>

#include <string>

#include "settings/settings.h"
#include "support/default_settings.h"
#include "support/head_texts.h"
#include "support/memory_stream.h"

namespace quorix {
namespace {

using Legend = testing::CDefaultSettings;
using OutputFormat = testing::CDefaultSettings;
using testing::kFirstSevenColumns;
using testing::printed_by;

TEST_F(OutputFormat, has_a_name) {
  global_print_sat_mode = kFormatQuorix;
  EXPECT_STREQ(output_format_name(), "quorix format");
  global_print_sat_mode = kFormatExtendedQuorix;
  EXPECT_STREQ(output_format_name(), "extended quorix format");
  global_print_sat_mode = kFormatSputnik;
  EXPECT_STREQ(output_format_name(), "sputnik compatible format");
}

std::string legend() {
  return printed_by([](std::FILE* out) { print_output_format(out, ""); });
}

TEST_F(Legend, has_twelve_columns_in_the_extended_format) {
  EXPECT_EQ(legend(), std::string(kFirstSevenColumns) + testing::kLastFiveColumns);
}

TEST_F(Legend, has_eleven_columns_when_Ns_are_mismatches) {
  global_treat_Ns_as_missense = true;
  EXPECT_EQ(legend(), kFirstSevenColumns + std::string("Column  8: Number of mismatches\n"
                                                       "Column  9: Number of insertions\n"
                                                       "Column 10: Number of deletions\n"
                                                       "Column 11: Repeat unit\n"
                                                       "\n"));
}

TEST_F(Legend, has_eight_columns_in_the_other_formats) {
  for (const int format : {0, 2}) {
    for (const bool are_Ns_missense : {false, true}) {
      global_print_sat_mode = format;
      global_treat_Ns_as_missense = are_Ns_missense;
      EXPECT_EQ(legend(), kFirstSevenColumns + std::string("Column  8: Repeat unit\n\n"));
    }
  }
}

TEST_F(Legend, begins_every_line_with_the_prefix) {
  global_print_sat_mode = 0;
  EXPECT_EQ(
      printed_by([](std::FILE* out) { print_output_format(out, "# "); }),
      testing::with_prefix("# ", std::string(kFirstSevenColumns) + "Column  8: Repeat unit\n\n"));
}

}  // namespace
}  // namespace quorix
