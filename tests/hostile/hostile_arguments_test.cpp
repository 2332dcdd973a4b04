// Hand-made arguments and what the real program has to make of them.

#include <gtest/gtest.h>

#include <cstdio>

#include "hostile/argument_rows.h"
#include "hostile/hostile_run.h"

namespace quorix::testing {
namespace {

constexpr std::size_t kMinArgumentRows = 400;

std::string joined_words(const std::vector<std::string>& words) {
  std::string text = "quorix";
  for (const std::string& word : words) text += " '" + visible(word) + "'";
  return text;
}

std::size_t count_of(const std::string& text, const std::string& word) {
  std::size_t count = 0;
  for (std::size_t found = text.find(word); found != std::string::npos;
       found = text.find(word, found + 1)) {
    ++count;
  }
  return count;
}

class HostileArguments : public ::testing::Test {
 protected:
  HostileArguments() {
    folder_.write("in.fa", kInput);
    folder_.make_folder("folder");
  }

  /// Nothing that a run does may touch its input.
  void TearDown() override { EXPECT_EQ(folder_.text("in.fa"), kInput); }

  void check_values(const std::vector<OptionRow>& options) {
    for (const OptionRow& option : options) {
      for (const ValueRow& row : option.values) check_value(option, row);
    }
  }

  void check_lists(const std::vector<ArgumentRow>& rows) {
    for (const ArgumentRow& row : rows) {
      SCOPED_TRACE(joined_words(row.arguments));
      const ProcessResult result = run_hostile(folder_, row.arguments);
      EXPECT_EQ(result.status, row.status);
      check_text(result, row.expected_text);
    }
  }

  const CRunFolder& folder() const { return folder_; }

 private:
  static constexpr const char* kInput = ">a\nACACACACACACACAC\n";

  void check_value(const OptionRow& option, const ValueRow& row) {
    SCOPED_TRACE(joined_words({option.option, row.value}));
    const ProcessResult result = run_hostile(folder_, {option.option, row.value, "in.fa"});
    EXPECT_EQ(result.status, row.status);
    const std::string line = "\n# " + option.label + row.expected_text + "\n";
    check_text(result, row.status == kOk ? line : row.expected_text);
    if (row.status == kOk && row.copies != Copies::kNotLookedAt) {
      const std::size_t count = row.copies == Copies::kFound ? 1 : 0;
      const std::string body = after_head(result.out);
      EXPECT_EQ(count_of(body, " unit AC\n"), count) << body;
      EXPECT_EQ(count_of(body, " unit "), count) << body;
    }
  }

  static void check_text(const ProcessResult& result, const std::string& expected_text) {
    const std::string& where = result.status == kOk ? result.out : result.err;
    EXPECT_TRUE(contains(where, expected_text)) << "missing: " << visible(expected_text) << "\n"
                                                << result.err;
    if (result.status == kMalformed || result.status >= kNoReport) {
      EXPECT_FALSE(contains(result.out, "unit AC\n")) << result.out;
    }
    if (result.status == kMalformed) {
      EXPECT_TRUE(contains(result.err, "PARSE ERROR"));
    }
  }

  CRunFolder folder_;
};

TEST_F(HostileArguments, whole_numbers) {
  check_values(whole_number_rows());
}

TEST_F(HostileArguments, codes) {
  check_values(code_rows());
}

TEST_F(HostileArguments, fractions_and_words) {
  check_values(other_value_rows());
}

TEST_F(HostileArguments, malformed_lists) {
  check_lists(malformed_rows());
}

TEST_F(HostileArguments, combinations) {
  check_lists(combination_rows());
}

// Each name as that of the input, of the report, and of a report in a folder that does not exist.
TEST_F(HostileArguments, names_of_files) {
  for (const FileNameRow& row : file_name_rows()) {
    SCOPED_TRACE(std::string(row.fact) + ": " + visible(row.name));
    const CRunFolder folder;
    folder.write(row.name, ">a\nACACACACACACACAC\n");
    const ProcessResult searched = run_hostile(folder, {row.name});
    EXPECT_EQ(searched.status, kOk);
    EXPECT_TRUE(
        contains(searched.out, "\n# Input file name:                    " + row.name + "\n"));
    EXPECT_EQ(count_of(after_head(searched.out), " unit AC\n"), 1U);

    const std::string report = row.name + "x";
    EXPECT_EQ(run_hostile(folder, {"--maskX", row.name, report}).status, kOk);
    EXPECT_TRUE(contains(folder.text(report), "# Output file name:                   " + report));
    EXPECT_TRUE(folder.text(report).ends_with("## Finished successfully. ##\n"));
    EXPECT_EQ(folder.text(row.name + ".masked"), ">a\nXXXXXXXXXXXXXXXX\n");

    const ProcessResult refused = run_hostile(folder, {row.name, "nodir/" + row.name});
    EXPECT_EQ(refused.status, kNoReport);
    EXPECT_TRUE(contains(refused.err, "\"nodir/" + row.name + "\"\nas output file.\n"));
  }
}

TEST(HostileArgumentsTable, has_its_rows) {
  std::size_t count = malformed_rows().size() + combination_rows().size();
  for (const auto& options : {whole_number_rows(), code_rows(), other_value_rows()}) {
    for (const OptionRow& option : options) count += option.values.size();
  }
  std::printf("%zu argument lists by hand, and %zu names of files\n", count,
              file_name_rows().size());
  EXPECT_GE(count, kMinArgumentRows);
}

}  // namespace
}  // namespace quorix::testing
