// Catalogues of random reports of every kind, read by strict readers, beside the loci that a plain
// search for them finds in the report, and beside the bases of the records themselves.

#include <gtest/gtest.h>

#include <sstream>

#include "support/engine_comparison.h"
#include "support/random_options.h"
#include "tools/catalogue_readers.h"
#include "tools/commands/convert_command.h"
#include "tools/io/errors.h"
#include "tools/random_reports.h"
#include "tools/report_text.h"
#include "tools/tool_run.h"

namespace quorix::testing {
namespace {

constexpr const char* kCatalogueNames[] = {"expansionhunter", "gangstr", "hipstr", "longtr",
                                           "straglr",         "trgt",    "vamos"};

/// What the cases have shown, so that a generator that plants too little is noticed.
struct CatalogueTally {
  std::size_t reports = 0;
  std::size_t refused = 0;
  std::size_t loci = 0;
  std::size_t edited = 0;
  std::size_t cut = 0;
  std::size_t same = 0;
  std::size_t joined = 0;
  std::size_t left_out = 0;
};

/// A repeat of a report, as it should stand in a catalogue.
struct ExpectedLocus {
  std::string sequence;
  std::int64_t end = 0;
  std::vector<std::string> motifs;
  const OwnedRepeat* repeat = nullptr;
};

/// The least of all rotations of both strands, by trying each.
std::string least_rotation(const std::string& unit) {
  std::string other(unit.rbegin(), unit.rend());
  for (char& base : other) base = std::string("TGCA")[std::string("ACGT").find(base)];
  std::string least = unit;
  for (std::size_t i = 0; i < unit.size(); ++i) {
    least =
        std::min({least, unit.substr(i) + unit.substr(0, i), other.substr(i) + other.substr(0, i)});
  }
  return least;
}

bool tells_motifs(const tools::ReportSettings& settings) {
  if (settings.sequence_mode == tools::SequenceMode::kAlignment) return true;
  if (settings.sequence_mode == tools::SequenceMode::kNone) return false;
  return settings.format == tools::ReportFormat::kExtendedQuorix ||
         settings.search_mode == tools::SearchMode::kExact;
}

/// True if a catalogue can hold a repeat.
bool can_hold(const std::string& catalogue, const OwnedRepeat& repeat, std::int64_t record_length) {
  const tools::Repeat& figures = repeat.figures;
  if (repeat.motif.empty() || repeat.motif.find('N') != std::string::npos) return false;
  if (catalogue == "hipstr") return figures.unit_length <= 9 && figures.end > figures.start;
  if (catalogue == "gangstr") return figures.length() >= 2 * figures.unit_length;
  if (catalogue == "expansionhunter") {
    return figures.start > 1000 && figures.end <= record_length - 1000;
  }
  return true;
}

bool is_same_place(const ExpectedLocus& left, const ExpectedLocus& right) {
  return left.repeat->figures.start == right.repeat->figures.start && left.end == right.end;
}

/// Adds a locus of a record to the others, unless it is one of them with no higher score.
void add_expected(const ExpectedLocus& locus, std::vector<ExpectedLocus>& loci,
                  CatalogueTally& tally) {
  for (ExpectedLocus& other : loci) {
    if (!is_same_place(other, locus) ||
        least_rotation(other.motifs.front()) != least_rotation(locus.motifs.front())) {
      continue;
    }
    ++tally.same;
    if (locus.repeat->figures.score > other.repeat->figures.score) other = locus;
    return;
  }
  loci.push_back(locus);
}

/// Sorts the loci of a record, and makes those at one place one where the catalogue does.
std::vector<ExpectedLocus> in_order(const std::string& catalogue, std::vector<ExpectedLocus> loci,
                                    CatalogueTally& tally) {
  std::stable_sort(loci.begin(), loci.end(),
                   [](const ExpectedLocus& left, const ExpectedLocus& right) {
                     return std::pair(left.repeat->figures.start, left.end) <
                            std::pair(right.repeat->figures.start, right.end);
                   });
  if (catalogue != "vamos") return loci;
  std::vector<ExpectedLocus> places;
  for (const ExpectedLocus& locus : loci) {
    if (places.empty() || !is_same_place(places.back(), locus)) {
      places.push_back(locus);
    } else {
      ++tally.joined;
      places.back().motifs.push_back(locus.motifs.front());
    }
  }
  return places;
}

std::vector<ExpectedLocus> expected_loci(const std::string& catalogue, const OwnedReport& report,
                                         CatalogueTally& tally) {
  std::vector<ExpectedLocus> loci;
  for (const OwnedSequence& sequence : report.sequences) {
    std::vector<ExpectedLocus> of_record;
    for (const OwnedRepeat& repeat : sequence.repeats) {
      if (!can_hold(catalogue, repeat, sequence.length)) continue;
      std::int64_t end = repeat.figures.end;
      if (catalogue == "gangstr") {
        while ((end - repeat.figures.start + 1) % repeat.figures.unit_length != 0) --end;
        tally.cut += end != repeat.figures.end ? 1 : 0;
      }
      const std::string name = sequence.name.substr(0, sequence.name.find(' '));
      add_expected({name, end, {repeat.motif}, &repeat}, of_record, tally);
    }
    of_record = in_order(catalogue, std::move(of_record), tally);
    loci.insert(loci.end(), of_record.begin(), of_record.end());
  }
  return loci;
}

void expect_locus(const ReadLocus& locus, const ExpectedLocus& expected) {
  const OwnedRepeat& repeat = *expected.repeat;
  EXPECT_EQ(locus.sequence, expected.sequence);
  EXPECT_EQ(locus.start, repeat.figures.start);
  EXPECT_EQ(locus.end, expected.end);
  EXPECT_EQ(locus.motif_length, repeat.figures.unit_length);
  if (!locus.motifs.empty()) {
    EXPECT_EQ(locus.motifs, expected.motifs);
  }
  if (!locus.id.empty()) {
    EXPECT_EQ(locus.id, expected.sequence + '-' + std::to_string(repeat.figures.start - 1) + '-' +
                            std::to_string(expected.end) + '-' + repeat.motif);
  }
  if (locus.copies > 0) {
    EXPECT_NEAR(locus.copies,
                static_cast<double>(repeat.figures.length()) /
                    static_cast<double>(repeat.figures.unit_length),
                0.00501);
  }
}

/// The edits of a repeat, from its list or else from its alignment.
std::vector<std::pair<std::int64_t, char>> edits_of(const OwnedRepeat& repeat) {
  std::vector<std::pair<std::int64_t, char>> edits;
  if (repeat.figures.tells_edits) {
    std::istringstream text(repeat.edits);
    char mark = 0;
    for (std::pair<std::int64_t, char> edit; text >> mark >> edit.first >> mark >> edit.second;) {
      edits.push_back(edit);
      text >> mark >> mark;
    }
    return edits;
  }
  std::int64_t position = 1;
  for (std::size_t i = 0; i < repeat.aligned_unit.size(); ++i) {
    const bool is_deletion = repeat.bases[i] == '-';
    if (is_deletion) {
      edits.emplace_back(position, 'D');
    } else if (repeat.aligned_unit[i] == '-') {
      edits.emplace_back(position, 'I');
    } else if (repeat.marks[i] == ' ') {
      edits.emplace_back(position, 'M');
    }
    position += is_deletion ? 0 : 1;
  }
  return edits;
}

/// From the first base of the locus on, the motif comes again and again, but for the edits.
void expect_motif_in_bases(const std::string& motif, const std::string& bases,
                           const OwnedRepeat& repeat, CatalogueTally& tally) {
  const auto edits = edits_of(repeat);
  tally.edited += edits.empty() ? 0 : 1;
  const auto count_of = [&](std::int64_t position, char kind) {
    return static_cast<std::size_t>(
        std::count(edits.begin(), edits.end(), std::pair(position, kind)));
  };
  std::size_t place = 0;
  for (std::int64_t i = repeat.figures.start; i <= repeat.figures.end; ++i) {
    const char base = bases[static_cast<std::size_t>(i - 1)];
    const std::int64_t position = i - repeat.figures.start + 1;
    place += count_of(position, 'D');
    if (count_of(position, 'I') > 0) continue;
    const char expected = motif[place++ % motif.size()];
    if (base == 'N') continue;
    ASSERT_EQ(base == expected, count_of(position, 'M') == 0) << motif << " at " << i;
  }
  if (edits.empty() && repeat.figures.length() >= repeat.figures.unit_length) {
    const std::string begin =
        bases.substr(static_cast<std::size_t>(repeat.figures.start - 1), motif.size());
    EXPECT_TRUE(begin == motif || begin.find('N') != std::string::npos);
  }
}

/// The summary counts every repeat that is no locus, each for one reason.
void expect_summary(const std::string& catalogue, const std::string& messages,
                    std::size_t repeat_count, std::size_t left_out_count) {
  if (left_out_count == 0) {
    EXPECT_EQ(messages, "");
    return;
  }
  const std::string begin = "quorix-tools: " + catalogue + " leaves out " +
                            std::to_string(left_out_count) + " of " + std::to_string(repeat_count) +
                            " repeats: ";
  ASSERT_EQ(messages.find(begin), 0U) << messages;
  EXPECT_EQ(messages.find('\n'), messages.size() - 1);
  std::istringstream reasons(messages.substr(begin.size()));
  std::size_t sum = 0;
  for (std::string reason; std::getline(reasons, reason, ',');) sum += std::stoul(reason);
  EXPECT_EQ(sum, left_out_count) << messages;
}

/// A random report whose repeats lie at all distances from the ends of their records.
RandomReport draw_flanked_report(std::uint64_t seed) {
  RandomReport report = draw_report(seed);
  RandomEngine engine(seed);
  const auto draw_flank = [&] {
    return draw_letters(engine, draw_chance(engine, 40) ? 0 : draw_between(engine, 930, 1010),
                        "ACGT");
  };
  for (NamedBases& record : report.records) {
    record.bases = draw_flank() + record.bases + draw_flank();
  }
  report.text = whole_report(report.records);
  return report;
}

std::string bases_of(const RandomReport& drawn, const std::string& identifier) {
  for (const NamedBases& record : drawn.records) {
    if (record.name.starts_with(identifier + ' ')) return record.bases;
  }
  return "";
}

void check_catalogue(const std::string& catalogue, const RandomReport& drawn,
                     const OwnedReport& report, CatalogueTally& tally) {
  SCOPED_TRACE(catalogue);
  const CToolFolder folder;
  tools::ConvertOptions options;
  options.format = catalogue;
  options.reports.names = {folder.write("r", drawn.text)};
  options.output_name = folder.path("out");
  if (!tells_motifs(report.settings)) {
    ++tally.refused;
    EXPECT_THROW(tools::convert(options), tools::InputError);
    EXPECT_EQ(folder.files(), std::vector<std::string>{"r"});
    return;
  }
  const std::string messages = messages_of([&] { tools::convert(options); });
  RecordLengths lengths;
  std::size_t repeat_count = 0;
  for (const OwnedSequence& sequence : report.sequences) {
    lengths[sequence.name.substr(0, sequence.name.find(' '))] = sequence.length;
    repeat_count += sequence.repeats.size();
  }
  std::vector<ReadLocus> loci;
  ASSERT_NO_THROW(loci = read_catalogue(catalogue, folder.read("out"), lengths))
      << folder.read("out");
  const std::vector<ExpectedLocus> expected = expected_loci(catalogue, report, tally);
  ASSERT_EQ(loci.size(), expected.size());
  std::size_t motif_count = 0;
  for (std::size_t i = 0; i < loci.size(); ++i) {
    expect_locus(loci[i], expected[i]);
    expect_motif_in_bases(expected[i].repeat->motif, bases_of(drawn, loci[i].sequence),
                          *expected[i].repeat, tally);
    motif_count += expected[i].motifs.size();
  }
  tally.loci += loci.size();
  tally.left_out += repeat_count - motif_count;
  expect_summary(catalogue, messages, repeat_count, repeat_count - motif_count);
}

TEST(CatalogueLaws, loci_are_those_of_the_report_and_of_the_bases) {
  silence_standard_error();
  CatalogueTally tally;
  for (std::uint64_t seed = 1; seed <= 600 && !HasFailure(); ++seed) {
    const RandomReport drawn = draw_flanked_report(seed);
    SCOPED_TRACE("seed " + std::to_string(seed) + ": " + joined(drawn.options));
    const OwnedReport report = read_whole(drawn.text);
    ++tally.reports;
    for (const char* const catalogue : kCatalogueNames) {
      check_catalogue(catalogue, drawn, report, tally);
    }
  }
  EXPECT_GT(tally.refused, tally.reports);
  EXPECT_GT(tally.loci, 10000U);
  EXPECT_GT(tally.edited, 1000U);
  EXPECT_GT(tally.cut, 500U);
  EXPECT_GT(tally.same, 1000U);
  EXPECT_GT(tally.joined, 5U);
  EXPECT_GT(tally.left_out, 5000U);
}

}  // namespace
}  // namespace quorix::testing
