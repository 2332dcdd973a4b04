#include "reference/plain_engine.h"

#include <cstdint>

#include "settings/settings.h"

namespace quorix::reference {

std::vector<Repeat> search(const std::string& bases) {
  switch (global_search_mode) {
    case kSearchExact:
      return exact_search_2(bases);
    case kSearchExtendExact:
      return search_exact_and_extend(bases);
    default:
      return complete_imperfect_search(bases);
  }
}

std::string mask(const std::string& bases, const std::vector<Repeat>& repeats) {
  std::string masked = bases;
  for (const Repeat& repeat : repeats) {
    for (std::int64_t position = repeat.start; position < repeat.end; ++position) {
      masked[static_cast<std::size_t>(position)] = 'X';
    }
  }
  return masked;
}

std::string run_record(const std::string& name, const std::string& bases) {
  return report_record(name, bases, remove_hidden(search(bases)));
}

}  // namespace quorix::reference
