// Whole runs of `html`: the data of the page, what is left out, and how runs end.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>

#include "support/random_options.h"
#include "tools/commands/html_command.h"
#include "tools/page_data.h"
#include "tools/random_reports.h"
#include "tools/report_text.h"
#include "tools/tool_run.h"

namespace quorix::testing {
namespace {

/// The page of a report, with these limits, and what is said about it.
struct LimitedRun {
  PageData data;
  std::string said;
};

LimitedRun run_with_limits(const std::string& report, const tools::PageLimits& limits) {
  const CToolFolder folder;
  tools::HtmlOptions options;
  options.output_name = folder.path("page.html");
  options.reports.names = {folder.write("r", report)};
  options.limits = limits;
  const ProcessResult run = run_in_child([&] {
    tools::write_html(options);
    return 0;
  });
  EXPECT_EQ(run.status, 0) << run.err;
  return {read_page(folder.read("page.html")), run.err};
}

PageData page_of(const std::string& report) {
  return run_with_limits(report, {}).data;
}

/// Twice the perfection without its point, or 1.
std::int64_t coded_perfection(const std::string& perfection) {
  if (perfection.find('n') != std::string::npos) return 1;
  std::string digits = perfection;
  std::erase(digits, '.');
  return 2 * std::stoll(digits);
}

void expect_same_figures(const PageRepeat& row, const OwnedRepeat& repeat) {
  EXPECT_EQ(row.start, repeat.figures.start);
  EXPECT_EQ(row.length, repeat.figures.length());
  EXPECT_EQ(row.normalized_length, repeat.figures.normalized_length);
  EXPECT_EQ(row.score, repeat.figures.score);
  EXPECT_EQ(row.mismatches, repeat.figures.mismatches);
  EXPECT_EQ(row.insertions, repeat.figures.insertions);
  EXPECT_EQ(row.deletions, repeat.figures.deletions);
  EXPECT_EQ(row.ns, repeat.figures.ns);
  EXPECT_EQ(row.perfection, coded_perfection(repeat.perfection));
  EXPECT_EQ(row.unit, repeat.unit);
  EXPECT_EQ(row.motif, repeat.motif);
}

void expect_same_details(const PageRepeat& row, const OwnedRepeat& repeat) {
  EXPECT_FALSE(row.is_left_out);
  EXPECT_EQ(row.bases, repeat.bases);
  EXPECT_EQ(row.aligned_unit, repeat.aligned_unit);
  EXPECT_EQ(row.edits, repeat.edits);
  EXPECT_EQ(row.left_flank, repeat.left_flank);
  EXPECT_EQ(row.right_flank, repeat.right_flank);
}

/// Many exact repeats of three bases, each `copies` + 5 * (number % 3) times.
std::string report_of_many(std::size_t count, std::size_t copies = 4) {
  EXPECT_TRUE(apply_options({}));
  std::string bases = "GT";
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t k = 0; k < copies + 5 * (i % 3); ++k) bases += "CAG";
    bases += "TTCGATCGTA";
  }
  return whole_report({{"many", bases}});
}

TEST(Html, the_page_has_every_repeat_of_random_reports) {
  std::size_t repeat_count = 0;
  std::size_t insertion_count = 0;
  for (std::uint64_t seed = 1; seed <= 120; ++seed) {
    SCOPED_TRACE(seed);
    const RandomReport random = draw_report(seed);
    const OwnedReport report = read_whole(random.text);
    const PageData page = page_of(random.text);
    ASSERT_EQ(page.records.size(), report.sequences.size());
    auto row = page.repeats.begin();
    for (std::size_t i = 0; i < report.sequences.size(); ++i) {
      const OwnedSequence& sequence = report.sequences[i];
      EXPECT_EQ(page.records[i].identifier, sequence.name.substr(0, sequence.name.find(' ')));
      EXPECT_EQ(page.records[i].length, sequence.length);
      EXPECT_EQ(page.records[i].repeats, static_cast<std::int64_t>(sequence.repeats.size()));
      EXPECT_TRUE(page.records[i].is_complete);
      for (const OwnedRepeat& repeat : sequence.repeats) {
        ASSERT_NE(row, page.repeats.end());
        EXPECT_EQ(row->identifier, page.records[i].identifier);
        expect_same_figures(*row, repeat);
        expect_same_details(*row, repeat);
        insertion_count += row->aligned_unit.find('-') != std::string::npos ? 1 : 0;
        ++row;
      }
    }
    EXPECT_EQ(row, page.repeats.end());
    repeat_count += page.repeats.size();
  }
  EXPECT_GT(repeat_count, 500U);
  EXPECT_GT(insertion_count, 10U);
}

