// The process to be traced asks for it and installs a filter that has the kernel stop it at the
// calls of a list. At such a stop the call has not begun: its registers can be changed, and with -1
// in the place of its number it is left out and gives what its result register holds.

#include "faults/call_tracer.h"

#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <system_error>

namespace quorix::testing {

namespace {

constexpr int kCannotTrace = 125;

/// Where a call of a number names its file.
enum class Names { kDescriptor, kPath, kPathAfterFolder, kNothing };

struct KnownCall {
  long number;
  CallKind kind;
  Names names;
};

constexpr std::array<KnownCall, 20> kKnownCalls{{
    {SYS_read, CallKind::kRead, Names::kDescriptor},
    {SYS_pread64, CallKind::kRead, Names::kDescriptor},
    {SYS_readv, CallKind::kRead, Names::kDescriptor},
    {SYS_write, CallKind::kWrite, Names::kDescriptor},
    {SYS_pwrite64, CallKind::kWrite, Names::kDescriptor},
    {SYS_writev, CallKind::kWrite, Names::kDescriptor},
    {SYS_open, CallKind::kOpen, Names::kPath},
    {SYS_creat, CallKind::kOpen, Names::kPath},
    {SYS_openat, CallKind::kOpen, Names::kPathAfterFolder},
    {SYS_close, CallKind::kClose, Names::kDescriptor},
    {SYS_flock, CallKind::kLock, Names::kDescriptor},
    {SYS_ftruncate, CallKind::kEmpty, Names::kDescriptor},
    {SYS_stat, CallKind::kStatus, Names::kPath},
    {SYS_lstat, CallKind::kStatus, Names::kPath},
    {SYS_fstat, CallKind::kStatus, Names::kDescriptor},
    {SYS_newfstatat, CallKind::kStatus, Names::kPathAfterFolder},
    {SYS_readlink, CallKind::kStatus, Names::kPath},
    {SYS_mmap, CallKind::kMemory, Names::kNothing},
    {SYS_mremap, CallKind::kMemory, Names::kNothing},
    {SYS_brk, CallKind::kMemory, Names::kNothing},
}};

sock_filter statement(unsigned code, std::uint32_t value) {
  return {static_cast<std::uint16_t>(code), 0, 0, value};
}

/// Goes on `on_equal` or `on_other` statements further.
sock_filter comparison(std::uint32_t value, std::uint8_t on_equal, std::uint8_t on_other) {
  return {BPF_JMP | BPF_JEQ | BPF_K, on_equal, on_other, value};
}

/// Has the kernel stop this process, for its parent to see, at the calls that count. The call that
/// `main` begins with is one more.
void ask_to_be_traced() {
  std::vector<sock_filter> filter{
      statement(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, arch)),
      comparison(AUDIT_ARCH_X86_64, 1, 0),
      statement(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
      statement(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
  };
  const auto stop_at = [&filter](long number) {
    filter.push_back(comparison(static_cast<std::uint32_t>(number), 0, 1));
    filter.push_back(statement(BPF_RET | BPF_K, SECCOMP_RET_TRACE));
  };
  for (const KnownCall& known : kKnownCalls) stop_at(known.number);
  stop_at(SYS_fcntl);
  filter.push_back(statement(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};

  if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) ::_exit(kCannotTrace);
  ::raise(SIGSTOP);  // until the parent is ready
  if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) ::_exit(kCannotTrace);
  if (::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) ::_exit(kCannotTrace);
}

void require(bool is_true, const char* what) {
  if (!is_true) throw std::runtime_error(what);
}

class CTracer {
 public:
  CTracer(pid_t process, const Meddling& meddling) : process_(process), meddling_(meddling) {}

  /// Returns the status with which `waitpid` reported the end of the process.
  int follow() {
    int status = wait_for_change();
    require(WIFSTOPPED(status), "this process may not trace another one");
    constexpr long kOptions = PTRACE_O_EXITKILL | PTRACE_O_TRACESECCOMP | PTRACE_O_TRACEEXEC;
    require(::ptrace(PTRACE_SETOPTIONS, process_, 0, kOptions) == 0, "no options of a trace");
    int signal = 0;
    while (true) {
      require(::ptrace(PTRACE_CONT, process_, 0, signal) == 0, "the traced process is lost");
      status = wait_for_change();
      if (!WIFSTOPPED(status)) break;
      const int event = status >> 16;
      if (event == PTRACE_EVENT_SECCOMP) look_at_call();
      signal = event == 0 ? WSTOPSIG(status) : 0;
    }
    require(has_begun_, "the program never came to its first step, or may not be traced");
    return status;
  }

  [[nodiscard]] std::vector<Call> take_calls() { return std::move(calls_); }

 private:
  [[nodiscard]] int wait_for_change() const {
    int status = 0;
    while (::waitpid(process_, &status, 0) < 0) require(errno == EINTR, "waitpid");
    return status;
  }

