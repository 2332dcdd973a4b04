#pragma once

/// @file
/// FASTA files as they should be, and what can happen to them on their way.

#include <string>
#include <string_view>

#include "support/random_dna.h"

namespace quorix::testing {

/// A file of one to four records with planted repeats, of up to some hundred bases each; its
/// comments, names, line ends, line lengths and letters vary.
std::string draw_fasta(RandomEngine& engine);

/// `text` after one to six accidents: bytes cut out, flipped, replaced, put in, doubled, swapped,
/// and pieces of other files, FASTA or not, spliced in. Sometimes a long line moves the place of
/// the accident to where a read buffer ends.
std::string spoil(RandomEngine& engine, std::string text);

/// `text` as gzip: in two members, or in BGZF of short members.
std::string compress(RandomEngine& engine, std::string_view text);

}  // namespace quorix::testing
