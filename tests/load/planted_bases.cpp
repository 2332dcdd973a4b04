#include "load/planted_bases.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstring>
#include <utility>

namespace quorix::load {

namespace {

constexpr std::uint64_t kPlanSeed = 0x9E3779B97F4A7C15U;
constexpr std::size_t kBlockSize = 65'536;
constexpr std::size_t kBasesADraw = 32;
constexpr std::size_t kBasesAByte = 4;
constexpr std::uint64_t kDistance = 400;

/// Units are of A and C, and so no base of a guard matches: no extension goes on through it.
constexpr std::string_view kGuard = "GTTTGGTGGGTT";

/// Least rotations, none of them a repetition of a shorter unit.
constexpr std::array<std::string_view, 12> kUnits = {
    "A", "C", "AC", "AAC", "ACC", "AAAC", "AACC", "ACCC", "AAACC", "AACAC", "AAACCC", "AACACC"};

using Quadruple = std::array<char, kBasesAByte>;

/// The four bases of each byte.
std::array<Quadruple, 256> make_quadruples() {
  constexpr std::string_view kBases = "ACGT";
  std::array<Quadruple, 256> quadruples{};
  for (std::size_t byte = 0; byte < quadruples.size(); ++byte) {
    for (std::size_t i = 0; i < kBasesAByte; ++i) quadruples[byte][i] = kBases[byte >> 2 * i & 3U];
  }
  return quadruples;
}

void append_copies(std::string& bases, const std::string& unit, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) bases += unit;
}

}  // namespace

CPlantedBases::CPlantedBases(std::uint64_t seed)
    : is_diverged_first_(seed % 2 == 1), bases_engine_(seed), plan_engine_(seed ^ kPlanSeed) {}

std::size_t CPlantedBases::between(std::size_t first, std::size_t last) {
  return first + static_cast<std::size_t>(plan_engine_() % (last - first + 1));
}

PlantedRepeat CPlantedBases::exact_repeat() {
  PlantedRepeat made;
  made.unit = kUnits[between(0, kUnits.size() - 1)];
  const std::size_t phase = between(0, made.unit.size() - 1);
  const std::size_t length = between(40, 79);
  for (std::size_t i = 0; i < length; ++i) made.bases += made.unit[(phase + i) % made.unit.size()];
  return made;
}

/// A T for the A of a copy, a G before another copy, a third copy without its A: with one A in
/// a unit of C's no other edits explain as much.
PlantedRepeat CPlantedBases::diverged_repeat() {
  PlantedRepeat made;
  made.unit = std::string(between(3, 6), 'C');
  made.unit.front() = 'A';
  const std::size_t least_copies = 16 / made.unit.size() + 1;
  const auto append_stretch = [&] {
    append_copies(made.bases, made.unit, between(least_copies, least_copies + 3));
  };
  const auto add_edit = [&](char kind) { made.edits.push_back({made.bases.size() + 1, kind}); };

  append_stretch();
  add_edit('M');
  made.bases += 'T';
  made.bases += made.unit.substr(1);
  append_stretch();
  add_edit('I');
  made.bases += 'G';
  append_stretch();
  add_edit('D');
  made.bases += made.unit.substr(1);
  append_stretch();
  made.bases += made.unit.substr(0, between(0, made.unit.size() - 1));
  return made;
}

void CPlantedBases::plant(PlantedRepeat repeat, std::uint64_t start) {
  repeat.start = start;
  Patch patch{start, repeat.bases};
  if (start >= kGuard.size()) {
    patch.start -= kGuard.size();
    patch.bases.insert(0, kGuard);
  }
  if (repeat.end() + kGuard.size() <= length_) patch.bases += kGuard;
  patches_.push_back(std::move(patch));
  planted_.push_back(std::move(repeat));
}

void CPlantedBases::plant_across(std::uint64_t boundary, bool is_diverged) {
  PlantedRepeat crossing = repeat(is_diverged);
  const std::size_t before = between(1, crossing.bases.size() - 1);
  plant(std::move(crossing), boundary - before);
  plant(repeat(!is_diverged), boundary + kDistance);
}

void CPlantedBases::plant_all() {
  plant(exact_repeat(), 0);
  bool is_diverged = is_diverged_first_;
  std::uint64_t boundary = kMinPlantedLength;
  // The last plants need some room.
  for (; boundary + 4 * kDistance <= length_; boundary *= 2) {
    plant_across(boundary, is_diverged);
    is_diverged = !is_diverged;
  }
  PlantedRepeat last = repeat(is_diverged);
  PlantedRepeat last_but_one = repeat(!is_diverged);
  const std::uint64_t last_start = length_ - last.bases.size();
  plant(std::move(last_but_one), last_start - kDistance);
  plant(std::move(last), last_start);
}

void CPlantedBases::begin_record(std::uint64_t length) {
  length_ = length;
  planted_.clear();
  patches_.clear();
  if (length >= kMinPlantedLength) plant_all();
  next_patch_ = 0;
  drawn_ = 0;
  block_.clear();
  given_ = 0;
}

void CPlantedBases::draw_block() {
  static const std::array<Quadruple, 256> quadruples_of_bytes = make_quadruples();
  const std::size_t size = std::min<std::uint64_t>(kBlockSize, length_ - drawn_);
  block_.resize((size + kBasesADraw - 1) / kBasesADraw * kBasesADraw);
  for (std::size_t i = 0; i < block_.size(); i += kBasesADraw) {
    std::uint64_t bits = bases_engine_();
    for (std::size_t k = 0; k < kBasesADraw; k += kBasesAByte, bits >>= 8U) {
      std::memcpy(block_.data() + i + k, quadruples_of_bytes[bits & 0xFFU].data(), kBasesAByte);
    }
  }
  block_.resize(size);
  given_ = 0;

  const std::uint64_t block_end = drawn_ + size;
  for (std::size_t i = next_patch_; i < patches_.size() && patches_[i].start < block_end; ++i) {
    const Patch& patch = patches_[i];
    const std::uint64_t patch_end = patch.start + patch.bases.size();
    const std::uint64_t first = std::max(patch.start, drawn_);
    const std::uint64_t last = std::min(patch_end, block_end);
    block_.replace(first - drawn_, last - first, patch.bases, first - patch.start, last - first);
    if (patch_end <= block_end) next_patch_ = i + 1;
  }
  drawn_ = block_end;
}

std::string_view CPlantedBases::next(std::size_t count) {
  assert(count <= kMaxBases);
  const auto take = [&](std::size_t most) {
    const std::string_view taken = std::string_view(block_).substr(given_, most);
    given_ += taken.size();
    return taken;
  };
  if (given_ == block_.size() && drawn_ < length_) draw_block();
  const std::string_view whole = take(count);
  if (whole.size() == count || drawn_ == length_) return whole;
  joined_ = whole;
  draw_block();
  joined_ += take(count - joined_.size());
  return joined_;
}

}  // namespace quorix::load
