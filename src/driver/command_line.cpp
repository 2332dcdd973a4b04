// One struct declares all options, one function stores them into the settings, and then the
// settings are checked as a whole. The library is used through this file alone. Three of its habits
// are overruled: it takes unknown options as file names, it ends the process itself, and it would
// let a negative sequence number fail (numbers of sequences are read as signed and stored bit for
// bit).

#include "driver/command_line.h"

#include <tclap/CmdLine.h>

#include <bit>
#include <cstdint>
#include <string>
#include <vector>

#include "console/console_texts.h"
#include "console/exit_status.h"
#include "driver/settings_check.h"
#include "settings/settings.h"

namespace quorix {

namespace {

/// The file names. The library's own list would take an unknown option, and even a lone '-', as one
/// more file name; this one makes the library refuse it.
class CFileNamesArg : public TCLAP::UnlabeledMultiArg<std::string> {
 public:
  using TCLAP::UnlabeledMultiArg<std::string>::UnlabeledMultiArg;

  bool processArg(int* index, std::vector<std::string>& arguments) override {
    const std::string& argument = arguments[static_cast<std::size_t>(*index)];
    if (!TCLAP::Arg::ignoreRest() && argument.starts_with(TCLAP::Arg::flagStartChar())) {
      throw TCLAP::CmdLineParseException("Couldn't find match for argument", argument);
    }
    TCLAP::MultiArg<std::string>::_extractValue(argument);
    return true;
  }
};

/// The help text of an option in the formula of a threshold, which ends with that option's default.
std::string threshold_help(const std::string& threshold, const std::string& default_text) {
  return "The minimum " + (threshold == "minLength" ? std::string("length") : "score") +
         " of a repeat is determined with: maximum( " + threshold + ", " + threshold + "_a + " +
         threshold + "_b*(unit-length) ). Default value of " + default_text;
}

/// The options, in the order in which they join the command line. Each starts from the current
/// value of its setting. Several help texts name defaults of an earlier version; the texts are
/// part of the program's face and stay.
struct Options {
  /// The option for threads joins if `has_threads`.
  explicit Options(bool has_threads) {
    if (has_threads) command_line.add(threads);
  }

  TCLAP::CmdLine command_line{
      "This program searches for tandemly repeated patterns in DNA sequences.", ' ', "3.3.2b"};

