// The only place that catches a lack of memory; the handler allocates nothing.

#include <cstdio>
#include <new>

#include "console/console_texts.h"
#include "console/exit_status.h"
#include "driver/run.h"
#include "driver/standard_descriptors.h"

int main(int argc, char** argv) {
  quorix::fill_closed_standard_descriptors();
  try {
    return quorix::run(argc, argv);
  } catch (const std::bad_alloc&) {
    std::fputs("Sorry! There is not enough memory for this analysis.\n", stderr);
    quorix::good_bye_on_error(quorix::kNoMemory);
    return quorix::kNoMemory;
  }
}
