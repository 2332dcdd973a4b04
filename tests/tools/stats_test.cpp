// Whole runs of `stats`: what they write, and how they end.

#include <gtest/gtest.h>

#include <csignal>
#include <nlohmann/json.hpp>
#include <set>

#include "support/gzip_text.h"
#include "support/random_options.h"
#include "tools/report_text.h"
#include "tools/tool_run.h"

namespace quorix::testing {
namespace {

/// Two records: CAG three times as six copies, once with a mismatch; A's; none.
std::string two_records(const std::string& first = "x one", const std::string& second = "y two") {
  EXPECT_TRUE(apply_options({}));
  return whole_report({{first, "GTCAGCAGCAGCAGCAGCAGTTAAAAAAAAAAAACG"},
                       {second, "GTTTGAGTTGAGTTGAGTTGAGTTGACCCCTGCTGCTGATGCTGCTGCTGCTGAA"},
                       {"none", "ACGTGGCA"}});
}

TEST(Stats, writes_a_table) {
  const CToolFolder folder;
  const ProcessResult run = run_tool({"stats", folder.write("r", two_records())});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out,
            "Record  Length  Repeats  Bases  Share %  Copies  Perfection %\n"
            "x           36        2     30  83.3333   18.00       100.000\n"
            "y           55        2     48  87.2727   12.80        97.917\n"
            "none         8        0      0   0.0000    0.00             .\n"
            "Total       99        4     78  78.7879   30.80        98.958\n"
            "\n"
            "Unit length  Repeats  Bases  Share %  Copies  Perfection %\n"
            "1                  1     12  12.1212   12.00       100.000\n"
            "3                  2     42  42.4242   14.00        97.917\n"
            "5                  1     24  24.2424    4.80       100.000\n"
            "\n"
            "Unit   Repeats  Bases  Share %  Copies  Perfection %\n"
            "AGC          2     42  42.4242   14.00        97.917\n"
            "AACTC        1     24  24.2424    4.80       100.000\n"
            "A            1     12  12.1212   12.00       100.000\n");
}

TEST(Stats, a_table_without_repeats_has_its_records) {
  EXPECT_TRUE(apply_options({}));
  const CToolFolder folder;
  const ProcessResult run =
      run_tool({"stats", folder.write("r", whole_report({{"a", ""}, {"b", "ACGT"}}))});
  EXPECT_EQ(run.out,
            "Record  Length  Repeats  Bases  Share %  Copies  Perfection %\n"
            "a            0        0      0   0.0000    0.00             .\n"
            "b            4        0      0   0.0000    0.00             .\n"
            "Total        4        0      0   0.0000    0.00             .\n");
}

TEST(Stats, a_table_cuts_long_names_and_hides_control_characters) {
  const CToolFolder folder;
  const std::string report = two_records("n\x1b[31m", std::string(30, 'l') + "\xc3\xa4\xc3\xa4");
  const ProcessResult run = run_tool({"stats", folder.write("r", report), "--top", "1"});
  EXPECT_NE(run.out.find("\nn?[31m  "), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("\n" + std::string(25, 'l') + "...  "), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("\nUnit (1 of 3)  "), std::string::npos) << run.out;
  EXPECT_EQ(run.out.find("AACTC"), std::string::npos);
}

TEST(Stats, writes_tsv) {
  const CToolFolder folder;
  const ProcessResult run =
      run_tool({"stats", "--to", "tsv", "--top", "1", folder.write("r", two_records())});
  EXPECT_EQ(run.out,
            "kind\tsequence\tlength\tunit_length\tunit\trepeats\tbases\tshare\tcopies\t"
            "mean_perfection\n"
            "record\tx\t36\t.\t.\t2\t30\t0.833333\t18.00\t100.000\n"
            "record\ty\t55\t.\t.\t2\t48\t0.872727\t12.80\t97.917\n"
            "record\tnone\t8\t.\t.\t0\t0\t0\t0.00\t.\n"
            "total\t.\t99\t.\t.\t4\t78\t0.787879\t30.80\t98.958\n"
            "unit_length\t.\t.\t1\t.\t1\t12\t0.121212\t12.00\t100.000\n"
            "unit_length\t.\t.\t3\t.\t2\t42\t0.424242\t14.00\t97.917\n"
            "unit_length\t.\t.\t5\t.\t1\t24\t0.242424\t4.80\t100.000\n"
            "unit\t.\t.\t3\tAGC\t2\t42\t0.424242\t14.00\t97.917\n");
}

TEST(Stats, writes_json) {
  const CToolFolder folder;
  const ProcessResult run =
      run_tool({"stats", "--to", "json", "--motif", "CTG", folder.write("r", two_records())});
  EXPECT_EQ(nlohmann::json::parse(run.out), nlohmann::json::parse(R"({
    "records": [
      {"sequence": "x", "length": 36, "repeats": 1, "bases": 18, "share": 0.5, "copies": 6.00,
       "mean_perfection": 100.000},
      {"sequence": "y", "length": 55, "repeats": 1, "bases": 24, "share": 0.436364,
       "copies": 8.00, "mean_perfection": 95.833},
      {"sequence": "none", "length": 8, "repeats": 0, "bases": 0, "share": 0, "copies": 0.00}],
    "total": {"records": 3, "length": 99, "distinct_units": 1, "repeats": 2, "bases": 42,
              "share": 0.424242, "copies": 14.00, "mean_perfection": 97.917},
    "unit_lengths": [{"unit_length": 3, "repeats": 2, "bases": 42, "share": 0.424242,
                      "copies": 14.00, "mean_perfection": 97.917}],
    "units": [{"unit": "AGC", "unit_length": 3, "repeats": 2, "bases": 42, "share": 0.424242,
               "copies": 14.00, "mean_perfection": 97.917}]})"));
}

TEST(Stats, without_repeats_the_lists_of_json_are_empty) {
  EXPECT_TRUE(apply_options({}));
  const CToolFolder folder;
  const ProcessResult run =
      run_tool({"stats", "--to", "json", folder.write("r", whole_report({}))});
  EXPECT_EQ(nlohmann::json::parse(run.out), nlohmann::json::parse(R"({
    "records": [], "unit_lengths": [], "units": [],
    "total": {"records": 0, "length": 0, "distinct_units": 0, "repeats": 0, "bases": 0,
              "share": 0, "copies": 0.00}})"));
}

TEST(Stats, multiqc_has_a_sample_for_each_report) {
  const CToolFolder folder;
  // The same records in both: they are of different samples.
  const std::string one = folder.write("one.report.gz", gzip_member(two_records()));
  const std::string two = folder.write("two", two_records());
  const ProcessResult run = run_tool({"stats", "--to", "multiqc", one, two, "--sequence", "x"});
  EXPECT_EQ(run.status, 0) << run.err;
  const nlohmann::json file = nlohmann::json::parse(run.out);
  EXPECT_EQ(file.at("plot_type"), "table");
  for (const char* const key : {"id", "section_name", "description", "pconfig"}) {
    EXPECT_TRUE(file.contains(key)) << key;
  }
  const nlohmann::json sample = nlohmann::json::parse(R"({
      "records": 1, "length": 36, "repeats": 2, "bases": 30, "share": 83.3333, "copies": 18.00,
      "mean_perfection": 100.000, "microsatellites": 2, "minisatellites": 0, "satellites": 0})");
  EXPECT_EQ(file.at("data"), (nlohmann::json{{"one", sample}, {"two", sample}}));
  for (const auto& [key, value] : sample.items()) EXPECT_TRUE(file.at("headers").contains(key));
}

