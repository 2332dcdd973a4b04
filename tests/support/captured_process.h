#pragma once

/// @file
/// What a function writes and how it ends, for functions that write to standard error, end the
/// process, or leave traces in it that no later test may see.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace quorix::testing {

/// How a child process ended, as the shell would show it.
struct ProcessResult {
  int status;       ///< exit status 0 to 255, or 128 + the signal that killed it
  std::string out;  ///< what it wrote to standard output
  std::string err;  ///< what it wrote to standard error
};

/// A file without a name that a child process writes to.
class CCaptureFile {
 public:
  CCaptureFile() : file_(std::tmpfile()) {}
  ~CCaptureFile() { std::fclose(file_); }
  CCaptureFile(const CCaptureFile&) = delete;
  CCaptureFile& operator=(const CCaptureFile&) = delete;

  /// Makes `descriptor` of this process write here.
  void take(int descriptor) const { ::dup2(::fileno(file_), descriptor); }

  [[nodiscard]] std::string text() const {
    std::string text;
    std::rewind(file_);
    for (int character = std::fgetc(file_); character != EOF; character = std::fgetc(file_)) {
      text += static_cast<char>(character);
    }
    return text;
  }

 private:
  std::FILE* file_;
};

/// Ends a child process with what `body` returns. By way of `exit`, so that what it measured of
/// coverage and leaks is kept, and without the limits that `body` may have set, which would cut
/// that short; never by way of an exception, which would let the child go on as a second test
/// program.
template <class Body>
[[noreturn]] void end_with(const Body& body) noexcept {
  rlimit file_size{};
  rlimit memory{};
  rlimit open_files{};
  ::getrlimit(RLIMIT_FSIZE, &file_size);
  ::getrlimit(RLIMIT_AS, &memory);
  ::getrlimit(RLIMIT_NOFILE, &open_files);
  const int status = body();
  ::setrlimit(RLIMIT_FSIZE, &file_size);
  ::setrlimit(RLIMIT_AS, &memory);
  ::setrlimit(RLIMIT_NOFILE, &open_files);
  std::exit(status);
}

/// Runs `body`, which gives an exit code, in a child process.
template <class Body>
ProcessResult run_in_child(const Body& body) {
  const CCaptureFile out;
  const CCaptureFile err;
  std::fflush(nullptr);
  const pid_t child = ::fork();
  if (child == 0) {
    out.take(STDOUT_FILENO);
    err.take(STDERR_FILENO);
    end_with(body);
  }
  int status = 0;
  if (child < 0 || ::waitpid(child, &status, 0) != child) {
    ADD_FAILURE() << "no child process";
    return {-1, "", ""};
  }
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), out.text(), err.text()};
}

/// What `body` writes to standard error.
template <class Body>
std::string messages_of(const Body& body) {
  ::testing::internal::CaptureStderr();
  body();
  return ::testing::internal::GetCapturedStderr();
}

}  // namespace quorix::testing