TEST(Html, the_windows_have_the_bases_that_lie_in_repeats) {
  for (std::uint64_t seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE(seed);
    const RandomReport random = draw_report(seed);
    const OwnedReport report = read_whole(random.text);
    tools::PageLimits limits;
    limits.windows = seed % 3 == 0 ? 7 : 100;
    const PageData page = run_with_limits(random.text, limits).data;
    EXPECT_LE(page.windows.size(), limits.windows + report.sequences.size());
    const auto window = page.head.at("window").get<std::int64_t>();
    std::vector<std::int64_t> expected;
    for (const OwnedSequence& sequence : report.sequences) {
      std::vector<bool> is_covered(static_cast<std::size_t>(sequence.length));
      for (const OwnedRepeat& repeat : sequence.repeats) {
        for (std::int64_t i = repeat.figures.start; i <= repeat.figures.end; ++i) {
          is_covered[static_cast<std::size_t>(i - 1)] = true;
        }
      }
      for (std::int64_t begin = 0; begin < sequence.length; begin += window) {
        const auto end = is_covered.begin() + std::min(begin + window, sequence.length);
        expected.push_back(std::count(is_covered.begin() + begin, end, true));
      }
    }
    EXPECT_EQ(page.windows, expected);
  }
}

TEST(Html, the_distributions_count_each_repeat_once) {
  std::int64_t total = 0;
  for (std::uint64_t seed = 1; seed <= 40; ++seed) {
    const RandomReport random = draw_report(seed);
    const PageData page = page_of(random.text);
    const nlohmann::json& distributions = page.head.at("distributions");
    const auto bounds = distributions.at("length_bounds").get<std::vector<std::int64_t>>();
    std::vector<std::int64_t> lengths(bounds.size() - 1);
    std::vector<std::int64_t> perfections(101);
    std::int64_t none = 0;
    for (const PageRepeat& repeat : page.repeats) {
      for (std::size_t i = 0; i + 1 < bounds.size(); ++i) {
        if (repeat.length >= bounds[i] && repeat.length < bounds[i + 1]) ++lengths[i];
      }
      const std::int64_t scale = page.head.at("decimals") == 0 ? 2 : 2000;
      if (repeat.perfection % 2 != 0)
        ++none;
      else
        ++perfections[static_cast<std::size_t>(repeat.perfection / scale)];
    }
    EXPECT_EQ(distributions.at("length_counts").get<std::vector<std::int64_t>>(), lengths);
    EXPECT_EQ(distributions.at("perfection_counts").get<std::vector<std::int64_t>>(), perfections);
    EXPECT_EQ(distributions.at("without_perfection"), none);
    total += std::accumulate(lengths.begin(), lengths.end(), none);
  }
  EXPECT_GT(total, 100);
}

TEST(Html, beyond_its_rows_the_table_has_a_sample_and_the_totals_have_all) {
  const std::string report = report_of_many(101);
  const OwnedReport whole = read_whole(report);
  ASSERT_EQ(whole.sequences[0].repeats.size(), 101U);
  for (const std::size_t rows : {101U, 100U, 51U, 50U, 13U, 1U}) {
    tools::PageLimits limits;
    limits.rows = rows;
    const auto [page, said] = run_with_limits(report, limits);
    const auto stride = page.head.at("stride").get<std::size_t>();
    EXPECT_EQ(page.head.at("total").at("repeats"), 101);
    EXPECT_EQ(page.records[0].repeats, 101);
    EXPECT_LE(page.repeats.size(), rows);
    // Half as many would have been too few.
    EXPECT_GT((101 + stride / 2 - 1) / std::max<std::size_t>(stride / 2, 1),
              stride == 1 ? 0 : rows);
    ASSERT_EQ(page.repeats.size(), (101 + stride - 1) / stride);
    for (std::size_t i = 0; i < page.repeats.size(); ++i) {
      expect_same_figures(page.repeats[i], whole.sequences[0].repeats[i * stride]);
      expect_same_details(page.repeats[i], whole.sequences[0].repeats[i * stride]);
    }
    const std::string expected = "lists " + std::to_string(page.repeats.size()) +
                                 " of 101 repeats, one in " + std::to_string(stride) + ';';
    EXPECT_EQ(said.find(expected) != std::string::npos, stride > 1) << said;
  }
}

