#pragma once

/// @file
/// The conditions that the settings must meet before a search may start.

namespace quorix {

/// Checks a mode code (0 to 2) and stores it into `setting`.
///
/// Returns true if it was stored; otherwise the setting keeps its value, and a message with the
/// value between `before` and `after` is written to standard error.
[[nodiscard]] bool store_mode_code(int& setting, int value, const char* before, const char* after);

/// Corrects what can be corrected in silence (a negative `global_Ns_allowed_in_a_row` or
/// `global_flanking` becomes 0) and refuses what cannot be searched.
///
/// Returns `kSuccess`, or `kInvalidSetting` after one message on standard error about the first
/// setting that is refused.
[[nodiscard]] int check_settings();

}  // namespace quorix
