#include "driver/standard_descriptors.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <initializer_list>
#include <string>

#include "support/captured_process.h"

namespace quorix {
namespace {

/// What a descriptor refers to: "closed", "null for reading", "null for writing", "other".
const char* kind_of(int descriptor) {
  const int flags = ::fcntl(descriptor, F_GETFL);
  if (flags == -1) return "closed";
  struct stat status {};
  struct stat null {};
  if (::fstat(descriptor, &status) != 0 || ::stat("/dev/null", &null) != 0) return "unknown";
  if (!S_ISCHR(status.st_mode) || status.st_rdev != null.st_rdev) return "other";
  return (flags & O_ACCMODE) == O_WRONLY ? "null for writing" : "null for reading";
}

/// The kinds of the descriptors 0 to 2 after those in `closed` were closed and then filled. Before
/// that, 0 reads /dev/null and 1 and 2 write to files. The next descriptor that is opened must not
/// be one of them.
std::string filled_after_closing(std::initializer_list<int> closed) {
  const testing::ProcessResult result = testing::run_in_child([&] {
    ::dup2(::open("/dev/null", O_RDONLY), STDIN_FILENO);
    const int answer = ::dup(STDERR_FILENO);
    for (const int descriptor : closed) ::close(descriptor);
    fill_closed_standard_descriptors();
    std::string text;
    for (int descriptor = 0; descriptor <= 2; ++descriptor) {
      text += std::string(descriptor == 0 ? "" : ", ") + kind_of(descriptor);
    }
    const bool is_written =
        ::write(answer, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    return is_written && ::dup(answer) > STDERR_FILENO ? 0 : 1;
  });
  EXPECT_EQ(result.status, 0);
  return result.err;
}

TEST(StandardDescriptors, stay_as_they_are_when_they_are_open) {
  EXPECT_EQ(filled_after_closing({}), "null for reading, other, other");
}

TEST(StandardDescriptors, are_filled_the_wrong_way_round) {
  EXPECT_EQ(filled_after_closing({0, 1, 2}),
            "null for writing, null for reading, null for reading");
}

TEST(StandardDescriptors, are_filled_one_by_one) {
  EXPECT_EQ(filled_after_closing({0}), "null for writing, other, other");
  EXPECT_EQ(filled_after_closing({1}), "null for reading, null for reading, other");
  EXPECT_EQ(filled_after_closing({2}), "null for reading, other, null for reading");
}

TEST(StandardDescriptors, are_filled_past_one_that_is_open) {
  EXPECT_EQ(filled_after_closing({0, 2}), "null for writing, other, null for reading");
}

TEST(StandardDescriptors, refuse_what_is_written_to_a_filled_output) {
  const testing::ProcessResult result = testing::run_in_child([] {
    ::close(STDOUT_FILENO);
    fill_closed_standard_descriptors();
    return ::write(STDOUT_FILENO, "x", 1) == -1 && errno == EBADF ? 0 : 1;
  });
  EXPECT_EQ(result.status, 0);
}

TEST(StandardDescriptors, stay_closed_where_no_file_can_be_opened) {
  const testing::ProcessResult result = testing::run_in_child([] {
    ::close(STDIN_FILENO);
    ::close(STDOUT_FILENO);
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return 1;
    const rlimit no_more_files{0, limit.rlim_max};
    if (::setrlimit(RLIMIT_NOFILE, &no_more_files) != 0) return 2;
    fill_closed_standard_descriptors();
    return std::string(kind_of(STDIN_FILENO)) == "closed" &&
                   std::string(kind_of(STDOUT_FILENO)) == "closed"
               ? 0
               : 3;
  });
  EXPECT_EQ(result.status, 0);
}

}  // namespace
}  // namespace quorix
