// The catalogues for genotypers: their rows, what they leave out, and what they refuse.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/random_options.h"
#include "tools/catalogue_readers.h"
#include "tools/report_text.h"
#include "tools/tool_run.h"

namespace quorix::testing {
namespace {

const std::vector<std::string> kTabCatalogues{"gangstr", "hipstr", "longtr",
                                              "straglr", "trgt",   "vamos"};
const std::vector<std::string> kCatalogueList{"expansionhunter", "gangstr", "hipstr", "longtr",
                                              "straglr",         "trgt",    "vamos"};

/// Bases without a repeat that the options of these tests find.
std::string plain_bases(std::size_t length) {
  RandomEngine engine(7);
  return draw_letters(engine, length, "ACGT");
}

std::string catalogue_report(const std::vector<NamedBases>& records,
                             const Options& options = {"-s", "9", "-U", "12"}) {
  EXPECT_TRUE(apply_options(options));
  return whole_report(records);
}

/// Repeats of a whole number of copies and of a part of one, with an insertion, and with a unit of
/// 11 bases.
std::string mixed_report() {
  const std::string unit = "ACCGTTTAGCA";
  return catalogue_report({{"chr1 first", "GTCAGCAGCAGCAGCATT"},
                           {"chr2", "TTAGCAGCAGCAGCAGTCAGCAGCAGCAGCAGCCC"},
                           {"chr3", unit + unit + unit}});
}

ProcessResult convert_to(const std::string& catalogue, const std::string& report,
                         const std::vector<std::string>& more = {}) {
  const CToolFolder folder;
  std::vector<std::string> arguments{"convert", "--to", catalogue, folder.write("r", report)};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return run_tool(arguments);
}

std::string rows_of(const std::string& catalogue, const std::string& report,
                    const std::vector<std::string>& more = {}) {
  const ProcessResult run = convert_to(catalogue, report, more);
  EXPECT_EQ(run.status, 0) << run.err;
  return run.out;
}

TEST(Catalogue, hipstr_has_copies_of_the_bases_and_motifs_of_1_to_9) {
  const ProcessResult run = convert_to("hipstr", mixed_report());
  EXPECT_EQ(run.out,
            "chr1\t3\t16\t3\t4.67\tchr1-2-16-CAG\n"
            "chr2\t3\t33\t3\t10.33\tchr2-2-33-AGC\n");
  EXPECT_EQ(run.err,
            "quorix-tools: hipstr leaves out 1 of 3 repeats: 1 with motifs of more than 9 bases\n");
}

TEST(Catalogue, hipstr_takes_motifs_up_to_9) {
  const std::string unit9 = "ACCGTTTAG";
  const std::string unit10 = "ACCGTTTAGC";
  const std::string report =
      catalogue_report({{"a", unit9 + unit9 + unit9}, {"b", unit10 + unit10 + unit10}});
  EXPECT_EQ(rows_of("hipstr", report), "a\t1\t27\t9\t3.00\ta-0-27-ACCGTTTAG\n");
}

TEST(Catalogue, hipstr_takes_two_bases_or_more) {
  const std::string bases(14, 'A');
  const std::string report =
      catalogue_report({{"c", "GT" + bases + "CG"}}, {"--outputFormat", "2"});
  const std::size_t begin = report.find("mononucleotide");
  const auto with_bases = [&](int count) {
    const auto length = static_cast<std::size_t>(count);
    return report.substr(0, begin) + "mononucleotide 3 : " + std::to_string(2 + count) +
           " -- length " + std::to_string(count) + " score 0 perfection 100 unit A\n" +
           std::string(length, 'A') + '\n' + std::string(length, '|') + '\n' +
           std::string(length, 'A') + '\n' + report.substr(report.find("# Analysis"));
  };
  EXPECT_EQ(rows_of("hipstr", with_bases(2)), "c\t3\t4\t1\t2.00\tc-2-4-A\n");
  const ProcessResult run = convert_to("hipstr", with_bases(1));
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "quorix-tools: hipstr leaves out 1 of 1 repeats: 1 shorter than 2 bases\n");
  EXPECT_EQ(rows_of("longtr", with_bases(1)), "c\t3\t3\tA\tc-2-3-A\n");
}

TEST(Catalogue, gangstr_has_whole_copies) {
  const ProcessResult run = convert_to("gangstr", mixed_report());
  EXPECT_EQ(run.out,
            "chr1\t3\t14\t3\tCAG\n"
            "chr2\t3\t32\t3\tAGC\n"
            "chr3\t1\t33\t11\tACCGTTTAGCA\n");
  EXPECT_EQ(run.err, "");
}

TEST(Catalogue, gangstr_needs_two_whole_copies) {
  const std::string report = catalogue_report(
      {{"less", "ACCGTTTAGCATGACCGTTTAGCAT"}, {"two", "ACCGTTTAGCATGACCGTTTAGCATG"}},
      {"-U", "13", "-s", "10", "--minScore_b", "0.5"});
  const ProcessResult run = convert_to("gangstr", report);
  EXPECT_EQ(run.out, "two\t1\t26\t13\tACCGTTTAGCATG\n");
  EXPECT_EQ(run.err,
            "quorix-tools: gangstr leaves out 1 of 2 repeats: 1 with fewer than 2 whole copies\n");
}

TEST(Catalogue, longtr_has_motif_and_name) {
  EXPECT_EQ(rows_of("longtr", mixed_report()),
            "chr1\t3\t16\tCAG\tchr1-2-16-CAG\n"
            "chr2\t3\t33\tAGC\tchr2-2-33-AGC\n"
            "chr3\t1\t33\tACCGTTTAGCA\tchr3-0-33-ACCGTTTAGCA\n");
}

TEST(Catalogue, trgt_has_fields_and_counts_from_0) {
  EXPECT_EQ(rows_of("trgt", mixed_report()),
            "chr1\t2\t16\tID=chr1-2-16-CAG;MOTIFS=CAG;STRUC=(CAG)n\n"
            "chr2\t2\t33\tID=chr2-2-33-AGC;MOTIFS=AGC;STRUC=(AGC)n\n"
            "chr3\t0\t33\tID=chr3-0-33-ACCGTTTAGCA;MOTIFS=ACCGTTTAGCA;STRUC=(ACCGTTTAGCA)n\n");
}

TEST(Catalogue, straglr_has_four_columns_and_counts_from_0) {
  EXPECT_EQ(rows_of("straglr", mixed_report()),
            "chr1\t2\t16\tCAG\nchr2\t2\t33\tAGC\nchr3\t0\t33\tACCGTTTAGCA\n");
}

TEST(Catalogue, vamos_has_four_columns_and_counts_from_1) {
  EXPECT_EQ(rows_of("vamos", mixed_report()),
            "chr1\t3\t16\tCAG\nchr2\t3\t33\tAGC\nchr3\t1\t33\tACCGTTTAGCA\n");
}

TEST(Catalogue, expansionhunter_is_a_list_of_loci_with_flanks) {
  const std::string repeat = "GTCAGCAGCAGCAGCAGCAGCAGTT";  // bases 3 to 23
  const std::string flank = plain_bases(998);
  const std::string far = plain_bases(999);
  const std::string report = catalogue_report({{"chr1", flank + repeat + flank},
                                               {"a \"b\"", far + repeat + flank},
                                               {"left", flank.substr(1) + repeat + flank},
                                               {"right", flank + repeat + flank.substr(1)}},
                                              {"-s", "15"});
  const ProcessResult run = convert_to("expansionhunter", report);
  EXPECT_EQ(run.out,
            "[\n"
            R"({"LocusId": "chr1-1000-1021-CAG", "LocusStructure": "(CAG)*", )"
            R"("ReferenceRegion": "chr1:1000-1021", "VariantType": "Repeat"},)"
            "\n"
            R"({"LocusId": "a-1001-1022-CAG", "LocusStructure": "(CAG)*", )"
            R"("ReferenceRegion": "a:1001-1022", "VariantType": "Repeat"})"
            "\n]\n");
  EXPECT_EQ(
      run.err,
      "quorix-tools: expansionhunter leaves out 2 of 4 repeats: 2 with fewer than 1000 bases to "
      "an end of the record\n");
}

TEST(Catalogue, expansionhunter_leaves_out_records_that_its_reader_refuses) {
  const std::string bases = plain_bases(1000) + "CAGCAGCAGCAGCAGCAGCAG" + plain_bases(1000);
  for (const char* const name : {"HLA-A*01:01", "a:b", "a-b", "-", ":"}) {
    const std::string report =
        catalogue_report({{name, bases}, {"chr1", bases}, {"x-y", bases}}, {"-s", "15"});
    const ProcessResult run = convert_to("expansionhunter", report);
    EXPECT_EQ(run.status, 0);
    const nlohmann::json list = nlohmann::json::parse(run.out);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list.at(0).at("LocusId"), "chr1-1000-1021-CAG");
    EXPECT_EQ(run.err,
              "quorix-tools: expansionhunter leaves out 2 of 3 repeats: 2 of records that its "
              "reader refuses for their names (such as " +
                  std::string(name) + ")\n");
  }
}

