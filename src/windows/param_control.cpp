#include "windows/param_control.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/limits.h"
#include "core/text.h"
#include "windows/desk.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

constexpr int kFieldDigits = 5;
constexpr int kCouplingEntries = kMaxCouplingGroup + 1;  // one more than the number of groups

std::string FieldText(double value) { return TextG(value, kFieldDigits); }

// The texts for a missing value and for infinity are not accepted, because the slider would have no scale.
double FieldNumber(std::string_view text) {
  const double number = RealOf(text);
  return std::isnan(number) ? 0 : std::clamp(number, -kValueClamp, kValueClamp);
}

bool IsExp(const ParamRef& param) { return param.where == ParamKind::kExp; }

bool IsOfSameWindow(const ParamRef& a, const ParamRef& b) {
  return IsExp(a) ? IsExp(b) : !IsExp(b) && a.model == b.model;
}

bool IsSame(const ParamRef& a, const ParamRef& b) {
  return IsOfSameWindow(a, b) && a.where == b.where && a.row == b.row && a.column == b.column &&
         a.expParam == b.expParam;
}

// Clears the mark in the window of the selected parameter. The fit is not notified, because no value has changed.
void DropMark(Desk& desk) {
  const auto& selected = desk.paramControl.selected;
  if (!selected) return;
  if (IsExp(*selected)) {
    desk.expParams.paramSelected = false;
    desk.session.RedrawExpParams();
  } else if (const auto window = desk.models.find(selected->model); window != desk.models.end()) {
    window->second.paramSelected = false;
    desk.session.RedrawModel(selected->model);
  }
}

template <class IsTheirs>
void DeselectIf(Desk& desk, IsTheirs isTheirs) {
  if (!desk.paramControl.selected || !isTheirs(*desk.paramControl.selected)) return;
  LeaveParamField(desk);
  desk.paramControl.selected.reset();
}

void Edit(Desk& desk, const ParamEdit& edit) {
  if (!SelectedParam(desk)) return;
  if (desk.session.SetParam(*desk.paramControl.selected, edit).Ok()) SettleSlider(desk);
}

// Applies the text of a field. A text equal to the one shown is not an edit.
template <class EditTo>
void EditField(Desk& desk, std::string_view text, double ModelParam::*field, EditTo editTo) {
  const ModelParam* const param = SelectedParam(desk);
  if (param && text != FieldText(param->*field)) Edit(desk, editTo(*param, FieldNumber(text)));
}

std::string& TextOf(ParamFields& fields, ParamField field) {
  return field == ParamField::kValue ? fields.value : field == ParamField::kMin ? fields.min : fields.max;
}

// The slider is at an end if the value equals a stored limit, whether or not the limit is active.
void CentreSlider(ParamControl& control, const ModelParam& param) {
  control.dragging = false;
  control.baseValue = param.value;
  control.marksShown = param.value != param.min && param.value != param.max;
  control.position = param.value == param.min   ? slider::kBottom
                     : param.value == param.max ? slider::kTop
                                                : slider::kCentre;
}

}  // namespace

void OpenParamControl(Desk& desk) {
  ParamControl& control = desk.paramControl;
  control.wantsFront = true;
  if (control.open) return;
  // The window opens at its initial position with a centred slider. Only the selection is kept.
  const auto selected = control.selected;
  control = {};
  control.open = control.wantsFront = true;
  control.selected = selected;
  SettleSlider(desk);
}

void CloseParamControl(Desk& desk) {
  if (!desk.paramControl.open) return;
  LeaveParamField(desk);
  desk.paramControl.open = false;
  desk.paramControl.dragging = false;
  DropMark(desk);
}

bool SelectParam(Desk& desk, const ParamRef& param) {
  ParamControl& control = desk.paramControl;
  if (!control.selected || !IsSame(*control.selected, param)) LeaveParamField(desk);
  if (control.selected && !IsOfSameWindow(*control.selected, param)) DropMark(desk);
  control.selected = param;
  SettleSlider(desk);
  return control.open;
}

void DeselectModel(Desk& desk, std::uint32_t number) {
  DeselectIf(desk, [&](const ParamRef& param) { return !IsExp(param) && param.model == number; });
}

void DeselectExpParams(Desk& desk) { DeselectIf(desk, IsExp); }

