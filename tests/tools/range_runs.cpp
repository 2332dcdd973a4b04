#include "tools/range_runs.h"

#include "driver/run.h"
#include "tools/command_line/command_line.h"

namespace quorix::testing {

namespace {

/// Calls a program's main function in a child process that runs in `folder`.
template <class Main>
ProcessResult run_in_folder(const std::string& folder, const std::vector<std::string>& arguments,
                            const Main& main) {
  std::vector<const char*> words{"program"};
  for (const std::string& argument : arguments) words.push_back(argument.c_str());
  return run_in_child([&] {
    if (::chdir(folder.c_str()) != 0) return 99;
    return main(static_cast<int>(words.size()), words.data());
  });
}

}  // namespace

CRangeRuns::CRangeRuns(const std::string& fasta, std::vector<std::string> options)
    : options_(std::move(options)) {
  static_cast<void>(folder_.write("in.fa", fasta));
  std::filesystem::create_directory(folder_.path("tools"));
}

void CRangeRuns::run(const std::string& name, const std::vector<std::string>& range) const {
  std::filesystem::create_directory(folder_.path(name));
  std::filesystem::create_symlink("../in.fa", folder_.path(name + "/in.fa"));
  std::vector<std::string> arguments = options_;
  arguments.insert(arguments.end(), range.begin(), range.end());
  arguments.insert(arguments.end(), {"in.fa", "report"});
  const ProcessResult result =
      run_in_folder(folder_.path(name), arguments,
                    [](int argc, const char* const* argv) { return quorix::run(argc, argv); });
  EXPECT_EQ(result.status, 0) << result.err;
}

ProcessResult CRangeRuns::run_tool(const std::vector<std::string>& arguments) const {
  return run_in_folder(folder_.path("tools"), arguments, tools::run_command_line);
}

std::vector<std::string> CRangeRuns::files() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder_.path("tools"))) {
    names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace quorix::testing