TEST(Catalogue, names_are_escaped_in_json) {
  const std::string bases = plain_bases(1000) + "CAGCAGCAGCAGCAGCAGCAG" + plain_bases(1000);
  const std::string name = "\\\"\x01\xc3\xa4";
  const nlohmann::json list = nlohmann::json::parse(
      rows_of("expansionhunter", catalogue_report({{name, bases}}, {"-s", "15"})));
  EXPECT_EQ(list.at(0).at("LocusId"), name + "-1000-1021-CAG");
  EXPECT_EQ(list.at(0).at("ReferenceRegion"), name + ":1000-1021");
  const ProcessResult run =
      convert_to("expansionhunter", catalogue_report({{"a\xff", bases}}, {"-s", "15"}));
  EXPECT_EQ(run.status, 3);
  EXPECT_NE(run.err.find("\" cannot stand in expansionhunter: it is not UTF-8"), std::string::npos);
}

TEST(Catalogue, may_have_no_locus) {
  for (const std::vector<NamedBases>& records :
       std::vector<std::vector<NamedBases>>{{}, {{"none", "ACGTGGCA"}, {"empty", ""}}}) {
    for (const std::string& catalogue : kTabCatalogues) {
      EXPECT_EQ(rows_of(catalogue, catalogue_report(records)), "");
    }
    EXPECT_EQ(rows_of("expansionhunter", catalogue_report(records)), "[\n]\n");
  }
}

