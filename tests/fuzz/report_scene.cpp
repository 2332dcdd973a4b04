#include "fuzz/report_scene.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <deque>

#include "settings/settings.h"
#include "support/test_record.h"

namespace quorix::fuzz {

namespace {

using reference::Repeat;

constexpr std::int64_t kMaxUnitLength = 12;
constexpr int kMaxRepeats = 4;

std::int64_t length_of(const std::string& bases) {
  return static_cast<std::int64_t>(bases.size());
}

char other_base(char base) {
  return base == 'A' ? 'G' : base == 'G' ? 'T' : base == 'T' ? 'C' : 'A';
}

/// Extends a repeat to the right, base by base and edit by edit.
class CRepeatWriter {
 public:
  CRepeatWriter(std::string& bases, std::string unit, std::int64_t phase)
      : bases_(bases), unit_(std::move(unit)), phase_(phase), repeat_{} {
    repeat_.unit_begin = length_of(bases_);
    bases_ += unit_;
    repeat_.unit_end = repeat_.start = length_of(bases_);
    repeat_.unit_pos_left = repeat_.unit_begin + (phase + unit_length() - 1) % unit_length();
  }

  void add_match() { add_base(character(), true); }
  void add_mismatch() {
    add_edit('M');
    ++repeat_.mismatches;
    add_base(other_base(character()), true);
  }
  void add_insertion() {
    add_edit('I');
    ++repeat_.insertions;
    add_base(other_base(character()), false);
  }
  /// Of the unit's next character, which is missing.
  void add_deletion() {
    add_edit('D');
    ++repeat_.deletions;
    advance();
  }
  void add_N() {
    if (global_treat_Ns_as_missense) {
      add_edit('M');
      ++repeat_.mismatches;
    } else {
      ++repeat_.n_count;
    }
    add_base('N', true);
  }

  /// The repeat has a base, and ends with one.
  [[nodiscard]] Repeat finish() {
    if (repeat_.start == length_of(bases_)) add_match();
    while (!repeat_.edits.empty() && repeat_.edits.back().position == length_of(bases_)) {
      repeat_.edits.pop_back();
      --repeat_.deletions;
      phase_ = (phase_ + unit_length() - 1) % unit_length();
    }
    repeat_.end = length_of(bases_);
    repeat_.unit_pos_right = repeat_.unit_begin + phase_;
    return repeat_;
  }

 private:
  [[nodiscard]] std::int64_t unit_length() const { return length_of(unit_); }
  [[nodiscard]] char character() const { return unit_[static_cast<std::size_t>(phase_)]; }
  void advance() { phase_ = (phase_ + 1) % unit_length(); }
  void add_edit(char kind) { repeat_.edits.push_back({length_of(bases_), kind}); }
  void add_base(char base, bool is_character_used) {
    bases_ += base;
    if (is_character_used) advance();
  }

  std::string& bases_;
  std::string unit_;
  std::int64_t phase_;
  Repeat repeat_;
};

Repeat take_repeat(CFuzzInput& input, std::string& bases) {
  std::string unit;
  const std::int64_t unit_length = input.take_between(1, kMaxUnitLength);
  while (length_of(unit) < unit_length) unit += "ACGT"[input.take_between(0, 3)];
  CRepeatWriter writer(bases, unit, input.take_between(0, unit_length - 1));
  for (std::int64_t count = input.take_between(0, 40); count > 0; --count) {
    switch (input.take_byte() % 8) {
      case 4:
        writer.add_mismatch();
        break;
      case 5:
        writer.add_insertion();
        break;
      case 6:
        writer.add_deletion();
        break;
      case 7:
        writer.add_N();
        break;
      default:
        writer.add_match();
    }
  }
  Repeat repeat = writer.finish();
  repeat.score = std::bit_cast<std::int32_t>(input.take_word());
  // Numbers that are wider than their columns. Deletions have a place in the alignment each.
  const std::uint8_t shift = input.take_byte();
  if (shift % 4 == 1) repeat.mismatches += std::int64_t{1} << (shift / 4 % 40);
  if (shift % 4 == 2) repeat.insertions += std::int64_t{1} << (shift / 4 % 40);
  if (shift % 4 == 3) repeat.n_count += std::int64_t{1} << (shift / 4 % 40);
  return repeat;
}

}  // namespace

ReportScene take_scene(CFuzzInput& input) {
  ReportScene scene;
  scene.name = input.take_text(input.take_byte() % 40);
  // A line end would have ended it.
  std::erase_if(scene.name, [](char letter) { return letter == '\n' || letter == '\r'; });
  for (std::int64_t count = input.take_between(0, kMaxRepeats); count > 0; --count) {
    scene.repeats.push_back(take_repeat(input, scene.bases));
  }
  scene.bases += input.take_bases(20);
  return scene;
}

std::list<Csat*> as_program_holds(const ReportScene& scene, CSequence_Mol& record) {
  static std::deque<Csat> pool(kMaxRepeats);
  testing::set_record(record, scene.name, scene.bases);
  const char* const text = record.sequence.data();
  std::list<Csat*> repeats;
  for (const Repeat& repeat : scene.repeats) {
    Csat& sat = pool[repeats.size()];
    sat.init_from_unit(text + repeat.unit_begin, text + repeat.unit_end);
    sat.start = text + repeat.start;
    sat.end = text + repeat.end;
    sat.unit_pos_right = text + repeat.unit_pos_right;
    sat.unit_pos_left = text + repeat.unit_pos_left;
    sat.score = repeat.score;
    sat.mismatches = repeat.mismatches;
    sat.insertions = repeat.insertions;
    sat.deletions = repeat.deletions;
    sat.n_count = repeat.n_count;
    for (const auto& [position, kind] : repeat.edits) {
      sat.missense.push_back({text + position, kind});
    }
    repeats.push_back(&sat);
  }
  return repeats;
}

}  // namespace quorix::fuzz
