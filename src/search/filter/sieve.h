#pragma once

/// @file
/// The shape that all sieves share: a rule and a segment of the text in, bits cleared out.
///
/// ```
///   run_sieve     one unit length     a bit is a base, a word holds 64 of them
///   chain_sieve   one unit length     a bit is a seed, a vector holds up to 512 of them
///   lag_sieve     many unit lengths   a lane is a lag, a vector holds up to 32 of them
///   block_sieve   many unit lengths   a lane is a unit character; 32 seeds are judged as one
/// ```
///
/// The calls are alike, too: the text, prepared; the rule; the segment; the seeds.
///
/// ```
///   sift_by_runs(lags, rule, segment, seeds)     `lags` are the base planes, compared at a lag
///   sift_by_chains(planes, rule, segment, seeds)
///   sift_by_lags(workspace, segment, seeds)      `workspace` has text and rule
/// ```
///
/// What a sieve promises: it gets a bit set for each unit length of its rule, with a bit for each
/// base p that has a base after its unit, and clears the bits of seeds that it rejects: those that
/// no extension can turn into an accepted repeat. It changes only the bits of the seeds of one
/// segment. It remembers nothing between two calls: what it reads beyond the segment is read again
/// for the next one. So segments may be taken in any order, with the same result. What a sieve
/// needs meanwhile is handed in as a workspace.
///
/// The verdict on a unit with an N is meaningless.

#include <cstdint>

namespace quorix {

/// The bases [first, end), 0-based. A seed belongs to the segment of its first base; in the sieve
/// of lags to that of the middle of its unit, base p + unit length / 2.
struct Segment {
  std::uint64_t first;
  std::uint64_t end;
};

}  // namespace quorix
