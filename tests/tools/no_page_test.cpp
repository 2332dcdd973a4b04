// `html` of a program that was built without the page.

#include <gtest/gtest.h>

#include "tools/report_text.h"
#include "tools/tool_run.h"

namespace quorix::testing {
namespace {

TEST(HtmlWithoutPage, says_what_is_missing_and_writes_nothing) {
  const CToolFolder folder;
  const std::string report = folder.write("r", example_report());
  const ProcessResult run = run_tool({"html", "-o", folder.path("page.html"), report});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_NE(run.err.find("built without its page; install Node.js"), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("QUORIX_BUILD_PAGE=ON"), std::string::npos) << run.err;
  EXPECT_EQ(folder.files(), std::vector<std::string>{"r"});
}

}  // namespace
}  // namespace quorix::testing
