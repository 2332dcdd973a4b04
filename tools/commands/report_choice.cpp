#include "tools/commands/report_choice.h"

#include <sys/stat.h>

#include "tools/io/errors.h"

namespace quorix::tools {

namespace {

/// True if both names lead to one file.
bool is_same_file(const std::string& left, const std::string& right) {
  struct stat left_file {};
  struct stat right_file {};
  return ::stat(left.c_str(), &left_file) == 0 && ::stat(right.c_str(), &right_file) == 0 &&
         left_file.st_dev == right_file.st_dev && left_file.st_ino == right_file.st_ino;
}

}  // namespace

void check_output_name(const std::string& output_name, const ReportChoice& reports) {
  if (output_name.empty() || output_name == "-") return;
  for (const std::string& name : reports.names) {
    if (name != "-" && is_same_file(name, output_name)) {
      throw UsageError("the output " + output_name + " is one of the reports");
    }
  }
}

}  // namespace quorix::tools
