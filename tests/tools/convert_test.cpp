// Whole runs of `convert`: what they write, and how they end.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <csignal>
#include <nlohmann/json.hpp>

#include "support/random_options.h"
#include "tools/report_text.h"
#include "tools/tool_run.h"

namespace quorix::testing {
namespace {

constexpr const char* kHead =
    "sequence\tstart\tend\tunit_length\tunit\tmotif\tcopies\tlength\tnormalized_length\tscore\t"
    "perfection\tmismatches\tinsertions\tdeletions\tns\tedits\taligned_sequence\taligned_unit\n";

/// A report of one exact repeat in each of these records.
std::string report_of(const std::vector<std::string>& names) {
  EXPECT_TRUE(apply_options({}));
  std::vector<NamedBases> records;
  for (const std::string& name : names) records.push_back({name, "GTCAGCAGCAGCAGCAGT"});
  return whole_report(records);
}

/// The text as a member in gzip's format.
std::string gzipped(const std::string& text) {
  z_stream stream{};
  EXPECT_EQ(deflateInit2(&stream, 6, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY), Z_OK);
  std::vector<unsigned char> input(text.begin(), text.end());
  std::vector<unsigned char> output(deflateBound(&stream, text.size()));
  stream.next_in = input.data();
  stream.avail_in = static_cast<uInt>(input.size());
  stream.next_out = output.data();
  stream.avail_out = static_cast<uInt>(output.size());
  EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
  output.resize(output.size() - stream.avail_out);
  deflateEnd(&stream);
  return {output.begin(), output.end()};
}

TEST(Convert, writes_tsv) {
  const CToolFolder folder;
  const ProcessResult run =
      run_tool({"convert", "--to", "tsv", folder.write("r", example_report())});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  const std::string example =
      "insertion\t3\t33\t3\tAGC\tAGC\t10.00\t31\t30\t21\t96.667\t0\t1\t0\t0\t(15,I),\t"
      "AGCAGCAGCAGCAGTCAGCAGCAGCAGCAGC\tAGCAGCAGCAGCAG-CAGCAGCAGCAGCAGC\n";
  EXPECT_EQ(run.out.find(kHead), 0U);
  EXPECT_NE(run.out.find(example), std::string::npos) << run.out;
}

TEST(Convert, writes_jsonl) {
  const CToolFolder folder;
  const ProcessResult run = run_tool(
      {"convert", "--to", "jsonl", folder.write("r", report_of({"one \"two\""})), "--full-names"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out,
            R"({"sequence":"one \"two\"","start":3,"end":17,"unit_length":3,"unit":"AGC",)"
            R"("motif":"CAG","copies":5.00,"length":15,"normalized_length":15,"score":12,)"
            R"("perfection":100.000,"mismatches":0,"insertions":0,"deletions":0,"ns":0,)"
            R"("edits":[],"aligned_sequence":"CAGCAGCAGCAGCAG","aligned_unit":"CAGCAGCAGCAGCAG"})"
            "\n");
}

TEST(Convert, reads_several_reports_compressed_or_not) {
  const CToolFolder folder;
  const std::string second = report_of({"b", "c"});
  const std::string cut = second.substr(0, second.size() / 2);
  const std::string plain = folder.write("a.report", report_of({"a"}));
  // Two members in a row are one text.
  const std::string packed =
      folder.write("b.gz", gzipped(cut) + gzipped(second.substr(cut.size())));
  const ProcessResult run = run_tool({"convert", "--to", "tsv", plain, packed});
  EXPECT_EQ(run.status, 0) << run.err;
  const std::string row = "\t3\t17\t3\tAGC\tCAG\t";
  for (const char* const name : {"\na", "\nb", "\nc"}) {
    EXPECT_NE(run.out.find(name + row), std::string::npos) << name;
  }
}

TEST(Convert, compressed_data_that_are_cut_or_damaged_are_told) {
  const CToolFolder folder;
  const std::string packed = gzipped(example_report());
  for (std::size_t length = 1; length < packed.size(); length += 7) {
    const ProcessResult run =
        run_tool({"convert", "--to", "tsv", folder.write("cut.gz", packed.substr(0, length))});
    EXPECT_EQ(run.status, 3) << length;
  }
  std::string damaged = packed;
  damaged[damaged.size() / 2] ^= 0x10;
  const ProcessResult run = run_tool({"convert", "--to", "tsv", folder.write("d.gz", damaged)});
  EXPECT_EQ(run.status, 3);

  const ProcessResult end = run_tool(
      {"convert", "--to", "tsv", folder.write("e.gz", packed.substr(0, packed.size() - 1))});
  EXPECT_EQ(end.status, 3);
  EXPECT_NE(end.err.find("the compressed data end early"), std::string::npos) << end.err;
}

TEST(Convert, compressed_data_that_are_cut_are_read_up_to_there_where_that_is_asked_for) {
  const CToolFolder folder;
  const std::string packed = gzipped(example_report());
  const std::string cut = folder.write("cut.gz", packed.substr(0, packed.size() - 9));
  const ProcessResult run = run_tool({"convert", "--to", "tsv", "--allow-incomplete", cut});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("\ninsertion\t"), std::string::npos);
  EXPECT_NE(run.err.find("the compressed data end early"), std::string::npos) << run.err;