const ModelParam* SelectedParam(const Desk& desk) {
  const auto& selected = desk.paramControl.selected;
  return selected ? desk.session.FindParam(*selected) : nullptr;
}

ParamFields ParamFieldsOf(const Desk& desk) {
  const ModelParam* const param = SelectedParam(desk);
  if (!param) return {texts::kNoParam, kBlack, {}, {}, {}};
  ParamControl control = desk.paramControl;
  // A fit or a macro may have changed the value since the slider was last moved.
  if (!control.dragging) CentreSlider(control, *param);
  const Model* const model = desk.session.FindModel(control.selected->model);
  const bool special = model && desk.session.TypeOfModel(*model);
  ParamFields fields;
  fields.header = special ? texts::kSpecialParam : std::string(NameOf(*param));
  fields.headerColour = ColourOfParam(param->adjustable != 0);
  fields.value = FieldText(param->value);
  fields.min = FieldText(param->min);
  fields.max = FieldText(param->max);
  fields.useMin = param->useMin != 0;
  fields.useMax = param->useMax != 0;
  fields.adjustable = param->adjustable != 0;
  fields.coupling = static_cast<int>(std::min<std::uint32_t>(param->coupling, kCouplingEntries));
  fields.position = control.position;
  fields.marksShown = control.marksShown;
  fields.enabled = true;
  if (control.typed) TextOf(fields, control.typed->field) = control.typed->text;
  return fields;
}

std::vector<std::string> CouplingChoices() {
  std::vector<std::string> choices{""};
  for (int group = 1; group <= kCouplingEntries; ++group)
    choices.push_back(texts::kGroupLetter + std::to_string(group));
  return choices;
}

void DragSlider(Desk& desk, int position) {
  const ModelParam* const param = SelectedParam(desk);
  if (!param) return;
  ParamControl& control = desk.paramControl;
  if (!control.dragging) desk.session.EndGesture();
  const double base = control.dragging ? control.baseValue : param->value;
  const int held = std::clamp(position, slider::kTop, slider::kBottom);
  const double value = slider::Map(slider::kBottom - held, base, param->min, param->max);
  if (!desk.session.SetParam(*control.selected, {.value = value}).Ok()) return;
  control.dragging = true;
  control.baseValue = base;
  control.position = held;
}

void SettleSlider(Desk& desk) {
  desk.session.EndGesture();
  if (const ModelParam* const param = SelectedParam(desk)) CentreSlider(desk.paramControl, *param);
}

void TypeIntoParamField(Desk& desk, ParamField field, std::string_view text) {
  auto& typed = desk.paramControl.typed;
  if (typed && typed->field != field) LeaveParamField(desk);
  typed = {field, std::string(text)};
}

void LeaveParamField(Desk& desk) {
  const auto typed = std::exchange(desk.paramControl.typed, std::nullopt);
  if (!typed) return;
  switch (typed->field) {
    case ParamField::kValue:
      return CommitValue(desk, typed->text);
    case ParamField::kMin:
      return CommitMin(desk, typed->text);
    case ParamField::kMax:
      return CommitMax(desk, typed->text);
  }
}

void CommitValue(Desk& desk, std::string_view text) {
  EditField(desk, text, &ModelParam::value, [](const ModelParam&, double value) { return ParamEdit{.value = value}; });
}

void CommitMin(Desk& desk, std::string_view text) {
  EditField(desk, text, &ModelParam::min, [](const ModelParam& param, double limit) {
    return ParamEdit{.min = limit > param.max ? param.max : limit};
  });
}

void CommitMax(Desk& desk, std::string_view text) {
  EditField(desk, text, &ModelParam::max, [](const ModelParam& param, double limit) {
    return ParamEdit{.max = limit < param.min ? param.min : limit};
  });
}

void CheckUseMin(Desk& desk, bool on) { Edit(desk, {.useMin = on ? 1u : 0u}); }

void CheckUseMax(Desk& desk, bool on) { Edit(desk, {.useMax = on ? 1u : 0u}); }

void CheckAdjustable(Desk& desk, bool on) { Edit(desk, {.adjustable = on ? 1u : 0u}); }

void ChooseCoupling(Desk& desk, int entry) { Edit(desk, {.coupling = entry}); }

}  // namespace kalvex
