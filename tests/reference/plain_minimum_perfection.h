#pragma once

/// @file
/// The other way to report exact repeats: those below a minimum perfection are broken up.
///
/// Only N's can lower the perfection of an exact repeat, and only where they count as mismatches.
/// No option of the program leads here, since the command line admits no minimum but 0.

#include <optional>
#include <string>
#include <vector>

#include "reference/plain_repeat.h"

namespace quorix::reference {

/// The head of the record and each of its exact repeats, whole where its perfection reaches
/// `global_perfection_minimum`, otherwise in parts that do. There is no closing line.
std::string report_minimum_perfection(const std::string& name, const std::string& bases,
                                      const std::vector<Repeat>& exact);

/// The best part of `repeat` that begins at `from` and reaches the minimum, the longest of equally
/// good ones; none if no part does. Its first unit scores nothing.
/// REQUIRES: repeat.start <= from < repeat.end.
std::optional<Repeat> find_one_part(const Repeat& repeat, const std::string& bases,
                                    std::int64_t from);

}  // namespace quorix::reference