TEST(Catalogue, motifs_of_other_letters_and_unknown_ones_are_left_out) {
  std::string unknown = catalogue_report(
      {{"c", "GTCAGCAGCAGCAGCAGTT"}, {"d", "GTCAGCAGCAGCAGCAGTT"}}, {"--printRepeatSeqMode", "1"});
  unknown.replace(unknown.find("\nCAGCAGCAGCAGCAG\n"), 16, "\nCANCANCANCANCAN");
  std::string letters = catalogue_report({{"c", "GTAAAAAAAAAAAAAACG"}, {"d", "GTAAAAAAAAAAAAAACG"}},
                                         {"--outputFormat", "2"});
  letters.replace(letters.find("unit A\n"), 6, "unit N");
  const std::string run(14, 'A');
  letters.replace(letters.find('\n' + std::string(14, '|') + '\n' + run), 30,
                  '\n' + std::string(14, ' ') + '\n' + std::string(14, 'N'));
  for (const std::string& catalogue : kTabCatalogues) {
    const ProcessResult without = convert_to(catalogue, unknown);
    EXPECT_EQ(without.out.find("d\t"), 0U) << without.out;
    EXPECT_EQ(without.err, "quorix-tools: " + catalogue +
                               " leaves out 1 of 2 repeats: 1 whose motif the report does not "
                               "tell\n");
    const ProcessResult other = convert_to(catalogue, letters);
    EXPECT_EQ(other.out.find("d\t"), 0U) << other.out;
    EXPECT_EQ(other.err,
              "quorix-tools: " + catalogue + " leaves out 1 of 2 repeats: 1 with N in the motif\n");
  }
}

/// A report of one repeat whose lines stand there several times, with other scores and motifs.
std::string report_with_one_place() {
  const std::string report = catalogue_report({{"c", "GTACACACACACACACACGG"}}, {"-s", "9"});
  const std::size_t begin = report.find("    dinucleotide");
  const std::size_t end = report.find("# Analysis");
  const std::string repeat = report.substr(begin, end - begin);
  const auto changed = [](std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
      text.replace(at, from.size(), to);
    }
    return text;
  };
  // The bases of the second are those of the other rotation, as if an edit had shifted them.
  const std::string bases = "ACACACACACACACAC";
  const std::string rotated =
      changed(changed(repeat, "     14 pt", "     15 pt"), bases, "CACACACACACACACA");
  const std::string other = changed(
      changed(
          changed(changed(repeat, "    dinucleotide", " tetranucleotide"), "unit AC", "unit ACAT"),
          bases, "ACATACATACATACAT"),
      "     14 pt", "     12 pt");
  return report.substr(0, begin) + repeat + rotated + repeat + other + report.substr(end);
}

TEST(Catalogue, one_place_and_motif_is_one_locus_that_with_the_highest_score) {
  const ProcessResult run = convert_to("straglr", report_with_one_place());
  EXPECT_EQ(run.out, "c\t2\t18\tCA\nc\t2\t18\tACAT\n");
  EXPECT_EQ(run.err,
            "quorix-tools: straglr leaves out 2 of 4 repeats: 2 with place and motif of another\n");
}

