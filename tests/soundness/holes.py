"""Holes that the attack on the filters has to find: each makes a filter reject too much.

A hole is a name and a list of changes, each a file of src/search, a text that stands there once, and
what it becomes. Some bounds reject nothing without vectors, so that their holes show only with them.
"""

LAG_GRID = "filter/lag_grid.cpp"
LAGS = "filter/lag_sieve.cpp"
BLOCKS = "filter/block_sieve.cpp"
NETS = "filter/block_nets.cpp"
DRIFT = "filter/block_drift.cpp"
BATCH = "filter/batch_bound.cpp"
SINGLE = "filter/single_bound.cpp"
GROUP = "filter/group_bound.cpp"
LETTERS = "filter/group_letters.cpp"
ROWS = "filter/register_rows.h"
CHAIN_STATES = "filter/chain_states.cpp"
CHAIN = "filter/chain_sieve.cpp"
RUNS = "filter/run_sieve.cpp"
BOUNDS = "filter/seed_bounds.cpp"
PLAN = "filter/filter_plan.cpp"
KEY = "extension/site_key.h"
IMPERFECT = "extension/imperfect_extension.cpp"
WALLS = "filter/walled_text.cpp"

HOLES = {
    "lag grid: an even lowest lag is rounded up": [
        (LAG_GRID, "first_lag_ = (lowest_lag - 1) | 1;",
         "first_lag_ = lowest_lag | 1;\n  if (first_lag_ > first) first_lag_ -= 2;")],
    "lag grid: room for one indel fewer": [
        (LAG_GRID, "return (kMaxGain + 2 * unit_length - 1) / rule_.scoring.indel_penalty;",
         "return std::max<std::int64_t>(\n"
         "      (kMaxGain + 2 * unit_length - 1) / rule_.scoring.indel_penalty - 1, 0);")],
    "lag grid: half of the rows ahead": [
        (LAG_GRID, "rows_ahead_ = 2 * last + indels + 2;", "rows_ahead_ = last + indels + 2;")],
    "lag grid: the cap of the gain is a quarter of what it has to be": [
        (LAG_GRID, "as_byte(max_unit);", "as_byte(max_unit / 4);")],
    "lag grid: the cap of the persistence allows for no fall": [
        (LAG_GRID, "as_byte(min_persistence(max_unit) + deepest_fall(max_unit));",
         "as_byte(min_persistence(max_unit));")],
    "lag grid: two points of persistence too many are asked for": [
        (LAG_GRID, "return std::max<std::int64_t>(weights_.reward * unit_length - max_loss, 0);",
         "return std::max<std::int64_t>(weights_.reward * unit_length - max_loss + 2, 0);")],
    "lag sieve: no path persists by its N's": [
        (LAGS, "free_letters{letters.is_free, letters.is_free};",
         "free_letters{letters.is_match, letters.is_free};")],
    "lag sieve: to the left each segment begins with its own rows": [
        (LAGS, "t = grid.row_before(first_row);", "t = first_row;")],
    "block sieve: the left side begins without the score of the right": [
        (BLOCKS, "sides.left.follow(b, units, right.best_score);", "sides.left.follow(b, units, 0);")],
    "block sieve: paths begin at the first character of a block": [
        (BLOCKS, "(begins_inside ? kBeginSpread : 0)", "0")],
    "block sieve: no indel changes the lag": [
        (BLOCKS, "(entry_ + units_.last + characters_) / indel_penalty_ + 1;", "0;")],
    "block sieve: paths whose lags are too long are taken for dead": [
        (BLOCKS, "return {best_, is_too_far_};", "return {best_, false};")],
    "block nets: neutral N's cost a mismatch": [
        (NETS, "compare_letters<true>(", "compare_letters<false>(")],
    "batch bound: what is given up is taken for dead": [
        (BATCH, "return give_up(best, row, last, before);", "return best;")],
    "batch bound: the left side begins without the score of the right": [
        (BATCH, "hn::IfThenZeroElse(is_answered, best));",
         "hn::IfThenZeroElse(is_answered, hn::Load(d, values)));")],
    "batch bound: neutral N's cost a mismatch": [
        (BATCH, "compare_letters<kMayHaveNs>(d, base, equal, neutral_letter), weights);",
         "compare_letters<false>(d, base, equal, neutral_letter), weights);")],
    "block drift: paths stay in their bucket": [
        (DRIFT, "std::int64_t to = i - 1; to <= i + 1; ++to", "std::int64_t to = i; to <= i; ++to")],
    "block drift: paths begin at the first character alone": [
        (DRIFT, "first + kSpread + 1);", "first + 1);")],
    "batch bound: one lane less in each row": [
        (BATCH, "std::max(last.high + 1, before.high)};", "std::max(last.high, before.high)};")],
    "single bound: paths may leave at the edge of the rows": [
        (ROWS, "if (lanes[0] != 0 || lanes[kLanes - 1] != 0) return std::nullopt;", "")],
    "single bound: the left side begins without the score of the right": [
        (SINGLE, "table.start_value = *right;", "")],
    "single bound: a budget of 256 rows": [
        (SINGLE, "row < kMaxSingleRows;", "row < 256;"),
        (SINGLE, "if (!is_alive || !highest) return highest;\n  }\n  return std::nullopt;",
         "if (!is_alive || !highest) return highest;\n  }\n  return rows.highest_value(target);")],
    "single bound: the phase on the left is one off": [
        (SINGLE, "table.skipped = unit_length - 1 - repeat.left_phase;",
         "table.skipped = (unit_length - repeat.left_phase) % unit_length;")],
    "group bound: fewer offsets wrap": [
        (LETTERS, "std::min(span, part);", "std::min(span / 2, part);")],
    "group bound: what has no room is taken for dead": [
        (GROUP, "if (!has_room_for(range, row)) return std::nullopt;",
         "if (!has_room_for(range, row)) return hn::GetLane(hn::MaxOfLanes(d, best_));")],
    "group bound: the left side is entered in the order of the right": [
        (LETTERS, "is_rightward ? question.asked : mirrored(question.asked, span),",
         "question.asked,")],
    "group bound: rows in registers end before the last seed enters": [
        (GROUP, "!is_alive && row / 2 > last_entry;", "!is_alive;")],
    "group bound: one lane less in each row": [
        (GROUP, "std::min(last_.low - odd, before_.low),", "std::min(last_.low, before_.low),")],
    "chain states: one match more is asked for": [
        (CHAIN_STATES, "(edits + 1 - all) * min_penalty;",
         "(edits + 1 - all) * min_penalty + 1;")],
    "chain states: the floor is one point higher": [
        (CHAIN_STATES, "state.min_matches = state.cost - unit_length + 1;",
         "state.min_matches = state.cost - unit_length + 2;")],
    "chain sieve: few deletions are followed": [
        (CHAIN, "if (state.before_deletion >= 0) {", "if (state.before_deletion >= 4) {")],
    "chain sieve: the left side begins without the score of the right": [
        (CHAIN, "if (kIsRightward || missing > max_bases_) return",
         "if (kIsRightward || missing > 0) return")],
    "runs: no insertion on the left": [
        (RUNS, "         lags.longer().ones_down_from(first - 1) >= at_longer_lag ||\n", "")],
    "runs: neutral N's end a run": [
        (RUNS, "planes_.find_matches(lag, is_N_wild_, matches_[lag % 3]);",
         "planes_.find_matches(lag, false, matches_[lag % 3]);")],
    "runs: the sieve looks half as far": [
        (RUNS, "half_(static_cast<std::uint64_t>((rule.min_two_runs + 1) / 2)),",
         "half_(static_cast<std::uint64_t>((rule.min_two_runs + 1) / 4)),")],
    "filter plan: the first edit needs one match more": [
        (PLAN, "scoring_.min_penalty() - unit_length + 1;",
         "scoring_.min_penalty() - unit_length + 2;")],
    "walled text: a run as long as allowed is a wall": [
        (WALLS, "run_end - run <= static_cast", "run_end - run < static_cast")],
    "filter plan: the second edit needs one match more": [
        (PLAN, "min_two_runs = edited_run + scoring_.min_penalty();",
         "min_two_runs = edited_run + scoring_.min_penalty() + 1;")],
    "edit cache: a place serves near the end of a unit": [
        (KEY, "kWindowCharacters &&", "8 &&")],
    "edit cache: a place serves at any score": [
        (KEY, "sat.score >= min_safe_score(sat.unit_length()) &&", "")],
    "edit cache: a place serves whatever the look-ahead has read": [
        (IMPERFECT, "if (is_in_window || site->unit_code < kPlaceMark) tools", "tools")],
    "seed filter: a verdict of a group counts for seeds that were not asked about": [
        (BOUNDS, "return {p, group, 0};", "return {p, ~std::uint64_t{0}, 0};")],
}
