#include "windows/param_control.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/text.h"
#include "evaluation/model_type.h"
#include "records/model_table.h"
#include "records/param_value.h"
#include "windows/desk.h"
#include "windows/redraw.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

constexpr int kFieldDigits = 5;
constexpr int kCouplingEntries = kMaxCouplingGroup + 1;  // one more than there are groups

std::string FieldText(double value) { return TextG(value, kFieldDigits); }

// The words for no number and for infinity would leave the slider without a scale.
double FieldNumber(std::string_view text) {
  const double number = RealOf(text);
  return std::isnan(number) ? 0 : std::clamp(number, -kValueClamp, kValueClamp);
}

bool IsSelected(const ParamControl& control, ParamOwner owner, const ParamPlace& place) {
  const auto& selected = control.selected;
  return control.owner == owner && selected && selected->Where == place.Where && selected->nl == place.nl &&
         selected->nc == place.nc && selected->nep == place.nep;
}

// The window that owned the selection takes its mark away. Nothing of what it shows has changed: the fit is not told.
void DropMark(const WindowDesk& desk, ParamOwner owner) {
  if (owner.kind == ParamOwner::Kind::kExpParams) {
    desk.expParams.paramSelected = false;
    RefreshExpParams(desk.notices, desk.params, true);
  } else if (Model* const model = GetModelByNumber(desk.params, owner.number)) {
    model->window.paramSelected = false;
    RefreshModelWindow(desk.notices, *model, true);
  }
}

void TellOwner(const WindowDesk& desk) {
  const ParamOwner owner = desk.paramControl.owner;
  if (owner.kind == ParamOwner::Kind::kExpParams) {
    RefreshExpParams(desk.notices, desk.params);
  } else if (Model* const model = GetModelByNumber(desk.params, owner.number)) {
    RefreshModelWindow(desk.notices, *model);
  }
}

// The parameter that the user may change now, null if there is none.
ModelParam* ParamToEdit(const WindowDesk& desk) { return IsFrozen(desk) ? nullptr : SelectedParam(desk); }

// After an edit: the owner, the windows that coupling has reached, and the slider's new centre.
void TellEveryone(const WindowDesk& desk) {
  TellOwner(desk);
  RedrawDirty(desk.notices, desk.params);
  SettleSlider(desk);
}

// Changes the record, lets limits that are in force act on the value, and tells everyone.
template <class Change>
void Edit(const WindowDesk& desk, ModelParam* param, Change change) {
  if (!param) return;
  change(*param);
  SetValue(desk.params, *param, param->value);
  TellEveryone(desk);
}

// The same for a field that loses the focus with this text in it.
template <class Store>
void EditField(const WindowDesk& desk, std::string_view text, double ModelParam::*field, Store store) {
  ModelParam* const param = ParamToEdit(desk);
  if (!param || text == FieldText(param->*field)) return;
  Edit(desk, param, [&](ModelParam& edited) { edited.*field = store(edited, FieldNumber(text)); });
}

std::string& TextOf(ParamFields& fields, ParamField field) {
  return field == ParamField::kValue ? fields.value : field == ParamField::kMin ? fields.min : fields.max;
}

// The slider at an end where the value stands on a stored limit, whether or not the limit is in force.
void CentreSlider(ParamControl& control, const ModelParam& param) {
  control.dragging = false;
  control.baseValue = param.value;
  control.marksShown = param.value != param.min && param.value != param.max;
  control.position = param.value == param.min   ? slider::kBottom
                     : param.value == param.max ? slider::kTop
                                                : slider::kCentre;
}

}  // namespace

void OpenParamControl(const WindowDesk& desk) {
  ParamControl& control = desk.paramControl;
  control.wantsFront = true;
  if (control.open) return;
  // At its first place and centred; only the selection is remembered.
  const ParamOwner owner = control.owner;
  const auto selected = control.selected;
  control = {};
  control.open = control.wantsFront = true;
  control.owner = owner;
  control.selected = selected;
  SettleSlider(desk);
}

void CloseParamControl(const WindowDesk& desk) {
  if (!desk.paramControl.open) return;
  LeaveParamField(desk);
  desk.paramControl.open = false;
  desk.paramControl.dragging = false;
  DropMark(desk, desk.paramControl.owner);
}

