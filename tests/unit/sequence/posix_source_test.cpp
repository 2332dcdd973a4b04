#include "sequence/posix_source.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <fstream>
#include <string>
#include <thread>

#include "temporary_folder.h"

namespace quorix {
namespace {

using testing::CTemporaryFolder;

/// All that comes in reads of up to `room` bytes, and how it ended.
struct AllBytes {
  std::string bytes;
  CByteSource::Outcome last_outcome;
};

AllBytes read_all(CByteSource& source, std::size_t room) {
  AllBytes all{{}, CByteSource::Outcome::kBytes};
  std::string block(room, '\0');
  while (true) {
    const CByteSource::ReadResult result = source.read(block.data(), room);
    if (result.outcome != CByteSource::Outcome::kBytes) {
      EXPECT_EQ(result.byte_count, 0U);
      all.last_outcome = result.outcome;
      return all;
    }
    EXPECT_GE(result.byte_count, 1U);
    EXPECT_LE(result.byte_count, room);
    all.bytes.append(block, 0, result.byte_count);
  }
}

/// The descriptor that the next opening gets.
int next_descriptor() {
  const int descriptor = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
  ::close(descriptor);
  return descriptor;
}

TEST(PosixSource, gives_the_bytes_of_a_file_and_then_its_end) {
  const CTemporaryFolder folder;
  const std::string bytes("ACGT\r\n\0\xFF>x\n", 11);
  const std::string path = folder.file_of("bytes", bytes);
  for (const std::size_t room : {1U, 3U, 4096U}) {
    const auto source = open_posix_source(path);
    ASSERT_NE(source, nullptr);
    const AllBytes all = read_all(*source, room);
    EXPECT_EQ(all.bytes, bytes);
    EXPECT_EQ(all.last_outcome, CByteSource::Outcome::kEnd);
  }
}

TEST(PosixSource, of_an_empty_file_is_at_its_end_at_once) {
  const CTemporaryFolder folder;
  const auto source = open_posix_source(folder.file_of("empty", ""));
  ASSERT_NE(source, nullptr);
  const AllBytes all = read_all(*source, 16);
  EXPECT_EQ(all.bytes, "");
  EXPECT_EQ(all.last_outcome, CByteSource::Outcome::kEnd);
}

/// Reads up to the end, and calls `change` between the first three bytes and the rest.
template <class Change>
AllBytes read_around(CByteSource& source, Change change) {
  char block[3];
  const CByteSource::ReadResult first = source.read(block, sizeof block);
  EXPECT_EQ(first.byte_count, sizeof block);
  change();
  AllBytes all = read_all(source, 16);
  all.bytes.insert(0, block, first.byte_count);
  return all;
}

TEST(PosixSource, of_a_file_that_is_cut_meanwhile_fails_at_the_new_end) {
  const CTemporaryFolder folder;
  for (const off_t length : {0, 2, 3, 5, 11}) {
    const std::string path = folder.file_of("bytes", ">one\nACGTAC\n");
    const auto source = open_posix_source(path);
    ASSERT_NE(source, nullptr);
    EXPECT_EQ(source->failure_reason(), "");
    const AllBytes all =
        read_around(*source, [&] { ASSERT_EQ(::truncate(path.c_str(), length), 0); });
    const std::size_t given = std::max<std::size_t>(3, static_cast<std::size_t>(length));
    EXPECT_EQ(all.bytes, std::string(">one\nACGTAC\n").substr(0, given));
    EXPECT_EQ(all.last_outcome, CByteSource::Outcome::kError);
    EXPECT_EQ(source->failure_reason(), "The file ended after " + std::to_string(given) +
                                            " of the 12 bytes that it had when it was opened.");
  }
}

TEST(PosixSource, of_a_file_that_is_cut_after_the_last_byte_read_is_at_its_end) {
  const CTemporaryFolder folder;
  const std::string path = folder.file_of("bytes", ">on");
  const auto source = open_posix_source(path);
  ASSERT_NE(source, nullptr);
  const AllBytes all = read_around(*source, [&] { ASSERT_EQ(::truncate(path.c_str(), 0), 0); });
  EXPECT_EQ(all.bytes, ">on");
  EXPECT_EQ(all.last_outcome, CByteSource::Outcome::kEnd);
}

TEST(PosixSource, of_a_file_that_grows_gives_what_there_is_at_its_end) {
  const CTemporaryFolder folder;
  for (const char* const text : {">one\n", ">on"}) {
    const std::string path = folder.file_of("bytes", text);
    const auto source = open_posix_source(path);
    ASSERT_NE(source, nullptr);
    const AllBytes all =
        read_around(*source, [&] { std::ofstream(path, std::ios::app) << "ACGT\n"; });
    EXPECT_EQ(all.bytes, std::string(text) + "ACGT\n");
    EXPECT_EQ(all.last_outcome, CByteSource::Outcome::kEnd);
  }
}

// Their length is 0, or a page, whatever they give.
TEST(PosixSource, of_a_file_that_the_kernel_makes_is_at_its_end_where_it_ends) {
  for (const char* const path : {"/proc/self/status", "/sys/devices/system/cpu/online"}) {
    const auto source = open_posix_source(path);
    if (source == nullptr) continue;  // not every container has them
    const AllBytes all = read_all(*source, 16);
    EXPECT_NE(all.bytes, "") << path;
    EXPECT_EQ(all.last_outcome, CByteSource::Outcome::kEnd) << path;
  }
}

TEST(PosixSource, of_a_descriptor_that_someone_has_read_from_is_at_its_end_where_it_ends) {
  const CTemporaryFolder folder;
  const int descriptor = ::open(folder.file_of("bytes", ">one\nACGT\n").c_str(), O_RDONLY);
  char block[3];
  ASSERT_EQ(::read(descriptor, block, sizeof block), 3);
  const auto source = open_posix_source("/dev/fd/" + std::to_string(descriptor));
  ASSERT_NE(source, nullptr);
  const AllBytes all = read_all(*source, 16);
  EXPECT_TRUE(all.bytes.ends_with("e\nACGT\n"));
  EXPECT_EQ(all.last_outcome, CByteSource::Outcome::kEnd);
  ::close(descriptor);
}

TEST(PosixSource, is_null_when_the_file_cannot_be_opened) {
  const CTemporaryFolder folder;
  EXPECT_EQ(open_posix_source(folder.path_of("missing")), nullptr);
  EXPECT_EQ(open_posix_source(""), nullptr);
}

TEST(PosixSource, of_a_directory_opens_and_fails_at_its_first_read) {
  const CTemporaryFolder folder;
  const auto source = open_posix_source(folder.path());
  ASSERT_NE(source, nullptr);
  const AllBytes all = read_all(*source, 16);
  EXPECT_EQ(all.bytes, "");
  EXPECT_EQ(all.last_outcome, CByteSource::Outcome::kError);
  EXPECT_EQ(source->failure_reason(), "Is a directory");
}

TEST(PosixSource, keeps_its_descriptor_from_child_processes_and_closes_it_in_the_end) {
  const int descriptor = next_descriptor();
  {
    const auto source = open_posix_source("/dev/null");
    ASSERT_NE(source, nullptr);
    EXPECT_EQ(::fcntl(descriptor, F_GETFD), FD_CLOEXEC);
  }
  EXPECT_EQ(::fcntl(descriptor, F_GETFD), -1);
}

std::atomic<int> interruption_count = 0;

void count_interruption(int) {
  ++interruption_count;
}

/// Interrupts the blocking calls of this thread every few milliseconds.
class CInterruptions {
 public:
  CInterruptions() {
    struct sigaction action = {};
    action.sa_handler = count_interruption;  // without SA_RESTART, so that calls fail with EINTR
    ::sigaction(SIGALRM, &action, &previous_action_);
    set_interval(2000);
  }
  ~CInterruptions() {
    set_interval(0);
    ::sigaction(SIGALRM, &previous_action_, nullptr);
  }
  CInterruptions(const CInterruptions&) = delete;
  CInterruptions& operator=(const CInterruptions&) = delete;

