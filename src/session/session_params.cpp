#include <algorithm>
#include <cmath>

#include "core/text.h"
#include "files/param_file.h"
#include "records/model_table.h"
#include "records/param_value.h"
#include "session/do.h"
#include "session/statement.h"

namespace kalvex {
namespace {

const char* ColumnName(const ParamRef& param) {
  return param.where == ParamKind::kEpsInf ? "Einf" : kColumnNames[param.column];
}

bool HasLimits(const ParamEdit& edit) { return edit.min || edit.max || edit.useMin || edit.useMax; }

// A statement writes the value again to hold it inside its limits, which also reaches its coupling group. True if the
// edit does the same, or if there is nothing to do.
bool IsHeldInLimits(const ModelParam& record, const ParamEdit& edit) {
  if (edit.value || edit.holdInLimits || HasLimits(edit)) return true;
  const bool within = !(record.useMin && record.value < record.min) && !(record.useMax && record.value > record.max);
  return within && std::fabs(record.value) <= kValueClamp && (record.coupling == 0 || edit.adjustable);
}

// The experimental parameter that a statement with this name finds. A coupling group shares its name too.
const ModelParam& FirstNamed(const ParamTables& tables, std::string_view name) {
  return *std::find_if(tables.ExpParams.begin(), tables.ExpParams.end(),
                       [&](const ModelParam& param) { return StartsWithIgnoringCase(NameOf(param), name); });
}

Statement StatementOf(const ParamRef& param, const ModelParam& record, const ParamEdit& edit,
                      const ParamTables& tables) {
  const bool exp = param.where == ParamKind::kExp;
  Statement statement(exp ? "SetExpParam" : "SetModelParam");
  if (exp) {
    statement.Text("ParamName", NameOf(record)).RefuseIf(&FirstNamed(tables, NameOf(record)) != &record);
  } else {
    statement.Int("ModelNo", param.model).Text("ParamName", ColumnName(param));
    if (param.where == ParamKind::kRow) statement.Int("LorNo", param.row);
  }
  const auto flag = [](std::optional<std::uint32_t> on) {
    return on ? std::optional(static_cast<int>(*on)) : std::nullopt;
  };
  statement.Real("Value", edit.value).Int("FitActive", flag(edit.adjustable));
  statement.Real("MinLimit", edit.min).Real("MaxLimit", edit.max);
  statement.Int("MinOn", flag(edit.useMin)).Int("MaxOn", flag(edit.useMax)).Int("CoupledTo", edit.coupling);
  if (!edit.told && !exp) statement.Int("Update", 0);
  statement.RefuseIf(!edit.told && exp);
  statement.RefuseIf(param.where == ParamKind::kEpsInf && (HasLimits(edit) || (edit.holdInLimits && !edit.value)));
  if (param.where != ParamKind::kEpsInf) statement.RefuseIf(!IsHeldInLimits(record, edit));
  return statement;
}

std::string LabelOf(const ParamRef& param, const ModelParam& record) {
  if (param.where == ParamKind::kExp) return "set " + std::string(NameOf(record));
  std::string label = std::string("set ") + ColumnName(param);
  if (param.where == ParamKind::kRow) label += " of row " + std::to_string(param.row);
  return label + " of model " + std::to_string(param.model);
}

Status NoSuchParam(const Session& session, const ParamRef& param) {
  if (param.where == ParamKind::kExp) return {StatusCode::kNotThere, "there is no such experimental parameter"};
  const Model* const model = session.FindModel(param.model);
  if (!model) return NoSuchModel(param.model);
  const std::string name = "model " + std::to_string(param.model);
  if (param.row >= 1 && param.row <= RowCount(*model)) return {StatusCode::kNotThere, name + " has no such column"};
  return {StatusCode::kNotThere, name + " has no row " + std::to_string(param.row), name};
}

bool IsValueAlone(const ParamEdit& edit) {
  return edit.value && !edit.adjustable && !edit.min && !edit.max && !edit.useMin && !edit.useMax && !edit.coupling;
}

void SetLimits(const ParamEdit& edit, ModelParam& param) {
  if (edit.min) param.min = *edit.min;
  if (edit.max) param.max = *edit.max;
  if (edit.useMin) param.useMin = *edit.useMin;
  if (edit.useMax) param.useMax = *edit.useMax;
}

}  // namespace

// The parameter and all parameters of its coupling group.
Pieces Session::PiecesOfEdit(const ParamRef& param) const {
  Pieces pieces;
  pieces.params.push_back(PlaceOf(param));
  const std::uint32_t group = FindParam(param)->coupling;
  if (group == 0) return pieces;
  pieces.params.clear();
  const auto add = [&](const ParamPlace& place) {
    if (ParamAt(tables_.params, place).coupling == group) pieces.params.push_back(place);
  };
  for (int entry = 0; entry < kMaxModels; ++entry) {
    const Model& model = tables_.params.models[static_cast<std::size_t>(entry)];
    if (model.number == 0) continue;
    add({ParamKind::kEpsInf, entry, 0, 0, 0, 0, 0});
    for (int row = 0; row < RowCount(model); ++row) {
      for (int column = 0; column < kColumns; ++column) add({ParamKind::kRow, entry, row, column, 0, 0, 0});
    }
  }
  for (int k = 0; k < kExpParamCount; ++k) add({ParamKind::kExp, 0, 0, 0, k, 0, 0});
  return pieces;
}

Status Session::SetParam(const ParamRef& ref, const ParamEdit& edit) {
  ModelParam* const param = ParamOf(ref);
  if (!param) return NoSuchParam(*this, ref);
  const std::string label = LabelOf(ref, *param);
  return Do({label, StatementOf(ref, *param, edit, tables_.params).Done(), IsValueAlone(edit) ? label : "",
             kOnModels | kOnExpParams | kOnFit},
            PiecesOfEdit(ref), [&] {
              ParamTables& tables = tables_.params;
              if (edit.value) SetValue(tables, *param, *edit.value);
              if (edit.adjustable) SetAdjustable(tables, *param, *edit.adjustable);
              SetLimits(edit, *param);
              if (edit.holdInLimits || HasLimits(edit)) SetValue(tables, *param, param->value);
              HearCoupled();
              if (edit.coupling) SetCoupling(tables, *param, *edit.coupling);
              if (!edit.told) return Status();
              if (ref.where == ParamKind::kExp) {
                HearExpParams();
              } else {
                HearModel(*ModelOf(ref.model));
              }
              return Status();
            });
}

Status Session::CopyParam(const ParamRef& to, const ParamRef& from) {
  ModelParam* const target = ParamOf(to);
  const ModelParam* const source = FindParam(from);
  if (!target || !source) return NoSuchParam(*this, target ? from : to);
  if (to.where == ParamKind::kExp || from.where == ParamKind::kExp) {
    return {StatusCode::kBadArgument, "experimental parameters cannot be copied"};
  }
  Statement statement("CopyModelParam");
  statement.Int("DestModelNo", to.model).Text("DestParamName", ColumnName(to)).Int("DestLorNo", to.row);
  statement.Int("SourceModelNo", from.model).Text("SourceParamName", ColumnName(from)).Int("SourceLorNo", from.row);
  return Do({"copy a parameter to model " + std::to_string(to.model), statement.Done(), {}, kOnModels | kOnFit},
            Pieces().Model(PlaceOf(to).nm), [&] {
              *target = *source;
              HearModel(*ModelOf(to.model));
              return Status();
            });
}

Status Session::SaveParams(const std::string& file) {
  return DoOutside({"save parameters", Statement("SaveParams").Text("File", file).Done(), {}, kOnFiles},
                   [&] { return kalvex::SaveParams(tables_.params, file); });
}

Status Session::LoadParams(const std::string& file) {
  return Do({"load parameters", Statement("LoadParams").Text("File", file).Done(), {}, kOnModels | kOnFit | kOnFiles},
            PiecesOfAllModels(tables_.params), [&] {
              const auto complete = kalvex::LoadParams(tables_.params, file);
              if (!complete.Ok()) return complete.GetStatus();
              for (const std::uint32_t number : *complete) {
                TellGraphs(GraphEvent::kModelParamChanged, number);
                Tell(ChangeKind::kModelChanged, number);
              }
              TellFitOfParams();
              return Status();
            });
}

Status Session::SaveParamsSpecial() {
  return DoOutside({"save special parameters", Statement("SaveParamsSpecial").Done(), {}, kOnFiles},
                   [&] { return kalvex::SaveParamsSpecial(tables_.params); });
}

void Session::HearModel(Model& model, bool fitToo) {
  TellGraphs(GraphEvent::kModelParamChanged, model.number);
  if (fitToo) TellFitOfParams();
  model.dirty = false;
  Tell(ChangeKind::kModelChanged, model.number);
}

void Session::HearRows(Model& model) {
  TellGraphs(GraphEvent::kModelRowsChanged, model.number);
  HearModel(model);
}

void Session::HearExpParams(bool fitToo) {
  TellGraphs(GraphEvent::kExpParamChanged, -1);
  if (fitToo) TellFitOfParams();
  tables_.params.expParamsDirty = false;
  Tell(ChangeKind::kExpParams);
}

// Notifies the fit and the graphs of the values that a coupling group has overwritten.
void Session::HearCoupled() {
  for (Model& model : tables_.params.models) {
    if (model.number != 0 && model.dirty) HearModel(model);
  }
  if (tables_.params.expParamsDirty) HearExpParams();
}

void Session::RedrawModel(std::uint32_t number) {
  Model* const model = ModelOf(number);
  if (!model) return;
  HearModel(*model, false);
  Deliver(nullptr);
}

void Session::RedrawExpParams() {
  HearExpParams(false);
  Deliver(nullptr);
}

}  // namespace kalvex
