// Lines of a hundred million bytes, given to the real program.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "hostile/hostile_run.h"

namespace quorix::testing {
namespace {

constexpr std::size_t kLength = 100'000'000;

/// Writes `before`, so many times `letter`, and `after`, a piece at a time.
void write_long(const std::string& path, const std::string& before, char letter,
                const std::string& after) {
  const std::string piece(1'000'000, letter);
  std::ofstream file(path, std::ios::binary);
  file << before;
  for (std::size_t written = 0; written < kLength; written += piece.size()) file << piece;
  file << after;
}

/// Reads the file a piece at a time: `text`, or where that is empty so many times `letter`.
class CReport {
 public:
  explicit CReport(const std::string& path) : file_(path, std::ios::binary) {}

  void skip_head() {
    for (std::string line; std::getline(file_, line) && !line.ends_with("Repeat unit");) {
    }
    EXPECT_TRUE(has("# \n"));
  }
  bool has(const std::string& text) {
    std::string read(text.size(), ' ');
    file_.read(read.data(), static_cast<std::streamsize>(read.size()));
    return read == text;
  }
  bool has_long(char letter) {
    const std::string piece(1'000'000, letter);
    for (std::size_t read = 0; read < kLength; read += piece.size()) {
      if (!has(piece)) return false;
    }
    return true;
  }
  bool has_ended() { return file_.peek() == std::ifstream::traits_type::eof(); }

 private:
  std::ifstream file_;
};

TEST(LongLine, header_is_reported_whole) {
  const CRunFolder folder;
  write_long(folder.path("in.fa"), ">", 'n', "\nACACACAC\n");
  const ProcessResult result =
      run_hostile(folder, {"--outputFormat", "2", "--printRepeatSeqMode", "0", "in.fa", "report"});
  EXPECT_EQ(result.status, 0);
  EXPECT_LT(result.err.size(), 3000U);  // a progress line has the beginning of the name alone
  CReport report(folder.path("report"));
  report.skip_head();
  EXPECT_TRUE(report.has(">"));
  EXPECT_TRUE(report.has_long('n'));
  EXPECT_TRUE(
      report.has("\nsequence length: 8\n"
                 "dinucleotide 1 : 8 -- length 8 score 6 perfection 100 unit AC\n"
                 "# Analysis of sequence \""));
  EXPECT_TRUE(report.has_long('n'));
  EXPECT_TRUE(report.has("\" completed.\n## Finished successfully. ##\n"));
  EXPECT_TRUE(report.has_ended());
}

TEST(LongLine, comment_is_skipped) {
  const CRunFolder folder;
  write_long(folder.path("in.fa"), "#", '>', "\n>a\nACACACAC\n");
  const ProcessResult result =
      run_hostile(folder, {"--outputFormat", "2", "--printRepeatSeqMode", "0", "in.fa"});
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(after_head(result.out).starts_with(">a\nsequence length: 8\ndinucleotide 1 : 8 "));
}

TEST(LongLine, gaps_take_no_position) {
  const CRunFolder folder;
  write_long(folder.path("in.fa"), ">a\nACAC", '-', "ACAC\n");
  const ProcessResult result =
      run_hostile(folder, {"--outputFormat", "2", "--printRepeatSeqMode", "0", "in.fa"});
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(after_head(result.out).starts_with(">a\nsequence length: 8\ndinucleotide 1 : 8 "));
}

TEST(LongLine, blanks_alone_are_refused_on_line_1) {
  const CRunFolder folder;
  write_long(folder.path("in.fa"), "", ' ', "");
  const ProcessResult result = run_hostile(folder, {"in.fa"});
  EXPECT_EQ(result.status, 231);
  EXPECT_TRUE(result.err.ends_with("File position: line 1\n"));
}

TEST(LongLine, line_feeds_are_counted) {
  const CRunFolder folder;
  write_long(folder.path("in.fa"), "", '\n', "1");
  const ProcessResult result = run_hostile(folder, {"in.fa"});
  EXPECT_EQ(result.status, 231);
  EXPECT_TRUE(result.err.ends_with("File position: line 100000001\n"));
}

}  // namespace
}  // namespace quorix::testing
