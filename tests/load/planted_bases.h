#pragma once

/// @file
/// Records of any length, base by base from a seed, with repeats planted where large numbers turn:
/// at both ends of a record and across every power of two in it. Nobody holds such a record as a
/// whole: the writer of the input and the checker of the outputs both draw it anew.

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace quorix::load {

struct PlantedEdit {
  std::size_t position;  ///< within the repeat, from 1
  char kind;             ///< 'M', 'I' or 'D'
};

struct PlantedRepeat {
  std::uint64_t start;  ///< in the record, from 0
  std::string unit;     ///< as a report names it
  std::string bases;
  std::vector<PlantedEdit> edits;  ///< none, or one of each kind, by position

  /// One past the last base, from 0.
  [[nodiscard]] std::uint64_t end() const { return start + bases.size(); }
};

/// Random bases between planted repeats. A record of at least `kMinPlantedLength` bases has an
/// exact repeat at its beginning; across each power of two from that length on an exact or a
/// diverged one, and the other kind some 400 bases after it; and both kinds at its end, where the
/// last base of one is the record's last. The seed decides which kind comes first. Shorter records
/// have none.
class CPlantedBases {
 public:
  static constexpr std::uint64_t kMinPlantedLength = 4096;

  /// The same seed gives the same records on every machine.
  explicit CPlantedBases(std::uint64_t seed);

  /// Turns to the next record.
  void begin_record(std::uint64_t length);

  /// What is planted in the record, by position.
  [[nodiscard]] const std::vector<PlantedRepeat>& planted() const { return planted_; }

  /// The next bases of the record: `count` of them, fewer where it ends, none after its end. Valid
  /// until the next call. REQUIRES: count <= kMaxBases.
  [[nodiscard]] std::string_view next(std::size_t count);

  static constexpr std::size_t kMaxBases = 65'536;

 private:
  struct Patch {
    std::uint64_t start;
    std::string bases;
  };

  std::size_t between(std::size_t first, std::size_t last);
  PlantedRepeat exact_repeat();
  PlantedRepeat diverged_repeat();
  PlantedRepeat repeat(bool is_diverged) {
    return is_diverged ? diverged_repeat() : exact_repeat();
  }
  void plant(PlantedRepeat repeat, std::uint64_t start);
  void plant_across(std::uint64_t boundary, bool is_diverged);
  void plant_all();
  void draw_block();

  bool is_diverged_first_;
  std::mt19937_64 bases_engine_;
  std::mt19937_64 plan_engine_;
  std::uint64_t length_ = 0;
  std::vector<PlantedRepeat> planted_;
  std::vector<Patch> patches_;  ///< the planted repeats with their guards
  std::size_t next_patch_ = 0;
  std::uint64_t drawn_ = 0;  ///< bases of the record that have been in the block
  std::string block_;
  std::size_t given_ = 0;  ///< bases of the block that have been handed out
  std::string joined_;
};

}  // namespace quorix::load
