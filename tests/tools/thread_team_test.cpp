// Threads that share loops.

#include "tools/search/thread_team.h"

#include <gtest/gtest.h>

#include <array>
#include <stdexcept>
#include <thread>

namespace quorix::testing {
namespace {

using tools::CThreadTeam;
using tools::TeamStopped;

TEST(ThreadTeam, does_each_part_of_a_loop_once) {
  for (const std::size_t size : {1U, 2U, 5U, 9U}) {
    CThreadTeam team(size);
    std::vector<std::atomic<int>> done(1000);
    team.lead([&] {
      for (int round = 0; round < 20; ++round) {
        team.for_each(done.size(), 0, [&](std::size_t part, std::size_t worker) {
          EXPECT_LT(worker, size);
          ++done[part];
        });
      }
    });
    for (const std::atomic<int>& count : done) EXPECT_EQ(count, 20);
  }
}

TEST(ThreadTeam, those_who_wait_take_parts) {
  CThreadTeam team(2);
  std::atomic<bool> has_helped = false;
  team.lead([&] {
    // The first part ends only when somebody else has begun the second.
    team.for_each(2, 0, [&](std::size_t part, std::size_t) {
      if (part == 1) has_helped = true;
      while (!has_helped) std::this_thread::yield();
    });
  });
  EXPECT_TRUE(has_helped);
}

TEST(ThreadTeam, loops_of_several_threads_run_at_once) {
  CThreadTeam team(3);
  std::array<std::atomic<std::size_t>, 3> sums{};
  team.run([&](std::size_t worker) {
    for (int round = 0; round < 50; ++round) {
      team.for_each(100, worker, [&](std::size_t part, std::size_t) { sums[worker] += part; });
    }
  });
  for (const std::atomic<std::size_t>& sum : sums) EXPECT_EQ(sum, 50U * 4950U);
}

TEST(ThreadTeam, an_exception_of_a_part_comes_to_who_opened_the_loop) {
  CThreadTeam team(4);
  std::atomic<int> begun = 0;
  EXPECT_THROW(team.lead([&] {
    team.for_each(100'000, 0, [&](std::size_t part, std::size_t) {
      ++begun;
      if (part == 10) throw std::bad_alloc();
    });
  }),
               std::bad_alloc);
  EXPECT_LT(begun, 100'000);
}

TEST(ThreadTeam, an_exception_of_a_thread_stops_the_team) {
  CThreadTeam team(4);
  EXPECT_THROW(team.run([&](std::size_t worker) {
    if (worker == team.size() - 1) throw std::runtime_error("the last one");
    CThreadTeam::Lock lock = team.take_lock();
    team.wait(lock, worker, [&] { return team.is_stopped(); });
  }),
               std::runtime_error);
  EXPECT_TRUE(team.is_stopped());
}

TEST(ThreadTeam, no_part_begins_in_a_team_that_is_stopped) {
  CThreadTeam team(2);
  team.stop();
  int begun = 0;
  EXPECT_THROW(team.for_each(5, 0, [&](std::size_t, std::size_t) { ++begun; }), TeamStopped);
  EXPECT_EQ(begun, 0);
}

}  // namespace
}  // namespace quorix::testing