TEST(Stats, multiqc_counts_units_by_their_classes) {
  EXPECT_TRUE(apply_options({"-U", "120"}));
  const CToolFolder folder;
  RandomEngine engine(1);
  std::vector<NamedBases> records;
  for (const std::size_t length : {9U, 10U, 10U, 99U, 100U}) {
    const std::string unit = draw_letters(engine, length, "ACGT");
    records.push_back({"u" + std::to_string(records.size()), unit + unit + unit + unit});
  }
  const std::string report = folder.write("r", whole_report(records));
  const ProcessResult run =
      run_tool({"stats", "--to", "multiqc", report, "--min-copies", "4", "--unit-length", "9-"});
  const nlohmann::json sample = nlohmann::json::parse(run.out).at("data").at("r");
  EXPECT_EQ(sample.at("microsatellites"), 1);
  EXPECT_EQ(sample.at("minisatellites"), 3);
  EXPECT_EQ(sample.at("satellites"), 1);
}

TEST(Stats, multiqc_needs_samples_of_different_names) {
  const CToolFolder folder;
  const std::string one = folder.write("r.report", two_records());
  const std::string two = folder.write("r", two_records());
  const ProcessResult run = run_tool({"stats", "--to", "multiqc", one, two});
  EXPECT_EQ(run.status, 3);
  EXPECT_NE(run.err.find(one), std::string::npos) << run.err;
  EXPECT_NE(run.err.find(two), std::string::npos) << run.err;
}

TEST(Stats, units_are_the_same_whatever_the_form_of_the_report) {
  std::set<std::string> units;
  for (const char* const form : {"0", "1", "2"}) {
    const CToolFolder folder;
    EXPECT_TRUE(apply_options({"--reportUnit", form}));
    const std::string report = folder.write(
        "r", whole_report({{"x", "GTCAGCAGCAGCAGCAGCAGTTAAAAAAAAAAAACGTTCTGCTGCTGCTGCTGAA"}}));
    const ProcessResult run = run_tool({"stats", "--to", "json", report});
    units.insert(nlohmann::json::parse(run.out).at("units").dump());
  }
  EXPECT_EQ(units.size(), 1U);
}

