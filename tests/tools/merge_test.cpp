// Whole runs of `merge`: what it refuses, and how it ends.

#include <gtest/gtest.h>

#include <array>
#include <csignal>

#include "support/gzip_text.h"
#include "support/record_runs.h"
#include "tools/merge/body_copy.h"
#include "tools/range_runs.h"
#include "tools/report_text.h"

namespace quorix::testing {
namespace {

/// Five records, each with a repeat over the end of a line of the masked copy. That of the last one
/// begins with the last base of the line.
std::string five_records() {
  std::vector<NamedBases> records;
  for (const char* const name : {"a", "b", "c", "d", "e"}) {
    const std::size_t number = records.size();
    records.push_back({name, std::string(number == 4 ? 77 : 70, 'N') + "GTCAGCAGCAGCAGCAGCAGTT" +
                                 std::string(68 + number, 'N')});
  }
  return fasta_text(records);
}

/// One run, and parts of it: a and b, c and d, e and on.
class MergeRun : public ::testing::Test {
 protected:
  MergeRun() : runs(five_records(), {"--maskX"}) {
    runs.run("whole");
    runs.run("ab", {"--lastSeq", "2"});
    runs.run("cd", {"--firstSeq", "3", "--lastSeq", "4"});
    runs.run("e", {"--firstSeq", "5"});
  }

  static std::string report(const std::string& name) { return CRangeRuns::report_of(name); }
  static std::string masked(const std::string& name) { return CRangeRuns::masked_of(name); }

  /// Expects that the arguments are refused as bad input, with these words, and without an output.
  void expect_refusal(std::vector<std::string> arguments,
                      const std::vector<std::string>& words) const {
    const std::vector<std::string> files = runs.files();
    arguments.insert(arguments.begin(), "merge");
    arguments.insert(arguments.end(), {"-o", "out"});
    const ProcessResult run = runs.run_tool(arguments);
    EXPECT_EQ(run.status, 3) << run.err;
    for (const std::string& word : words) {
      EXPECT_NE(run.err.find(word), std::string::npos) << word << "\nis not in\n" << run.err;
    }
    EXPECT_EQ(runs.files(), files);
  }

  /// Writes a report or masked copy of a run with the first `from` replaced by `to`.
  void write_changed(const std::string& name, const std::string& source, const std::string& from,
                     const std::string& to) const {
    std::string text = runs.read(source);
    const std::size_t place = text.find(from);
    ASSERT_NE(place, std::string::npos);
    runs.write(name, text.replace(place, from.size(), to));
  }

