#include "soundness/floor_path.h"

#include <algorithm>

namespace quorix::testing {

namespace {

const std::string kBases = "ACGT";

/// A base other than `base`.
char draw_other_base(RandomEngine& engine, char base) {
  const std::size_t at = kBases.find(base) + draw_between(engine, 1, 3);
  return kBases[at % kBases.size()];
}

/// A path while it is drawn.
class CPathDrawer {
 public:
  CPathDrawer(RandomEngine& engine, const std::string& unit, std::int64_t score,
              const PathRules& rules)
      : engine_(engine), unit_(unit), rules_(rules), score_(score), best_score_(score) {}

  FloorPath draw() {
    const std::size_t edit_count = draw_between(engine_, 0, rules_.max_edits);
    for (std::size_t i = 0; i < edit_count && bases_.size() < rules_.max_bases; ++i) {
      const char kind = draw_kind();
      approach_edit(penalty_of(kind));
      make_edit(kind);
      if (draw_chance(engine_, 10)) match(missing_to_best() + draw_small());
    }
    finish();
    return {bases_, best_score_};
  }

 private:
  [[nodiscard]] std::int64_t unit_length() const { return static_cast<std::int64_t>(unit_.size()); }
  [[nodiscard]] std::int64_t penalty_of(char kind) const {
    return kind == 'M' ? rules_.mismatch_penalty : rules_.indel_penalty;
  }
  [[nodiscard]] std::int64_t missing_to_best() const { return best_score_ + 1 - score_; }

  char draw_kind() {
    switch (rules_.edits) {
      case PathEdits::kMismatches:
        return 'M';
      case PathEdits::kInsertions:
        return 'I';
      case PathEdits::kDeletions:
        return 'D';
      default:
        return "MID"[draw_between(engine_, 0, 2)];
    }
  }

  /// Mostly nothing.
  std::int64_t draw_small() {
    return draw_chance(engine_, 60) ? 0 : static_cast<std::int64_t>(draw_between(engine_, 0, 4));
  }

  void match(std::int64_t count) {
    for (std::int64_t i = 0; i < count; ++i) {
      bases_ += unit_[character_];
      step_character();
      best_score_ = std::max(best_score_, ++score_);
    }
  }

  void step_character() { character_ = (character_ + 1) % unit_.size(); }

  /// Matches up to where an edit that costs `penalty` leaves the score just above the floor.
  void approach_edit(std::int64_t penalty) {
    const std::int64_t missing = penalty - unit_length() + 1 - score_;
    if (missing > 0) {
      match(missing + draw_small());
      return;
    }
    // Still high above the floor: fall fast, or with runs long enough for a look-ahead.
    const auto max_matches = static_cast<std::size_t>(draw_chance(engine_, 50) ? 4 : penalty + 2);
    match(static_cast<std::int64_t>(
        draw_between(engine_, 0, std::min<std::size_t>(max_matches, 40))));
  }

  void make_edit(char kind) {
    if (kind != 'D') bases_ += draw_other_base(engine_, unit_[character_]);
    if (kind != 'I') step_character();
    score_ -= penalty_of(kind);
  }

  /// Ends with a gain: just enough for a new best score, some of a copy, or a few copies.
  void finish() {
    switch (draw_between(engine_, 0, 4)) {
      case 0:
        match(draw_small());
        break;
      case 1:
        match(missing_to_best());
        break;
      case 2:
        match(missing_to_best() + draw_up_to(unit_length()));
        break;
      case 3:
        match(draw_up_to(2 * unit_length()));
        break;
      default:
        match(missing_to_best() + draw_up_to(12));
    }
  }

  std::int64_t draw_up_to(std::int64_t max) {
    return static_cast<std::int64_t>(draw_between(engine_, 0, static_cast<std::size_t>(max)));
  }

  RandomEngine& engine_;
  const std::string& unit_;
  const PathRules& rules_;
  std::string bases_;
  std::size_t character_ = 0;  ///< of the unit, that the next base has to match
  std::int64_t score_;
  std::int64_t best_score_;
};

}  // namespace

FloorPath draw_floor_path(RandomEngine& engine, const std::string& unit, std::int64_t score,
                          const PathRules& rules) {
  return CPathDrawer(engine, unit, score, rules).draw();
}

std::string draw_unit(RandomEngine& engine, std::size_t length) {
  const std::size_t kind = draw_between(engine, 0, 9);
  if (kind == 0) return draw_letters(engine, length, "AC");
  if (kind > 2) return draw_letters(engine, length, kBases);
  const std::string part = draw_letters(engine, draw_between(engine, 1, 6), kBases);
  std::string unit;
  while (unit.size() < length) unit += part;
  unit.resize(length);
  for (std::size_t i = 0; i <= length / 12; ++i) {
    char& base = unit[draw_between(engine, 0, length - 1)];
    base = draw_other_base(engine, base);
  }
  return unit;
}

}  // namespace quorix::testing
