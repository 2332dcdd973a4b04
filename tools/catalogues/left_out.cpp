#include "tools/catalogues/left_out.h"

#include <numeric>
#include <stdexcept>

namespace quorix::tools {

namespace {

/// Returns a reason as it follows a number.
std::string text_of(LeftOutReason reason, const Catalogue& catalogue,
                    const std::string& unread_identifier) {
  switch (reason) {
    case LeftOutReason::kUnreadIdentifier:
      return "of records that its reader refuses for their names (such as " + unread_identifier +
             ")";
    case LeftOutReason::kNoMotif:
      return "whose motif the report does not tell";
    case LeftOutReason::kUnknownBases:
      return "with N in the motif";
    case LeftOutReason::kLongMotif:
      return "with motifs of more than " + std::to_string(catalogue.max_motif_length) + " bases";
    case LeftOutReason::kShortLength:
      return "shorter than " + std::to_string(catalogue.min_length) + " bases";
    case LeftOutReason::kFewCopies:
      return "with fewer than " + std::to_string(catalogue.min_whole_copies) + " whole copies";
    case LeftOutReason::kShortFlank:
      return "with fewer than " + std::to_string(catalogue.flank_length) +
             " bases to an end of the record";
    case LeftOutReason::kSameLocus:
      return "with place and motif of another";
    case LeftOutReason::kCount:
      break;
  }
  throw std::logic_error("no reason has this number");
}

}  // namespace

std::string CLeftOut::summary(const Catalogue& catalogue, std::int64_t repeat_count,
                              const std::string& unread_identifier) const {
  const std::int64_t total = std::accumulate(counts_.begin(), counts_.end(), std::int64_t{0});
  if (total == 0) return "";
  std::string text = std::string(catalogue.name) + " leaves out " + std::to_string(total) + " of " +
                     std::to_string(repeat_count) + " repeats";
  const char* separator = ": ";
  for (std::size_t i = 0; i < counts_.size(); ++i) {
    if (counts_[i] == 0) continue;
    text += separator + std::to_string(counts_[i]) + ' ' +
            text_of(static_cast<LeftOutReason>(i), catalogue, unread_identifier);
    separator = ", ";
  }
  return text;
}

}  // namespace quorix::tools
