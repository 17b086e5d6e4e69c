#include "macro/model_commands.h"

#include "core/text.h"
#include "macro/named_model.h"
#include "macro/param_fields.h"
#include "terms/describe.h"
#include "types/describe.h"
#include "windows/desk.h"

namespace kalvex {
namespace {

// The column of a parameter name. Nothing for "Einf" and for unknown names.
std::optional<int> ColumnNamed(const std::string& name) {
  for (int column = 0; column < kColumns; ++column) {
    if (EqualsIgnoringCase(name, kColumnNames[column])) return column;
  }
  return std::nullopt;
}

// A reference to "Einf", or to a column and a row number from 1.
Result<ParamRef> ParamNamed(const Model& model, const std::string& name, std::optional<int> lorNo,
                            const char* lorNoName) {
  if (EqualsIgnoringCase(name, "Einf")) return ParamRef::EpsInf(model.number);
  const auto column = ColumnNamed(name);
  if (!column) return {StatusCode::kBadArgument, "'" + name + "' is not one of Einf, Wo, Wp, G"};
  if (!lorNo) return {StatusCode::kBadArgument, std::string(lorNoName) + " is missing"};
  return ParamRef::Row(model.number, *lorNo, *column);
}

// The meaning of an element according to the type of the model or the code of its row; empty for a plain row.
std::string MeaningAt(const ModelType* type, const Model& model, int row, int column) {
  if (!type) return TermMeaningAt(model, row, column);
  const RowCell* const cell = CellAt(type->map, row, column);
  return cell ? cell->meaning : "not used";
}

// "Wp" for a plain row, "Wp (thickness, cm)" if the type of the model or the code of the row gives it a meaning.
std::string ParamLabel(const Session& session, const Model& model, const std::string& name, const ParamRef& param) {
  const ModelType* const type = session.TypeOfModel(model);
  if (param.where == ParamKind::kEpsInf) return type ? name + " (" + type->name + ')' : name;
  const std::string meaning = MeaningAt(type, model, param.row - 1, param.column);
  return meaning.empty() ? name : name + " (" + meaning + ')';
}

std::string RowsText(const Model& model) {
  return ModelText(model.number) + " has " + std::to_string(RowCount(model)) + " rows";
}

}  // namespace

MacroResult NewModelCommand(MacroCall& call, const NewModelParams& p) {
  const auto number = call.session.NewModel();
  if (!number.Ok()) return call.Nothing(number.Text());
  ModelWindow& window = call.desk.models[*number];
  if (PlaceIfGiven(p, window)) {
    SetIfGiven(window.width, p.Width);
    SetIfGiven(window.height, p.Height);
  }
  if (p.VarDielFuncSeen) window.vdfShown = *p.VarDielFuncSeen == 1;
  return call.Done(ModelText(*number) + " created");
}

MacroResult SaveModelCommand(MacroCall& call, const ModelFileParams& p) {
  const Model* const model = NeededModel(call, p.ModelNo.value_or(1));
  if (!model) return MacroResult::kNext;
  const std::string file = p.File.value_or("");
  return call.Told(call.session.SaveModel(model->number, file), ModelText(model->number) + " saved to '" + file + "'");
}

MacroResult LoadModelCommand(MacroCall& call, const ModelFileParams& p) {
  const Model* const model = NeededModel(call, p.ModelNo.value_or(1));
  if (!model) return MacroResult::kNext;
  const std::string file = p.File.value_or("");
  const Status status = call.session.LoadModel(model->number, file);
  return call.Told(status, RowsText(*model) + " from '" + file + "'");
}

MacroResult SetModelParamCommand(MacroCall& call, const SetModelParamParams& p) {
  const Model* const model = NeededModel(call, p.ModelNo);
  if (!model) return MacroResult::kNext;
  if (!p.ParamName) return call.Missing("ParamName");
  const auto param = ParamNamed(*model, *p.ParamName, p.LorNo, "LorNo");
  if (!param.Ok()) return call.Nothing(param.Text());
  ParamEdit edit = EditOf(p);
  if (param->where == ParamKind::kEpsInf) {  // the macro language has no limits for Einf
    edit.min = edit.max = std::nullopt;
    edit.useMin = edit.useMax = std::nullopt;
    edit.holdInLimits = false;
  }
  edit.told = FlagOf(p.Update).value_or(true);
  if (const Status status = call.session.SetParam(*param, edit); !status.Ok()) return call.Nothing(status.Text());
  const std::string label = ModelText(model->number) + ' ' + ParamLabel(call.session, *model, *p.ParamName, *param);
  const ModelParam& record = *call.session.FindParam(*param);
  WarnIfMoved(call, edit.value, record, label);
  return call.Done(label + " = " + ParamText(record));
}

MacroResult CopyModelParamCommand(MacroCall& call, const CopyModelParamParams& p) {
  if (!p.DestModelNo) return call.Missing("DestModelNo");
  if (!p.SourceModelNo) return call.Missing("SourceModelNo");
  if (!p.DestParamName) return call.Missing("DestParamName");
  if (!p.SourceParamName) return call.Missing("SourceParamName");
  const Model* const dest = NeededModel(call, p.DestModelNo);
  const Model* const source = dest ? NeededModel(call, p.SourceModelNo) : nullptr;
  if (!source) return MacroResult::kNext;
  const auto to = ParamNamed(*dest, *p.DestParamName, p.DestLorNo, "DestLorNo");
  const auto from = ParamNamed(*source, *p.SourceParamName, p.SourceLorNo, "SourceLorNo");
  if (!to.Ok()) return call.Nothing(to.Text());
  if (!from.Ok()) return call.Nothing(from.Text());
  if (const Status status = call.session.CopyParam(*to, *from); !status.Ok()) return call.Nothing(status.Text());
  return call.Done(ModelText(dest->number) + ' ' + *p.DestParamName + " = " + ParamText(*call.session.FindParam(*to)));
}

MacroResult FixAllModelParamsCommand(MacroCall& call, const ModelNoParams& p) {
  if (!p.ModelNo) return call.Missing("ModelNo");
  // FixAllModelParams takes the place in the table instead of the number; macros of this format rely on it.
  const bool isPlace = *p.ModelNo >= 1 && *p.ModelNo <= kMaxModels;
  const auto place = static_cast<std::size_t>(isPlace ? *p.ModelNo - 1 : 0);
  const std::uint32_t number = isPlace ? call.session.Params().models[place].number : 0;
  if (number == 0) return call.Nothing("place " + std::to_string(*p.ModelNo) + " of the model table is empty");
  return call.Told(call.session.FixAllParams(number, true), "all parameters of " + ModelText(number) + " fixed");
}

MacroResult InsertModelRowCommand(MacroCall& call, const ModelRowParams& p) {
  const Model* const model = NeededModel(call, p.ModelNo);
  if (!model) return MacroResult::kNext;
  const Status status = call.session.InsertRow(model->number, p.LorNo.value_or(RowCount(*model) + 1));
  return call.Told(status, RowsText(*model));
}

MacroResult RemoveModelRowCommand(MacroCall& call, const ModelRowParams& p) {
  const Model* const model = NeededModel(call, p.ModelNo);
  if (!model) return MacroResult::kNext;
  if (!p.LorNo) return call.Missing("LorNo");
  const Status status = call.session.RemoveRow(model->number, *p.LorNo);
  return call.Told(status, RowsText(*model));
}

MacroResult MoveModelRowCommand(MacroCall& call, const MoveModelRowParams& p) {
  const Model* const model = NeededModel(call, p.ModelNo);
  if (!model) return MacroResult::kNext;
  if (!p.LorNo) return call.Missing("LorNo");
  const bool up = FlagOf(p.Up).value_or(false);
  return call.Told(call.session.MoveRow(model->number, *p.LorNo, up),
                   "row " + std::to_string(*p.LorNo) + (up ? " moved up" : " moved down"));
}

MacroResult SortModelRowsCommand(MacroCall& call, const SortModelRowsParams& p) {
  const Model* const model = NeededModel(call, p.ModelNo);
  if (!model) return MacroResult::kNext;
  if (!p.Key) return call.Missing("Key");
  return call.Told(call.session.SortRows(model->number, *p.Key), "rows sorted");
}

MacroResult CloseModelCommand(MacroCall& call, const ModelNoParams& p) {
  const Model* const model = NeededModel(call, p.ModelNo);
  if (!model) return MacroResult::kNext;
  const std::uint32_t number = model->number;
  return call.Told(call.session.CloseModel(number), ModelText(number) + " closed");
}

}  // namespace kalvex
