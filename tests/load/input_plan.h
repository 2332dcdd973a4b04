#pragma once

/// @file
/// What an input of the load runs consists of, and its text.

#include <cstddef>
#include <cstdint>
#include <string>

namespace quorix::load {

struct InputPlan {
  std::uint64_t record_count;
  std::size_t name_length;  ///< bytes that a name has at least
  std::uint64_t bases;      ///< of each record
  std::size_t line_length;  ///< of the sequence lines; 0 is one line for all
  std::uint64_t seed;
};

/// The name of a record, from 1: its number, filled up with letters.
[[nodiscard]] std::string record_name(const InputPlan& plan, std::uint64_t number);

/// Writes the input to standard output. False if a write fails.
[[nodiscard]] bool write_input(const InputPlan& plan);

}  // namespace quorix::load
