#include "hostile/argument_rows.h"

namespace quorix::testing {

std::vector<OptionRow> code_rows() {
  constexpr Copies kNone = Copies::kNotFound;
  const std::string unread = "PARSE ERROR";
  const std::string sorry =
      "Sorry, a problem occured when parsing the command line options. An option value of ";
  const std::string unit = " for the reportUnit option is unknown.\n\n";
  const std::string format =
      "Sorry, a problem occured when parsing the command line options. "
      "An outputFormat with a value of ";
  const std::string sequence =
      "Sorry, a problem occured when parsing the command line options. "
      "A printRepeatSeqMode with a value of ";
  const std::string unknown = " is unknown.\n\n";
  return {
      {"--reportUnit",
       "   Report units as:                 ",
       {{"0", kOk, "as they are"},
        {"1", kOk, "alphabetical normal form"},
        {"2", kOk, "alphabetical normal form using reverse complement"},
        {"3", kUnknownCode, sorry + "3" + unit},
        {"-1", kUnknownCode, sorry + "-1" + unit},
        {"2147483647", kUnknownCode, sorry + "2147483647" + unit},
        {"-2147483648", kUnknownCode, sorry + "-2147483648" + unit},
        {"2147483648", kMalformed, unread},
        {"-2147483649", kMalformed, unread},
        {"4294967296", kMalformed, unread},
        {"asIs", kMalformed, unread},
        {"1.0", kMalformed, unread}}},
      {"--NPerfectionMode",
       "   Computing perfections treat N's: ",
       {{"0", kOk, "asMismatch"},
        {"1", kOk, "asNeutral"},
        {"2", kOk, "asMatch"},
        {"3", kUnknownCode, sorry + "3" + unit},
        {"-1", kUnknownCode, sorry + "-1" + unit},
        {"2147483647", kUnknownCode, sorry + "2147483647" + unit},
        {"-2147483648", kUnknownCode, sorry + "-2147483648" + unit},
        {"2147483648", kMalformed, unread},
        {"-2147483649", kMalformed, unread},
        {"asMatch", kMalformed, unread},
        {"1.0", kMalformed, unread}}},
      {"--printRepeatSeqMode",
       "   Print sequence mode:             ",
       {{"0", kOk, "don't print sequence"},
        {"1", kOk, "print sequence"},
        {"2", kOk, "print alignment"},
        {"3", kUnknownCode, sequence + "3" + unknown},
        {"-1", kUnknownCode, sequence + "-1" + unknown},
        {"2147483647", kUnknownCode, sequence + "2147483647" + unknown},
        {"-2147483648", kUnknownCode, sequence + "-2147483648" + unknown},
        {"2147483648", kMalformed, unread},
        {"-2147483649", kMalformed, unread},
        {"all", kMalformed, unread},
        {"2.", kMalformed, unread}}},
      {"--outputFormat",
       "   Output format:                   ",
       {{"0", kOk, "quorix format"},
        {"1", kOk, "extended quorix format"},
        {"2", kOk, "sputnik compatible format"},
        {"3", kUnknownCode, format + "3" + unknown},
        {"-1", kUnknownCode, format + "-1" + unknown},
        {"2147483647", kUnknownCode, format + "2147483647" + unknown},
        {"-2147483648", kUnknownCode, format + "-2147483648" + unknown},
        {"2147483648", kMalformed, unread},
        {"-2147483649", kMalformed, unread},
        {"gff", kMalformed, unread},
        {"0b1", kMalformed, unread}}},
      // The number is kept bit for bit as an unsigned one.
      {"--firstSeq",
       "   Sequence range to process:       ",
       {{"0", kOk, "0 - last sequence"},
        {"1", kOk, "1 - last sequence"},
        {"2", kOk, "2 - last sequence", kNone},
        {"2147483647", kOk, "2147483647 - last sequence", kNone},
        {"-1", kOk, "4294967295 - last sequence", kNone},
        {"-2147483648", kOk, "2147483648 - last sequence", kNone},
        {"2147483648", kMalformed, unread},
        {"4294967295", kMalformed, unread},
        {"-2147483649", kMalformed, unread},
        {"first", kMalformed, unread},
        {"1-2", kMalformed, unread}}},
      {"--lastSeq",
       "   Sequence range to process:       1 - ",
       {{"0", kOk, "0", kNone},
        {"1", kOk, "1"},
        {"7", kOk, "7"},
        {"2147483647", kOk, "2147483647"},
        {"-1", kOk, "last sequence"},
        {"-2", kOk, "4294967294"},
        {"-2147483648", kOk, "2147483648"},
        {"2147483648", kMalformed, unread},
        {"4294967295", kMalformed, unread},
        {"-2147483649", kMalformed, unread},
        {"last", kMalformed, unread},
        {"1.5", kMalformed, unread}}},
  };
}

}  // namespace quorix::testing