TEST(Catalogue, vamos_has_all_motifs_of_a_place_in_one_row) {
  const ProcessResult run = convert_to("vamos", report_with_one_place());
  EXPECT_EQ(run.out, "c\t3\t18\tCA,ACAT\n");
  EXPECT_EQ(run.err,
            "quorix-tools: vamos leaves out 2 of 4 repeats: 2 with place and motif of another\n");
}

TEST(Catalogue, gangstr_loses_what_its_cuts_make_the_same) {
  std::string report = report_with_one_place();
  const std::size_t begin = report.find("    dinucleotide");
  const std::size_t second = report.find("    dinucleotide", begin + 1);
  // The same repeat with one base more.
  std::string longer = report.substr(begin, second - begin);
  const auto change = [&](const std::string& from, const std::string& to) {
    ASSERT_NE(longer.find(from), std::string::npos) << from;
    longer.replace(longer.find(from), from.size(), to);
  };
  change("     18 | ", "     19 | ");
  change("     16 bp |     16 BP", "     17 bp |     17 BP");
  change("\nACACACACACACACAC\n", "\nACACACACACACACACA\n");
  change("|\nACACACACACACACAC\n", "||\nACACACACACACACACA\n");
  report.insert(report.find("# Analysis"), longer);
  EXPECT_EQ(rows_of("gangstr", report), "c\t3\t18\t2\tCA\nc\t3\t18\t4\tACAT\n");
  EXPECT_EQ(rows_of("straglr", report), "c\t2\t18\tCA\nc\t2\t18\tACAT\nc\t2\t19\tAC\n");
}

TEST(Catalogue, needs_a_report_that_tells_motifs) {
  const std::vector<NamedBases> records{{"c", "GTCAGCAGCAGCAGCAGTT"}};
  for (const Options& options :
       std::vector<Options>{{"--printRepeatSeqMode", "0"},
                            {"--printRepeatSeqMode", "1", "--outputFormat", "0"},
                            {"--printRepeatSeqMode", "1", "--outputFormat", "2"},
                            {"--printRepeatSeqMode", "0", "-M", "exact"}}) {
    // The head tells, whatever follows.
    std::string report = catalogue_report(records, options);
    report = report.substr(0, report.find(">c")) + "spoiled";
    for (const std::string& catalogue : kCatalogueList) {
      const ProcessResult run = convert_to(catalogue, report);
      EXPECT_EQ(run.status, 3);
      EXPECT_EQ(run.out, "");
      EXPECT_NE(run.err.find("quorix prints them with --printRepeatSeqMode 2, or with "
                             "--printRepeatSeqMode 1 and --outputFormat 1\n"),
                std::string::npos)
          << run.err;
    }
  }
  for (const Options& options :
       std::vector<Options>{{"--printRepeatSeqMode", "1"},
                            {"--printRepeatSeqMode", "2", "--outputFormat", "0"},
                            {"--printRepeatSeqMode", "2", "--outputFormat", "2"},
                            {"--printRepeatSeqMode", "1", "--outputFormat", "0", "-M", "exact"}}) {
    EXPECT_EQ(rows_of("straglr", catalogue_report(records, options)), "c\t2\t17\tCAG\n");
  }
}

TEST(Catalogue, obeys_filters_and_orders) {
  const std::string report = mixed_report();
  EXPECT_EQ(rows_of("straglr", report, {"--motif", "GCA", "--min-copies", "5"}),
            "chr2\t2\t33\tAGC\n");
  EXPECT_EQ(rows_of("straglr", report, {"--sequence", "chr3"}), "chr3\t0\t33\tACCGTTTAGCA\n");
  EXPECT_EQ(rows_of("straglr", report, {"--sort", "score"}),
            "chr3\t0\t33\tACCGTTTAGCA\nchr2\t2\t33\tAGC\nchr1\t2\t16\tCAG\n");
  EXPECT_EQ(rows_of("gangstr", report, {"--sort", "length"}),
            "chr3\t1\t33\t11\tACCGTTTAGCA\nchr2\t3\t32\t3\tAGC\nchr1\t3\t14\t3\tCAG\n");
  const nlohmann::json sorted =
      nlohmann::json::parse(rows_of("expansionhunter", report, {"--sort", "copies"}));
  EXPECT_TRUE(sorted.empty());
  EXPECT_EQ(rows_of("vamos", report_with_one_place(), {"--sort", "perfection"}),
            "c\t3\t18\tCA,ACAT\n");
  EXPECT_EQ(convert_to("hipstr", report, {"--window", "5"}).status, 2);
}