  std::string damaged = packed;
  damaged[damaged.size() - 6] ^= 1;  // its checksum
  const ProcessResult refused = run_tool(
      {"convert", "--to", "tsv", "--allow-incomplete", folder.write("damaged.gz", damaged)});
  EXPECT_EQ(refused.status, 3);
  EXPECT_NE(refused.err.find("its text does not match its checksum"), std::string::npos)
      << refused.err;
}

TEST(Convert, incomplete_reports_are_read_where_that_is_asked_for) {
  const CToolFolder folder;
  const std::string report = example_report();
  const std::string cut = folder.write("cut", report.substr(0, report.find(">deletion") + 40));
  const ProcessResult refused = run_tool({"convert", "--to", "tsv", cut});
  EXPECT_EQ(refused.status, 3);
  EXPECT_NE(refused.err.find("the report ends early"), std::string::npos) << refused.err;
  const ProcessResult allowed = run_tool({"convert", "--to", "tsv", "--allow-incomplete", cut});
  EXPECT_EQ(allowed.status, 0);
  EXPECT_NE(allowed.err.find("incomplete: "), std::string::npos);
  EXPECT_NE(allowed.out.find("\ninsertion\t"), std::string::npos);
}

TEST(Convert, identifiers_are_first_words_or_whole_names) {
  const CToolFolder folder;
  const std::string report = folder.write("r", report_of({"chr 1", "chr 2"}));
  const ProcessResult refused = run_tool({"convert", "--to", "tsv", report});
  EXPECT_EQ(refused.status, 3);
  EXPECT_NE(refused.err.find("\"chr 2\" has the identifier of \"chr 1\""), std::string::npos)
      << refused.err;
  const ProcessResult whole = run_tool({"convert", "--to", "tsv", "--full-names", report});
  EXPECT_EQ(whole.status, 0);
  EXPECT_NE(whole.out.find("\nchr 2\t3\t"), std::string::npos);
}

TEST(Convert, a_record_needs_an_identifier_that_the_format_can_hold) {
  const CToolFolder folder;
  for (const char* const name : {"", " x", "\tx"}) {
    const ProcessResult run =
        run_tool({"convert", "--to", "tsv", folder.write("r", report_of({name}))});
    EXPECT_EQ(run.status, 3);
    EXPECT_NE(run.err.find("has no identifier"), std::string::npos) << run.err;
  }
  const ProcessResult tab =
      run_tool({"convert", "--to", "tsv", "--full-names", folder.write("r", report_of({"a\tb"}))});
  EXPECT_EQ(tab.status, 3);
  EXPECT_NE(tab.err.find("it holds a tab"), std::string::npos) << tab.err;
  for (const char* const name : {"\xff", "\xc3", "\xed\xa0\x80", "\xc0\x80", "\xf4\x90\x80\x80"}) {
    const ProcessResult run =
        run_tool({"convert", "--to", "jsonl", folder.write("r", report_of({name}))});
    EXPECT_EQ(run.status, 3);
    EXPECT_NE(run.err.find("not UTF-8"), std::string::npos) << run.err;
  }
  const std::string name = "\x01\x7f\\\"\xc3\xa4\xf0\x9f\xa7\xac\xed\x9f\xbf";
  const ProcessResult run =
      run_tool({"convert", "--to", "jsonl", folder.write("r", report_of({name}))});
  EXPECT_EQ(nlohmann::json::parse(run.out).at("sequence"), name);
}

TEST(Convert, wrong_usage_ends_with_status_2) {
  const CToolFolder folder;
  const std::string report = folder.write("r", example_report());
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{},
                                             {"convert"},
                                             {"convert", "--to", "tsv"},
                                             {"convert", "--to", "xml", report},
                                             {"convert", report},
                                             {"convert", "--to", "tsv", "--nothing", report},
                                             {"invert"},
                                             {"convert", "--to", "tsv", "-o", report, report}}) {
    const ProcessResult run = run_tool(arguments);
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err.find("quorix-tools: "), 0U);
  }
  EXPECT_EQ(folder.read("r"), example_report());
}

