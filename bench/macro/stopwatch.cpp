// quorix_stopwatch: measures one run of a command.
//
//   quorix_stopwatch LIMIT COMMAND [WORD]...
//
// Prints "seconds KiB status processor" to descriptor 3, apart from the output of the command: the
// wall time from start to end of the process, its peak resident memory, its exit status (128 and
// more for a signal) and its processor seconds. A command that has not ended after LIMIT seconds is
// killed and has the status "over".

#include <sys/resource.h>
#include <sys/time.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

namespace {

constexpr int kResultDescriptor = 3;
constexpr int kUsage = 2;
constexpr int kNotStarted = 127;

using Clock = std::chrono::steady_clock;

/// Waits until a child ends or `limit` is reached. Returns false if it is reached.
bool wait_for_child(Clock::time_point limit, const sigset_t& child_signal) {
  while (true) {
    const auto left =
        std::chrono::duration_cast<std::chrono::nanoseconds>(limit - Clock::now()).count();
    if (left <= 0) return false;
    constexpr long long kNanoseconds = 1'000'000'000;
    const timespec pause{static_cast<std::time_t>(left / kNanoseconds),
                         static_cast<long>(left % kNanoseconds)};
    if (sigtimedwait(&child_signal, nullptr, &pause) == SIGCHLD) return true;
  }
}

[[noreturn]] void become(char** command, const sigset_t& old_mask) {
  ::close(kResultDescriptor);
  sigprocmask(SIG_SETMASK, &old_mask, nullptr);
  ::execvp(command[0], command);
  std::perror(command[0]);
  ::_exit(kNotStarted);
}

double seconds_of(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

std::string in_words(bool is_in_time, int status) {
  if (!is_in_time) return "over";
  return std::to_string(WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fputs("usage: quorix_stopwatch LIMIT COMMAND [WORD]... 3>RESULT\n", stderr);
    return kUsage;
  }
  char* number_end = nullptr;
  const double limit_seconds = std::strtod(argv[1], &number_end);
  if (*number_end != '\0' || !(limit_seconds > 0 && limit_seconds < 1e6)) {
    std::fputs("quorix_stopwatch: the limit is a number of seconds\n", stderr);
    return kUsage;
  }

  // The signal is blocked before the child exists, so that waiting for it never misses it.
  sigset_t child_signal;
  sigset_t old_mask;
  sigemptyset(&child_signal);
  sigaddset(&child_signal, SIGCHLD);
  sigprocmask(SIG_BLOCK, &child_signal, &old_mask);

  const Clock::time_point start = Clock::now();
  const pid_t child = ::fork();
  if (child < 0) {
    std::perror("fork");
    return 1;
  }
  if (child == 0) become(argv + 2, old_mask);

  const auto limit =
      std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(limit_seconds));
  const bool is_in_time = wait_for_child(start + limit, child_signal);
  if (!is_in_time) ::kill(child, SIGKILL);
  int status = 0;
  rusage usage{};
  while (::wait4(child, &status, 0, &usage) < 0 && errno == EINTR) {
  }
  const std::chrono::duration<double> elapsed = Clock::now() - start;
  std::array<char, 80> text{};
  const int length = std::snprintf(text.data(), text.size(), "%.6f %ld %s %.6f\n", elapsed.count(),
                                   usage.ru_maxrss, in_words(is_in_time, status).c_str(),
                                   seconds_of(usage.ru_utime) + seconds_of(usage.ru_stime));
  if (::write(kResultDescriptor, text.data(), static_cast<std::size_t>(length)) != length) {
    std::perror("quorix_stopwatch: descriptor 3");
    return 1;
  }
  return 0;
}