TEST(Catalogue, a_place_in_two_records_is_two_loci) {
  EXPECT_EQ(
      rows_of("straglr", catalogue_report({{"a", "CAGCAGCAGCAGCAG"}, {"b", "CAGCAGCAGCAGCAG"}})),
      "a\t0\t15\tCAG\nb\t0\t15\tCAG\n");
}

TEST(Catalogue, an_incomplete_report_keeps_its_last_locus) {
  const std::string report = mixed_report();
  const std::string cut = report.substr(0, report.find("# Analysis of sequence \"chr2"));
  EXPECT_EQ(rows_of("straglr", cut, {"--allow-incomplete"}),
            "chr1\t2\t16\tCAG\nchr2\t2\t33\tAGC\n");
}

TEST(Catalogue, names_that_break_a_row_are_refused) {
  const std::string bases = "CAGCAGCAGCAGCAG";
  const auto status_of = [&](const std::string& catalogue, const std::string& name) {
    const ProcessResult run =
        convert_to(catalogue, catalogue_report({{name, bases}}), {"--full-names"});
    EXPECT_TRUE(run.status == 0 || run.err.find("the identifier \"" + name + "\" cannot stand in " +
                                                catalogue + ": ") != std::string::npos)
        << run.err;
    EXPECT_TRUE(run.status == 0 || run.out.empty());
    return run.status;
  };
  for (const std::string& catalogue : kCatalogueList) {
    EXPECT_EQ(status_of(catalogue, "a\tb"), 3);
    EXPECT_EQ(status_of(catalogue, "a b"), 3);
    EXPECT_EQ(status_of(catalogue, "a.b|c_1"), 0);
  }
  for (const std::string& catalogue : kTabCatalogues) EXPECT_EQ(status_of(catalogue, "#a"), 3);
  for (const char* const name : {"a;b", "a=b", "a,b"}) {
    EXPECT_EQ(status_of("trgt", name), 3);
    EXPECT_EQ(status_of("vamos", name), 0);
  }
  for (const char* const name : {"track1", "browser"}) {
    EXPECT_EQ(status_of("straglr", name), 3);
    EXPECT_EQ(status_of("trgt", name), 3);
    EXPECT_EQ(status_of("hipstr", name), 0);
  }
}

TEST(Catalogue, the_strict_readers_refuse_what_genotypers_refuse) {
  const RecordLengths lengths{{"c", 3000}, {"a-b", 3000}};
  const auto is_refused = [&](const std::string& catalogue, const std::string& text) {
    try {
      read_catalogue(catalogue, text, lengths);
      return false;
    } catch (const std::exception&) {
      return true;
    }
  };
  const auto region = [](const std::string& place) {
    return R"([{"LocusId": "x", "LocusStructure": "(CAG)*", "ReferenceRegion": ")" + place +
           R"(", "VariantType": "Repeat"}])";
  };
  EXPECT_FALSE(is_refused("hipstr", "c\t1\t9\t9\t1.00\tx\n"));
  EXPECT_TRUE(is_refused("hipstr", "c\t1\t10\t10\t1.00\tx\n"));
  EXPECT_TRUE(is_refused("hipstr", "c\t1\t1\t1\t1.00\tx\n"));
  EXPECT_TRUE(is_refused("hipstr", "#c\t1\t9\t9\t1.00\tx\n"));
  EXPECT_FALSE(is_refused("gangstr", "c\t1\t6\t3\tCAG\n"));
  EXPECT_TRUE(is_refused("gangstr", "c\t1\t7\t3\tCAG\n"));
  EXPECT_FALSE(is_refused("trgt", "c\t0\t6\tID=x;MOTIFS=CAG;STRUC=(CAG)n\n"));
  EXPECT_TRUE(is_refused("trgt", "c\t0\t6\tID=x;MOTIFS=CAG\n"));
  EXPECT_TRUE(is_refused("trgt",
                         "c\t0\t6\tID=x;MOTIFS=CAG;STRUC=(CAG)n\n"
                         "c\t9\t15\tID=x;MOTIFS=CAG;STRUC=(CAG)n\n"));
  EXPECT_FALSE(is_refused("expansionhunter", region("c:1000-2000")));
  EXPECT_TRUE(is_refused("expansionhunter", region("c:999-2000")));
  EXPECT_TRUE(is_refused("expansionhunter", region("c:1000-2001")));
  EXPECT_TRUE(is_refused("expansionhunter", region("a-b:1000-2000")));
  EXPECT_TRUE(is_refused("straglr", "c\t0\t6\tCAN\n"));
  EXPECT_TRUE(is_refused("vamos", "c\t1\t6\tCAG,CAG\n"));
}

}  // namespace
}  // namespace quorix::testing