  CRangeRuns runs;
};

TEST_F(MergeRun, standard_output_has_no_name_in_the_head) {
  std::string expected = runs.read(report("whole"));
  const std::string line = "# Output file name:                   report\n";
  expected.erase(expected.find(line), line.size());
  const ProcessResult merged = runs.run_tool({"merge", report("e"), report("ab"), report("cd")});
  EXPECT_EQ(merged.status, 0) << merged.err;
  EXPECT_EQ(merged.out, expected);
  // The other way: parts without a name, an output with one.
  for (const char* const name : {"ab", "cd", "e"}) {
    write_changed(name, report(name), line, "");
  }
  EXPECT_EQ(runs.run_tool({"merge", "ab", "cd", "e", "-o", "report"}).status, 0);
  EXPECT_EQ(runs.read("report"), runs.read(report("whole")));
}

TEST_F(MergeRun, a_single_part_and_a_middle_one_stay_what_they_are) {
  for (const char* const name : {"whole", "ab", "cd", "e"}) {
    EXPECT_EQ(runs.run_tool({"merge", report(name), "-o", "report"}).status, 0);
    EXPECT_EQ(runs.read("report"), runs.read(report(name)));
  }
}

TEST_F(MergeRun, missing_records_are_told) {
  expect_refusal({report("ab"), report("e")}, {"the records 3 - 4 are missing", report("ab"),
                                               report("e"), "1 - 2", "5 - last sequence"});
}

TEST_F(MergeRun, overlapping_and_doubled_parts_are_told) {
  runs.run("de", {"--firstSeq", "4"});
  expect_refusal({report("ab"), report("cd"), report("de")},
                 {report("de") + " (4 - last sequence)", "begins within", report("cd")});
  expect_refusal({report("e"), report("whole")}, {report("whole"), report("e"), "begins within"});
  runs.write("copy", runs.read(report("ab")));
  expect_refusal({report("ab"), "copy", report("cd")}, {"copy", report("ab"), "begins within"});
  expect_refusal({report("ab"), report("cd"), report("ab")}, {"same file", report("ab")});
}

TEST_F(MergeRun, parts_of_other_settings_or_another_input_are_told) {
  for (const auto& [from, to] : std::vector<std::pair<std::string, std::string>>{
           {"in.fa", "other.fa"},
           {"Minimum score:                   maximum (6,",
            "Minimum score:                   maximum (7,"},
           {"Recursion depth:                 5", "Recursion depth:                 4"},
           {"version 3.3.2b", "version 3.3.2c"}}) {
    write_changed("foreign", report("cd"), from, to);
    expect_refusal({report("ab"), "foreign", report("e")},
                   {"foreign is no part", report("ab"), to});
  }
  runs.run("exact", {"--firstSeq", "3", "--lastSeq", "4", "-M", "exact"});
  expect_refusal({report("ab"), report("exact")}, {"exact repeats", "imperfect repeats"});
  runs.run("plain", {"--firstSeq", "3", "--outputFormat", "0"});
  expect_refusal({report("ab"), report("plain")}, {"quorix format", "extended quorix format"});
}

TEST_F(MergeRun, truncations_of_a_part_are_told) {
  const std::string text = runs.read(report("cd"));
  for (std::size_t length = 0; length < text.size(); length += 37) {
    runs.write("cut", text.substr(0, length));
    expect_refusal({report("ab"), "cut", report("e")}, {"cut:"});
  }
  runs.write("cut", text.substr(0, text.size() - 1));
  expect_refusal({report("ab"), "cut"}, {"cut:", "the report ends early\n"});
  const std::string packed = gzip_member(text);
  runs.write("cut.gz", packed.substr(0, packed.size() - 1));
  expect_refusal({report("ab"), "cut.gz"}, {"cut.gz:", "the compressed data end early"});
}

TEST_F(MergeRun, a_fault_in_a_part_is_told_with_its_line) {
  write_changed("bad", report("cd"), "18 bp", "19 bp");
  expect_refusal({report("ab"), "bad", report("e")}, {"bad:", "bp is not end - start + 1"});
}

TEST_F(MergeRun, ranges_that_their_records_contradict_are_told) {
  write_changed("three", report("cd"), "3 - 4", "3 - 3");
  expect_refusal({report("ab"), "three"}, {"three (3 - 3) has 2 records, more than its range"});
  write_changed("backwards", report("cd"), "3 - 4", "3 - 1");
  expect_refusal({report("ab"), "backwards"}, {"backwards: its range 3 - 1 ends before it begins"});
  // A range with room for more shows where the input ends.
  write_changed("short", report("cd"), "3 - 4", "3 - 7");
  write_changed("late", report("e"), "5 - last", "8 - last");
  expect_refusal({report("ab"), "short", "late"},
                 {"late (8 - last sequence) has records", "short (3 - 7)", "no more than 4"});
}

TEST_F(MergeRun, parts_must_be_regular_files) {
  expect_refusal({report("ab"), "none"}, {"none: No such file"});
  expect_refusal({report("ab"), "/dev/null"}, {"/dev/null: a part must be a regular file"});
  expect_refusal({report("ab"), "."}, {"a part must be a regular file"});
  expect_refusal({report("ab"), "-"}, {"-: a part must be a regular file"});
}

TEST_F(MergeRun, wrong_usage_ends_with_status_2) {
  for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
           {"merge"},
           {"merge", "--nothing", report("ab")},
           {"merge", "--report", report("ab"), report("ab")},
           {"merge", "-o", report("ab"), report("ab")},
           {"merge", "--masked", "-o", report("ab"), "--report", report("ab"), masked("ab")},
           {"merge", "-o", "two\nlines", report("ab")}}) {
    const ProcessResult run = runs.run_tool(arguments);
    EXPECT_EQ(run.status, 2) << run.err;
    EXPECT_EQ(run.out, "");
  }
  EXPECT_TRUE(runs.files().empty());
}

