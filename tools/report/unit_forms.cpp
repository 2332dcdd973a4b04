#include "tools/report/unit_forms.h"

#include "tools/report/text_cursor.h"

namespace quorix::tools {

std::string_view CUnitForms::normal_form(std::string_view unit, UnitForm form) {
  set_normal_form(unit, form);
  return normal_form_.view();
}

void CUnitForms::set_normal_form(std::string_view unit, UnitForm form) {
  source_.assign(unit);
  is_reducible_ = normal_form_.setToMinAlphaRepModCyclicPermOf(source_);
  if (form != UnitForm::kAlphabeticalBothStrands) return;
  complement_.setToReverseComplementOf(source_);
  complement_.setToMinAlphaRepModCyclicPermOf(complement_);
  if (complement_.view() < normal_form_.view()) normal_form_.assign(complement_.view());
}

void CUnitForms::check_printed_unit(std::string_view unit, std::string_view motif, UnitForm form) {
  set_normal_form(motif.empty() ? unit : motif, form);
  if (form != UnitForm::kAsFound) {
    if (is_reducible_) throw LineFault("the unit repeats a shorter one");
    if (unit != normal_form_.view()) throw LineFault("the unit is not in its normal form");
    return;
  }
  if (motif.empty()) return;
  other_ = normal_form_.view();
  if (normal_form(unit, form) != other_) throw LineFault("the unit is not that of the bases");
}

}  // namespace quorix::tools
