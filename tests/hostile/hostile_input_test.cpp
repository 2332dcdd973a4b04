// Hand-made inputs and what the real program has to make of them, to the byte of the report.

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>

#include "hostile/hostile_run.h"
#include "hostile/input_rows.h"

namespace quorix::testing {
namespace {

constexpr std::size_t kMinInputRows = 300;

std::string class_name(std::size_t unit_length) {
  constexpr const char* kNames[] = {"mono", "di", "tri", "tetra", "penta", "hexa"};
  return kNames[unit_length - 1] + std::string("nucleotide");
}

/// A repeat of `ExpectedRecord` as a line of format 2.
std::string repeat_line(const std::string& repeat) {
  char unit[16] = "";
  std::size_t first = 0;
  std::size_t last = 0;
  int score = 0;
  int perfection = 100;
  const int read =
      std::sscanf(repeat.c_str(), "%15s %zu-%zu %d %d", unit, &first, &last, &score, &perfection);
  EXPECT_TRUE(read == 3 || read == 5) << "not a repeat: " << repeat;
  const std::size_t length = last - first + 1;
  const std::size_t unit_length = std::string(unit).size();
  if (read == 3) score = static_cast<int>(length - unit_length);
  return class_name(unit_length) + " " + std::to_string(first) + " : " + std::to_string(last) +
         " -- length " + std::to_string(length) + " score " + std::to_string(score) +
         " perfection " + std::to_string(perfection) + " unit " + unit + "\n";
}

/// The block of a record in a report of format 2.
std::string block(const ExpectedRecord& record) {
  std::string text =
      ">" + record.name + "\nsequence length: " + std::to_string(record.length) + "\n";
  std::istringstream repeats(record.repeats);
  for (std::string repeat; std::getline(repeats, repeat, ';');) text += repeat_line(repeat);
  return text + "# Analysis of sequence \"" + record.name + "\" completed.\n";
}

std::string expected_body(const InputRow& row) {
  std::string body;
  for (const ExpectedRecord& record : row.records) body += block(record);
  return row.error_line == 0 ? body + "## Finished successfully. ##\n" : body;
}

std::vector<std::string> words_of(std::string_view text) {
  std::istringstream stream{std::string(text)};
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

class HostileInput : public ::testing::Test {
 protected:
  void check(const InputRow& row) {
    SCOPED_TRACE(row.fact + ": " + visible(row.bytes));
    folder_.write("in.fa", row.bytes);
    std::vector<std::string> arguments{"--outputFormat", "2", "--printRepeatSeqMode", "0"};
    for (const std::string& word : words_of(row.options)) arguments.push_back(word);
    arguments.push_back("in.fa");
    const ProcessResult result = run_hostile(folder_, arguments);
    EXPECT_EQ(result.status, row.error_line == 0 ? 0 : 231);
    EXPECT_EQ(after_head(result.out), expected_body(row));
    const std::string expected_text =
        row.error_line == 0
            ? "\nAnalysis finished successfully.\n\nQuorix says goodbye.\n\n"
            : "\n\nAn error occurred while reading the input file. It might not be a valid fasta "
              "file.\nFile position: line " +
                  std::to_string(row.error_line) + "\n" +
                  (row.reason.empty() ? "" : std::string(row.reason) + "\n");
    EXPECT_TRUE(result.err.ends_with(expected_text)) << visible(
        result.err.substr(result.err.size() - std::min<std::size_t>(result.err.size(), 200)));
  }

  void check_all(const InputRows& rows) {
    for (const InputRow& row : rows) check(row);
  }

 private:
  CRunFolder folder_;
};

TEST_F(HostileInput, lines_and_comments) {
  check_all(line_rows());
}

TEST_F(HostileInput, headers) {
  check_all(header_rows());
}

TEST_F(HostileInput, letters) {
  check_all(letter_rows());
}

TEST_F(HostileInput, bytes) {
  check_all(byte_rows());
}

TEST_F(HostileInput, foreign_files) {
  check_all(foreign_file_rows());
}

TEST_F(HostileInput, gzip) {
  check_all(gzip_rows());
}

TEST_F(HostileInput, records) {
  check_all(record_rows());
}

// Every byte on a line of bases, between two halves of a repeat.
TEST_F(HostileInput, every_byte_on_a_line_of_bases) {
  const std::string bases = "ACGTUNacgtun";
  const std::string unknown = "RYKMSWBDHVXrykmswbdhvx";
  const std::string dropped = " \t\v\f-*";
  for (int value = 0; value < 256; ++value) {
    const char byte = static_cast<char>(value);
    InputRow row{"byte " + std::to_string(value), ">a\nC", {}};
    row.bytes += byte;
    row.bytes += "G\n";
    if (byte == '\n' || byte == '\r' || dropped.find(byte) != std::string::npos) {
      row.records = {{"a", 2, ""}};
    } else if ((bases + unknown).find(byte) != std::string::npos) {
      row.records = {{"a", 3, ""}};
    } else {
      row.error_line = 2;
    }
    check(row);
  }
}

TEST(HostileInputTable, has_its_rows) {
  std::size_t count = 0;
  for (const InputRows& rows : {line_rows(), header_rows(), letter_rows(), byte_rows(),
                                foreign_file_rows(), gzip_rows(), record_rows()}) {
    count += rows.size();
  }
  std::printf("%zu inputs by hand, and 256 of one byte each\n", count);
  EXPECT_GE(count, kMinInputRows);
}

}  // namespace
}  // namespace quorix::testing
