// In place of the template where it could not be built.

#include "tools/page/page_template.h"

namespace quorix::tools {

std::string_view page_template() {
  return {};
}

}  // namespace quorix::tools