  TCLAP::ValueArg<int> succN{
      "N",
      "succN",
      "The maximum number of successive N's allowed in a satellite. Default: 2.",
      false,
      global_Ns_allowed_in_a_row,
      "int",
      command_line};
  TCLAP::SwitchArg NsAsMissense{
      "", "NsAsMissense", "Treat N's as missense. Default: Treat N's as neutral with score 0.",
      command_line, global_treat_Ns_as_missense};
  TCLAP::ValueArg<int> reportUnit{
      "",
      "reportUnit",
      "Repeat units can be reported in three different modes. 0: asIs, 1: Alphabetical normal "
      "form, 2: Alphabetical normal form also considering the reverse complement. Default: 2",
      false,
      global_report_unit_mode,
      "int",
      command_line};
  TCLAP::ValueArg<int> NPerfectionMode{
      "",
      "NPerfectionMode",
      "Quorix provides different modes to treat N's when computing the perfection of a repeat. 0: "
      "asMismatch, 1: asNeutral, 2: asMatch. Default: 0",
      false,
      global_N_and_perfection_mode,
      "int",
      command_line};
  TCLAP::ValueArg<int> printRepeatSeqMode{
      "",
      "printRepeatSeqMode",
      "Quorix provides different modes to print the repeat sequence along with its information. 0: "
      "don't print sequence, 1: print sequence, 2: print alignment.",
      false,
      global_print_sat_seq_mode,
      "int",
      command_line};
  TCLAP::ValueArg<int> outputFormat{
      "",
      "outputFormat",
      "Quorix provides different output formats for printing the repeat information. 0: Quorix "
      "output format, 1: extended Quorix output format",
      false,
      global_print_sat_mode,
      "int",
      command_line};
  TCLAP::SwitchArg maskX{
      "", "maskX",
      "Writes the sequences to a file with the extension \".masked\" in which repeats are masked.",
      command_line, global_mask_repeats};
  TCLAP::ValueArg<int> flanking{
      "f",
      "flanking",
      "If the satellite sequence is printed, this is the number of flanking nucleotides to be "
      "printed to the left and right of it. Default: 0",
      false,
      global_flanking,
      "int",
      command_line};
  TCLAP::ValueArg<float> minPerfection{
      "P",
      "minPerfection",
      "Minimum perfection of satellites. Satellites below this value are broken up or reduced in "
      "length if this yields a satellite above the minimum perfection. If N's are treated as "
      "mismatch when computing the perfection, this value also has an influence when searching "
      "for exact repeats.",
      false,
      global_perfection_minimum,
      "float",
      command_line};
  TCLAP::SwitchArg dontRemoveMostlyOverlapping{
      "D", "dontRemoveMostlyOverlapping",
      "Quorix sometimes finds repeats that partially or completely overlap with other repeats, "
      "e.g. if alignments with alternative repeat patterns exist at the same locus in a sequence. "
      "The default is to remove one of any two mostly overlapping repeats in favour of that repeat "
      "with the highest score. With this option, Quorix reports also repeats that mostly overlap "
      "with higher scoring repeats.",
      command_line, global_remove_mostly_hidden};
  TCLAP::ValueArg<int> firstSeq{"",
                                "firstSeq",
                                "Number of first sequence to be processed in this run.",
                                false,
                                std::bit_cast<int>(global_sequence_from),
                                "int",
                                command_line};
  TCLAP::ValueArg<int> lastSeq{"",
                               "lastSeq",
                               "Number of last sequence to be processed in this run.",
                               false,
                               std::bit_cast<int>(global_sequence_to),
                               "int",
                               command_line};
  TCLAP::ValueArg<int> maximum_score_reduction{
      "R",
      "maximum_score_reduction",
      "The maximum amount the score can be reduced before search is aborded. Default: "
      "6*mismatch-penalty.",
      false,
      global_maximum_scorereduction,
      "int",
      command_line};
  TCLAP::ValueArg<int> recursion{
      "r",
      "recursion",
      "The recursion depth used in the search. Values in the range 3 to 7 are recommended. A value "
      "of 0 implies a search for perfect repeats only.",
      false,
      global_maximum_recursion_depth,
      "int",
      command_line};
  TCLAP::ValueArg<unsigned int> minUnitLen{
      "u",   "minUnitLen", "Minimum unit length. Default: 2", false, global_min_unit_length,
      "int", command_line};
  TCLAP::ValueArg<unsigned int> maxUnitLen{
      "U",   "maxUnitLen", "Maximum unit length. Default: 5", false, global_max_unit_length,
      "int", command_line};
  TCLAP::ValueArg<float> minLength_b{
      "",          "minLength_b",        threshold_help("minLength", "minLength_b: 0"),
      false,       global_min_length_bx, "float",
      command_line};
  TCLAP::ValueArg<int> minLength_a{
      "",          "minLength_a",       threshold_help("minLength", "minLength_a: 0"),
      false,       global_min_length_a, "int",
      command_line};
  TCLAP::ValueArg<int> minLength{
      "l",   "minLength", threshold_help("minLength", "minLength: 1"), false, global_min_length,
      "int", command_line};
  TCLAP::ValueArg<float> minScore_b{
      "",          "minScore_b",        threshold_help("minScore", "minScore_b: 0"),
      false,       global_min_score_bx, "float",
      command_line};
  TCLAP::ValueArg<int> minScore_a{
      "",    "minScore_a", threshold_help("minScore", "minScore_a: 0"), false, global_min_score_a,
      "int", command_line};
  TCLAP::ValueArg<int> minScore{
      "s",   "minScore",  threshold_help("minScore", "minScore: 0"), false, global_min_score,
      "int", command_line};
  TCLAP::ValueArg<int> mismatchScore{
      "m",
      "mismatchScore",
      "Score for mismatch - must be negative. Default: -6. Match score is fixed to one.",
      false,
      global_mismatch_score,
      "int",
      command_line};
  TCLAP::ValueArg<int> indelScore{
      "g",
      "indelScore",
      "Score for indels - must be negative. Default: -6. Match score is fixed to one.",
      false,
      global_indel_score,
      "int",
      command_line};
  std::vector<std::string> search_mode_names{"exact", "extendExact", "imperfect"};
  TCLAP::ValuesConstraint<std::string> search_modes{search_mode_names};
  TCLAP::ValueArg<std::string> searchMode{
      "M",
      "searchMode",
      "Quorix provides three different search modes. exact: Search for exact repeats, only. "
      "extendExact: Searches for exact repeats and extends them by inserting mismatches and "
      "indels. imperfect: Searches directly for imperfect repeats.",
      false,
      "imperfect",
      &search_modes,
      command_line};
  CFileNamesArg iofiles{
      "iofiles",
      "Quorix requires either one or two file names as parameters. The first must be the input "
      "file in FASTA format. If a second file is specified, output is written to it. If no second "
      "file is given, output is written to the console. ",
      false,
      "Input and output filenames",
      command_line,
      true};
  TCLAP::ValueArg<int> threads{"t",
                               "threads",
                               "Number of threads that search at once, 1 to " +
                                   std::to_string(kMaxThreads) +
                                   ". Default: the number of processors that the program may use.",
                               false,
                               0,
                               "int"};
};

/// Stores the names of input and report. Of more than two none is stored: `open_input_and_report`
/// then refuses the run.
void store_file_names(const std::vector<std::string>& names) {
  if (names.size() > 2) return;
  global_input_filename = names.front();
  if (names.size() == 2) global_output_filename = names.back();
}

/// Stores all settings that any value of their type may have here; `check_settings` looks at them.
void store_search_settings(const Options& options) {
  global_sequence_from = std::bit_cast<std::uint32_t>(options.firstSeq.getValue());
  global_sequence_to = std::bit_cast<std::uint32_t>(options.lastSeq.getValue());
  global_maximum_recursion_depth = options.recursion.getValue();
  global_maximum_scorereduction = options.maximum_score_reduction.getValue();
  global_Ns_allowed_in_a_row = options.succN.getValue();
  global_treat_Ns_as_missense = options.NsAsMissense.getValue();
  global_remove_mostly_hidden = options.dontRemoveMostlyOverlapping.getValue();
  global_min_unit_length = options.minUnitLen.getValue();
  global_max_unit_length = options.maxUnitLen.getValue();
  global_min_length = options.minLength.getValue();
  global_min_length_a = options.minLength_a.getValue();
  global_min_length_bx = options.minLength_b.getValue();
  global_min_score = options.minScore.getValue();
  global_min_score_a = options.minScore_a.getValue();
  global_min_score_bx = options.minScore_b.getValue();
  global_mismatch_score = options.mismatchScore.getValue();
  global_indel_score = options.indelScore.getValue();
  global_flanking = options.flanking.getValue();
  global_perfection_minimum = options.minPerfection.getValue();
  global_mask_repeats = options.maskX.getValue();
}

/// Returns the mode of a name. The library has refused names of no mode.
int search_mode_of(const std::string& name) {
  if (name == "exact") return kSearchExact;
  if (name == "extendExact") return kSearchExtendExact;
  return kSearchImperfect;
}

/// Checks and stores the mode codes, up to the first that is out of range. The message for the
/// perfection mode names another option; scripts know it in that wording.
bool store_mode_codes(const Options& options) {
  constexpr const char* kUnknown = " is unknown.\n\n";
  constexpr const char* kUnknownUnitMode = " for the reportUnit option is unknown.\n\n";
  return store_mode_code(global_print_sat_mode, options.outputFormat.getValue(),
                         "An outputFormat with a value of ", kUnknown) &&
         store_mode_code(global_print_sat_seq_mode, options.printRepeatSeqMode.getValue(),
                         "A printRepeatSeqMode with a value of ", kUnknown) &&
         store_mode_code(global_N_and_perfection_mode, options.NPerfectionMode.getValue(),
                         "An option value of ", kUnknownUnitMode) &&
         store_mode_code(global_report_unit_mode, options.reportUnit.getValue(),
                         "An option value of ", kUnknownUnitMode);
}

/// Stores the number of threads, if there is such an option and it is set.
bool store_thread_count(const Options& options, int* thread_count) {
  if (!options.threads.isSet()) return true;
  *thread_count = options.threads.getValue();
  if (*thread_count >= 1 && *thread_count <= kMaxThreads) return true;
  general_PrintMessage(stderr, "Sorry, the number of threads must be from 1 to ",
                       std::to_string(kMaxThreads), ".\n");
  return false;
}

/// Lets the library parse and write its own texts. The library must not end the process: whether
/// its texts could be written is checked before that.
void parse_or_end(TCLAP::CmdLine& command_line, int argc, const char* const* argv) {
  command_line.setExceptionHandling(false);
  try {
    try {
      command_line.parse(argc, argv);
    } catch (TCLAP::ArgException& fault) {
      command_line.getOutput()->failure(command_line, fault);
    }
  } catch (const TCLAP::ExitException& end) {
    throw CommandLineEnd{end.getExitStatus()};
  }
}

/// Parses the arguments into the settings. Throws: TCLAP::ArgException if the options themselves
/// contradict each other.
int parse_into_settings(int argc, const char* const* argv, int* thread_count) {
  Options options(thread_count != nullptr);
  parse_or_end(options.command_line, argc, argv);

  if (options.iofiles.getValue().empty()) {
    general_PrintMessage(stderr, "Error: No input file has been specified. Type ",
                         double_percent_signs(argv[0]), " --help for more information.\n");
    return kInvalidSetting;
  }
  store_file_names(options.iofiles.getValue());
  store_search_settings(options);
  global_search_mode = search_mode_of(options.searchMode.getValue());
  if (!store_mode_codes(options)) return kUnknownMode;
  return store_thread_count(options, thread_count) ? kSuccess : kInvalidSetting;
}

}  // namespace

int read_and_init_parameters(int argc, const char* const* argv, int* thread_count) {
  init_param();
  int result = kSuccess;
  try {
    result = parse_into_settings(argc, argv, thread_count);
  } catch (const TCLAP::ArgException& fault) {
    general_PrintMessage(stderr, "Error: ", double_percent_signs(fault.error()), " for arg ",
                         double_percent_signs(fault.argId()));
    general_PrintMessage(stderr, "\n");
    return kInvalidSetting;
  }
  return result == kSuccess ? check_settings() : result;
}

}  // namespace quorix
