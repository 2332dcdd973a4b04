#include "driver/descriptor_stream.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <string>
#include <thread>

#include "unit/driver/run_folder.h"

namespace quorix {
namespace {

TEST(DescriptorStream, leaves_its_descriptor_open) {
  const testing::CRunFolder folder;
  int descriptor = ::open(folder.write("report.txt", "").c_str(), O_WRONLY);
  std::FILE* const stream = open_descriptor_stream(&descriptor);
  ASSERT_NE(stream, nullptr);
  std::fputs("first ", stream);
  EXPECT_EQ(folder.text("report.txt"), "");
  EXPECT_EQ(std::fclose(stream), 0);
  EXPECT_EQ(::write(descriptor, "second", 6), 6);
  EXPECT_EQ(::close(descriptor), 0);
  EXPECT_EQ(folder.text("report.txt"), "first second");
}

TEST(DescriptorStream, tells_of_a_write_that_fails) {
  int descriptor = ::open("/dev/full", O_WRONLY);
  std::FILE* const stream = open_descriptor_stream(&descriptor);
  std::fputs("line\n", stream);
  EXPECT_NE(std::fflush(stream), 0);
  EXPECT_EQ(errno, ENOSPC);
  EXPECT_NE(std::ferror(stream), 0);
  std::fclose(stream);
  ::close(descriptor);
}

volatile std::sig_atomic_t interruption_count = 0;

void count_interruption(int) {
  interruption_count = interruption_count + 1;
}

/// All that comes out of a pipe whose reader is slow and whose writer gets a signal every other
/// millisecond.
std::string read_slowly(int descriptor) {
  std::string all;
  char block[65'536];
  while (true) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    const ssize_t count = ::read(descriptor, block, sizeof block);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return all;
    all.append(block, static_cast<std::size_t>(count));
  }
}

TEST(DescriptorStream, loses_nothing_where_signals_break_writes_off) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  std::string text;
  while (text.size() < 1'000'000) text += std::to_string(text.size()) + "\n";

  // A process of its own writes, so that no other thread takes its signals.
  const pid_t writer = ::fork();
  if (writer == 0) {
    ::close(ends[0]);
    struct sigaction action = {};
    action.sa_handler = count_interruption;  // without SA_RESTART, so that calls fail with EINTR
    ::sigaction(SIGALRM, &action, nullptr);
    const itimerval timer = {{0, 2000}, {0, 2000}};
    ::setitimer(ITIMER_REAL, &timer, nullptr);
    std::FILE* const stream = open_descriptor_stream(&ends[1]);
    const bool is_written = std::fwrite(text.data(), 1, text.size(), stream) == text.size() &&
                            std::fclose(stream) == 0 && interruption_count > 10;
    ::_exit(is_written ? 0 : 1);
  }
  ::close(ends[1]);
  EXPECT_EQ(read_slowly(ends[0]), text);
  ::close(ends[0]);
  int status = -1;
  while (::waitpid(writer, &status, 0) < 0 && errno == EINTR) {
  }
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace quorix
