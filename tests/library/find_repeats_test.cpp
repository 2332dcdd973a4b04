// What the public header says of results. That they are those of the program,
// compare_with_program.py checks.

#include <gtest/gtest.h>
#include <quorix/quorix.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

using quorix::Detail;
using quorix::find_repeats;
using quorix::Repeat;
using quorix::SearchSettings;

TEST(FindRepeats, returns_half_open_stretches_of_the_text) {
  const std::string text = "TTACACACACACGG";
  const std::vector<Repeat> repeats = find_repeats(text);
  ASSERT_EQ(repeats.size(), 1U);
  EXPECT_EQ(repeats[0].start, 2U);
  EXPECT_EQ(repeats[0].end, 12U);
  EXPECT_EQ(text.substr(2, 10), "ACACACACAC");
  EXPECT_EQ(repeats[0].unit, "AC");
  EXPECT_EQ(repeats[0].unit_length, 2U);
  EXPECT_EQ(repeats[0].normalized_length, 10U);
  EXPECT_EQ(repeats[0].score, 8);
  EXPECT_EQ(repeats[0].perfection, 100.0);
  EXPECT_TRUE(repeats[0].edits.empty());
}

TEST(FindRepeats, returns_edits_by_their_place_in_the_text) {
  // The array of examples/example.fa with one base missing.
  SearchSettings settings;
  settings.detail = Detail::kAlignment;
  const std::vector<Repeat> repeats =
      find_repeats("CCTGCGATAGATAGATGATAGATAGATAGATTCTGCC", settings);
  ASSERT_EQ(repeats.size(), 1U);
  const Repeat& repeat = repeats[0];
  EXPECT_EQ(repeat.start, 5U);
  EXPECT_EQ(repeat.end, 31U);
  EXPECT_EQ(repeat.unit, "AGAT");
  EXPECT_EQ(repeat.deletions, 1U);
  EXPECT_EQ(repeat.normalized_length, 27U);
  EXPECT_EQ(repeat.score, 16);
  EXPECT_NEAR(repeat.perfection, 100.0 * 26 / 27, 1e-9);
  ASSERT_EQ(repeat.edits.size(), 1U);
  EXPECT_EQ(repeat.edits[0].position, 16U);
  EXPECT_EQ(repeat.edits[0].kind, 'D');
  EXPECT_EQ(repeat.alignment.bases, "GATAGATAGAT-GATAGATAGATAGAT");
  EXPECT_EQ(repeat.alignment.marks, "||||||||||| |||||||||||||||");
  EXPECT_EQ(repeat.alignment.unit, "GATAGATAGATAGATAGATAGATAGAT");
}

TEST(FindRepeats, makes_only_what_is_asked_for) {
  const std::string text = "CCTGCGATAGATAGATGATAGATAGATAGATTCTGCC";
  SearchSettings settings;
  settings.detail = Detail::kFigures;
  ASSERT_EQ(find_repeats(text, settings).size(), 1U);
  EXPECT_TRUE(find_repeats(text, settings)[0].edits.empty());
  EXPECT_EQ(find_repeats(text, settings)[0].deletions, 1U);
  settings.detail = Detail::kEdits;
  EXPECT_EQ(find_repeats(text, settings)[0].edits.size(), 1U);
  EXPECT_EQ(find_repeats(text, settings)[0].alignment.bases, "");
}

TEST(FindRepeats, reads_letters_as_a_fasta_file_has_them) {
  EXPECT_EQ(find_repeats("ttacacacacacgg").size(), 1U);
  EXPECT_EQ(find_repeats("GGUCUCUCUCUCAA")[0].unit, "AG");
  // Two ambiguous bases are two N's.
  EXPECT_EQ(find_repeats("ACACACACRYACACACAC")[0].n_count, 2U);
}

TEST(FindRepeats, counts_n_in_perfections_as_asked) {
  SearchSettings settings;
  const auto perfection = [&settings](quorix::NInPerfection mode) {
    settings.n_in_perfection = mode;
    return find_repeats("ACACACACNNACACACAC", settings).at(0).perfection;
  };
  EXPECT_NEAR(perfection(quorix::NInPerfection::kAsMismatch), 100.0 * 16 / 18, 1e-9);
  EXPECT_EQ(perfection(quorix::NInPerfection::kAsNeutral), 100.0);
  EXPECT_EQ(perfection(quorix::NInPerfection::kAsMatch), 100.0);
}

TEST(FindRepeats, finds_nothing_in_an_empty_text) {
  EXPECT_TRUE(find_repeats("").empty());
  EXPECT_TRUE(find_repeats({}).empty());
}

TEST(FindRepeats, keeps_nothing_of_the_search_before) {
  const std::string text = "TTACACACACACGG";
  SearchSettings strict;
  strict.min_score = 9;
  strict.max_unit_length = 3;
  EXPECT_TRUE(find_repeats(text, strict).empty());
  EXPECT_EQ(find_repeats(text).size(), 1U);
  EXPECT_TRUE(find_repeats(text, strict).empty());
}

#if defined(__x86_64__)
TEST(FindRepeats, takes_and_returns_what_installed_programs_were_compiled_for) {
  // Another size is a change of the major version.
  ASSERT_EQ(quorix::kVersionMajor, 3);
  EXPECT_EQ(sizeof(SearchSettings), 72U);
  EXPECT_EQ(sizeof(Repeat), 232U);
  EXPECT_EQ(sizeof(quorix::RepeatEdit), 16U);
  EXPECT_EQ(sizeof(quorix::RepeatAlignment), 96U);
}
#endif

TEST(FindRepeats, tells_the_version_of_its_header) {
  EXPECT_EQ(quorix::version(), std::to_string(quorix::kVersionMajor) + "." +
                                   std::to_string(quorix::kVersionMinor) + "." +
                                   std::to_string(quorix::kVersionPatch));
}

}  // namespace
