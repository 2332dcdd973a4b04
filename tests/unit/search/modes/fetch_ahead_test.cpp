// Fetching ahead changes nothing for the loop that it serves.

#include "search/modes/fetch_ahead.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <list>
#include <vector>

namespace quorix {
namespace {

TEST(FetchAhead, lets_the_loop_remove_each_repeat_that_it_has_passed) {
  for (std::size_t count = 0; count < 30; ++count) {
    std::vector<Csat> records(count);
    std::list<Csat*> repeats;
    for (Csat& record : records) repeats.push_back(&record);
    std::vector<Csat*> visited;
    CFetchAhead ahead(repeats);
    while (!repeats.empty()) {
      ahead.step();
      visited.push_back(repeats.front());
      repeats.pop_front();
    }
    ASSERT_EQ(visited.size(), count);
    for (std::size_t i = 0; i < count; ++i) EXPECT_EQ(visited[i], &records[i]);
  }
}

}  // namespace
}  // namespace quorix
