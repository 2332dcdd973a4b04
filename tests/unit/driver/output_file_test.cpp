#include "driver/output_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

#include "unit/driver/run_folder.h"

namespace quorix {
namespace {

constexpr const char* kFull = "/dev/full";
constexpr const char* kNoSpace = "No space left on device";

/// The descriptor that the next opening gets.
int next_descriptor() {
  const int descriptor = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
  ::close(descriptor);
  return descriptor;
}

TEST(OutputFile, is_none_before_it_is_opened) {
  const COutputFile file;
  EXPECT_EQ(file.stream(), nullptr);
}

TEST(OutputFile, replaces_what_the_file_held) {
  const testing::CRunFolder folder;
  folder.write("report.txt", "a long text of an earlier run");
  COutputFile file;
  ASSERT_TRUE(file.open(folder.path("report.txt")));
  EXPECT_EQ(file.name(), folder.path("report.txt"));
  std::fputs("short", file.stream());
  EXPECT_TRUE(file.close());
  EXPECT_EQ(folder.text("report.txt"), "short");
  EXPECT_EQ(file.stream(), nullptr);
}

TEST(OutputFile, that_cannot_be_opened_keeps_its_name_for_the_message) {
  const testing::CRunFolder folder;
  COutputFile file;
  EXPECT_FALSE(file.open(folder.path("no folder/report.txt")));
  EXPECT_EQ(file.stream(), nullptr);
  EXPECT_EQ(file.name(), folder.path("no folder/report.txt"));
}

TEST(OutputFile, hands_on_what_is_buffered) {
  const testing::CRunFolder folder;
  COutputFile file;
  ASSERT_TRUE(file.open(folder.path("report.txt")));
  std::fputs("line\n", file.stream());
  EXPECT_EQ(folder.text("report.txt"), "");
  EXPECT_TRUE(file.flush());
  EXPECT_EQ(folder.text("report.txt"), "line\n");
}

TEST(OutputFile, closes_an_open_file_when_it_goes_away) {
  const testing::CRunFolder folder;
  const int descriptor = next_descriptor();
  {
    COutputFile file;
    ASSERT_TRUE(file.open(folder.path("report.txt")));
    std::fputs("line\n", file.stream());
  }
  EXPECT_EQ(folder.text("report.txt"), "line\n");
  EXPECT_EQ(::lseek(descriptor, 0, SEEK_CUR), -1);
  EXPECT_EQ(errno, EBADF);
}

TEST(OutputFile, knows_that_a_flush_failed_and_why) {
  COutputFile file;
  ASSERT_TRUE(file.open(kFull));
  std::fputs("line\n", file.stream());
  EXPECT_FALSE(file.flush());
  EXPECT_EQ(file.failure_reason(), kNoSpace);
}

TEST(OutputFile, knows_that_a_write_before_the_flush_failed) {
  COutputFile file;
  ASSERT_TRUE(file.open(kFull));
  std::fputs("line\n", file.stream());
  COutputFile::expect_writes();
  ASSERT_NE(std::fflush(file.stream()), 0);
  EXPECT_FALSE(file.flush());
  EXPECT_EQ(file.failure_reason(), kNoSpace);
}

TEST(OutputFile, fails_at_every_flush_after_the_first_that_failed) {
  COutputFile file;
  ASSERT_TRUE(file.open(kFull));
  std::fputs("line\n", file.stream());
  EXPECT_FALSE(file.flush());
  EXPECT_FALSE(file.flush());
  std::clearerr(file.stream());
  EXPECT_FALSE(file.flush());
  EXPECT_FALSE(file.close());
}

TEST(OutputFile, fails_at_the_close_when_a_write_fails_there) {
  COutputFile file;
  ASSERT_TRUE(file.open(kFull));
  std::fputs("line\n", file.stream());
  EXPECT_FALSE(file.close());
  EXPECT_EQ(file.failure_reason(), kNoSpace);
  EXPECT_EQ(file.stream(), nullptr);
}

TEST(OutputFile, fails_at_the_close_when_the_close_itself_fails) {
  const testing::CRunFolder folder;
  const int descriptor = next_descriptor();
  COutputFile file;
  ASSERT_TRUE(file.open(folder.path("report.txt")));
  ASSERT_EQ(::close(descriptor), 0);
  EXPECT_FALSE(file.close());
  EXPECT_EQ(file.failure_reason(), "Bad file descriptor");
}

TEST(OutputFile, keeps_the_reason_of_the_first_failure) {
  COutputFile file;
  ASSERT_TRUE(file.open(kFull));
  std::fputs("line\n", file.stream());
  EXPECT_FALSE(file.flush());
  errno = EPIPE;
  EXPECT_FALSE(file.flush());
  EXPECT_EQ(file.failure_reason(), kNoSpace);
}

TEST(OutputFile, notes_the_reason_before_other_calls_replace_it) {
  COutputFile file;
  ASSERT_TRUE(file.open(kFull));
  std::fputs("line\n", file.stream());
  COutputFile::expect_writes();
  ASSERT_NE(std::fflush(file.stream()), 0);
  file.note_failure();
  errno = ENOENT;
  EXPECT_FALSE(file.flush());
  EXPECT_EQ(file.failure_reason(), kNoSpace);
}

TEST(OutputFile, notes_no_failure_where_there_is_none) {
  const testing::CRunFolder folder;
  COutputFile file;
  ASSERT_TRUE(file.open(folder.path("report.txt")));
  errno = ENOENT;
  file.note_failure();
  EXPECT_TRUE(file.flush());
  EXPECT_TRUE(file.close());
}

TEST(OutputFile, does_not_take_the_reason_of_a_failure_elsewhere) {
  COutputFile file;
  ASSERT_TRUE(file.open(kFull));
  std::fputs("line\n", file.stream());
  ASSERT_NE(std::fflush(file.stream()), 0);
  errno = ENOENT;
  COutputFile::expect_writes();
  EXPECT_FALSE(file.flush());
  EXPECT_EQ(file.failure_reason(), "unknown reason");
}

TEST(OutputFile, may_be_standard_output_which_stays_open) {
  const testing::ProcessResult result = testing::run_in_child([] {
    {
      COutputFile file;
      file.use_standard_output();
      if (file.stream() == nullptr || file.name() != "standard output") return 1;
      std::fputs("first ", file.stream());
      if (!file.close() || file.stream() == nullptr) return 2;
    }
    std::fputs("second", stdout);
    return 0;
  });
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "first second");
}

TEST(OutputFile, sees_to_what_others_wrote_to_standard_output) {
  const testing::ProcessResult result = testing::run_in_child([] {
    if (std::freopen(kFull, "w", stdout) == nullptr) return 1;
    std::fputs("line\n", stdout);
    COutputFile file;
    file.use_shared_standard_output();
    if (file.stream() != stdout || file.close()) return 2;
    std::fputs(file.failure_reason().c_str(), stderr);
    return 0;
  });
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, kNoSpace);
}

TEST(OutputFile, fails_at_the_close_of_a_standard_output_that_is_full) {
  const testing::ProcessResult result = testing::run_in_child([] {
    if (std::freopen(kFull, "w", stdout) == nullptr) return 1;
    COutputFile file;
    file.use_standard_output();
    std::fputs("line\n", file.stream());
    if (file.close()) return 2;
    std::fputs(file.failure_reason().c_str(), stderr);
    return 0;
  });
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, kNoSpace);
}

// Nothing is left to be written, so the closing alone can tell.
TEST(OutputFile, fails_at_the_close_of_a_standard_output_that_cannot_be_closed) {
  const testing::ProcessResult result = testing::run_in_child([] {
    COutputFile file;
    file.use_standard_output();
    std::fputs("line\n", file.stream());
    if (!file.flush()) return 1;
    ::close(STDOUT_FILENO);
    if (file.close()) return 2;
    std::fputs(file.failure_reason().c_str(), stderr);
    return 0;
  });
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "line\n");
  EXPECT_EQ(result.err, "Bad file descriptor");
}

}  // namespace
}  // namespace quorix
