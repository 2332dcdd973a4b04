#pragma once

/// @file
/// RapidCheck generators for what the program reads.

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/random_options.h"
#include "support/record_runs.h"

namespace quorix::testing {

/// Bases of which many repeat: pieces over few letters, said more than once.
inline rc::Gen<std::string> bases_generator() {
  return rc::gen::map(
      rc::gen::container<std::vector<std::pair<std::string, int>>>(rc::gen::pair(
          rc::gen::container<std::string>(rc::gen::element('A', 'C', 'G', 'T', 'A', 'C', 'N')),
          rc::gen::inRange(1, 7))),
      [](const std::vector<std::pair<std::string, int>>& pieces) {
        std::string bases;
        for (const auto& [piece, copy_count] : pieces) {
          for (int copy = 0; copy < copy_count && bases.size() < 400; ++copy) {
            bases += piece.substr(0, 12);
          }
        }
        return bases;
      });
}

/// Records with names in order.
inline rc::Gen<std::vector<NamedBases>> records_generator() {
  return rc::gen::map(rc::gen::container<std::vector<std::string>>(bases_generator()),
                      [](const std::vector<std::string>& texts) {
                        std::vector<NamedBases> records;
                        for (const std::string& bases : texts) {
                          records.push_back({"record " + std::to_string(records.size()), bases});
                        }
                        return records;
                      });
}

/// Any of a few settings that let much pass, applied.
inline Options apply_any_options() {
  static const std::vector<Options> kChoices{
      {"-M", "exact", "-s", "2", "--minScore_b", "0"},
      {"-M", "exact", "-D", "-N", "1"},
      {"-M", "extendExact", "-s", "3", "-m", "-2", "-g", "-2", "-r", "3"},
      {"-M", "imperfect", "-s", "3", "-m", "-2", "-g", "-2", "-r", "3", "-U", "4"},
      {"-M", "imperfect", "-s", "4", "-m", "-3", "-g", "-3", "-r", "2", "-D", "-U", "9"},
      {"-M", "imperfect", "--NsAsMissense", "-s", "2"},
  };
  const Options options = *rc::gen::elementOf(kChoices);
  RC_ASSERT(apply_options(options));
  return options;
}

}  // namespace quorix::testing
