// Errors of the library: each is an exception, and none of them spoils the next search.

#include <gtest/gtest.h>
#include <quorix/quorix.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

namespace {

using quorix::find_repeats;
using quorix::Repeat;
using quorix::SearchSettings;

const char* const kArray = "TTACACACACACGG";

/// Returns the reason for which settings are refused. Empty if they are not.
std::string refusal(const SearchSettings& settings) {
  std::string by_check;
  try {
    quorix::check_settings(settings);
  } catch (const quorix::SettingsError& error) {
    by_check = error.what();
  }
  std::string by_search;
  try {
    const auto repeats = find_repeats(kArray, settings);
  } catch (const quorix::SettingsError& error) {
    by_search = error.what();
  }
  EXPECT_EQ(by_check, by_search);
  EXPECT_EQ(find_repeats(kArray).size(), 1U);
  return by_search;
}

TEST(LibraryErrors, settings_are_refused_in_the_words_of_the_program) {
  SearchSettings settings;
  EXPECT_EQ(refusal(settings), "");
  settings.max_unit_length = 3;
  settings.min_unit_length = 4;
  EXPECT_EQ(refusal(settings),
            "I think you have made a mistake here: The maximum unit length must be greater\n"
            "or equal to the minimum unit length.");
  settings.recursion_depth = 0;
  EXPECT_EQ(refusal(settings),
            "Sorry, the recursion depth must be greater than 0.\n"
            "A value of 0 would corresponds to a perfect search.");
  settings.indel_score = -1;
  EXPECT_EQ(refusal(settings), "Sorry, the indel score must be smaller or equal to -2.");
  settings.mismatch_score = -1;
  EXPECT_EQ(refusal(settings), "Sorry, the mismatch score must be smaller or equal to -2.");
  settings.min_score = 1;
  settings.min_score_factor = 0.0F;
  EXPECT_EQ(refusal(settings),
            "Sorry, either the minimum score or the minimum length must be larger.");
}

TEST(LibraryErrors, factors_have_to_be_finite) {
  for (const float factor :
       {std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
    SearchSettings settings;
    settings.min_score_factor = factor;
    EXPECT_EQ(refusal(settings), "Sorry, a factor of a minimum must be a finite number.");
    settings = SearchSettings();
    settings.min_length_factor = -factor;
    EXPECT_EQ(refusal(settings), "Sorry, a factor of a minimum must be a finite number.");
  }
}

TEST(LibraryErrors, codes_of_no_mode_are_refused) {
  SearchSettings settings;
  settings.unit_form = static_cast<quorix::UnitForm>(3);
  EXPECT_EQ(refusal(settings), "An option value of 3 for the reportUnit option is unknown.");
  settings.n_in_perfection = static_cast<quorix::NInPerfection>(-1);
  EXPECT_EQ(refusal(settings), "An option value of -1 for the NPerfectionMode option is unknown.");
  settings.mode = static_cast<quorix::SearchMode>(7);
  EXPECT_EQ(refusal(settings), "An option value of 7 for the searchMode option is unknown.");
  settings.detail = static_cast<quorix::Detail>(9);
  EXPECT_EQ(refusal(settings), "An option value of 9 for the detail option is unknown.");
}

/// Returns the message about a text and the position that it names, with a colon between.
std::string text_error(const std::string& text) {
  try {
    const auto repeats = find_repeats(text);
  } catch (const quorix::TextError& error) {
    return error.what() + std::string(":") + std::to_string(error.position());
  }
  return "";
}

TEST(LibraryErrors, bytes_that_are_no_base_are_named_with_their_position) {
  EXPECT_EQ(text_error("ACGT-ACGT"), "The text has no base at position 4, but '-'.:4");
  EXPECT_EQ(text_error("ACGTACGTACGTACGTACGT\nACGT"),
            "The text has no base at position 20, but byte 0x0A.:20");
  EXPECT_EQ(text_error(std::string("AC\0GT", 5)),
            "The text has no base at position 2, but byte 0x00.:2");
  EXPECT_EQ(text_error("\xC3\x84"), "The text has no base at position 0, but byte 0xC3.:0");
  EXPECT_EQ(text_error(">ACGT"), "The text has no base at position 0, but '>'.:0");
  EXPECT_EQ(find_repeats(kArray).size(), 1U);
}

TEST(LibraryErrors, an_exception_of_the_callback_reaches_the_caller) {
  const std::string two_arrays = "ACACACACACACGGTTTTTTTTTTTTTTGG";
  ASSERT_EQ(find_repeats(two_arrays).size(), 2U);
  int calls = 0;
  const auto callback = [&calls](const Repeat& /*repeat*/) {
    ++calls;
    throw std::runtime_error("enough");
  };
  EXPECT_THROW(find_repeats(two_arrays, SearchSettings(), callback), std::runtime_error);
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(find_repeats(two_arrays).size(), 2U);
}

TEST(LibraryErrors, a_callback_cannot_search) {
  int refused = 0;
  find_repeats(kArray, SearchSettings(), [&refused](const Repeat& /*repeat*/) {
    try {
      const auto repeats = find_repeats(kArray);
    } catch (const std::logic_error& error) {
      refused += std::string(error.what()) == "A callback of a search must not search." ? 1 : 0;
    }
  });
  EXPECT_EQ(refused, 1);
  EXPECT_EQ(find_repeats(kArray).size(), 1U);
}

}  // namespace
