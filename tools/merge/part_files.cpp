#include "tools/merge/part_files.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <map>
#include <utility>

#include "tools/io/errors.h"

namespace quorix::tools {

void check_part_files(const std::vector<std::string>& names) {
  std::map<std::pair<dev_t, ino_t>, std::string> name_of_file;
  for (const std::string& name : names) {
    struct stat file {};
    const bool is_found = ::stat(name.c_str(), &file) == 0;
    if (name == "-" || (is_found && !S_ISREG(file.st_mode))) {
      throw InputError(name + ": a part must be a regular file");
    }
    if (!is_found) throw InputError(name + ": " + std::strerror(errno));
    const auto [found, is_new] = name_of_file.try_emplace({file.st_dev, file.st_ino}, name);
    if (!is_new) throw InputError(name + ": this part is the same file as " + found->second);
  }
}

}  // namespace quorix::tools
