#pragma once

/// @file
/// Which seeds can live through a few edits, decided for hundreds of neighbouring seeds at once.
///
/// An extension is a chain: matches, an edit, matches, an edit. After m mismatches, i insertions
/// and x deletions over b bases it has made b - m - i matches, whatever their order was. So a state
/// (m, i, x, b) has one score, and all that matters of a seed is whether it gets there: one bit,
/// and the bits of neighbouring seeds form words. With up to two, three or four edits there are 10,
/// 20 or 35 counts (m, i, x), each over up to 40 bases; a state takes a few word operations.
///
/// This is sound, since every extension is one of these chains. It may edit only where a base
/// differs, and only if the score stays above minus the unit length, which says how many matches a
/// state must have. A seed is undecided when a state has the minimum score, or matches enough for
/// one edit more than are followed here. The extension to the left begins with the best score of
/// the one to the right, which lowers the matches that its states must have: for each score there
/// is the set of the seeds that have it.
///
/// Neutral N's count as matches, which only raises scores; where they end an extension, the chain
/// goes on. Other N's match nothing. Beyond the text, where every extension has ended, some base is
/// read. All this only adds chains.
///
/// What this rests on besides, with n matches and score s on entry:
///
/// - The score n + s - cost depends on the state alone, since every match scores 1 and penalties do
///   not depend on the place.
/// - A state ends after `ChainState::end_bases` bases, where all its seeds are undecided. No chain
///   arrives later, where none is looked for: an edit adds its penalty to the matches that leave a
///   chain undecided, and takes off the smaller penalty, for one edit fewer to come.
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
