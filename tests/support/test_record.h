#pragma once

/// @file
/// Records made of a name and a text of bases.

#include <string_view>

#include "sequence/sequence_mol.h"

namespace quorix::testing {

/// Makes `record` hold these bases as they stand.
inline void set_record(CSequence_Mol& record, std::string_view name, std::string_view bases) {
  record.name = name;
  record.sequence.clear();
  record.sequence.reserve(bases.size());
  for (const char base : bases) record.sequence.push_back(base);
  record.sequence.c_str();
}

}  // namespace quorix::testing
