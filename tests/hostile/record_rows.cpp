#include "hostile/input_rows.h"

namespace quorix::testing {

InputRows record_rows() {
  const ExpectedRecord a{"a", 8, "AC 1-8"};
  const ExpectedRecord b{"b", 7, "A 1-7"};
  const ExpectedRecord c{"c", 9, "ACG 1-9"};
  const std::string three = ">a\nACACACAC\n>b\nTTTTTTT\n>c\nACGACGACG\n";
  const std::string good_bad_good = ">a\nACACACAC\n>b\nTTTT4TT\n>c\nACGACGACG\n";
  const std::string last_bad = ">a\nACACACAC\n>b\nTTTTTTT\n>c\nACGACGACG\n!";
  return {
      {"three records", three, {a, b, c}},
      {"three records without a last line end", three.substr(0, three.size() - 1), {a, b, c}},
      {"records one after the other without blanks", ">a\nACACACAC\n>b\nTTTTTTT", {a, b}},
      {"the first record has no bases", ">a\n>b\nTTTTTTT\n", {{"a", 0, ""}, b}},
      {"the last record has no bases", ">b\nTTTTTTT\n>a\n", {b, {"a", 0, ""}}},
      {"the middle record has no bases", ">a\nACACACAC\n>x\n>b\nTTTTTTT\n", {a, {"x", 0, ""}, b}},
      {"a record of gaps alone", ">a\nACACACAC\n>x\n-- --\n>b\nTTTTTTT\n", {a, {"x", 0, ""}, b}},
      {"a repeat does not run on into the next record",
       ">a\nACAC\n>b\nACAC\n",
       {{"a", 4, ""}, {"b", 4, ""}}},
      {"an error in the first record", ">a\nAC1\n>b\nTTTTTTT\n", {}, 2},
      {"an error in the second record", good_bad_good, {a}, 4},
      {"an error in the last record", last_bad, {a, b}, 7},
      {"an error in an empty record", ">a\nACACACAC\n>b\n!\n", {a}, 4},
      {"two errors: the first is reported", ">a\nACACACAC\n>b\n1\n>c\n2\n", {a}, 4},
      {"bases after an error are not searched", ">a\nACACACAC1ACACACAC\n", {}, 2},
      {"lines after an error are not searched", ">a\n1\nACACACAC\n", {}, 2},
      {"a header cut short", three.substr(0, three.size() - 12), {a, b, {"", 0, ""}}},
      {"a file cut within bases", three.substr(0, three.size() - 4), {a, b, {"c", 6, ""}}},
      {"a file cut after a header", ">a\nACACACAC\n>b\n", {a, {"b", 0, ""}}},
      {"the same file twice", three + three, {a, b, c, a, b, c}},
      {"a file after one without a last line end", ">a\nACACACAC>b\nTTTTTTT\n", {}, 2},
      // The range.
      {"the first alone", three, {a}, 0, "--lastSeq 1"},
      {"the second alone", three, {b}, 0, "--firstSeq 2 --lastSeq 2"},
      {"from the second on", three, {b, c}, 0, "--firstSeq 2"},
      {"the last alone", three, {c}, 0, "--firstSeq 3"},
      {"after the last", three, {}, 0, "--firstSeq 4"},
      {"none", three, {}, 0, "--lastSeq 0"},
      {"an empty range", three, {}, 0, "--firstSeq 3 --lastSeq 2"},
      {"from 0 on", three, {a, b, c}, 0, "--firstSeq 0"},
      {"up to more than there are", three, {a, b, c}, 0, "--lastSeq 2147483647"},
      {"up to -1", three, {a, b, c}, 0, "--lastSeq -1"},
      {"from -1 on", three, {}, 0, "--firstSeq -1"},
      {"an error after the range", good_bad_good, {a}, 4, "--lastSeq 1"},
      {"an error before the range", good_bad_good, {}, 4, "--firstSeq 3"},
      {"an error where nothing is searched", good_bad_good, {}, 4, "--lastSeq 0"},
      {"an error after everything", last_bad, {a}, 7, "--lastSeq 1"},
      {"an empty file where nothing is searched", "", {}, 1, "--lastSeq 0"},
      // The searches.
      {"an error in mode exact", good_bad_good, {a}, 4, "-M exact"},
      {"an error in mode extendExact", good_bad_good, {a}, 4, "-M extendExact"},
      {"three records in mode exact", three, {a, b, c}, 0, "-M exact"},
      {"three records in mode extendExact", three, {a, b, c}, 0, "-M extendExact"},
      {"no bases in mode exact", ">a\n>b\n", {{"a", 0, ""}, {"b", 0, ""}}, 0, "-M exact"},
      {"no bases in mode extendExact",
       ">a\n>b\n",
       {{"a", 0, ""}, {"b", 0, ""}},
       0,
       "-M extendExact"},
      {"one base in mode extendExact", ">a\nC\n", {{"a", 1, ""}}, 0, "-M extendExact"},
      {"N's alone in mode exact", ">a\nNNNNNNNNNN\n", {{"a", 10, ""}}, 0, "-M exact"},
      {"N's alone in mode extendExact", ">a\nNNNNNNNNNN\n", {{"a", 10, ""}}, 0, "-M extendExact"},
      {"N's alone, N's as mismatches", ">a\nNNNNNNNNNN\n", {{"a", 10, ""}}, 0, "--NsAsMissense"},
      {"units longer than any record",
       three,
       {{"a", 8, ""}, {"b", 7, ""}, {"c", 9, ""}},
       0,
       "-u 100 -U 200"},
      {"units as long as the record",
       ">a\nACGTTGCA\n",
       {{"a", 8, ""}},
       0,
       "-u 8 -U 8 -s 2 --minScore_b 0"},
      {"units a base shorter than the record",
       ">a\nACGTTGCA\n",
       {{"a", 8, ""}},
       0,
       "-u 7 -U 7 -s 2 --minScore_b 0"},
  };
}

}  // namespace quorix::testing