  void look_at_call() {
    require(::ptrace(PTRACE_GETREGS, process_, 0, &registers_) == 0, "no registers");
    const auto number = static_cast<long>(registers_.orig_rax);
    if (number == SYS_fcntl) {
      // How `main` begins: it looks whether standard input is open.
      if (registers_.rdi == STDIN_FILENO && registers_.rsi == F_GETFD) has_begun_ = true;
      return;
    }
    if (!has_begun_) return;
    const auto* const known =
        std::find_if(kKnownCalls.begin(), kKnownCalls.end(),
                     [number](const KnownCall& call) { return call.number == number; });
    require(known != kKnownCalls.end(), "a stop at a call that is not in the list");
    if (known->kind == CallKind::kMemory && !meddling_.sees_memory) return;
    const std::string target = target_of(known->names);
    // A sanitizer asks by a pipe of its own whether memory is there; the program has no pipes but
    // its standard streams.
    if (target.starts_with("pipe:")) return;
    calls_.push_back({known->kind, target});
    meddle();
    require(::ptrace(PTRACE_SETREGS, process_, 0, &registers_) == 0, "no registers");
  }

  void meddle() {
    const Call& call = calls_.back();
    if (call.kind == CallKind::kRead && meddling_.read_piece > 0) shorten_to(meddling_.read_piece);
    if (!is_to_be_hit(call)) return;
    if (meddling_.max_bytes > 0) shorten_to(meddling_.max_bytes);
    if (meddling_.is_at_end) shorten_to(0);
    if (meddling_.signal != 0) ::kill(process_, meddling_.signal);
    if (meddling_.error != 0) fail();
  }

  [[nodiscard]] bool is_to_be_hit(const Call& call) {
    const std::size_t index = calls_.size() - 1;
    return index == meddling_.call ||
           (meddling_.is_lasting && index > meddling_.call && call == calls_[meddling_.call]);
  }

  void shorten_to(std::size_t count) {
    registers_.rdx = std::min<unsigned long long>(registers_.rdx, count);
  }

  void fail() {
    const bool is_break = registers_.orig_rax == SYS_brk;
    registers_.orig_rax = static_cast<unsigned long long>(-1);
    registers_.rax = is_break
                         ? end_of_heap()
                         : static_cast<unsigned long long>(-static_cast<long>(meddling_.error));
  }

  /// What the system gives when it cannot move the end of the heap: where it is.
  [[nodiscard]] unsigned long long end_of_heap() const {
    std::ifstream maps("/proc/" + std::to_string(process_) + "/maps");
    for (std::string line; std::getline(maps, line);) {
      if (line.ends_with("[heap]"))
        return std::stoull(line.substr(line.find('-') + 1), nullptr, 16);
    }
    throw std::runtime_error("no heap");
  }

  [[nodiscard]] std::string target_of(Names names) const {
    switch (names) {
      case Names::kDescriptor:
        return file_of(static_cast<int>(registers_.rdi));
      case Names::kPath:
        return last_part_at(registers_.rdi);
      case Names::kPathAfterFolder: {
        const std::string name = last_part_at(registers_.rsi);
        return name.empty() ? file_of(static_cast<int>(registers_.rdi)) : name;
      }
      default:
        return "memory";
    }
  }

  [[nodiscard]] std::string file_of(int descriptor) const {
    constexpr std::array<const char*, 3> kStandard{"standard input", "standard output",
                                                   "standard error"};
    if (descriptor >= 0 && descriptor < 3) return kStandard[static_cast<std::size_t>(descriptor)];
    std::error_code error;
    const std::filesystem::path link =
        "/proc/" + std::to_string(process_) + "/fd/" + std::to_string(descriptor);
    const std::string name = std::filesystem::read_symlink(link, error).filename().string();
    return name == kOutputName ? kStandard[STDOUT_FILENO] : name;  // it may have two descriptors
  }

  /// The last part of the path at an address of the process.
  [[nodiscard]] std::string last_part_at(unsigned long long address) const {
    std::string path;
    while (path.size() < PATH_MAX) {
      errno = 0;
      const long word = ::ptrace(PTRACE_PEEKDATA, process_, address + path.size(), nullptr);
      require(errno == 0, "no path to look at");
      std::array<char, sizeof word> bytes{};
      std::memcpy(bytes.data(), &word, sizeof word);
      const auto* const end = std::find(bytes.cbegin(), bytes.cend(), '\0');
      path.append(bytes.cbegin(), end);
      if (end != bytes.cend()) break;
    }
    return std::filesystem::path(path).filename().string();
  }

  pid_t process_;
  const Meddling& meddling_;
  user_regs_struct registers_{};
  bool has_begun_ = false;
  std::vector<Call> calls_;
};

}  // namespace

TracedRun run_traced(const CTemporaryFolder& folder, const RunPlan& plan,
                     const Meddling& meddling) {
  RunPlan traced_plan = plan;
  // The search for leaks traces its process itself, which one process alone can do.
  traced_plan.environment.emplace_back("ASAN_OPTIONS=detect_leaks=0");
  traced_plan.prepare = [&plan] {
    if (plan.prepare) plan.prepare();
    ask_to_be_traced();
  };
  CProgramRun run(folder, traced_plan);
  CTracer tracer(run.process(), meddling);
  TracedRun result;
  const int wait_status = tracer.follow();
  result.outcome = run.finish(wait_status);
  result.calls = tracer.take_calls();
  return result;
}

}  // namespace quorix::testing
