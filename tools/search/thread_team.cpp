// One lock and one condition serve all threads. They are used once for a loop and once for each
// thread that helps; parts are handed out by an atomic counter. So loops should have parts of some
// microseconds or more.

#include "tools/search/thread_team.h"

#include <algorithm>
#include <thread>

namespace quorix::tools {

void CThreadTeam::stop() {
  {
    const Lock lock(mutex_);
    is_stopped_ = true;
  }
  notify();
}

CThreadTeam::Loop* CThreadTeam::open_loop() const {
  const auto is_open = [](const Loop* loop) { return loop->next < loop->count; };
  const auto found = std::find_if(loops_.begin(), loops_.end(), is_open);
  return found == loops_.end() ? nullptr : *found;
}

void CThreadTeam::do_parts(Loop& loop, std::size_t worker) {
  try {
    for (std::size_t part = loop.next++; part < loop.count; part = loop.next++) {
      if (is_stopped()) throw TeamStopped();
      loop.do_part(part, worker);
    }
  } catch (...) {
    loop.next = loop.count;
    const Lock lock(mutex_);
    if (!loop.failure) loop.failure = std::current_exception();
  }
}

void CThreadTeam::help(Lock& lock, Loop& loop, std::size_t worker) {
  ++loop.helper_count;
  lock.unlock();
  do_parts(loop, worker);
  lock.lock();
  if (--loop.helper_count == 0) notify();
}

void CThreadTeam::for_each(std::size_t count, std::size_t worker, const Part& do_part) {
  Loop loop{count, do_part};
  const bool is_shared = count > 1 && size_ > 1;
  if (is_shared) {
    const Lock lock(mutex_);
    loops_.push_back(&loop);
    notify();
  }
  do_parts(loop, worker);
  if (is_shared) {
    Lock lock(mutex_);
    loops_.erase(std::find(loops_.begin(), loops_.end(), &loop));
    changed_.wait(lock, [&] { return loop.helper_count == 0; });
  }
  if (loop.failure) std::rethrow_exception(loop.failure);
}

void CThreadTeam::run(const std::function<void(std::size_t)>& run_worker) {
  std::exception_ptr failure;
  const auto run_guarded = [&](std::size_t worker) {
    try {
      run_worker(worker);
    } catch (...) {
      {
        const Lock lock(mutex_);
        if (!failure) failure = std::current_exception();
      }
      stop();
    }
  };
  std::vector<std::thread> threads;
  threads.reserve(size_ - 1);
  try {
    for (std::size_t worker = 1; worker < size_; ++worker) {
      threads.emplace_back(run_guarded, worker);
    }
  } catch (const std::exception&) {
    // No more threads, or no memory for them: those that there are do all of the work.
  }
  run_guarded(0);
  for (std::thread& thread : threads) thread.join();
  if (failure) std::rethrow_exception(failure);
}

void CThreadTeam::lead(const std::function<void()>& body) {
  bool is_over = false;
  run([&](std::size_t worker) {
    if (worker != 0) {
      Lock lock = take_lock();
      wait(lock, worker, [&] { return is_over || is_stopped(); });
      return;
    }
    body();
    const Lock lock = take_lock();
    is_over = true;
    notify();
  });
}

}  // namespace quorix::tools
