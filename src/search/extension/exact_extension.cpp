// Extension over perfect copies: one pass over the bases, as many at a time as match, with a cursor
// that runs through the unit cyclically, so that the unit is never copied.
//
// Where N's are neutral, the cursor moves over a short run of them as over matches, so the copies
// after it stay in phase. Of a run that is too long none is taken: the extension ends before it, as
// it does at the limit.

#include "search/extension/exact_extension.h"

#include <cstring>

#include "search/extension/direction.h"
#include "search/rules/score.h"
#include "settings/settings.h"

namespace quorix {

namespace {

/// Moves the edge and the cursor `count` bases on.
template <class Direction>
void take_bases(Csat& sat, std::int64_t count) {
  const char*& cursor = Direction::unit_cursor(sat);
  Direction::edge(sat) = Direction::edge_beyond(Direction::edge(sat), count);
  cursor = Direction::character_beyond(cursor, count, sat.unit_begin, sat.unit_end);
}

/// N's in a row beyond `edge`, counted no further than `limit` and `max_count`.
template <class Direction>
std::int64_t count_Ns(const char* edge, const char* limit, std::int64_t max_count) {
  std::int64_t count = 0;
  while (count < max_count && !Direction::is_at_limit(edge, limit) &&
         *Direction::base_beyond(edge) == 'N') {
    edge = Direction::edge_beyond(edge);
    ++count;
  }
  return count;
}

/// Takes matches and short runs of neutral N's in turn. Returns false if a limit or a long run of
/// N's ends the extension.
template <class Direction>
bool extend_exact(Csat& sat, const char* limit) {
  while (true) {
    const std::int64_t matches = matches_beyond<Direction>(
        Direction::edge(sat), Direction::unit_cursor(sat), sat.unit_begin, sat.unit_end, limit);
    sat.score = saturated_score(std::int64_t{sat.score} + matches);
    take_bases<Direction>(sat, matches);
    if (Direction::is_at_limit(Direction::edge(sat), limit)) return false;
    if (*Direction::base_beyond(Direction::edge(sat)) != 'N' || !is_N_neutral()) return true;

    const std::int64_t max_Ns = global_Ns_allowed_in_a_row;
    const std::int64_t run_length = count_Ns<Direction>(Direction::edge(sat), limit, max_Ns + 1);
    if (run_length > max_Ns) return false;
    take_bases<Direction>(sat, run_length);
    sat.n_count += run_length;
  }
}

/// True if all bases of [begin, end) are the same.
bool is_single_base_run(const char* begin, const char* end) {
  // Most units show it in their first two bases.
  return begin[0] == begin[1] &&
         std::memcmp(begin, begin + 1, static_cast<std::size_t>(end - begin) - 1) == 0;
}

}  // namespace

bool extend_exact_forward(Csat& sat, const char* limit) {
  return extend_exact<Rightward>(sat, limit);
}

bool extend_exact_backward(Csat& sat, const char* limit) {
  return extend_exact<Leftward>(sat, limit);
}

bool valid_starting_pattern(const Csat& sat) {
  const auto unit_length = static_cast<std::size_t>(sat.unit_length());
  const void* const first_N = std::memchr(sat.unit_begin, 'N', unit_length);
  return valid_starting_pattern(
      sat.unit_begin, sat.unit_end,
      first_N == nullptr ? sat.unit_end : static_cast<const char*>(first_N));
}

bool valid_starting_pattern(const char* pattern_begin, const char* pattern_end,
                            const char* next_N) {
  const auto unit_length = pattern_end - pattern_begin;
  if (unit_length == 0) return false;
  if (next_N >= pattern_begin && next_N < pattern_end) return false;
  return unit_length == 1 || !is_single_base_run(pattern_begin, pattern_end);
}

}  // namespace quorix
