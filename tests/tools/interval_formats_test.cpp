// bed, gff3 and bedgraph: their lines, and their places against those of the report.

#include <gtest/gtest.h>

#include "support/engine_comparison.h"
#include "support/random_options.h"
#include "tools/commands/convert_command.h"
#include "tools/random_reports.h"
#include "tools/report_text.h"
#include "tools/tool_run.h"

namespace quorix::testing {
namespace {

/// What a conversion of a report writes.
std::string converted(const std::string& report, const std::string& format,
                      std::int64_t window = 0) {
  const CToolFolder folder;
  tools::ConvertOptions options;
  options.format = format;
  options.reports.names = {folder.write("r", report)};
  options.output_name = folder.path("out");
  if (window > 0) options.window = window;
  tools::convert(options);
  return folder.read("out");
}

std::string report_with(const Options& options, const std::vector<NamedBases>& records) {
  EXPECT_TRUE(apply_options(options));
  return whole_report(records);
}

TEST(BedFormat, counts_from_0_and_excludes_the_end) {
  EXPECT_EQ(converted(report_with({}, {{"c one", "GTCAGCAGCAGTCAGCAGCAGCAGTT"}}), "bed"),
            "#chrom\tstart\tend\tname\tscore\tstrand\tunit_length\tcopies\traw_score\tperfection\t"
            "mismatches\tinsertions\tdeletions\tns\n"
            "c\t2\t24\tAGC\t12\t.\t3\t7.00\t12\t95.238\t0\t1\t0\t0\n");
}

TEST(BedFormat, has_dots_for_what_is_not_told) {
  const std::vector<NamedBases> records{{"c", "GTCAGCAGCAGCAGTT"}};
  const std::string begin = "c\t2\t14\tAGC\t9\t.\t3\t4.00\t9\t";
  EXPECT_NE(converted(report_with({"--outputFormat", "0"}, records), "bed")
                .find(begin + "100.000\t.\t.\t.\t.\n"),
            std::string::npos);
  EXPECT_NE(converted(report_with({"--outputFormat", "2"}, records), "bed")
                .find(begin + "100\t.\t.\t.\t.\n"),
            std::string::npos);
  EXPECT_NE(converted(report_with({"--NsAsMissense"}, records), "bed")
                .find(begin + "100.000\t0\t0\t0\t.\n"),
            std::string::npos);
}

TEST(BedFormat, scores_stay_between_0_and_1000) {
  const std::vector<NamedBases> records{{"c", std::string(1500, 'A')}};
  EXPECT_NE(converted(report_with({}, records), "bed").find("\tA\t1000\t.\t1\t1500.00\t1499\t"),
            std::string::npos);
  std::string report = example_report();
  report.replace(report.find("     21 pt"), 10, "     -3 pt");
  EXPECT_NE(converted(report, "bed").find("\tAGC\t0\t.\t3\t10.00\t-3\t"), std::string::npos);
}

TEST(BedFormat, identifiers_must_not_begin_a_comment) {
  const CToolFolder folder;
  for (const char* const name : {"#1", "track", "browser2"}) {
    for (const std::vector<std::string>& format :
         std::vector<std::vector<std::string>>{{"bed"}, {"bedgraph", "--window", "9"}}) {
      std::vector<std::string> arguments{
          "convert", folder.write("r", report_with({}, {{name, "ACGT"}})), "--to"};
      arguments.insert(arguments.end(), format.begin(), format.end());
      EXPECT_EQ(run_tool(arguments).status, 3) << name;
    }
  }
}

TEST(Gff3Format, has_types_regions_and_identifiers) {
  const std::string unit10 = "ACCGTTTAGC";
  std::string unit100;
  RandomEngine engine(3);
  while (unit100.size() < 100) unit100 += draw_letters(engine, 1, "ACGT");
  const std::string gff3 =
      converted(report_with({"-U", "100"}, {{"chr1 x", "GTT" + std::string(12, 'A') + "CGT"},
                                            {"empty", ""},
                                            {"a;b=c%>", unit10 + unit10 + unit10},
                                            {"big", unit100 + unit100 + unit100}}),
                "gff3");
  EXPECT_EQ(gff3.find("##gff-version 3\n"
                      "##sequence-region chr1 1 18\n"
                      "chr1\tquorix\tmicrosatellite\t4\t15\t11\t.\t.\tID=chr1.repeat1;Name=A;"
                      "unit_length=1;motif=A;copies=12.00;normalized_length=12;perfection=100.000;"
                      "mismatches=0;insertions=0;deletions=0;ns=0\n"
                      "##sequence-region a%3Bb%3Dc%25%3E 1 30\n"
                      "a%3Bb%3Dc%25%3E\tquorix\tminisatellite\t1\t30\t20\t.\t.\t"
                      "ID=a%3Bb%3Dc%25>.repeat1;Name=AAACGGTGCT;"),
            0U)
      << gff3;
  EXPECT_EQ(gff3.find("empty"), std::string::npos);
  EXPECT_NE(gff3.find("\nbig\tquorix\tsatellite_DNA\t1\t300\t200\t"), std::string::npos);
}

TEST(Gff3Format, identifiers_do_not_depend_on_filters) {
  const CToolFolder folder;
  const std::string report =
      folder.write("r", report_with({}, {{"c", "GTAAAAAAAAAAACGCAGCAGCAGCAGCAGTT"}}));
  const ProcessResult run = run_tool({"convert", "--to", "gff3", "--motif", "CAG", report});
  EXPECT_NE(run.out.find("ID=c.repeat2;Name=AGC;"), std::string::npos) << run.out;
  EXPECT_EQ(run.out.find("repeat1"), std::string::npos);
}

TEST(BedgraphFormat, has_the_share_of_each_window) {
  const std::string report = report_with(
      {}, {{"c", "GTCAGCAGCAGCAGTTGACAAAAAAAAAAAAAAAAACG"}, {"none", "ACGTT"}, {"empty", ""}});
  EXPECT_EQ(converted(report, "bedgraph", 16),
            "c\t0\t16\t0.75\nc\t16\t32\t0.8125\nc\t32\t38\t0.666667\nnone\t0\t5\t0\n");
  EXPECT_EQ(converted(report, "bedgraph", 1000), "c\t0\t38\t0.763158\nnone\t0\t5\t0\n");
}

TEST(BedgraphFormat, says_nothing_of_what_is_cut_off) {
  const CToolFolder folder;
  const std::string report = report_with({}, {{"c", "GTCAGCAGCAGCAGTTGACAAAAAAAAAAAAAAAAACG"}});
  const std::string cut = report.substr(0, report.find("# Analysis"));
  const ProcessResult run = run_tool({"convert", "--to", "bedgraph", "--window", "8",
                                      "--allow-incomplete", folder.write("r", cut)});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "c\t0\t8\t0.75\nc\t8\t16\t0.75\nc\t16\t24\t0.625\nc\t24\t32\t1\n");
}

TEST(BedgraphFormat, needs_a_window_and_no_order) {
  const CToolFolder folder;
  const std::string report = folder.write("r", example_report());
  for (const std::vector<std::string>& options : std::vector<std::vector<std::string>>{
           {}, {"--window", "0"}, {"--window", "-5"}, {"--window", "9", "--sort", "score"}}) {
    std::vector<std::string> arguments{"convert", "--to", "bedgraph", report};
    arguments.insert(arguments.end(), options.begin(), options.end());
    EXPECT_EQ(run_tool(arguments).status, 2);
  }
}

/// The bedgraph as it should be, base by base.
std::string plain_bedgraph(const OwnedReport& report, std::size_t window) {
  std::ostringstream text;
  for (const OwnedSequence& sequence : report.sequences) {
    std::vector<bool> is_covered(static_cast<std::size_t>(sequence.length));
    for (const OwnedRepeat& repeat : sequence.repeats) {
      for (std::int64_t i = repeat.figures.start; i <= repeat.figures.end; ++i) {
        is_covered[static_cast<std::size_t>(i - 1)] = true;
      }
    }
    for (std::size_t begin = 0; begin < is_covered.size(); begin += window) {
      const std::size_t end = std::min(begin + window, is_covered.size());
      std::size_t count = 0;
      for (std::size_t i = begin; i < end; ++i) count += is_covered[i] ? 1 : 0;
      text << sequence.name.substr(0, sequence.name.find(' ')) << '\t' << begin << '\t' << end
           << '\t' << static_cast<double>(count) / static_cast<double>(end - begin) << '\n';
    }
  }
  return text.str();
}

TEST(IntervalLaws, places_are_those_of_the_report) {
  silence_standard_error();
  std::size_t repeat_count = 0;
  for (std::uint64_t seed = 1; seed <= 300 && !HasFailure(); ++seed) {
    const RandomReport drawn = draw_report(seed);
    SCOPED_TRACE("seed " + std::to_string(seed) + ": " + joined(drawn.options));
    const OwnedReport report = read_whole(drawn.text);
    const std::size_t window = seed % 40 + 1;
    EXPECT_EQ(converted(drawn.text, "bedgraph", static_cast<std::int64_t>(window)),
              plain_bedgraph(report, window));

    std::istringstream bed(converted(drawn.text, "bed"));
    std::istringstream gff3(converted(drawn.text, "gff3"));
    std::string line;
    std::getline(bed, line);
    for (const OwnedSequence& sequence : report.sequences) {
      for (const OwnedRepeat& repeat : sequence.repeats) {
        ++repeat_count;
        const std::string name = sequence.name.substr(0, sequence.name.find(' '));
        std::getline(bed, line);
        EXPECT_EQ(
            line.find(name + '\t' + std::to_string(repeat.figures.start - 1) + '\t' +
                      std::to_string(repeat.figures.end) + '\t' + repeat.unit + '\t' +
                      std::to_string(std::clamp<std::int64_t>(repeat.figures.score, 0, 1000)) +
                      "\t.\t"),
            0U)
            << line;
        while (std::getline(gff3, line) && line.starts_with('#')) {
        }
        EXPECT_NE(line.find("satellite"), std::string::npos);
        EXPECT_NE(line.find('\t' + std::to_string(repeat.figures.start) + '\t' +
                            std::to_string(repeat.figures.end) + '\t' +
                            std::to_string(repeat.figures.score) + '\t'),
                  std::string::npos)
            << line;
      }
    }
    EXPECT_FALSE(std::getline(bed, line));
  }
  EXPECT_GT(repeat_count, 1000U);
}

}  // namespace
}  // namespace quorix::testing
