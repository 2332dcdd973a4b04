#pragma once

/// @file
/// Readers of catalogues, written apart from the program and as strict as genotypers are: what one
/// of them refuses ends here with an exception.

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace quorix::testing {

/// A locus with both ends in it, counted from 1, whatever its catalogue counts.
struct ReadLocus {
  std::string sequence;
  std::int64_t start = 0;
  std::int64_t end = 0;
  std::vector<std::string> motifs;  ///< none in a catalogue without them
  std::string id;                   ///< empty in a catalogue without them
  std::int64_t motif_length = 0;
  double copies = 0;  ///< 0 in a catalogue without them
};

/// The lengths of the records that a genotyper knows from its genome.
using RecordLengths = std::map<std::string, std::int64_t>;

/// Reads a catalogue. Throws: std::runtime_error for what its genotyper would refuse.
std::vector<ReadLocus> read_catalogue(const std::string& catalogue, const std::string& text,
                                      const RecordLengths& lengths);

}  // namespace quorix::testing