bool SelectParam(const WindowDesk& desk, ParamOwner owner, const ParamPlace& place) {
  ParamControl& control = desk.paramControl;
  if (!IsSelected(control, owner, place)) LeaveParamField(desk);
  if (control.owner != owner) DropMark(desk, control.owner);
  control.owner = owner;
  control.selected = place;
  SettleSlider(desk);
  return control.open;
}

bool DeselectParam(const WindowDesk& desk, ParamOwner owner) {
  ParamControl& control = desk.paramControl;
  if (control.owner == owner) {
    LeaveParamField(desk);
    control.owner = {};
    control.selected.reset();
  }
  return control.open;
}

ModelParam* SelectedParam(const WindowDesk& desk) {
  const ParamControl& control = desk.paramControl;
  if (!control.selected) return nullptr;
  const ParamPlace& place = *control.selected;
  if (place.Where != ParamKind::kExp) {
    const Model& model = desk.params.models[static_cast<std::size_t>(place.nm)];
    if (model.number == 0 || OwnerOf(model) != control.owner) return nullptr;
    if (place.Where == ParamKind::kRow && place.nl >= RowCount(model)) return nullptr;
  }
  return &ParamAt(desk.params, place);
}

ParamFields ParamFieldsOf(const WindowDesk& desk) {
  const ModelParam* const param = SelectedParam(desk);
  if (!param) return {texts::kNoParam, kBlack, {}, {}, {}};
  ParamControl control = desk.paramControl;
  // The value may have become another one since the slider was last moved, by a fit or a macro.
  if (!control.dragging) CentreSlider(control, *param);
  const Model* const model = GetModelByNumber(desk.params, control.owner.number);
  const bool special = model && TypeOf(desk.eval, *model);
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

void DragSlider(const WindowDesk& desk, int position) {
  ModelParam* const param = ParamToEdit(desk);
  if (!param) return;
  ParamControl& control = desk.paramControl;
  if (!control.dragging) control.baseValue = param->value;
  control.dragging = true;
  control.position = std::clamp(position, slider::kTop, slider::kBottom);
  SetValue(desk.params, *param,
           slider::Map(slider::kBottom - control.position, control.baseValue, param->min, param->max));
  TellOwner(desk);
  RedrawDirty(desk.notices, desk.params);
}

void SettleSlider(const WindowDesk& desk) {
  if (const ModelParam* const param = SelectedParam(desk)) CentreSlider(desk.paramControl, *param);
}

void TypeIntoParamField(const WindowDesk& desk, ParamField field, std::string_view text) {
  auto& typed = desk.paramControl.typed;
  if (typed && typed->field != field) LeaveParamField(desk);
  typed = {field, std::string(text)};
}

void LeaveParamField(const WindowDesk& desk) {
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

void CommitValue(const WindowDesk& desk, std::string_view text) {
  EditField(desk, text, &ModelParam::value, [](const ModelParam&, double value) { return value; });
}

void CommitMin(const WindowDesk& desk, std::string_view text) {
  EditField(desk, text, &ModelParam::min,
            [](const ModelParam& param, double limit) { return limit > param.max ? param.max : limit; });
}

void CommitMax(const WindowDesk& desk, std::string_view text) {
  EditField(desk, text, &ModelParam::max,
            [](const ModelParam& param, double limit) { return limit < param.min ? param.min : limit; });
}

void CheckUseMin(const WindowDesk& desk, bool on) {
  Edit(desk, ParamToEdit(desk), [&](ModelParam& param) { param.useMin = on ? 1 : 0; });
}

void CheckUseMax(const WindowDesk& desk, bool on) {
  Edit(desk, ParamToEdit(desk), [&](ModelParam& param) { param.useMax = on ? 1 : 0; });
}

void CheckAdjustable(const WindowDesk& desk, bool on) {
  ModelParam* const param = ParamToEdit(desk);
  if (!param) return;
  SetAdjustable(desk.params, *param, on ? 1 : 0);
  TellEveryone(desk);
}

void ChooseCoupling(const WindowDesk& desk, int entry) {
  ModelParam* const param = ParamToEdit(desk);
  if (!param) return;
  SetCoupling(desk.params, *param, entry);
  TellEveryone(desk);
}

}  // namespace kalvex
