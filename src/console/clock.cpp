#include "console/clock.h"

namespace quorix {

std::time_t current_time() {
  return std::time(nullptr);
}

}  // namespace quorix
