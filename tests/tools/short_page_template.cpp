// In place of the template that Node.js makes: the data are easily found in it, and tests do not
// depend on Node.js.

#include "tools/page/page_template.h"

namespace quorix::tools {

std::string_view page_template() {
  return "<html>@TABLE-DATA@|@DETAIL-DATA@</html>\n";
}

}  // namespace quorix::tools
