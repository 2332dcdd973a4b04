#pragma once

/// @file
/// The data of a page, read back as the page itself reads them.

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace quorix::testing {

struct PageRecord {
  std::string identifier;
  std::int64_t length;
  std::int64_t repeats;
  std::int64_t bases;
  std::int64_t rows;
  bool is_complete;
};

struct PageRepeat {
  std::string identifier;
  std::int64_t start;
  std::int64_t length;
  std::int64_t normalized_length;
  std::int64_t score;
  std::int64_t mismatches;
  std::int64_t insertions;
  std::int64_t deletions;
  std::int64_t ns;
  std::int64_t perfection;  ///< twice the digits, or 1
  std::string unit;
  std::string motif;
  bool is_left_out;
  std::string bases;
  std::string aligned_unit;
  std::string edits;
  std::string left_flank;
  std::string right_flank;
};

struct PageData {
  nlohmann::json head;
  std::vector<PageRecord> records;
  std::vector<std::int64_t> windows;
  std::vector<PageRepeat> repeats;
};

/// Reads a page with the short template. Throws: std::runtime_error if something is left over, or
/// if the data end early.
PageData read_page(const std::string& page);

}  // namespace quorix::testing
