// Which repeats a conversion takes, and in which order.

#include <gtest/gtest.h>

#include "support/random_options.h"
#include "tools/report_text.h"
#include "tools/tool_run.h"

namespace quorix::testing {
namespace {

/// Units of 1, 3 and 5 bases in two records; the third repeat has a mismatch.
std::string sample_report() {
  EXPECT_TRUE(apply_options({}));
  return whole_report({{"x one", "GTCAGCAGCAGCAGCAGCAGTTAAAAAAAAAAAACG"},
                       {"y two", "GTTTGAGTTGAGTTGAGTTGAGTTGACCCCTGCTGCTGATGCTGCTGCTGCTGAA"}});
}

/// The places of the repeats that are taken: "x:3-20 y:..." in their order.
std::string taken(std::vector<std::string> options, const std::string& report = sample_report()) {
  const CToolFolder folder;
  options.insert(options.begin(), {"convert", "--to", "tsv", folder.write("r", report)});
  const ProcessResult run = run_tool(options);
  EXPECT_EQ(run.status, 0) << run.err;
  std::istringstream lines(run.out);
  std::string line;
  std::getline(lines, line);
  std::string places;
  std::string sequence;
  std::string start;
  std::string end;
  while (lines >> sequence >> start >> end && std::getline(lines, line)) {
    places += (places.empty() ? "" : " ") + sequence + ':' + start + '-' + end;
  }
  return places;
}

constexpr const char* kCag = "x:3-20";
constexpr const char* kA = "x:23-34";
constexpr const char* kTtgag = "y:3-26";
constexpr const char* kTgc = "y:30-53";

std::string joined_places(const std::vector<std::string>& places) {
  return joined(places);
}

TEST(RepeatFilter, without_options_all_repeats_are_taken) {
  EXPECT_EQ(taken({}), joined_places({kCag, kA, kTtgag, kTgc}));
}

TEST(RepeatFilter, unit_lengths_are_a_range_with_both_ends) {
  EXPECT_EQ(taken({"--unit-length", "3"}), joined_places({kCag, kTgc}));
  EXPECT_EQ(taken({"--unit-length", "3-4"}), joined_places({kCag, kTgc}));
  EXPECT_EQ(taken({"--unit-length", "2-"}), joined_places({kCag, kTtgag, kTgc}));
  EXPECT_EQ(taken({"--unit-length", "-3"}), joined_places({kCag, kA, kTgc}));
}

TEST(RepeatFilter, minima_take_what_reaches_them) {
  EXPECT_EQ(taken({"--min-length", "18"}), joined_places({kCag, kTtgag, kTgc}));
  EXPECT_EQ(taken({"--min-length", "19"}), joined_places({kTtgag, kTgc}));
  EXPECT_EQ(taken({"--min-copies", "6"}), joined_places({kCag, kA, kTgc}));
  EXPECT_EQ(taken({"--min-copies", "6.01"}), joined_places({kA, kTgc}));
  EXPECT_EQ(taken({"--min-score", "15"}), joined_places({kCag, kTtgag}));
  EXPECT_EQ(taken({"--min-score", "16"}), kTtgag);
  EXPECT_EQ(taken({"--min-perfection", "96"}), joined_places({kCag, kA, kTtgag}));
  EXPECT_EQ(taken({"--min-perfection", "95"}), joined_places({kCag, kA, kTtgag, kTgc}));
}

TEST(RepeatFilter, a_motif_is_any_rotation_on_either_strand) {
  for (const char* const motif : {"CAG", "AGC", "gca", "CTG", "TGC", "gcu"}) {
    EXPECT_EQ(taken({"--motif", motif}), joined_places({kCag, kTgc})) << motif;
  }
  EXPECT_EQ(taken({"--motif", "T", "--motif", "CTCAA"}), joined_places({kA, kTtgag}));
  EXPECT_EQ(taken({"--motif", "ACG"}), "");
}

TEST(RepeatFilter, a_motif_is_found_whatever_the_form_of_the_units) {
  for (const char* const form : {"0", "1", "2"}) {
    const std::string bases = "GTCAGCAGCAGCAGCAGCAGTT";
    EXPECT_TRUE(apply_options({"--reportUnit", form}));
    EXPECT_EQ(taken({"--motif", "CTG"}, whole_report({{"x", bases}})), kCag);
  }
}

TEST(RepeatFilter, records_are_chosen_by_identifier) {
  EXPECT_EQ(taken({"--sequence", "y"}), joined_places({kTtgag, kTgc}));
  EXPECT_EQ(taken({"--sequence", "y", "--sequence", "x"}), joined_places({kCag, kA, kTtgag, kTgc}));
  const CToolFolder folder;
  const std::string report = folder.write("r", sample_report());
  const ProcessResult run = run_tool({"convert", "--to", "bed", "--sequence", "z", report});
  EXPECT_EQ(run.status, 3);
  EXPECT_NE(run.err.find("--sequence z"), std::string::npos);
}

TEST(RepeatFilter, repeats_are_sorted_the_largest_first) {
  EXPECT_EQ(taken({"--sort", "score"}), joined_places({kTtgag, kCag, kTgc, kA}));
  EXPECT_EQ(taken({"--sort", "length"}), joined_places({kTtgag, kTgc, kCag, kA}));
  EXPECT_EQ(taken({"--sort", "copies"}), joined_places({kA, kTgc, kCag, kTtgag}));
  EXPECT_EQ(taken({"--sort", "perfection"}), joined_places({kCag, kA, kTtgag, kTgc}));
}

TEST(RepeatFilter, positions_are_sorted_after_identifiers) {
  EXPECT_TRUE(apply_options({}));
  const std::string bases = "GTCAGCAGCAGCAGCAGCAGTTAAAAAAAAAAAACG";
  const std::string report = whole_report({{"b", bases}, {"B", "ACGT"}, {"a", bases}});
  EXPECT_EQ(taken({"--sort", "position"}, report), "a:3-20 a:23-34 b:3-20 b:23-34");
}

TEST(RepeatFilter, sorting_changes_no_line) {
  const CToolFolder folder;
  const std::string report = folder.write("r", example_report());
  for (const char* const format : {"bed", "gff3", "jsonl", "tsv"}) {
    std::vector<std::string> lines[2];
    for (const bool is_sorted : {false, true}) {
      std::vector<std::string> arguments{"convert", "--to", format, report};
      if (is_sorted) arguments.insert(arguments.end(), {"--sort", "length"});
      std::istringstream text(run_tool(arguments).out);
      for (std::string line; std::getline(text, line);) lines[is_sorted ? 1 : 0].push_back(line);
      std::sort(lines[is_sorted ? 1 : 0].begin(), lines[is_sorted ? 1 : 0].end());
    }
    EXPECT_EQ(lines[0], lines[1]) << format;
    EXPECT_GE(lines[0].size(), 5U);
  }
}

TEST(RepeatFilter, values_that_make_no_sense_are_refused) {
  const CToolFolder folder;
  const std::string report = folder.write("r", sample_report());
  for (const auto& [option, value] :
       std::vector<std::pair<std::string, std::string>>{{"--unit-length", "x"},
                                                        {"--unit-length", "-"},
                                                        {"--unit-length", "4-2"},
                                                        {"--unit-length", "0-2"},
                                                        {"--unit-length", "2-3-"},
                                                        {"--motif", "CAX"},
                                                        {"--motif", "ATAT"},
                                                        {"--motif", ""},
                                                        {"--sort", "name"},
                                                        {"--min-length", "ten"},
                                                        {"--min-length", ""},
                                                        {"--min-copies", "nan"},
                                                        {"--min-perfection", "nan"},
                                                        {"--unit-length", ""},
                                                        {"--sequence", ""},
                                                        {"--window", "100"}}) {
    const ProcessResult run = run_tool({"convert", "--to", "tsv", option, value, report});
    EXPECT_EQ(run.status, 2) << option << ' ' << value;
    EXPECT_NE(run.err.find(option), std::string::npos) << run.err;
  }
}

}  // namespace
}  // namespace quorix::testing
