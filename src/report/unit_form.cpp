// The test of the unit as found ignores prime lengths, the rotation test does not; both are rules
// of the report.

#include "report/unit_form.h"

#include "sequence/reducible_unit.h"
#include "settings/settings.h"

namespace quorix {

bool normalize_unit(CDnaString& unit) {
  if (global_report_unit_mode == kUnitAsFound) {
    const char* const letters = unit.c_str();
    return isReducibleUnit_global(letters, letters + unit.size());
  }
  if (global_report_unit_mode != kUnitAlphabeticalBothStrands) {
    return unit.setToMinAlphaRepModCyclicPermOf(unit);
  }
  CDnaString complement;
  complement.setToReverseComplementOf(unit);
  const bool is_complement_reducible = complement.setToMinAlphaRepModCyclicPermOf(complement);
  unit.setToMinAlphaRepModCyclicPermOf(unit);
  if (complement.view() < unit.view()) unit.assign(complement.view());
  return is_complement_reducible;
}

}  // namespace quorix