TEST(Convert, an_input_that_fails_ends_with_status_3) {
  const CToolFolder folder;
  EXPECT_EQ(run_tool({"convert", "--to", "tsv", folder.path("none")}).status, 3);
  EXPECT_EQ(run_tool({"convert", "--to", "tsv", folder.path("")}).status, 3);
  EXPECT_EQ(run_tool({"convert", "--to", "tsv", folder.write("empty", "")}).status, 3);
  const ProcessResult run = run_tool({"convert", "--to", "tsv", folder.write("f", ">a\nACGT\n")});
  EXPECT_EQ(run.status, 3);
  EXPECT_NE(run.err.find("f:1: not the head of a report"), std::string::npos) << run.err;
}

TEST(Convert, an_output_that_fails_ends_with_status_4) {
  const CToolFolder folder;
  const std::string report = folder.write("r", example_report());
  EXPECT_EQ(run_tool({"convert", "--to", "tsv", "-o", folder.path("no/where"), report}).status, 4);
  EXPECT_EQ(run_tool({"convert", "--to", "tsv", "-o", "/dev/full", report}).status, 4);
  const ProcessResult closed = run_in_child([&] {
    ::close(STDOUT_FILENO);
    const char* const words[] = {"quorix-tools", "convert", "--to", "tsv", report.c_str()};
    return tools::run_command_line(5, words);
  });
  EXPECT_EQ(closed.status, 4);
  EXPECT_EQ(closed.err, "quorix-tools: standard output: Bad file descriptor\n");
}

TEST(Convert, no_message_gets_into_an_output) {
  const CToolFolder folder;
  const std::string report = example_report();
  const std::string cut = folder.write("cut", report.substr(0, report.size() - 1));
  const std::string out = folder.path("out");
  const ProcessResult run = run_in_child([&] {
    ::close(STDERR_FILENO);
    const char* const words[] = {"quorix-tools", "convert",   "--to",      "tsv",
                                 "-o",           out.c_str(), cut.c_str(), "--allow-incomplete"};
    return tools::run_command_line(8, words);
  });
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(folder.read("out").find(kHead), 0U);
  EXPECT_EQ(folder.read("out").find("incomplete"), std::string::npos);
}

TEST(Convert, a_pipe_that_nobody_reads_ends_the_run_quietly) {
  const CToolFolder folder;
  const std::string report = folder.write("r", example_report());
  std::vector<std::vector<const char*>> formats{{"bedgraph", "--window", "5"}};
  for (const char* const format : {"bed", "gff3", "jsonl", "tsv", "expansionhunter", "gangstr",
                                   "hipstr", "longtr", "straglr", "trgt", "vamos"}) {
    formats.push_back({format});
    formats.push_back({format, "--sort", "score"});
  }
  for (const std::vector<const char*>& format : formats) {
    std::vector<const char*> words{"quorix-tools", "convert", report.c_str(), "--to"};
    words.insert(words.end(), format.begin(), format.end());
    const ProcessResult run = run_in_child([&] {
      int ends[2];
      if (::pipe(ends) != 0) return 99;
      ::close(ends[0]);
      ::dup2(ends[1], STDOUT_FILENO);
      std::signal(SIGPIPE, SIG_DFL);
      return tools::run_command_line(static_cast<int>(words.size()), words.data());
    });
    EXPECT_EQ(run.status, 128 + SIGPIPE) << format.front();
    EXPECT_EQ(run.err, "") << format.front();
  }
}

