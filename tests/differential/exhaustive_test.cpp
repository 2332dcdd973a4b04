// Every short text over A, C and N, as the records of one file, under settings that let short
// repeats pass.

#include <gtest/gtest.h>

#include <algorithm>

#include "support/engine_comparison.h"

namespace quorix::testing {
namespace {

constexpr std::size_t kLongestText = 9;

/// All texts over A, C and N of up to `kLongestText` letters, the empty one first.
std::vector<NamedBases> all_short_texts() {
  std::vector<NamedBases> texts{{"empty", ""}};
  for (std::size_t shorter = 0; texts[shorter].bases.size() < kLongestText; ++shorter) {
    for (const char base : {'A', 'C', 'N'}) {
      const std::string bases = texts[shorter].bases + base;
      texts.push_back({bases, bases});
    }
  }
  return texts;
}

/// Penalties of -2 or -3 and the extended format: edits fit into nine bases, and the report lists
/// them.
bool expects_edits(const Options& options) {
  const auto has = [&options](const char* option) {
    return std::find(options.begin(), options.end(), option) != options.end();
  };
  return has("-m") && !has("--outputFormat");
}

class Exhaustive : public ::testing::TestWithParam<Options> {};

TEST_P(Exhaustive, program_and_plain_engine_agree_on_all_short_texts) {
  static const std::vector<NamedBases> texts = all_short_texts();
  ASSERT_EQ(texts.size(), 29524U);
  ASSERT_TRUE(apply_options(GetParam()));
  silence_standard_error();

  const RunOutput program = run_program(fasta_text(texts));
  const bool has_edits = program.report.find(",M),") != std::string::npos ||
                         program.report.find(",I),") != std::string::npos ||
                         program.report.find(",D),") != std::string::npos;
  EXPECT_EQ(has_edits, expects_edits(GetParam()));
  if (program == run_plain_engine(texts)) return;
  for (const NamedBases& text : texts) {
    ASSERT_TRUE(compare_engines(text).is_equal()) << describe_difference(text, GetParam());
  }
  FAIL() << "the records differ only where they stand in one file";
}

// With penalties of -2 edits fit into nine bases; a low minimum score and -D show every candidate.
const std::vector<Options> kSettings{
    {"-M", "exact"},
    {"-M", "exact", "-s", "2", "--minScore_b", "0", "-D"},
    {"-M", "exact", "-s", "1", "--minScore_b", "0", "-l", "2", "-u", "0", "-U", "9", "-D"},
    {"-M", "exact", "-s", "2", "--minScore_b", "0", "-N", "1", "--NPerfectionMode", "1"},
    {"-M", "extendExact", "-s", "2", "--minScore_b", "0", "-m", "-2", "-g", "-2"},
    {"-M", "extendExact", "-s", "3", "--minScore_b", "0", "-m", "-2", "-g", "-3", "-D", "-N", "0"},
    {"-M", "extendExact", "-s", "2", "--minScore_b", "0.5", "-m", "-3", "-g", "-2",
     "--NsAsMissense", "-D"},
    {"-M", "imperfect"},
    {"-M", "imperfect", "-s", "2", "--minScore_b", "0", "-m", "-2", "-g", "-2"},
    {"-M", "imperfect", "-s", "1", "--minScore_b", "0", "-l", "2", "-m", "-2", "-g", "-2", "-D",
     "--printRepeatSeqMode", "1", "-f", "2"},
    {"-M", "imperfect", "-s", "2", "--minScore_b", "0", "-m", "-2", "-g", "-3", "-N", "0", "-D"},
    {"-M", "imperfect", "-s", "2", "--minScore_b", "0", "-m", "-3", "-g", "-2", "-N", "1", "-D",
     "--reportUnit", "0"},
    {"-M", "imperfect", "-s", "2", "--minScore_b", "0", "-m", "-2", "-g", "-2", "--NsAsMissense",
     "--outputFormat", "2"},
    {"-M", "imperfect", "-s", "2", "--minScore_b", "0", "-m", "-2", "-g", "-2", "-r", "1", "-D",
     "--reportUnit", "1", "--outputFormat", "0"},
    {"-M", "imperfect", "-s", "2", "--minScore_b", "0", "-m", "-2", "-g", "-2", "-R", "3", "-u",
     "2", "-U", "9", "-D", "--NPerfectionMode", "2"},
    {"-M", "imperfect", "-s", "2", "--minScore_b", "0", "-m", "-2", "-g", "-2", "-r", "300", "-u",
     "0", "-U", "4", "-D"},
};

INSTANTIATE_TEST_SUITE_P(Settings, Exhaustive, ::testing::ValuesIn(kSettings));

}  // namespace
}  // namespace quorix::testing
