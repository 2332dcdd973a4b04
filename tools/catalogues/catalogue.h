#pragma once

/// @file
/// The catalogues of loci that genotypers read: one table of all that they differ in.

#include <array>
#include <cstdint>
#include <limits>
#include <string_view>

namespace quorix::tools {

/// What a catalogue looks like and what its reader refuses. The rest is the same in all: motifs are
/// of the letters ACGT, and no locus stands there twice.
struct Catalogue {
  std::string_view name;

  /// A locus, with these marks: %c the identifier of the record; %b the start from 0, %s the start
  /// from 1, %e the end, which is the same number in both countings; %l the motif length; %n the
  /// copies; %m the motif; %i the ID of the locus.
  std::string_view row;

  bool is_json = false;  ///< the rows are elements of a list
  bool is_bed = false;   ///< lines may begin with the words of a browser

  /// Characters that end a field in a row: a record whose identifier has one is an error.
  std::string_view separators = "";
  /// Characters that the reader of the catalogue refuses, although the rows can hold them: the loci
  /// of a record whose identifier has one are left out.
  std::string_view unread_characters = "";

  std::int64_t max_motif_length = std::numeric_limits<std::int64_t>::max();  ///< in bp
  std::int64_t min_length = 1;                                               ///< of a locus, in bp
  /// If not 0, the end is cut to whole copies of the motif, of which so many are needed.
  std::int64_t min_whole_copies = 0;
  std::int64_t flank_length = 0;  ///< bp that the record must have on both sides of a locus
  bool joins_motifs = false;      ///< the motifs of one place share a row
};

inline constexpr std::array<Catalogue, 7> kCatalogues{{
    {.name = "expansionhunter",
     .row = R"({"LocusId": "%i", "LocusStructure": "(%m)*", "ReferenceRegion": "%c:%b-%e", )"
            R"("VariantType": "Repeat"})",
     .is_json = true,
     .unread_characters = "-:",
     .flank_length = 1000},
    {.name = "gangstr", .row = "%c\t%s\t%e\t%l\t%m\n", .min_whole_copies = 2},
    {.name = "hipstr", .row = "%c\t%s\t%e\t%l\t%n\t%i\n", .max_motif_length = 9, .min_length = 2},
    {.name = "longtr", .row = "%c\t%s\t%e\t%m\t%i\n"},
    {.name = "straglr", .row = "%c\t%b\t%e\t%m\n", .is_bed = true},
    {.name = "trgt",
     .row = "%c\t%b\t%e\tID=%i;MOTIFS=%m;STRUC=(%m)n\n",
     .is_bed = true,
     .separators = ";=,"},
    {.name = "vamos", .row = "%c\t%s\t%e\t%m\n", .joins_motifs = true},
}};

/// Returns the catalogue of this name, or null if there is none.
[[nodiscard]] const Catalogue* find_catalogue(std::string_view name);

}  // namespace quorix::tools
