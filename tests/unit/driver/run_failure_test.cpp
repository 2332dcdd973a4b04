// Runs that end because of their input, or for lack of memory.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <new>
#include <string>

#include "console/exit_status.h"
#include "driver/run.h"
#include "unit/driver/run_folder.h"
#include "unit/driver/run_texts.h"

namespace quorix {
namespace {

using testing::ProcessResult;

using FailedRun = testing::CInRunFolder;

/// The text of a read error.
std::string unreadable_at(const std::string& line) {
  return "\n\n"
         "An error occurred while reading the input file. It might not be a valid fasta file.\n"
         "File position: line " +
         line + "\n";
}

TEST_F(FailedRun, names_an_input_that_does_not_exist) {
  const ProcessResult result = folder_.run({"missing.fa"});
  EXPECT_EQ(result.status, 155);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, testing::kBanner +
                            std::string("Sorry! The input file \n   \"missing.fa\"\n"
                                        "could not be opened. I guess it does not exist.\n") +
                            testing::aborted_with(-101));
}

TEST_F(FailedRun, with_three_file_names_has_an_input_without_a_name) {
  folder_.write("in.fa", ">a\nACGT\n");
  const ProcessResult result = folder_.run({"in.fa", "report.txt", "third"});
  EXPECT_EQ(result.status, 155);
  EXPECT_EQ(testing::messages_after_banner(result.err),
            "Sorry! The input file \n   \"\"\n"
            "could not be opened. I guess it does not exist.\n"
            "Name one input file and, after it, at most one report file. Of more names none is "
            "taken.\n" +
                testing::aborted_with(-101));
  EXPECT_FALSE(folder_.has("report.txt"));
}

TEST_F(FailedRun, names_a_report_that_cannot_be_opened) {
  folder_.write("in.fa", ">a\nACGT\n");
  const ProcessResult result = folder_.run({"in.fa", "no folder/report.txt"});
  EXPECT_EQ(result.status, 154);
  EXPECT_EQ(result.err, testing::kBanner +
                            std::string("Sorry! Failed to open file\n   \"no folder/report.txt\"\n"
                                        "as output file.\n") +
                            testing::aborted_with(-102));
}

TEST_F(FailedRun, names_only_the_input_when_the_report_cannot_be_opened_either) {
  const ProcessResult result = folder_.run({"missing.fa", "no folder/report.txt"});
  EXPECT_EQ(result.status, 155);
  EXPECT_TRUE(testing::contains(result.err, "missing.fa"));
  EXPECT_FALSE(testing::contains(result.err, "report.txt"));
}

TEST_F(FailedRun, keeps_the_reports_of_the_records_before_a_malformed_one) {
  folder_.write("in.fa",
                ">a\nACGTTGCACC\n>b\nACGTTGCACC\n>c\nACGT\nAC GT\nAC7GT\nACGT\n>d\nACGT\n");
  const ProcessResult result = folder_.run({"in.fa", "report.txt"});
  EXPECT_EQ(result.status, 231);
  EXPECT_EQ(testing::progress_of(result.err),
            "00.00.00 - #   1 -    1bp - a\n"
            "00.00.00 - #   2 -    1bp - b\n" +
                unreadable_at("8"));
  EXPECT_EQ(testing::blocks_of(folder_.text("report.txt")),
            testing::empty_block("a") + testing::empty_block("b"));
}

TEST_F(FailedRun, does_not_take_a_bad_last_byte_for_the_end) {
  folder_.write("in.fa", ">a\nACGT7");
  const ProcessResult result = folder_.run({"in.fa"});
  EXPECT_EQ(result.status, 231);
  EXPECT_EQ(testing::progress_of(result.err), unreadable_at("2"));
}

TEST_F(FailedRun, tells_the_line_of_an_input_that_does_not_begin_with_a_header) {
  folder_.write("in.fa", "# comment\n\nACGT\n");
  const ProcessResult result = folder_.run({"in.fa"});
  EXPECT_EQ(result.status, 231);
  EXPECT_EQ(testing::progress_of(result.err), unreadable_at("3"));
  EXPECT_EQ(testing::blocks_of(result.out), "");
}

TEST_F(FailedRun, does_not_accept_an_empty_input) {
  folder_.write("in.fa", "");
  EXPECT_EQ(folder_.run({"in.fa"}).status, 231);
  EXPECT_EQ(testing::progress_of(folder_.run({"in.fa"}).err), unreadable_at("1"));
  EXPECT_EQ(folder_.run({"/dev/null"}).status, 231);
}

TEST_F(FailedRun, does_not_accept_a_folder_as_input) {
  folder_.make_folder("genomes");
  const ProcessResult result = folder_.run({"genomes"});
  EXPECT_EQ(result.status, 231);
  EXPECT_EQ(testing::progress_of(result.err), unreadable_at("1") + "Is a directory\n");
}

TEST_F(FailedRun, gives_the_code_after_its_status) {
  EXPECT_EQ(kInputReadError, -25);
  folder_.write("in.fa", ">a\nACGT7\n");
  int code = 0;
  const std::string input = folder_.path("in.fa");
  testing::messages_of([&] {
    const char* const words[] = {"quorix", input.c_str(), "/dev/null"};
    code = run(3, words);
  });
  EXPECT_EQ(code, -25);
}

// A sanitizer needs more address space than any limit of this test would leave.
#if defined(__SANITIZE_ADDRESS__)
#define QUORIX_HAS_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QUORIX_HAS_ADDRESS_SANITIZER
#endif
#endif

#if !defined(QUORIX_HAS_ADDRESS_SANITIZER)

/// Leaves this process too little memory for a record, but enough for all that is small.
void use_up_memory() {
  rlim_t page_count = 0;
  if (!(std::ifstream("/proc/self/statm") >> page_count)) std::abort();
  rlimit limit{};
  ::getrlimit(RLIMIT_AS, &limit);
  limit.rlim_cur = page_count * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE)) + 4'000'000;
  if (::setrlimit(RLIMIT_AS, &limit) != 0) std::abort();

  // What earlier tests have freed would be taken again.
  void* volatile block = nullptr;
  do {
    block = std::malloc(1'000'000);
  } while (block != nullptr);
}

TEST_F(FailedRun, throws_when_there_is_no_memory_for_a_record) {
  constexpr int kHasThrown = 42;
  folder_.write("in.fa", ">a\nACGT\n");
  const std::string input = folder_.path("in.fa");
  const ProcessResult result = testing::run_in_child([&] {
    const char* const words[] = {"quorix", input.c_str()};
    use_up_memory();
    try {
      return run(2, words);
    } catch (const std::bad_alloc&) {
      return kHasThrown;
    }
  });
  EXPECT_EQ(result.status, kHasThrown);
}

#endif

}  // namespace
}  // namespace quorix
