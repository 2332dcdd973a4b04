// What the search asks of its surroundings, for a library: it has no terminal to write progress to,
// and lack of memory is the caller's to handle. The program links the console and its own way out
// instead.

#include <new>

#include "console/console_texts.h"
#include "console/run_clock.h"
#include "report/fastvector.h"

namespace quorix {

bool check_report_status() {
  return false;
}

void report_status(std::uint64_t /*sequence_number*/, const char* /*sequence_name*/,
                   std::uint64_t /*unit_length*/, char /*mode*/) {}

void general_PrintMessage(std::FILE* /*stream*/, std::string_view /*first*/,
                          std::string_view /*second*/, std::string_view /*third*/,
                          std::string_view /*fourth*/) {}

void end_on_failed_realloc() {
  throw std::bad_alloc();
}

}  // namespace quorix
