// The command `search`: what it writes and how it ends, beside the program on one thread.

#include <sys/resource.h>

#include <regex>

#include "driver/run.h"
#include "support/random_options.h"
#include "support/record_runs.h"
#include "tools/tool_run.h"

namespace quorix::testing {
namespace {

/// Standard error without the clock of its progress lines.
std::string without_clock(const std::string& text) {
  static const std::regex clock("^\\d\\d\\.\\d\\d\\.\\d\\d - #", std::regex::multiline);
  return std::regex_replace(text, clock, "HH.MM.SS - #");
}

/// How a run ended, with all that it wrote.
struct SearchRun {
  int status;
  std::string out;
  std::string err;
  std::string report;
  std::string masked;

  friend bool operator==(const SearchRun&, const SearchRun&) = default;
};

std::ostream& operator<<(std::ostream& stream, const SearchRun& run) {
  return stream << "status " << run.status << "\n"
                << run.out << run.err << run.report << run.masked;
}

/// Runs `main` in a folder of its own, on the file in.fa.
template <class Main>
SearchRun search_in_folder(const std::string& fasta, std::vector<std::string> words,
                           const Main& main) {
  const CToolFolder folder;
  static_cast<void>(folder.write("in.fa", fasta));
  std::vector<const char*> arguments;
  for (const std::string& word : words) arguments.push_back(word.c_str());
  const ProcessResult result = run_in_child([&] {
    if (::chdir(folder.path("").c_str()) != 0) return 99;
    return main(static_cast<int>(arguments.size()), arguments.data());
  });
  return {result.status, result.out, without_clock(result.err), folder.read("report"),
          folder.read("in.fa.masked")};
}

SearchRun run_quorix(const std::string& fasta, std::vector<std::string> words) {
  words.insert(words.begin(), "quorix");
  return search_in_folder(fasta, std::move(words), [](int argc, const char* const* argv) {
    return quorix::run_process(argc, argv);
  });
}

SearchRun run_search(const std::string& fasta, std::size_t thread_count,
                     std::vector<std::string> words) {
  words.insert(words.begin(), {"quorix-tools", "search", "-t", std::to_string(thread_count)});
  return search_in_folder(fasta, std::move(words), tools::run_command_line);
}

/// Records of all lengths, none and one base among them; a record of several segments now and then.
std::string draw_fasta(RandomEngine& engine) {
  std::vector<NamedBases> records;
  const std::size_t count = draw_between(engine, 1, 12);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t longest = draw_chance(engine, 15)   ? 3
                                : draw_chance(engine, 95) ? 400
                                                          : 80'000;
    records.push_back({"record " + std::to_string(i),
                       draw_chance(engine, 8) ? "" : draw_record(engine, longest, 9)});
  }
  return fasta_text(records);
}

TEST(Search, writes_and_says_what_quorix_does) {
  for (std::uint64_t seed = 1; seed <= 40; ++seed) {
    RandomEngine engine(seed);
    std::vector<std::string> words = draw_options(engine, false);
    if (draw_chance(engine, 60)) words.emplace_back("--maskX");
    if (draw_chance(engine, 20)) words.insert(words.end(), {"--firstSeq", "2", "--lastSeq", "4"});
    words.emplace_back("in.fa");
    if (draw_chance(engine, 50)) words.emplace_back("report");
    const std::string fasta = draw_fasta(engine);
    const SearchRun plain = run_quorix(fasta, words);
    ASSERT_EQ(plain.status, 0);
    const std::size_t thread_count = draw_between(engine, 1, 9);
    ASSERT_EQ(run_search(fasta, thread_count, words), plain)
        << "seed " << seed << ", " << thread_count << " threads, " << joined(words);
  }
}

TEST(Search, an_error_in_the_input_comes_after_the_records_before_it) {
  std::string fasta;
  for (int i = 0; i < 20; ++i) fasta += ">good\nTTACACACACACACACACGG\n";
  fasta += ">bad\nACAC!\n>never read\nACACACACACAC\n";
  const SearchRun plain = run_quorix(fasta, {"in.fa"});
  EXPECT_EQ(plain.status, 231);
  EXPECT_EQ(run_search(fasta, 4, {"in.fa"}), plain);
}

TEST(Search, a_write_that_fails_ends_the_run_with_the_message_of_quorix) {
  std::string fasta;
  for (int i = 0; i < 20; ++i) fasta += ">one\nTTACACACACACACACACGG\n";
  const SearchRun plain = run_quorix(fasta, {"in.fa", "/dev/full"});
  EXPECT_EQ(plain.status, 153);
  const SearchRun search = run_search(fasta, 4, {"in.fa", "/dev/full"});
  EXPECT_EQ(search.status, 153);
  // Which record is under way when the failure is seen does not depend on the threads.
  EXPECT_EQ(search.err, plain.err);
}

TEST(Search, refuses_a_number_of_threads_that_cannot_be) {
  for (const char* const count : {"0", "-1", "1025"}) {
    const ProcessResult run = run_tool({"search", "-t", count, "in.fa"});
    EXPECT_EQ(run.status, 255);
    EXPECT_NE(run.err.find("Sorry, the number of threads must be from 1 to 1024.\n"),
              std::string::npos)
        << run.err;
  }
  EXPECT_EQ(run_tool({"search", "-t", "two", "in.fa"}).status, 1);
}

TEST(Search, shows_the_options_of_quorix_and_its_own) {
  const ProcessResult help = run_tool({"search", "--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("quorix-tools search  [-t <int>] [-M <exact|extendExact|imperfect>]"),
            std::string::npos)
      << help.out;
  EXPECT_NE(help.out.find("-t <int>,  --threads <int>"), std::string::npos);
  const ProcessResult all = run_tool({"--help"});
  EXPECT_NE(all.out.find("search"), std::string::npos);
}

}  // namespace
}  // namespace quorix::testing
