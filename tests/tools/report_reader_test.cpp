// The reader on reports that are right, and on the same ones with something wrong.

#include "tools/report/report_reader.h"

#include <gtest/gtest.h>

#include "support/random_options.h"
#include "tools/io/errors.h"
#include "tools/report_text.h"

namespace quorix::testing {
namespace {

using tools::InputError;

/// The example with the first `from` replaced.
std::string example_with(const std::string& from, const std::string& to) {
  std::string report = example_report();
  const std::size_t place = report.find(from);
  EXPECT_NE(place, std::string::npos) << from;
  return report.replace(place, from.size(), to);
}

std::string report_with(const Options& options, const std::vector<NamedBases>& records) {
  EXPECT_TRUE(apply_options(options));
  return whole_report(records);
}

TEST(ReportReader, reads_the_figures_of_a_repeat) {
  const OwnedReport report = read_whole(example_report());
  ASSERT_EQ(report.sequences.size(), 6U);
  EXPECT_EQ(report.sequences[1].name, "none at all");
  EXPECT_EQ(report.sequences[1].length, 8);
  EXPECT_TRUE(report.sequences[1].repeats.empty());

  ASSERT_EQ(report.sequences[3].repeats.size(), 1U);
  const OwnedRepeat& repeat = report.sequences[3].repeats.front();
  EXPECT_EQ(repeat.figures.ordinal, 1);
  EXPECT_EQ(repeat.figures.unit_length, 3);
  EXPECT_EQ(repeat.figures.start, 3);
  EXPECT_EQ(repeat.figures.end, 33);
  EXPECT_EQ(repeat.figures.length(), 31);
  EXPECT_EQ(repeat.figures.normalized_length, 30);
  EXPECT_EQ(repeat.figures.insertions, 1);
  EXPECT_EQ(repeat.figures.mismatches, 0);
  EXPECT_EQ(repeat.figures.deletions, 0);
  EXPECT_EQ(repeat.figures.ns, 0);
  EXPECT_EQ(repeat.unit, "AGC");
  EXPECT_EQ(repeat.motif, "AGC");
  EXPECT_TRUE(repeat.figures.tells_edits);
  EXPECT_EQ(repeat.edits, "(15,I),");
  EXPECT_EQ(repeat.bases, "AGCAGCAGCAGCAGTCAGCAGCAGCAGCAGC");
  EXPECT_EQ(repeat.aligned_unit, "AGCAGCAGCAGCAG-CAGCAGCAGCAGCAGC");
}

TEST(ReportReader, reads_the_settings) {
  const OwnedReport report = read_whole(report_with({"-M",
                                                     "extendExact",
                                                     "-u",
                                                     "2",
                                                     "-U",
                                                     "9",
                                                     "-s",
                                                     "7",
                                                     "--minScore_b",
                                                     "0.5",
                                                     "-l",
                                                     "3",
                                                     "-r",
                                                     "4",
                                                     "-R",
                                                     "20",
                                                     "-m",
                                                     "-5",
                                                     "-g",
                                                     "-7",
                                                     "-N",
                                                     "3",
                                                     "-f",
                                                     "6",
                                                     "--firstSeq",
                                                     "1",
                                                     "--lastSeq",
                                                     "8",
                                                     "-D",
                                                     "--maskX",
                                                     "--NPerfectionMode",
                                                     "1",
                                                     "--reportUnit",
                                                     "1",
                                                     "--outputFormat",
                                                     "0",
                                                     "--printRepeatSeqMode",
                                                     "1",
                                                     "--NsAsMissense"},
                                                    {}));
  const tools::ReportSettings& settings = report.settings;
  EXPECT_EQ(settings.version, "3.3.2b");
  EXPECT_EQ(settings.input_name, "in.fa");
  EXPECT_FALSE(settings.output_name.has_value());
  EXPECT_EQ(settings.search_mode, tools::SearchMode::kExtendExact);
  EXPECT_EQ(settings.first_sequence, 1U);
  EXPECT_EQ(settings.last_sequence, 8U);
  EXPECT_EQ(settings.min_unit_length, 2U);
  EXPECT_EQ(settings.max_unit_length, 9U);
  EXPECT_EQ(settings.min_score.constant, 7);
  EXPECT_EQ(settings.min_score.factor, 0.5);
  EXPECT_EQ(settings.min_length.constant, 3);
  EXPECT_EQ(settings.recursion_depth, 4);
  EXPECT_EQ(settings.max_score_reduction, 20);
  EXPECT_EQ(settings.mismatch_score, -5);
  EXPECT_EQ(settings.indel_score, -7);
  EXPECT_EQ(settings.max_successive_ns, 3);
  EXPECT_EQ(settings.flank_length, 6);
  EXPECT_TRUE(settings.treats_ns_as_missense);
  EXPECT_FALSE(settings.removes_overlaps);
  EXPECT_TRUE(settings.masks);
  EXPECT_EQ(settings.n_perfection, tools::NPerfection::kNeutral);
  EXPECT_EQ(settings.unit_form, tools::UnitForm::kAlphabetical);
  EXPECT_EQ(settings.format, tools::ReportFormat::kQuorix);
  EXPECT_EQ(settings.sequence_mode, tools::SequenceMode::kBases);
}

TEST(ReportReader, mode_exact_lacks_the_settings_of_edits) {
  const OwnedReport report = read_whole(report_with({"-M", "exact"}, {}));
  EXPECT_EQ(report.settings.search_mode, tools::SearchMode::kExact);
  EXPECT_FALSE(report.settings.recursion_depth.has_value());
  EXPECT_FALSE(report.settings.mismatch_score.has_value());
}

TEST(ReportReader, names_may_look_like_lines_of_a_report) {
  const std::vector<std::string> names{
      "",
      " ",
      "> second",
      "sequence length: 4",
      "# Analysis of sequence \"x\" completed.",
      "x\" completed.",
      "## Finished successfully. ##",
      "   trinucleotide         3 :        33 |     31 bp |     30 BP |     21 pt |  96.667 % |",
      "Missense: (13,I),",
      "tab\tand \x80\xff bytes %s"};
  std::vector<NamedBases> records;
  for (const std::string& name : names) records.push_back({name, "ACAGCAGCAGCAGCAGCAGC"});
  const OwnedReport report = read_whole(report_with({}, records));
  ASSERT_EQ(report.sequences.size(), names.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(report.sequences[i].name, names[i]);
    EXPECT_EQ(report.sequences[i].repeats.size(), 1U);
  }
}

TEST(ReportReader, a_report_may_have_no_record) {
  EXPECT_TRUE(read_whole(report_with({}, {})).sequences.empty());
}

TEST(ReportReader, every_truncation_is_told) {
  const std::string report = example_report();
  for (std::size_t length = 0; length < report.size(); ++length) {
    ASSERT_NE(refusal_of(report.substr(0, length)), "") << length;
  }
  EXPECT_EQ(refusal_of(report), "");
}

TEST(ReportReader, an_incomplete_report_keeps_its_whole_repeats) {
  const std::string report = example_report();
  const std::size_t head_length = report.find(">exact");
  std::size_t most = 0;
  for (std::size_t length = 0; length < report.size(); ++length) {
    const std::string cut = report.substr(0, length);
    if (length < head_length) {
      EXPECT_THROW(read_whole(cut, true), InputError) << length;
      continue;
    }
    const OwnedReport read = read_whole(cut, true);
    EXPECT_NE(read.cut_message, "") << length;
    std::size_t count = 0;
    for (const OwnedSequence& sequence : read.sequences) count += sequence.repeats.size();
    EXPECT_GE(count, most) << length;
    most = count;
  }
  EXPECT_EQ(most, 5U);
  EXPECT_EQ(read_whole(report, true).cut_message, "");
}

TEST(ReportReader, pieces_of_any_length_make_the_same_report) {
  const OwnedReport report = read_whole(example_report(), false, 1);
  EXPECT_EQ(report.sequences.size(), 6U);
  EXPECT_EQ(report.sequences[5].repeats.front().marks, "||||||||*||||||||||||||||||");
}

TEST(ReportReader, the_buffer_grows_and_moves_with_the_lines_of_a_repeat) {
  const std::string report = report_with({"-f", "9"}, {{"long", std::string(3000, 'A') + "CGT"},
                                                       {"short", "GTCAGCAGCAGCAGCAGT"},
                                                       {"last", std::string(500, 'T')}});
  for (const std::size_t block_size : {1U, 2U, 64U, 100U, 1000U, 5000U}) {
    for (const std::size_t piece_length : {1U, 7U, 100000U}) {
      const OwnedReport read = read_whole(report, false, piece_length, block_size);
      ASSERT_EQ(read.sequences.size(), 3U);
      const OwnedRepeat& repeat = read.sequences[0].repeats.front();
      EXPECT_EQ(repeat.bases, std::string(3000, 'A'));
      EXPECT_EQ(repeat.marks, std::string(3000, '|'));
      EXPECT_EQ(repeat.unit, "A");
      EXPECT_EQ(repeat.perfection, "100.000");
      EXPECT_EQ(repeat.right_flank, "CGT");
      EXPECT_EQ(read.sequences[1].repeats.front().motif, "CAG");
      EXPECT_EQ(read.sequences[2].repeats.front().bases, std::string(500, 'T'));
    }
  }
}

TEST(ReportReader, a_message_has_file_line_and_reason) {
  EXPECT_EQ(refusal_of(example_with("     31 bp", "     32 bp")),
            "r:61: bp is not end - start + 1");
}

/// Something wrong, and what the message says of it.
struct Fault {
  std::string from;
  std::string to;
  std::string reason;
};

TEST(ReportReader, faults_are_told) {
  const std::vector<Fault> faults{
      {"# Results", "# Result", "not the head of a report"},
      {"imperfect repeats", "perfect repeats", "is no value of this setting"},
      {"Recursion depth:                 5", "Recursion depth:                 x", "no number"},
      {"#    Recursion depth:                 5\n", "", "expected \"   Recursion depth"},
      {"# Column 12", "# Column 11", "expected \"Column 12"},
      {"# Column 11: Number of N's\n", "", "expected \"Column 11"},
      {">exact", "exact", "expected '>'"},
      {"sequence length: 28", "sequence length: 028", "begins with 0"},
      {"sequence length: 28", "sequence length: 20", "does not lie in its sequence"},
      {"sequence length: 28", "sequence length: 99999999999999999999", "too large"},
      {"tetranucleotide", "quadnucleotide", "expected \"a number\""},
      {" tetranucleotide", "tetranucleotide", "expected \"a number\""},
      {" tetranucleotide", "    4-nucleotide", "has a name"},
      {"     31 bp", "    31 bp", "aligned in 6"},
      {"     31 bp", "     31 pb", "expected \" bp | \""},
      {"     30 BP", "     31 BP", "BP is not bp"},
      {"   1 ins", "   2 ins", "BP is not bp"},
      {" 96.667 %", " 96.668 %", "the perfection does not follow"},
      {" 96.667 %", " 96.67 %", "three decimals"},
      {"|  unit AGC", "|  unit AGCA", "its class has 3"},
      {"|  unit AGC", "|  unit AXC", "letters ACGTN"},
      {"|  unit AGC", "|  unit CAG", "normal form"},
      {"|  unit ACAT", "|  unit ACAC", "normal form"},
      {"Missense: (15,I),", "Missense: (14,I),", "list of edits"},
      {"Missense: (15,I),", "Missense: ", "not as many as the counts"},
      {"Missense: (15,I),", "Missense: (15,I)", "expected \"),\""},
      {"Missense: (15,I),", "Missense: (15,X),", "M, I or D"},
      {"Missense: (15,I),", "Missense: (0,I),", "does not lie in the repeat"},
      {"Missense: (15,I),", "Missense: (32,I),", "does not lie in the repeat"},
      {"Missense: (15,I),", "Missense: (15,I),(15,I),", "not in order"},
      {"\nAGCAGCAGCAGCAGTC", "\nAGCAGCAGCAGCAGTCA", "differ in length"},
      {"\nAGCAGCAGCAGCAGTC", "\nAGCAGCAGCAGCAGxC", "ACGTN"},
      {"\nAGCAGCAGCAGCAGTC", "\nACCAGCAGCAGCAGTC", "column 2 of the alignment"},
      {"|||||||||||||| ||", "||||||||||||||||||", "differ in length"},
      {"AGCAGCAGCAGCAG-C", "AGCAGCAGCAGCAGTC", "does not repeat with its length"},
      {"# Analysis of sequence \"exact\"", "# Analysis of sequence \"exbct\"",
       "expected \"exact\""},
      {"\"exact\" completed.", "\"exact\" completed. ", "should end before"},
      {"## Finished successfully. ##", "## Finished ##", "closing line"},
      {"## Finished successfully. ##\n", "## Finished successfully. ##\n\n", "nothing may follow"},
      {"## Finished successfully. ##\n", "## Finished successfully. ##\nx", "nothing may follow"},
  };
  for (const Fault& fault : faults) {
    const std::string refusal = refusal_of(example_with(fault.from, fault.to));
    EXPECT_NE(refusal.find(fault.reason), std::string::npos)
        << fault.from << " -> " << fault.to << ": " << refusal;
  }
}

/// Something wrong, and the line that the message names: those of a repeat are 61 its figures, 62
/// its edits, 63 its bases, 64 the marks and 65 the unit.
struct PlacedFault {
  std::string from;
  std::string to;
  int line;
};

TEST(ReportReader, faults_in_an_alignment_are_told_at_their_lines) {
  const std::string unit = "\nAGCAGCAGCAGCAG-CAGCAGCAGCAGCAGC\n";
  const std::vector<PlacedFault> faults{
      {"     21 pt |  96.667 % |   0 mis |   1 ins |   0 del |   0 N |  unit AGC",
       "     21 pt |  96.667 % |   0 mis |   1 ins |   0 del |   0 N |  unit AAC", 61},
      {"Missense: (15,I),", "Missense: (14,I),", 62},
      {"Missense: (15,I),", "Missense: (16,I),", 62},
      {"\nAGCAGCAGCAGCAGTC", "\nAGCAGCAGCAGCAGTCA", 63},
      {"\nAGCAGCAGCAGCAGTC", "\nAGCAGCAGCAGCAGxC", 63},
      {"\nAGCAGCAGCAGCAGTC", "\nACCAGCAGCAGCAGTC", 63},
      {"\nAGCAGCAGCAGCAGTC", "\nAG-AGCAGCAGCAGTC", 63},
      {"\nAGCAGCAGCAGCAGTC", "\nANCAGCAGCAGCAGTC", 63},
      {"\n|||||||||||||| ||", "\n||||||||||||||||||", 64},
      {"\n|||||||||||||| ||", "\n|||||||||||||||||", 64},
      {"\n|||||||||||||| ||", "\n||||| |||||||| ||", 64},
      {"\n|||||||||||||| ||", "\n|||||*|||||||| ||", 64},
      {"\n|||||||||||||| ||", "\n|||||x|||||||| ||", 64},
      {unit, "\nAGCAGCAGCAGCAG-CAGCAGCAGCAGCAGCA\n", 65},
      {unit, "\nAGCAGCAGCAGCAGTCAGCAGCAGCAGCAGC\n", 65},
      {unit, "\nAGCAGCAGCAGCAG-CAGCAGCAGCxGCAGC\n", 65},
      {unit, "\nAGCAGCAGCAGCA-GCAGCAGCAGCAGCAGC\n", 65},
  };
  for (const PlacedFault& fault : faults) {
    const std::string refusal = refusal_of(example_with(fault.from, fault.to));
    EXPECT_EQ(refusal.find("r:" + std::to_string(fault.line) + ": "), 0U)
        << fault.from << " -> " << fault.to << ": " << refusal;
  }
}

TEST(ReportReader, faults_of_flanks_are_told_at_their_lines) {
  const std::string report =
      report_with({"-f", "3", "-s", "8"}, {{"flanked", "GTTTAGCAGCAGCAGCAGCAGCAGCCCC"}});
  const std::string bases = "\nTTT:AGCAGCAGCAGCAGCAGCAGC:CCC\n";
  const std::string marks = "\n    |||||||||||||||||||||    \n";
  const auto lines_before = [&](std::size_t place) {
    return std::count(report.begin(), report.begin() + static_cast<std::ptrdiff_t>(place), '\n');
  };
  const auto refusal_with = [&](std::size_t place, char character) {
    std::string spoiled = report;
    spoiled[place] = character;
    return refusal_of(spoiled);
  };
  const std::size_t bases_place = report.find(bases);
  const std::size_t marks_place = report.find(marks);
  ASSERT_NE(bases_place, std::string::npos);
  ASSERT_NE(marks_place, std::string::npos);
  const std::size_t unit_place = marks_place + marks.size() - 1;
  for (const std::size_t place : {bases_place, marks_place, unit_place}) {
    const std::string begin = "r:" + std::to_string(lines_before(place) + 2) + ": ";
    EXPECT_EQ(refusal_with(place + 1, 'x').find(begin), 0U) << refusal_with(place + 1, 'x');
  }
}

TEST(ReportReader, repeats_must_be_in_order) {
  const std::string report = report_with({"--printRepeatSeqMode", "0", "--outputFormat", "2"},
                                         {{"two", "GACACACACACACACTTGGTGTATCTCTCTCTCTCTCG"}});
  const std::size_t first = report.find("dinucleotide");
  const std::size_t second = report.find("dinucleotide", first + 1);
  const std::size_t end = report.find('#', second);
  ASSERT_NE(second, std::string::npos);
  const std::string swapped = report.substr(0, first) + report.substr(second, end - second) +
                              report.substr(first, second - first) + report.substr(end);
  EXPECT_EQ(refusal_of(report), "");
  EXPECT_NE(refusal_of(swapped).find("order of their positions"), std::string::npos);
}

TEST(ReportReader, flanks_end_where_the_sequence_ends) {
  const std::vector<NamedBases> records{{"flanked", "GTTTAGCAGCAGCAGCAGCAGCAGCCCC"}};
  const std::string report = report_with({"-f", "3", "-s", "8"}, records);
  const OwnedRepeat repeat = read_whole(report).sequences.front().repeats.front();
  EXPECT_EQ(repeat.left_flank, "TTT");
  EXPECT_EQ(repeat.right_flank, "CCC");
  std::string spoiled = report;
  spoiled.replace(spoiled.find("TTT:"), 4, "TT:A");
  EXPECT_NE(refusal_of(spoiled).find("flanks"), std::string::npos);
}

}  // namespace
}  // namespace quorix::testing
