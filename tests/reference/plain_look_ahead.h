#pragma once

/// @file
/// Looking ahead: how good a repeat could get from a given state.
///
/// Plain recursion over the three edits (mismatch, insertion, deletion). Between two edits the walk
/// takes every matching base and every N (with score 0, however long the run of N's is, unlike
/// exact extension). The number of edits on a path is bounded by `global_maximum_recursion_depth`,
/// the score on it by minus the unit length and by `global_maximum_scorereduction` below the best.
///
/// Nothing is changed, a value alone is returned. The cost is up to three to the power of the depth
/// for each call; above a depth of 255 there is no limit of depth, so that small penalties together
/// with long units can take longer than anyone waits.

#include <cstdint>
#include <string>

namespace quorix::reference {

/// The highest score that can be reached to the right of a state.
///
/// `pos` is the next base to read, `unit_pos` the unit character expected for it, `limit` one past
/// the last base that may be read, `level` the number of edits made so far (8 bits, it wraps).
int extend_imperfect_forward_leap_ahead(const std::string& bases, std::int64_t pos,
                                        std::int64_t unit_pos, std::int64_t unit_begin,
                                        std::int64_t unit_end, int score, std::int64_t unit_length,
                                        std::uint8_t level, std::int64_t limit, int best_score);

/// The highest score that can be reached to the left of a state.
///
/// `pos` is one past the next base to read, `unit_pos` the unit character expected for that base,
/// `limit` the position before the first base that may be read.
int extend_imperfect_backward_leap_ahead(const std::string& bases, std::int64_t pos,
                                         std::int64_t unit_pos, std::int64_t unit_begin,
                                         std::int64_t unit_end, int score, std::int64_t unit_length,
                                         std::uint8_t level, std::int64_t limit, int best_score);

/// The score above which a state after an edit must lie to be tried: the larger of minus the unit
/// length and the best score less the permitted reduction. In 64 bits, so that it never overflows.
std::int64_t drop_off_limit(std::int64_t unit_length, int best_score);

}  // namespace quorix::reference
