// The line that says how far a command has come, on a terminal and elsewhere.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>

#include <cstdlib>

#include "support/random_options.h"
#include "tools/report_text.h"
#include "tools/tool_run.h"

namespace quorix::testing {
namespace {

/// A terminal without a screen: what is written to it is read at its other end.
class CTerminal {
 public:
  CTerminal() : master_(::posix_openpt(O_RDWR | O_NOCTTY)) {
    EXPECT_GE(master_, 0);
    EXPECT_EQ(::grantpt(master_), 0);
    EXPECT_EQ(::unlockpt(master_), 0);
    slave_ = ::open(::ptsname(master_), O_RDWR | O_NOCTTY);
    EXPECT_GE(slave_, 0);
  }
  ~CTerminal() {
    ::close(slave_);
    ::close(master_);
  }
  CTerminal(const CTerminal&) = delete;
  CTerminal& operator=(const CTerminal&) = delete;

  /// Makes standard error of this process the terminal.
  void take_messages() const { ::dup2(slave_, STDERR_FILENO); }

  /// What was written so far and not yet read.
  [[nodiscard]] std::string text() const {
    std::string text;
    char block[256];
    pollfd waiting{master_, POLLIN, 0};
    while (::poll(&waiting, 1, 0) > 0 && (waiting.revents & POLLIN) != 0) {
      const ssize_t count = ::read(master_, block, sizeof block);
      if (count <= 0) break;
      text.append(block, static_cast<std::size_t>(count));
    }
    return text;
  }

 private:
  int master_;
  int slave_ = -1;
};

/// A pipe whose bytes come from a process of their own, with a pause in the middle that is longer
/// than a second.
class CSlowPipe {
 public:
  explicit CSlowPipe(const std::string& text) {
    int ends[2];
    EXPECT_EQ(::pipe(ends), 0);
    reader_ = ends[0];
    feeder_ = ::fork();
    EXPECT_GE(feeder_, 0);
    if (feeder_ == 0) {
      ::close(reader_);
      const std::size_t half = text.size() / 2;
      write_all(ends[1], text.substr(0, half));
      ::usleep(1'200'000);
      write_all(ends[1], text.substr(half));
      ::_exit(0);
    }
    ::close(ends[1]);
  }
  ~CSlowPipe() {
    ::close(reader_);
    ::waitpid(feeder_, nullptr, 0);
  }
  CSlowPipe(const CSlowPipe&) = delete;
  CSlowPipe& operator=(const CSlowPipe&) = delete;

  /// Makes the pipe standard input of this process.
  void take_input() const { ::dup2(reader_, STDIN_FILENO); }

 private:
  static void write_all(int writer, const std::string& text) {
    for (std::size_t done = 0; done < text.size();) {
      const ssize_t count = ::write(writer, text.data() + done, text.size() - done);
      if (count <= 0) return;
      done += static_cast<std::size_t>(count);
    }
  }

  int reader_ = -1;
  pid_t feeder_ = -1;
};

/// A report of some thousand repeats: the progress is looked at once in about a thousand.
std::string long_report() {
  EXPECT_TRUE(apply_options({"-s", "9", "-U", "11"}));
  std::string bases;
  for (int i = 0; i < 6000; ++i) bases += "CAGCAGCAGCAGCAGTTAC";
  bases += "ACCGTTTAGCAACCGTTTAGCAACCGTTTAGCA";
  return whole_report({{"c", bases}});
}

/// What a conversion with these further arguments says on a terminal.
std::string shown_on_terminal(const std::string& report, std::vector<const char*> arguments) {
  const CTerminal terminal;
  const CSlowPipe pipe(report);
  arguments.insert(arguments.begin(), {"quorix-tools", "convert", "-", "--to"});
  const ProcessResult run = run_in_child([&] {
    terminal.take_messages();
    pipe.take_input();
    return tools::run_command_line(static_cast<int>(arguments.size()), arguments.data());
  });
  EXPECT_EQ(run.err, "");
  return terminal.text();
}

constexpr const char* kLineOfProgress = "\r\033[Kstandard input: ";
constexpr const char* kNoLine = "\r\033[K";

TEST(Progress, a_terminal_shows_a_line_that_is_gone_at_the_end) {
  const std::string shown = shown_on_terminal(long_report(), {"tsv"});
  EXPECT_EQ(shown.find(kLineOfProgress), 0U) << shown;
  EXPECT_TRUE(shown.ends_with(kNoLine)) << shown;
  const std::size_t unit = shown.find(" MB");
  ASSERT_NE(unit, std::string::npos) << shown;
  const std::size_t number = std::string(kLineOfProgress).size();
  EXPECT_EQ(shown.substr(number, unit - number).find_first_not_of("0123456789"), std::string::npos);
  EXPECT_EQ(shown.find('\n'), std::string::npos);
}

TEST(Progress, a_message_has_a_line_of_its_own) {
  const std::string report = long_report();
  const std::string cut = report.substr(0, report.find("# Analysis"));
  const std::string shown = shown_on_terminal(cut, {"hipstr", "--allow-incomplete"});
  EXPECT_EQ(shown.find(kLineOfProgress), 0U) << shown;
  EXPECT_NE(shown.find(std::string(kNoLine) + "quorix-tools: incomplete: standard input:"),
            std::string::npos)
      << shown;
  EXPECT_TRUE(
      shown.ends_with("\nquorix-tools: hipstr leaves out 1 of 6001 repeats: 1 with motifs "
                      "of more than 9 bases\r\n"))
      << shown;
}

TEST(Progress, an_error_has_a_line_of_its_own) {
  std::string report = long_report();
  report.insert(report.rfind("Missense"), "x");
  const std::string shown = shown_on_terminal(report, {"tsv"});
  EXPECT_EQ(shown.find(kLineOfProgress), 0U) << shown;
  EXPECT_NE(shown.find(std::string(kNoLine) + "quorix-tools: standard input:"), std::string::npos)
      << shown;
}

TEST(Progress, nothing_is_shown_elsewhere_than_on_a_terminal) {
  const CSlowPipe pipe(long_report());
  const ProcessResult run = run_in_child([&] {
    pipe.take_input();
    const char* const words[] = {"quorix-tools", "convert", "--to", "bed", "-"};
    return tools::run_command_line(5, words);
  });
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
}

TEST(Progress, a_run_of_less_than_a_second_shows_nothing) {
  const CToolFolder folder;
  const CTerminal terminal;
  const std::string report = folder.write("r", long_report());
  const ProcessResult run = run_in_child([&] {
    terminal.take_messages();
    const char* const words[] = {"quorix-tools", "convert", "--to", "bed", report.c_str()};
    return tools::run_command_line(5, words);
  });
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(terminal.text(), "");
}

}  // namespace
}  // namespace quorix::testing
