#pragma once

/// @file
/// What a catalogue leaves out, counted by reason.

#include <array>
#include <cstdint>
#include <string>

#include "tools/catalogues/catalogue.h"

namespace quorix::tools {

/// Why a repeat is no locus, in the order in which it is asked.
enum class LeftOutReason : std::size_t {
  kUnreadIdentifier,
  kNoMotif,
  kUnknownBases,
  kLongMotif,
  kShortLength,
  kFewCopies,
  kShortFlank,
  kSameLocus,
  kCount
};

class CLeftOut {
 public:
  void note(LeftOutReason reason) { ++counts_[static_cast<std::size_t>(reason)]; }

  /// Returns what was left out of so many repeats as one line, or an empty text for nothing.
  /// `unread_identifier` is an identifier that the reader of the catalogue refuses, if there was
  /// one.
  [[nodiscard]] std::string summary(const Catalogue& catalogue, std::int64_t repeat_count,
                                    const std::string& unread_identifier) const;

 private:
  std::array<std::int64_t, static_cast<std::size_t>(LeftOutReason::kCount)> counts_{};
};

}  // namespace quorix::tools
