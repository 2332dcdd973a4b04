#include "support/fake_clock.h"

#include "console/clock.h"

namespace quorix {

namespace {

constinit std::time_t fake_now = 1000;

}  // namespace

std::time_t current_time() {
  return fake_now;
}

namespace testing {

void set_current_time(std::time_t seconds) {
  fake_now = seconds;
}

}  // namespace testing

}  // namespace quorix
