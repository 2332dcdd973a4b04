#pragma once

/// @file
/// Which seeds can live through a few edits, decided for hundreds of neighbouring seeds at once.
///
/// An extension is a chain: matches, an edit, matches, an edit. After m mismatches, i insertions
/// and x deletions over b bases it has made b - m - i matches, whatever their order was. So a state
/// (m, i, x, b) has one score, and all that matters of a seed is whether it gets there: one bit,
/// and the bits of neighbouring seeds form words. With at most two or three edits there are ten or
/// twenty counts of edits and some twenty bases, each a few word operations.
///
/// This is sound, since an extension takes one of these chains: it may edit only where a base
/// differs, and only if the score stays above minus the unit length, which says how many matches a
/// state must have. A seed is undecided when a state has the minimum score, or has matches enough
/// to live through one edit more than are followed here. The extension to the left begins with the
/// best score of the one to the right, which lowers the matches that its states must have: for each
/// score there is the set of the seeds that have it.
///
/// Neutral N's count as matches, which only raises scores, and where they end the extension the
/// chain merely goes on; others match nothing. What lies beyond the text is read as some base, and
/// a chain that gets there has had its score before.
///
/// What this rests on besides, with m matches and score e on entry:
///
/// - The score m + e - cost depends on the state alone, since every match scores 1 and penalties do
///   not depend on the place.
/// - Where a state is undecided (`ChainState::end_bases`) no state before it is still followed:
/// an
///   edit never lowers the matches that leave a chain undecided, since it costs at least what one
///   edit less to come takes off. So no chain arrives after the end of a state, where none is
///   looked for.
/// - The last edits followed are safe to stop at: a chain that makes one edit more has, before it,
///   matches enough for `undecided_matches` of the state with all edits.
/// - A limit of the score reduction only forbids edits.
/// - Smaller penalties and a smaller minimum score reject less, so they may be capped.

#include <cstdint>

#include "search/bits/base_planes.h"
#include "search/bits/bit_set.h"
#include "search/filter/filter_plan.h"
#include "search/filter/sieve.h"

namespace quorix {

/// Clears in `seeds` the bits of the segment's seeds that cannot extend into a repeat of the
/// minimum score over edits, see search/filter/sieve.h. REQUIRES: rule.edits > 0.
void sift_by_chains(const CBasePlanes& planes, const ChainRule& rule, const Segment& segment,
                    CBitSet& seeds);

}  // namespace quorix
