#include "load/input_plan.h"

#include <cstdio>
#include <string_view>

#include "load/planted_bases.h"

namespace quorix::load {

namespace {

void put(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
}

}  // namespace

std::string record_name(const InputPlan& plan, std::uint64_t number) {
  std::string name = std::to_string(number);
  if (name.size() < plan.name_length) name += ' ';
  while (name.size() < plan.name_length) name += static_cast<char>('a' + name.size() % 26);
  return name;
}

bool write_input(const InputPlan& plan) {
  CPlantedBases bases(plan.seed);
  const std::size_t piece_length =
      plan.line_length == 0 ? CPlantedBases::kMaxBases : plan.line_length;
  for (std::uint64_t number = 1; number <= plan.record_count; ++number) {
    put(">");
    put(record_name(plan, number));
    put("\n");
    bases.begin_record(plan.bases);
    for (std::string_view piece = bases.next(piece_length); !piece.empty();
         piece = bases.next(piece_length)) {
      put(piece);
      if (plan.line_length != 0) put("\n");
    }
    if (plan.line_length == 0) put("\n");
    if (std::ferror(stdout) != 0) return false;
  }
  return std::fflush(stdout) == 0;
}

}  // namespace quorix::load
