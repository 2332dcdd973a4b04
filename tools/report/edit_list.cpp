#include "tools/report/edit_list.h"

#include "tools/report/text_cursor.h"

namespace quorix::tools {

namespace {

/// Returns the place of a kind among the edits of one position.
int rank_of(char kind) {
  switch (kind) {
    case 'D':
      return 0;
    case 'I':
      return 1;
    case 'M':
      return 2;
    default:
      throw LineFault("the kind of an edit is M, I or D");
  }
}

/// True if `next` may follow `edit`: a base may lack several before it, and is edited only once.
bool may_follow(const ReportedEdit& edit, const ReportedEdit& next) {
  if (edit.position != next.position) return edit.position < next.position;
  return edit.kind == 'D' && rank_of(next.kind) >= rank_of(edit.kind);
}

}  // namespace

void read_edits(std::string_view text, std::vector<ReportedEdit>& edits) {
  edits.clear();
  CTextCursor cursor(text);
  while (!cursor.is_at_end()) {
    cursor.expect("(");
    ReportedEdit edit;
    edit.position = cursor.number(0, ",");
    edit.kind = cursor.character();
    rank_of(edit.kind);
    cursor.expect("),");
    if (!edits.empty() && !may_follow(edits.back(), edit)) {
      throw LineFault("the edits are not in order");
    }
    edits.push_back(edit);
  }
}

}  // namespace quorix::tools