TEST(Html, units_beyond_their_space_make_the_sample_smaller) {
  tools::PageLimits limits;
  limits.word_bytes = 200;  // a repeat has 13: its perfection, unit and motif
  const PageData page = run_with_limits(report_of_many(100), limits).data;
  EXPECT_EQ(page.head.at("stride"), 8);
  EXPECT_EQ(page.repeats.size(), 13U);
}

TEST(Html, the_longest_alignments_are_left_out_and_counted) {
  const std::string report = report_of_many(99);
  const OwnedReport whole = read_whole(report);
  tools::PageLimits limits;
  limits.detail_bytes = 1500;
  const auto [page, said] = run_with_limits(report, limits);
  ASSERT_EQ(page.repeats.size(), 99U);
  std::size_t left_out_count = 0;
  std::int64_t longest_held = 0;
  std::int64_t shortest_left_out = 1'000'000;
  for (std::size_t i = 0; i < page.repeats.size(); ++i) {
    const PageRepeat& row = page.repeats[i];
    expect_same_figures(row, whole.sequences[0].repeats[i]);
    if (row.is_left_out) {
      EXPECT_EQ(row.bases + row.edits + row.left_flank, "");
      shortest_left_out = std::min(shortest_left_out, row.length);
      ++left_out_count;
    } else {
      expect_same_details(row, whole.sequences[0].repeats[i]);
      longest_held = std::max(longest_held, row.length);
    }
  }
  EXPECT_GT(left_out_count, 0U);
  EXPECT_LT(left_out_count, 99U);
  EXPECT_LT(longest_held, shortest_left_out);
  EXPECT_EQ(page.head.at("left_out"), left_out_count);
  EXPECT_NE(said.find("alignments, " + std::to_string(left_out_count) + " of 99,"),
            std::string::npos)
      << said;
}

TEST(Html, names_are_data_and_nothing_else) {
  EXPECT_TRUE(apply_options({}));
  const std::string bases = "GTCAGCAGCAGCAGCAGT";
  const std::vector<std::string> names{"<script>alert(1)</script>",
                                       "</script>",
                                       "|</html>",
                                       "@DETAIL-DATA@",
                                       "\"\\\x01",
                                       "\xE2\x80\xA8",
                                       "caf\xE9\xFF"};
  std::vector<NamedBases> records;
  for (const std::string& name : names) records.push_back({name, bases});
  const CToolFolder folder;
  const ProcessResult run = run_tool({"html", folder.write("r", whole_report(records))});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  // One '<' each of the begin and the end of the page.
  EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '<'), 2);
  const PageData page = read_page(run.out);
  ASSERT_EQ(page.records.size(), names.size());
  for (std::size_t i = 0; i < names.size(); ++i) EXPECT_EQ(page.records[i].identifier, names[i]);
}

TEST(Html, filters_hold_for_all_figures) {
  const CToolFolder folder;
  const std::string name = folder.write("r", example_report());
  const ProcessResult run =
      run_tool({"html", "--sequence", "insertion", "--sequence", "exact", name});
  EXPECT_EQ(run.status, 0) << run.err;
  const PageData page = read_page(run.out);
  EXPECT_EQ(page.head.at("total").at("records"), 2);
  const ProcessResult none = run_tool({"html", "--min-length", "1000", name});
  EXPECT_EQ(read_page(none.out).head.at("total").at("repeats"), 0);
  EXPECT_EQ(read_page(none.out).head.at("total").at("records"), 6);
  EXPECT_EQ(run_tool({"html", "--sequence", "nobody", name}).status, 3);
}

