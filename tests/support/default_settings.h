#pragma once

/// @file
/// A fixture that gives every test the default settings and fresh thresholds.

#include <gtest/gtest.h>

#include "search/search_controller.h"
#include "settings/settings.h"

namespace quorix::testing {

class CDefaultSettings : public ::testing::Test {
 protected:
  CDefaultSettings() { reset(); }
  ~CDefaultSettings() override { reset(); }
  CDefaultSettings(const CDefaultSettings&) = delete;
  CDefaultSettings& operator=(const CDefaultSettings&) = delete;

  /// Every setting its default, no file names, and no threshold tables of an earlier test.
  static void reset() {
    global_input_filename.clear();
    global_output_filename.clear();
    init_param();
    CSearchController::reset_minimum_arrays();
  }
};

}  // namespace quorix::testing
