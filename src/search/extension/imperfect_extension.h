#pragma once

/// @file
/// Extension of a repeat over edits.

#include "report/csat.h"
#include "search/extension/extension_cache.h"
#include "search/extension/look_ahead.h"

namespace quorix {

/// What chooses the edits of an extension: the look-ahead, or caches of what it chose before.
struct ExtensionTools {
  CLookAhead& look_ahead;
  CEditCache* edits;  ///< null if the text is not the one that it is for
  CPathCache* paths;  ///< null if the text or the limit is not the one that it is for
};

/// Extends a repeat to one side over matches and edits and leaves it at the best-scoring extent
/// met. Adds the edits to `sat.missense`, in the order in which they are made. `limit` is as in
/// exact_extension.h. Throws: std::bad_alloc.
void extend_imperfect_forward(Csat& sat, const char* limit, const ExtensionTools& tools);
void extend_imperfect_backward(Csat& sat, const char* limit, const ExtensionTools& tools);

}  // namespace quorix
