#include "tools/catalogue_readers.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <stdexcept>

namespace quorix::testing {
namespace {

using Row = std::vector<std::string>;

void require(bool is_met, const std::string& what) {
  if (!is_met) throw std::runtime_error("refused: " + what);
}

Row split(const std::string& text, char separator) {
  Row parts{""};
  for (const char character : text) {
    if (character == separator) {
      parts.emplace_back();
    } else {
      parts.back() += character;
    }
  }
  return parts;
}

std::int64_t whole_number(const std::string& text) {
  require(!text.empty() && text.find_first_not_of("0123456789") == std::string::npos, text);
  require(text.size() == 1 || text.front() != '0', text);
  return std::stoll(text);
}

std::string motif(const std::string& text) {
  require(!text.empty() && text.find_first_not_of("ACGT") == std::string::npos, text);
  return text;
}

/// Text between two others that must stand there.
std::string between(const std::string& text, const std::string& before, const std::string& after) {
  require(text.starts_with(before) && text.ends_with(after) &&
              text.size() >= before.size() + after.size(),
          text);
  return text.substr(before.size(), text.size() - before.size() - after.size());
}

void read_place(const Row& row, bool counts_from_0, ReadLocus& locus) {
  locus.sequence = row[0];
  require(!locus.sequence.empty() && locus.sequence.find(' ') == std::string::npos, "the name");
  require(!locus.sequence.starts_with('#'), "a comment");
  locus.start = whole_number(row[1]) + (counts_from_0 ? 1 : 0);
  locus.end = whole_number(row[2]);
}

void read_hipstr(const Row& row, ReadLocus& locus) {
  require(row.size() == 5 || row.size() == 6, "the number of columns");
  read_place(row, false, locus);
  require(locus.end > locus.start, "end > start");
  locus.motif_length = whole_number(row[3]);
  require(locus.motif_length >= 1 && locus.motif_length <= 9, "the motif length");
  std::size_t length = 0;
  locus.copies = std::stod(row[4], &length);
  require(length == row[4].size() && locus.copies > 0, "the copies");
  if (row.size() == 6) locus.id = row[5];
}

void read_gangstr(const Row& row, ReadLocus& locus) {
  require(row.size() == 5, "the number of columns");
  read_place(row, false, locus);
  locus.motif_length = whole_number(row[3]);
  locus.motifs = {motif(row[4])};
  require((locus.end - locus.start + 1) % locus.motif_length == 0, "whole copies");
}

void read_longtr(const Row& row, ReadLocus& locus) {
  require(row.size() == 5, "the number of columns");
  read_place(row, false, locus);
  locus.motifs = {motif(row[3])};
  locus.id = row[4];
}

void read_trgt(const Row& row, ReadLocus& locus) {
  require(row.size() == 4, "the number of columns");
  read_place(row, true, locus);
  const Row fields = split(row[3], ';');
  require(fields.size() == 3, "the number of fields");
  locus.id = between(fields[0], "ID=", "");
  require(locus.id.find_first_of("=,") == std::string::npos, "the ID");
  locus.motifs = {motif(between(fields[1], "MOTIFS=", ""))};
  require(between(fields[2], "STRUC=(", ")n") == locus.motifs.front(), "the structure");
}

void read_straglr(const Row& row, ReadLocus& locus) {
  require(row.size() == 4, "the number of columns");
  read_place(row, true, locus);
  locus.motifs = {motif(row[3])};
}

void read_vamos(const Row& row, ReadLocus& locus) {
  require(row.size() == 4, "the number of columns");
  read_place(row, false, locus);
  for (const std::string& one : split(row[3], ',')) locus.motifs.push_back(motif(one));
  require(
      std::set<std::string>(locus.motifs.begin(), locus.motifs.end()).size() == locus.motifs.size(),
      "a motif twice");
}

std::vector<ReadLocus> read_rows(const std::string& text,
                                 void (*read_row)(const Row& row, ReadLocus& locus)) {
  require(text.empty() || text.ends_with('\n'), "the last line has no end");
  std::vector<ReadLocus> loci;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    read_row(split(line, '\t'), loci.emplace_back());
  }
  return loci;
}

std::vector<ReadLocus> read_expansionhunter(const std::string& text, const RecordLengths& lengths) {
  constexpr std::int64_t kFlank = 1000;
  const nlohmann::json list = nlohmann::json::parse(text);
  require(list.is_array(), "no list");
  std::vector<ReadLocus> loci;
  for (const nlohmann::json& object : list) {
    require(object.size() == 4 && object.at("VariantType") == "Repeat", "the keys");
    ReadLocus& locus = loci.emplace_back();
    locus.id = object.at("LocusId");
    locus.motifs = {motif(between(object.at("LocusStructure"), "(", ")*"))};
    const Row region = split(object.at("ReferenceRegion"), ':');
    require(region.size() == 2, "Unexpected range format");
    const Row place = split(region[1], '-');
    require(place.size() == 2 && region[0].find('-') == std::string::npos,
            "Unexpected range format");
    read_place({region[0], place[0], place[1]}, true, locus);
    require(locus.start - 1 >= kFlank && locus.end + kFlank <= lengths.at(locus.sequence),
            "the flanks");
  }
  return loci;
}

std::vector<ReadLocus> read_loci(const std::string& catalogue, const std::string& text,
                                 const RecordLengths& lengths) {
  if (catalogue == "expansionhunter") return read_expansionhunter(text, lengths);
  if (catalogue == "gangstr") return read_rows(text, read_gangstr);
  if (catalogue == "hipstr") return read_rows(text, read_hipstr);
  if (catalogue == "longtr") return read_rows(text, read_longtr);
  if (catalogue == "straglr") return read_rows(text, read_straglr);
  if (catalogue == "trgt") return read_rows(text, read_trgt);
  if (catalogue == "vamos") return read_rows(text, read_vamos);
  throw std::logic_error("no reader for " + catalogue);
}

}  // namespace

std::vector<ReadLocus> read_catalogue(const std::string& catalogue, const std::string& text,
                                      const RecordLengths& lengths) {
  std::vector<ReadLocus> loci = read_loci(catalogue, text, lengths);
  std::set<std::string> ids;
  for (ReadLocus& locus : loci) {
    require(locus.start >= 1 && locus.start <= locus.end && locus.end <= lengths.at(locus.sequence),
            "the place");
    if (locus.motif_length == 0) {
      locus.motif_length = static_cast<std::int64_t>(locus.motifs.front().size());
    }
    require(locus.motifs.empty() ||
                static_cast<std::int64_t>(locus.motifs.front().size()) == locus.motif_length,
            "the motif length");
    require(locus.id.empty() || ids.insert(locus.id).second, "an ID twice: " + locus.id);
  }
  return loci;
}

}  // namespace quorix::testing
