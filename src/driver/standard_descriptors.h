#pragma once

/// @file
/// The descriptors 0 to 2, which a caller may have closed.

namespace quorix {

/// Fills each of the descriptors 0 to 2 that is closed with /dev/null, so that no file of the run
/// is opened as standard output or standard error and gets their text. They are opened the wrong
/// way round (0 for writing, 1 and 2 for reading): a report that is sent to a closed standard
/// output fails loudly instead of vanishing. Where there is no /dev/null, the root folder takes its
/// place, which can be neither read nor written.
void fill_closed_standard_descriptors();

}  // namespace quorix