TEST_F(MergeRun, an_output_that_fails_ends_with_status_4) {
  EXPECT_EQ(runs.run_tool({"merge", "-o", "/dev/full", report("ab")}).status, 4);
  EXPECT_EQ(runs.run_tool({"merge", "-o", "no/where", report("ab")}).status, 4);
  EXPECT_EQ(runs.run_tool({"merge", "--masked", "-o", "/dev/full", masked("ab")}).status, 4);
}

TEST_F(MergeRun, an_old_file_stays_until_all_is_checked) {
  runs.write("out", "old");
  const std::string text = runs.read(report("cd"));
  runs.write("cut", text.substr(0, text.size() - 1));
  EXPECT_EQ(runs.run_tool({"merge", "-o", "out", report("ab"), "cut"}).status, 3);
  EXPECT_EQ(runs.read("out"), "old");
  EXPECT_EQ(runs.files(), (std::vector<std::string>{"cut", "out"}));
}

TEST_F(MergeRun, a_pipe_that_nobody_reads_ends_the_run_quietly) {
  for (const bool is_masked : {false, true}) {
    const CToolFolder folder;
    std::string text = runs.read(is_masked ? masked("whole") : report("whole"));
    const std::string part = folder.write("part", text);
    const ProcessResult run = run_in_child([&] {
      int ends[2];
      if (::pipe(ends) != 0) return 99;
      ::close(ends[0]);
      ::dup2(ends[1], STDOUT_FILENO);
      std::signal(SIGPIPE, SIG_DFL);
      const char* const words[] = {"quorix-tools", "merge", part.c_str(), "--masked"};
      return tools::run_command_line(is_masked ? 4 : 3, words);
    });
    EXPECT_EQ(run.status, 128 + SIGPIPE);
    EXPECT_EQ(run.err, "");
  }
}

