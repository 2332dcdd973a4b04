#pragma once

/// @file
/// Cache of extensions: an array is aligned to its unit once, not once for each of its seeds.
///
/// Nearly every base of an array is a seed, with the unit rotated by a base each time. All of these
/// seeds are extended over the same bases, and all meet the same edit sites:
///
///     bases     ACGTACGTACCTACGTAACGTACGTAGTACGT
///     seed 1    [--]......M......I........D.....     a look-ahead chooses each edit
///     seed 2     [--].....M......I........D.....     the edits are cached
///     ...                                            and, in long arrays, where they lead
///     seed 13               [--].I........D.....
///
/// **Why sites are shared.** At a site the look-ahead chooses an edit. It reads the bases, the unit
/// from the next character on, and the score; the score matters only because an edit must leave it
/// above the drop-off limit. From the safe score on no path of the look-ahead can get there, so
/// another score moves the values of all paths by the same amount, and the choice is the same. The
/// best score so far matters only if the score reduction is limited. So the edit is a function of
///
///     key = (edge, unit code, score class)        score class = min(score, safe score)
///
/// and so are the next site and the points gained on the way to it. site_key.h defines the key and
/// says when an extension may use it (`is_cacheable`).
///
/// **Places for units without a code.** A look-ahead compares bases with the characters of its
/// window. Where the unit does not end there, these are bases of the text as well, and the edit is
/// a function of
///
///     key = (edge, place of the next character, direction)      from a safe score on
///
/// whichever seed the unit belongs to, and however long it is, as long as the look-ahead has read
/// no letter beyond its window (`is_place_cacheable`). In an array, seeds of neighbouring bases and
/// of similar unit lengths ask for the same places. Such edits go to the edit cache alone.
///
/// **Edit cache** (edit_cache.h): key -> edit. It saves look-aheads, but each extension still goes
/// through all sites of the array.
///
/// **Path cache** (path_cache.h): sites as nodes of trees, in which the next site is the parent.
/// An extension that meets a stored site joins the tree there:
///
///     first     o----o----o----o----o----o----R     R, the root: where that extension ended
///                         |         |
///     second    o----o----+         |               joins after two sites of its own
///     third               o----o----+               joins later
///
/// Each node has a skip pointer besides, with lengths as in a skew binary number (Myers, An
/// applicative random-access stack, Information Processing Letters 17, 1983), so that n sites are
/// followed in O(log n) steps:
///
///     site      0    1    2    3    4    5    6    R
///     next      ---->---->---->---->---->---->---->
///     skip      ---------------------------------->      0 to R
///                    -------------->-------------->      1 to 4 to R
///                         ---->---->     ---->---->      2 to 3 to 4, 5 to 6 to R
///
/// What a skip sums up: the min and max height on it, where the max is met first, and whether all
/// edits before its end are those of safe scores.
///
/// A height is the score above that of the root; differences of heights are points gained. Counts
/// of edits and N's are sums up to the root as well, so that a section of a path has its sums by a
/// subtraction. The edits themselves are read off node by node, once the extension has ended.
///
/// **Path follower** (path_follower.h): moves a repeat along cached paths. It begins after
/// `kUncachedSites` sites, since few extensions get that far.
///
/// **Why following a skip has the result of a fresh extension.** A single step to the parent is
/// sound: an extension that arrives at a stored site with its key makes the stored edit, gains the
/// stored points and meets the parent. A whole skip is sound in two cases:
///
/// - The edits of all sites before its end are those of safe scores, and the lowest score there is
///   still safe. That is the present score plus (min height - height).
/// - The extension arrives with exactly the score of the one that stored the site, and that one had
///   the scores of the tree all the way to the root.
///
/// The second case does not hold for a path that joined another one with a different score: whether
/// its extension would have reached the root is unknown. That is why heights are sums along the
/// tree, and no score is derived from the root's.
///
/// **What the caller ensures**: one text; one limit for each direction, if paths are asked for; no
/// N in the unit; `clear` whenever the settings may have changed.

#include "search/extension/edit_cache.h"
#include "search/extension/path_cache.h"

namespace quorix {

/// The cache of one text. Its limits are in cache_limits.h.
class CExtensionCache {
 public:
  /// For extensions in the text up to any limit.
  [[nodiscard]] CEditCache& edits() { return edits_; }
  [[nodiscard]] const CEditCache& edits() const { return edits_; }
  /// For extensions whose limit is that of the text in their direction.
  [[nodiscard]] CPathCache& paths() { return paths_; }
  [[nodiscard]] const CPathCache& paths() const { return paths_; }

  /// Forgets everything: the settings may have changed. The counts of work stay.
  void clear() {
    edits_.clear();
    paths_.clear();
  }

 private:
  CEditCache edits_;
  CPathCache paths_;
};

}  // namespace quorix
