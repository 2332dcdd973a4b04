#pragma once

/// @file
/// What the settings must keep to before a search may start.

namespace quorix {

/// Checks a mode code (0 to 2) and stores it into `setting`.
///
/// Gives true when it was stored; otherwise the setting keeps its value and a message is written
/// to standard error that holds the value between `before` and `after`.
[[nodiscard]] bool store_mode_code(int& setting, int value, const char* before, const char* after);

/// Corrects what can be corrected in silence (a negative `global_Ns_allowed_in_a_row` or
/// `global_flanking` becomes 0) and refuses what cannot be searched.
///
/// Gives `kSuccess`, or `kInvalidSetting` after one message on standard error about the first
/// setting that is refused.
[[nodiscard]] int check_settings();

}  // namespace quorix