TEST(Html, help_names_the_command_and_shows_examples) {
  EXPECT_NE(run_tool({"--help"}).out.find("quorix-tools html -o"), std::string::npos);
  const ProcessResult help = run_tool({"html", "--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("Examples:"), std::string::npos);
  EXPECT_NE(help.out.find("--min-copies"), std::string::npos);
}

TEST(Html, two_runs_write_the_same_bytes) {
  const CToolFolder folder;
  const std::string name = folder.write("r", example_report());
  const ProcessResult first = run_tool({"html", name});
  EXPECT_EQ(first.status, 0) << first.err;
  EXPECT_EQ(run_tool({"html", name}).out, first.out);
}

TEST(Html, a_file_appears_when_it_is_complete) {
  const CToolFolder folder;
  const std::string report = example_report();
  const std::string good = folder.write("r", report);
  const std::string page = folder.path("page.html");
  EXPECT_EQ(run_tool({"html", "-o", page, good}).status, 0);
  EXPECT_EQ(folder.files(), (std::vector<std::string>{"page.html", "r"}));
  const std::string before = folder.read("page.html");

  const std::string cut = folder.write("cut", report.substr(0, report.size() - 40));
  const ProcessResult refused = run_tool({"html", "-o", page, cut});
  EXPECT_EQ(refused.status, 3);
  EXPECT_EQ(folder.read("page.html"), before);
  EXPECT_EQ(folder.files(), (std::vector<std::string>{"cut", "page.html", "r"}));

  const ProcessResult allowed = run_tool({"html", "--allow-incomplete", "-o", page, cut});
  EXPECT_EQ(allowed.status, 0);
  EXPECT_NE(allowed.err.find("incomplete: "), std::string::npos) << allowed.err;
  EXPECT_FALSE(read_page(folder.read("page.html")).records.back().is_complete);
}

TEST(Html, a_report_that_ends_between_two_records_is_told_on_the_page) {
  const CToolFolder folder;
  const std::string whole = example_report();
  const std::string page = folder.path("page.html");
  const auto is_told = [&](const std::string& report) {
    EXPECT_EQ(run_tool({"html", "--allow-incomplete", "-o", page, report}).status, 0);
    return read_page(folder.read("page.html")).head.at("complete") == 0;
  };
  const std::size_t second = whole.find("\n>", whole.find("\n>") + 1) + 1;
  EXPECT_TRUE(is_told(folder.write("cut", whole.substr(0, second))));
  EXPECT_FALSE(is_told(folder.write("whole", whole)));
}

TEST(Html, the_page_says_which_filters_made_it) {
  const CToolFolder folder;
  const std::string report = folder.write("r", example_report());
  const auto filters = [&](std::vector<std::string> options) {
    options.insert(options.begin(), {"html", "-o", folder.path("page.html"), report});
    EXPECT_EQ(run_tool(options).status, 0);
    return read_page(folder.read("page.html")).head.at("filters").get<std::string>();
  };
  EXPECT_EQ(filters({}), "");
  EXPECT_EQ(filters({"--min-copies", "2.5", "--unit-length", "2-6", "--motif", "CAG", "--min-score",
                     "7"}),
            "--unit-length 2-6, --min-copies 2.5, --min-score 7, --motif CAG");
}

TEST(Html, ends_with_the_status_of_what_is_wrong) {
  const CToolFolder folder;
  const std::string good = folder.write("r", example_report());
  EXPECT_EQ(run_tool({"html"}).status, 2);
  EXPECT_EQ(run_tool({"html", good, good}).status, 2);
  EXPECT_EQ(run_tool({"html", "-o", good, good}).status, 2);
  EXPECT_EQ(run_tool({"html", "--unit-length", "x", good}).status, 2);
  EXPECT_EQ(run_tool({"html", folder.path("none")}).status, 3);
  EXPECT_EQ(run_tool({"html", folder.write("bad", "no report\n")}).status, 3);
  EXPECT_EQ(run_tool({"html", "-o", folder.path("none/page.html"), good}).status, 4);
  EXPECT_EQ(run_tool({"html", "-o", "/dev/full", good}).status, 4);
}

}  // namespace
}  // namespace quorix::testing
