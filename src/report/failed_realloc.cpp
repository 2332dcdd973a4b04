// What the program does when the list of edits of a repeat cannot grow.

#include <cstdio>
#include <cstdlib>

#include "report/fastvector.h"

namespace quorix {

void end_on_failed_realloc() {
  std::fflush(nullptr);  // what is left of a report on standard output comes first
  std::puts("Program aborded due to failed realloc!");
  std::exit(0);
}

}  // namespace quorix
