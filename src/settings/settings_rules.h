#pragma once

/// @file
/// What the settings must fulfil before a search may start. Mode codes are not looked at: each
/// caller knows how it names them.

#include <string_view>

namespace quorix {

/// Corrects what can be corrected in silence: a negative `global_Ns_allowed_in_a_row` or
/// `global_flanking` becomes 0. Returns why the settings cannot be searched with: one or two lines,
/// each with its line feed, about the first setting that is refused. Empty if all are fine.
[[nodiscard]] std::string_view correct_settings();

}  // namespace quorix
