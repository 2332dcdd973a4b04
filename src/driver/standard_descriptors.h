#pragma once

/// @file
/// The descriptors 0 to 2, which a caller may have closed.

namespace quorix {

/// Opens /dev/null on each of the descriptors 0 to 2 that is closed, so that no file of the run
/// becomes standard output or standard error and receives their text. The direction is reversed on
/// purpose (0 for writing, 1 and 2 for reading): a report that is sent to a closed standard output
/// fails loudly instead of vanishing. If there is no /dev/null, the root folder takes its place: it
/// can be neither read nor written.
void fill_closed_standard_descriptors();

}  // namespace quorix
