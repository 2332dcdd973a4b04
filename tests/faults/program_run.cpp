#include "faults/program_run.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

namespace quorix::testing {

namespace {

constexpr int kNotStarted = 126;
constexpr std::size_t kMaxSeconds = 60;

[[noreturn]] void throw_system_error(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

void make_pipe(int (&ends)[2]) {
  if (::pipe2(ends, O_CLOEXEC) != 0) throw_system_error("pipe");
}

void close_end(int& descriptor) {
  if (descriptor >= 0) ::close(descriptor);
  descriptor = -1;
}

/// All bytes up to the end of what `descriptor` gives.
std::string bytes_of(int descriptor) {
  std::string all;
  std::array<char, 16'384> block{};
  while (true) {
    const ssize_t count = ::read(descriptor, block.data(), block.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return all;
    all.append(block.data(), static_cast<std::size_t>(count));
  }
}

/// Puts the opened file in the place of `descriptor`. Ends the new process on failure.
void redirect(int opened, int descriptor) {
  if (opened < 0 || ::dup2(opened, descriptor) < 0) ::_exit(kNotStarted);
  if (opened != descriptor) ::close(opened);
}

/// Lets the program inherit the standard streams alone. Whoever started the tests may have left
/// more open, and a limit of open files would count them.
void keep_standard_streams_only() {
  constexpr int kMaxDescriptors = 256;
  for (int descriptor = STDERR_FILENO + 1; descriptor < kMaxDescriptors; ++descriptor) {
    ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);  // fails where there is none
  }
}

std::vector<char*> pointers_of(std::vector<std::string>& words) {
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

CProgramRun::CProgramRun(const CTemporaryFolder& folder, const RunPlan& plan)
    : folder_(folder.path()) {
  for (const char* const name : {kReportName, kMaskedName, kOutputName}) {
    ::unlink(folder.path_of(name).c_str());
  }
  make_pipe(messages_);
  make_pipe(started_);
  process_ = ::fork();
  if (process_ < 0) throw_system_error("fork");
  if (process_ == 0) become_program(plan);
  close_end(messages_[1]);
  close_end(started_[1]);
}

CProgramRun::~CProgramRun() {
  if (process_ > 0) {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  close_end(messages_[0]);
  close_end(started_[0]);
}

void CProgramRun::become_program(const RunPlan& plan) const {
  if (::chdir(folder_.c_str()) != 0) ::_exit(kNotStarted);
  redirect(::open("/dev/null", O_RDONLY), STDIN_FILENO);
  redirect(::open(kOutputName, O_WRONLY | O_CREAT | O_TRUNC, 0666), STDOUT_FILENO);
  if (::dup2(messages_[1], STDERR_FILENO) < 0) ::_exit(kNotStarted);
  for (const int signal : {SIGPIPE, SIGXFSZ, SIGINT, SIGTERM}) std::signal(signal, SIG_DFL);
  keep_standard_streams_only();
  limit_resource(RLIMIT_CPU, kMaxSeconds);
  limit_resource(RLIMIT_CORE, 0);

  std::vector<std::string> words{"quorix"};
  words.insert(words.end(), plan.arguments.begin(), plan.arguments.end());
  std::vector<std::string> settings = plan.environment;  // of two of a name the first one counts
  for (char** own = environ; *own != nullptr; ++own) settings.emplace_back(*own);
  const std::vector<char*> arguments = pointers_of(words);
  const std::vector<char*> environment = pointers_of(settings);
  if (plan.prepare) plan.prepare();
  ::execve(plan.program.c_str(), arguments.data(), environment.data());
  ::_exit(kNotStarted);
}

void CProgramRun::wait_until_started() {
  bytes_of(started_[0]);
}

Outcome CProgramRun::wait() {
  int wait_status = 0;
  while (::waitpid(process_, &wait_status, 0) < 0) {
    if (errno != EINTR) throw_system_error("waitpid");
  }
  return finish(wait_status);
}

Outcome CProgramRun::finish(int wait_status) {
  process_ = -1;
  Outcome outcome;
  if (WIFSIGNALED(wait_status)) outcome.signal = WTERMSIG(wait_status);
  if (WIFEXITED(wait_status)) outcome.status = WEXITSTATUS(wait_status);
  outcome.messages = bytes_of(messages_[0]);
  outcome.output = file_bytes(folder_ + "/" + kOutputName);
  outcome.report = file_bytes(folder_ + "/" + kReportName);
  outcome.masked = file_bytes(folder_ + "/" + kMaskedName);
  return outcome;
}

Outcome run_program_once(const CTemporaryFolder& folder, const RunPlan& plan) {
  return CProgramRun(folder, plan).wait();
}

std::string file_bytes(const std::string& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) return {};
  struct stat status {};
  std::string bytes;
  // A device may never end.
  if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) bytes = bytes_of(descriptor);
  ::close(descriptor);
  return bytes;
}

void limit_resource(int resource, std::size_t count) {
  const auto kind = static_cast<__rlimit_resource>(resource);
  rlimit limit{};
  if (::getrlimit(kind, &limit) != 0) ::_exit(kNotStarted);
  limit.rlim_cur = count;
  if (::setrlimit(kind, &limit) != 0) ::_exit(kNotStarted);
}

}  // namespace quorix::testing