TEST(Stats, the_searched_length_is_that_of_the_chosen_records) {
  const CToolFolder folder;
  const std::string report = folder.write("r", two_records());
  const auto total = [&](std::vector<std::string> options) {
    options.insert(options.begin(), {"stats", "--to", "json", report});
    return nlohmann::json::parse(run_tool(options).out).at("total");
  };
  EXPECT_EQ(total({"--sequence", "x"}).at("length"), 36);
  EXPECT_EQ(total({"--sequence", "x"}).at("records"), 1);
  EXPECT_EQ(total({"--unit-length", "5"}).at("length"), 99);
  const ProcessResult missing = run_tool({"stats", report, "--sequence", "z"});
  EXPECT_EQ(missing.status, 3);
  EXPECT_NE(missing.err.find("--sequence z"), std::string::npos) << missing.err;
}

TEST(Stats, a_report_that_is_cut_short_is_counted_where_that_is_asked_for) {
  const CToolFolder folder;
  const std::string report = two_records();
  const std::string cut = folder.write("cut", report.substr(0, report.find(">y two") + 40));
  const ProcessResult refused = run_tool({"stats", cut});
  EXPECT_EQ(refused.status, 3);
  EXPECT_EQ(refused.out, "");
  const ProcessResult run = run_tool({"stats", "--allow-incomplete", "--to", "json", cut});
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.err.find("incomplete: "), std::string::npos) << run.err;
  const nlohmann::json records = nlohmann::json::parse(run.out).at("records");
  ASSERT_EQ(records.size(), 2U);
  EXPECT_FALSE(records[0].contains("incomplete"));
  EXPECT_EQ(records[1].at("incomplete"), true);
  EXPECT_EQ(nlohmann::json::parse(run.out).at("total").at("incomplete"), true);
  EXPECT_EQ(records[1].at("length"), 55);
}

TEST(Stats, identifiers_must_differ_and_fit_the_format) {
  const CToolFolder folder;
  const std::string same = folder.write("same", two_records("x one", "x two"));
  const ProcessResult refused = run_tool({"stats", same});
  EXPECT_EQ(refused.status, 3);
  EXPECT_NE(refused.err.find("\"x two\" has the identifier of \"x one\""), std::string::npos)
      << refused.err;
  EXPECT_EQ(run_tool({"stats", "--full-names", same}).status, 0);
  const std::string tab = folder.write("tab", two_records("a\tb"));
  EXPECT_EQ(run_tool({"stats", "--to", "tsv", "--full-names", tab}).status, 3);
  const std::string bad = folder.write("bad", two_records("\xff"));
  const ProcessResult not_utf8 = run_tool({"stats", "--to", "json", bad});
  EXPECT_EQ(not_utf8.status, 3);
  EXPECT_NE(not_utf8.err.find("cannot stand in json: it is not UTF-8"), std::string::npos)
      << not_utf8.err;
}

TEST(Stats, wrong_usage_ends_with_status_2) {
  const CToolFolder folder;
  const std::string report = folder.write("r", two_records());
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"stats"},
                                             {"stats", "--to", "bed", report},
                                             {"stats", "--top", "-1", report},
                                             {"stats", "--top", "few", report},
                                             {"stats", "--to", "multiqc", "--top", "3", report},
                                             {"stats", "--sort", "score", report},
                                             {"stats", "--motif", "CAX", report},
                                             {"stats", "-o", report, report}}) {
    const ProcessResult run = run_tool(arguments);
    EXPECT_EQ(run.status, 2) << joined(arguments);
    EXPECT_EQ(run.out, "");
  }
  EXPECT_EQ(folder.read("r"), two_records());
}

TEST(Stats, outputs_appear_when_they_are_complete) {
  const CToolFolder folder;
  const std::string report = folder.write("r", two_records());
  const std::string bad = folder.write("bad", two_records().substr(0, 2500));
  const std::string out = folder.write("out", "old");
  EXPECT_EQ(run_tool({"stats", "-o", out, bad}).status, 3);
  EXPECT_EQ(folder.read("out"), "old");
  EXPECT_EQ(run_tool({"stats", "-o", out, report}).status, 0);
  EXPECT_EQ(folder.read("out"), run_tool({"stats", report}).out);
  EXPECT_EQ(run_tool({"stats", "-o", "/dev/full", report}).status, 4);
  EXPECT_EQ(folder.files(), (std::vector<std::string>{"bad", "out", "r"}));
}

TEST(Stats, a_pipe_that_nobody_reads_ends_the_run_quietly) {
  const CToolFolder folder;
  const std::string report = folder.write("r", two_records());
  const ProcessResult run = run_in_child([&] {
    int ends[2];
    if (::pipe(ends) != 0) return 99;
    ::close(ends[0]);
    ::dup2(ends[1], STDOUT_FILENO);
    std::signal(SIGPIPE, SIG_DFL);
    const char* const words[] = {"quorix-tools", "stats", report.c_str()};
    return tools::run_command_line(3, words);
  });
  EXPECT_EQ(run.status, 128 + SIGPIPE);
  EXPECT_EQ(run.err, "");
}

TEST(Stats, help_has_examples) {
  const ProcessResult help = run_tool({"stats", "--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("Usage: quorix-tools stats "), std::string::npos) << help.out;
  EXPECT_NE(help.out.find("Examples:"), std::string::npos);
}

}  // namespace
}  // namespace quorix::testing