TEST_F(MergeRun, masked_copies_are_joined_in_their_order) {
  runs.write("cd.gz", gzip_member(runs.read(masked("cd"))));
  runs.write("empty", "");
  const ProcessResult run = runs.run_tool(
      {"merge", "--masked", "-o", "out", masked("ab"), "cd.gz", masked("e"), "empty"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(runs.read("out"), runs.read(masked("whole")));
}

TEST_F(MergeRun, masked_copies_that_are_none_are_told) {
  const std::string text = runs.read(masked("cd"));
  const std::string line = std::string(70, 'N') + "GTXXXXXXXX";
  for (const auto& [from, to, reason] : std::vector<std::array<std::string, 3>>{
           {">c\n", "", "bad:1: a masked copy begins with '>' and a name"},
           {"GT", "gT", "bad:2: a masked copy has other bases than ACGTNX"},
           {"GT", "GRT", "bad:2: the bases of a record are not in lines of 80"},
           {"GT", "G", "bad:3: the bases of a record are not in lines of 80"},
           {line + "\n", line + "\n\n", "bad:3: the bases of a record are not in lines of 80"}}) {
    write_changed("bad", masked("cd"), from, to);
    expect_refusal({"--masked", masked("ab"), "bad"}, {reason});
  }
  runs.write("cut", text.substr(0, text.size() - 1));
  expect_refusal({"--masked", masked("ab"), "cut"}, {"cut:8: the masked copy ends within a line"});
  const std::string packed = gzip_member(text);
  runs.write("cut.gz", packed.substr(0, packed.size() - 1));
  expect_refusal({"--masked", "cut.gz"}, {"cut.gz:", "the compressed data end early"});
  expect_refusal({"--masked", masked("ab"), masked("ab")}, {"same file"});
}

TEST_F(MergeRun, a_record_in_two_masked_copies_needs_a_report) {
  runs.write("copy", runs.read(masked("cd")));
  expect_refusal({"--masked", masked("ab"), masked("cd"), "copy"},
                 {"copy:1: the record \"c\" is also in " + masked("cd")});
  // Records of one name are none the less good ones.
  const CRangeRuns twins(fasta_text({{"x", "ACGT"}, {"x", "ACGT"}, {"x", ""}}), {"--maskX"});
  twins.run("whole");
  twins.run("one", {"--lastSeq", "1"});
  twins.run("two", {"--firstSeq", "2"});
  EXPECT_EQ(twins.run_tool({"merge", "--masked", masked("two")}).status, 0);
  const std::vector<std::string> parts{"merge", "--masked", masked("one"), masked("two")};
  EXPECT_EQ(twins.run_tool(parts).status, 3);
  const ProcessResult run = twins.run_tool(
      {"merge", "--masked", masked("one"), masked("two"), "--report", report("whole")});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, ">x\nACGT\n>x\nACGT\n>x\n");
}

TEST_F(MergeRun, masked_copies_are_compared_with_their_report) {
  const auto refused = [&](std::vector<std::string> parts, const std::string& reason) {
    parts.insert(parts.begin(), {"--masked", "--report", report("whole")});
    expect_refusal(parts, {reason, report("whole")});
  };
  refused({masked("cd"), masked("ab"), masked("e")},
          masked("cd") + ":1: the record \"c\" is not the one that comes next, \"a\"");
  refused({masked("ab"), masked("e")}, masked("e") + ":1: the record \"e\" is not the one");
  refused({masked("ab"), masked("cd")}, "no part has the record \"e\"");
  runs.write("e", runs.read(masked("e")));
  refused({masked("ab"), masked("cd"), masked("e"), "e"}, "which has no more of them");

  // Cuts and changes that nothing but the report shows.
  const std::string text = runs.read(masked("cd"));
  for (const std::size_t place : {text.find("\n>d"), text.size() - 1}) {
    const std::size_t line_end = text.rfind('\n', place - 1);
    runs.write("cut", text.substr(0, line_end + 1) + text.substr(place + 1));
    refused({masked("ab"), "cut", masked("e")}, "bases, that at");
  }
  write_changed("long", masked("cd"), "\n>d", "N\n>d");
  refused({masked("ab"), "long", masked("e")}, "has more bases than the 162");
  for (const std::size_t base : {72U, 79U, 80U, 89U}) {
    std::string bare = text;
    bare[3 + base + (base < 80 ? 0 : 1)] = 'C';
    runs.write("bare", bare);
    refused({masked("ab"), "bare", masked("e")},
            "base " + std::to_string(base + 1) + " of the record \"c\" is not masked");
  }
  std::string late = runs.read(masked("e"));
  late[3 + 79] = 'C';
  runs.write("late", late);
  refused({masked("ab"), masked("cd"), "late"}, "base 80 of the record \"e\" is not masked");
  std::string other = text;
  other[3 + 71] = 'A';  // before the repeat: what it was, no report tells
  runs.write("other", other);
  EXPECT_EQ(runs.run_tool({"merge", "--masked", "--report", report("cd"), "other"}).status, 0);
}

TEST_F(MergeRun, the_report_of_masked_copies_must_be_a_good_one) {
  const CRangeRuns bare(five_records(), {});
  bare.run("whole");
  runs.write("bare", bare.read(report("whole")));
  expect_refusal({"--masked", "--report", "bare", masked("whole")},
                 {"bare: this report is of a run that has written no masked copy"});
  const std::string text = runs.read(report("whole"));
  runs.write("cut", text.substr(0, text.size() - 1));
  expect_refusal({"--masked", "--report", "cut", masked("whole")},
                 {"cut:", "the report ends early\n"});
}

TEST(Merge, help_has_examples) {
  const ProcessResult help = run_tool({"merge", "--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("Usage: quorix-tools merge "), std::string::npos) << help.out;
  EXPECT_NE(help.out.find("Examples:"), std::string::npos);
}

TEST(BodyCopy, bodies_are_copied_whatever_the_pieces) {
  const std::string report = example_report();
  const std::size_t head_length = report.find("\n>") + 1;
  const std::string body =
      report.substr(head_length, report.size() - head_length - tools::kClosingLine.size() - 1);
  for (std::size_t piece = 1; piece <= 70; ++piece) {
    const CToolFolder folder;
    tools::COutput output(folder.path("out"));
    tools::CBodyCopy copy(&output);
    for (std::size_t i = 0; i < report.size(); i += piece) {
      copy.take(std::string_view(report).substr(i, piece));
      const std::size_t taken = std::min(i + piece, report.size());
      if (taken >= head_length && taken < head_length + piece) copy.begin_body(head_length);
    }
    output.finish();
    EXPECT_EQ(folder.read("out"), body) << piece;
  }
}

}  // namespace
}  // namespace quorix::testing
