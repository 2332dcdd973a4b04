// The legend lists the columns of the quorix formats in the order in which report_sat.cpp writes
// them. The sputnik compatible format has the legend of the plain quorix format, although its lines
// have no column for the length in the sequence.

#include "report/output_format.h"

#include "settings/settings.h"

namespace quorix {

const char* output_format_name() {
  switch (global_print_sat_mode) {
    case kFormatQuorix:
      return "quorix format";
    case kFormatExtendedQuorix:
      return "extended quorix format";
    default:
      return "sputnik compatible format";
  }
}

void print_output_format(std::FILE* stream, const char* prefix) {
  int column = 0;
  const auto print_column = [&](const char* meaning) {
    std::fprintf(stream, "%sColumn %2d: %s\n", prefix, ++column, meaning);
  };

  std::fprintf(stream, "%s\n%sColumns in lines of output providing repeat information:\n", prefix,
               prefix);
  print_column("Repeat unit length");
  print_column("Position at which repeat starts in current sequence");
  print_column("Position at which repeat ends in current sequence");
  print_column("Length of repeat in original sequence, i.e. (end-start+1)");
  print_column("Normalized repeat length, i.e. (end-start+1-insertions+deletions)");
  print_column("Repeat score");
  print_column("Repeat perfection");
  if (global_print_sat_mode == kFormatExtendedQuorix) {
    print_column("Number of mismatches");
    print_column("Number of insertions");
    print_column("Number of deletions");
    if (!global_treat_Ns_as_missense) print_column("Number of N's");
  }
  print_column("Repeat unit");
  std::fprintf(stream, "%s\n", prefix);
}

}  // namespace quorix
