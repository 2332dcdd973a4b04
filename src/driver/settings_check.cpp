// What is refused is decided in settings/settings_rules.h; here it becomes a message and a code.

#include "driver/settings_check.h"

#include <string_view>

#include "console/console_texts.h"
#include "console/exit_status.h"
#include "console/number_text.h"
#include "settings/settings.h"
#include "settings/settings_rules.h"

namespace quorix {

namespace {

constexpr int kMaxModeCode = 2;

}  // namespace

bool store_mode_code(int& setting, int value, const char* before, const char* after) {
  if (value < 0 || value > kMaxModeCode) {
    general_PrintMessage(stderr, "Sorry, a problem occured when parsing the command line options. ",
                         before, number2str(value), after);
    return false;
  }
  setting = value;
  return true;
}

int check_settings() {
  const std::string_view reason = correct_settings();
  if (reason.empty()) return kSuccess;
  general_PrintMessage(stderr, reason);
  return kInvalidSetting;
}

}  // namespace quorix