 private:
  static void set_interval(suseconds_t microseconds) {
    const itimerval timer = {{0, microseconds}, {0, microseconds}};
    ::setitimer(ITIMER_REAL, &timer, nullptr);
  }

  struct sigaction previous_action_ = {};
};

void wait_for_interruptions(int count) {
  const int last = interruption_count + count;
  while (interruption_count < last) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

/// A thread that no SIGALRM goes to.
template <class Work>
std::thread start_undisturbed(Work work) {
  sigset_t alarm;
  sigset_t previous;
  sigemptyset(&alarm);
  sigaddset(&alarm, SIGALRM);
  ::pthread_sigmask(SIG_BLOCK, &alarm, &previous);
  std::thread thread(work);
  ::pthread_sigmask(SIG_SETMASK, &previous, nullptr);
  return thread;
}

TEST(PosixSource, tries_interrupted_calls_again) {
  const CTemporaryFolder folder;
  const std::string path = folder.path_of("pipe");
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  const CInterruptions interruptions;

  // The opening waits for a writer, and the reads wait for bytes.
  std::thread writer = start_undisturbed([&path] {
    wait_for_interruptions(5);
    const int descriptor = ::open(path.c_str(), O_WRONLY);
    wait_for_interruptions(5);
    EXPECT_EQ(::write(descriptor, "ACGT", 4), 4);
    wait_for_interruptions(5);
    ::close(descriptor);
  });
  const auto source = open_posix_source(path);
  AllBytes all{{}, CByteSource::Outcome::kError};
  if (source != nullptr) {
    all = read_all(*source, 16);
  } else {
    const int stand_in = ::open(path.c_str(), O_RDONLY | O_NONBLOCK);  // lets the writer go on
    wait_for_interruptions(5);
    writer.join();
    ::close(stand_in);
    FAIL() << "an interrupted opening was given up";
  }
  writer.join();
  EXPECT_EQ(all.bytes, "ACGT");
  EXPECT_EQ(all.last_outcome, CByteSource::Outcome::kEnd);
}

}  // namespace
}  // namespace quorix
