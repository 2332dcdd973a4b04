#pragma once

/// @file
/// Threads that share loops.
///
/// Each thread of a team runs a function of its own. Where its work is a loop of independent parts,
/// it opens the loop to the others: whoever waits for something else takes parts of it meanwhile.
/// The thread that opened a loop takes parts of that loop alone and goes on when all are done, so
/// it never has to finish foreign work first.
///
/// An exception in a part ends its loop and is thrown to the thread that opened it. Once a team is
/// stopped, no further part begins, and who opened a loop gets `TeamStopped`.

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <vector>

namespace quorix::tools {

/// Thrown to a thread whose team has been stopped.
struct TeamStopped {};

class CThreadTeam {
 public:
  /// A part of a loop, 0-based, and the thread that runs it.
  using Part = std::function<void(std::size_t part, std::size_t worker)>;
  using Lock = std::unique_lock<std::mutex>;

  /// A team of `size` threads, 1 or more, of which the calling one is the first.
  explicit CThreadTeam(std::size_t size) : size_(size) {}
  CThreadTeam(const CThreadTeam&) = delete;
  CThreadTeam& operator=(const CThreadTeam&) = delete;

  [[nodiscard]] std::size_t size() const { return size_; }

  /// Calls `run_worker` with 0 to size() - 1, each on a thread of its own, the calling one
  /// included, and returns when all have returned. Where the system has no more threads, there are
  /// fewer calls. The first exception stops the team and is thrown here.
  void run(const std::function<void(std::size_t worker)>& run_worker);

  /// Calls `body` on the calling thread, as worker 0, while all others take parts of its loops.
  /// Throws what `body` throws.
  void lead(const std::function<void()>& body);

  /// Does `count` parts, each once, on this thread and on those that wait. Returns when all are
  /// done. Throws: the first exception of a part; TeamStopped.
  void for_each(std::size_t count, std::size_t worker, const Part& do_part);

  /// Stops the team.
  void stop();
  [[nodiscard]] bool is_stopped() const { return is_stopped_.load(std::memory_order_relaxed); }

  /// Locks what `wait` looks at.
  [[nodiscard]] Lock take_lock() { return Lock(mutex_); }

  /// Waits until `is_ready()` holds, which is called with the lock held, and takes parts of loops
  /// meanwhile. Whoever changes what it looks at calls `notify`.
  template <class IsReady>
  void wait(Lock& lock, std::size_t worker, const IsReady& is_ready) {
    while (!is_ready()) {
      if (Loop* const loop = open_loop(); loop != nullptr) {
        help(lock, *loop, worker);
      } else {
        changed_.wait(lock);
      }
    }
  }

  /// Lets all that wait look again.
  void notify() { changed_.notify_all(); }

 private:
  struct Loop {
    std::size_t count;
    const Part& do_part;
    std::atomic<std::size_t> next = 0;
    std::atomic<bool> has_failed = false;
    std::size_t helper_count = 0;     ///< under the lock
    std::exception_ptr failure = {};  ///< under the lock
  };

  /// A loop with parts that nobody has begun, or null. The lock is held.
  [[nodiscard]] Loop* open_loop() const;
  /// Takes parts of a loop until none is left. The lock is held before and after.
  void help(Lock& lock, Loop& loop, std::size_t worker);
  void do_parts(Loop& loop, std::size_t worker);

  std::size_t size_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Loop*> loops_;
  std::atomic<bool> is_stopped_ = false;
};

}  // namespace quorix::tools