TEST(Convert, a_file_is_replaced_only_when_all_is_written) {
  const CToolFolder folder;
  const std::string good = folder.write("r", example_report());
  const std::string bad = folder.write("bad", example_report().substr(0, 2500));
  const std::string old = folder.write("out", "old");
  ::chmod(old.c_str(), 0640);
  EXPECT_EQ(run_tool({"convert", "--to", "tsv", "-o", old, bad}).status, 3);
  EXPECT_EQ(folder.read("out"), "old");
  EXPECT_EQ(folder.files(), (std::vector<std::string>{"bad", "out", "r"}));

  const ProcessResult run = run_tool({"convert", "--to", "tsv", "-o", old, good});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(folder.read("out").find(kHead), 0U);
  EXPECT_EQ(folder.files(), (std::vector<std::string>{"bad", "out", "r"}));
  struct stat file {};
  ASSERT_EQ(::stat(old.c_str(), &file), 0);
  EXPECT_EQ(file.st_mode & 0777U, 0640U);
}

TEST(Convert, an_output_may_be_a_link) {
  const CToolFolder folder;
  const std::string report = folder.write("r", example_report());
  const std::string target = folder.write("target", "old");
  std::filesystem::create_symlink(target, folder.path("link"));
  EXPECT_EQ(run_tool({"convert", "--to", "tsv", "-o", folder.path("link"), report}).status, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link")));
  EXPECT_EQ(folder.read("target").find(kHead), 0U);
}

TEST(Convert, help_and_version_are_printed) {
  const ProcessResult help = run_tool({"convert", "--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("Usage: quorix-tools convert "), std::string::npos) << help.out;
  EXPECT_NE(help.out.find("Examples:"), std::string::npos);
  EXPECT_EQ(run_tool({"--help"}).status, 0);
  EXPECT_EQ(run_tool({"--version"}).out, "quorix-tools, version 3.3.2b\n");
}

TEST(Convert, dev_stdout_is_what_the_caller_has_opened) {
  const CToolFolder folder;
  const std::string report = folder.write("r", report_of({"a"}));
  const std::string log = folder.write("log", "kept\n");
  const std::vector<const char*> words{"quorix-tools", "convert",     "--to",        "bed",
                                       "-o",           "/dev/stdout", report.c_str()};
  const ProcessResult run = run_in_child([&] {
    const int descriptor = ::open(log.c_str(), O_WRONLY | O_APPEND);
    ::dup2(descriptor, STDOUT_FILENO);
    return tools::run_command_line(static_cast<int>(words.size()), words.data());
  });
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(folder.read("log").rfind("kept\n#chrom\t", 0), 0U) << folder.read("log");
  EXPECT_EQ(folder.files(), (std::vector<std::string>{"log", "r"}));
}

TEST(Convert, a_refused_identifier_is_told_with_its_line) {
  const CToolFolder folder;
  const std::string text = report_of({"a", "#b"});
  const std::string report = folder.write("r", text);
  const ProcessResult run = run_tool({"convert", "--to", "bed", report});
  EXPECT_EQ(run.status, 3);
  const auto lines =
      std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(text.find(">#b")), '\n');
  EXPECT_EQ(run.err.rfind("quorix-tools: " + report + ':' + std::to_string(lines + 1) +
                              ": the identifier \"#b\" cannot stand in bed",
                          0),
            0U)
      << run.err;
}

TEST(Convert, control_characters_of_names_do_not_reach_the_terminal) {
  const CToolFolder folder;
  const std::string name = "a\033[31m\007";
  const ProcessResult run =
      run_tool({"convert", "--to", "tsv", folder.write("r", report_of({name, name}))});
  EXPECT_EQ(run.status, 3);
  EXPECT_NE(run.err.find("a?[31m?"), std::string::npos) << run.err;
  EXPECT_EQ(run.err.find('\033'), std::string::npos);
}

}  // namespace
}  // namespace quorix::testing
