#include <array>

#include "core/text.h"
#include "files/model_file.h"
#include "macro/handlers.h"
#include "macro/named_model.h"
#include "macro/param_fields.h"
#include "program/program.h"
#include "records/model_rows.h"
#include "records/model_table.h"
#include "records/param_value.h"
#include "terms/describe.h"
#include "types/describe.h"
#include "windows/redraw.h"

namespace kalvex {
namespace {

// "Einf", or a column and a row number from 1, as the commands name a parameter.
struct NamedParam {
  ModelParam* param = nullptr;
  bool isEpsInf = false;
  std::string problem;
};

NamedParam FindParamByName(Model& model, const std::string& name, std::optional<int> lorNo, const char* lorNoName) {
  if (EqualsIgnoringCase(name, "Einf")) return {&model.epsInf, true, {}};
  for (int column = 0; column < kColumns; ++column) {
    if (!EqualsIgnoringCase(name, kColumnNames[static_cast<std::size_t>(column)])) continue;
    if (!lorNo) return {nullptr, false, std::string(lorNoName) + " is missing"};
    if (*lorNo < 1 || *lorNo > RowCount(model)) {
      return {nullptr, false, ModelText(static_cast<int>(model.number)) + " has no row " + std::to_string(*lorNo)};
    }
    return {&Cell(model, *lorNo - 1, column), false, {}};
  }
  return {nullptr, false, "'" + name + "' is none of Einf, Wo, Wp, G"};
}

// What an element of the rows means, from the type of the model or from the code of the row; empty for a plain row.
std::string MeaningAt(const ModelType* type, const Model& model, int row, int column) {
  if (!type) return TermMeaningAt(model, row, column);
  const RowCell* const cell = CellAt(type->map, row, column);
  return cell ? cell->meaning : "not used";
}

// "Wp" of a plain row, "Wp (thickness, cm)" where the type of the model or the code of the row gives it a meaning.
std::string ParamLabel(const MacroCall& call, const Model& model, const std::string& name, std::optional<int> lorNo) {
  const ModelType* const type = TypeOf(call.program.eval, model);
  if (EqualsIgnoringCase(name, "Einf")) return type ? name + " (" + type->name + ')' : name;
  for (int column = 0; column < kColumns; ++column) {
    if (!EqualsIgnoringCase(name, kColumnNames[static_cast<std::size_t>(column)])) continue;
    const std::string meaning = MeaningAt(type, model, lorNo.value_or(0) - 1, column);
    return meaning.empty() ? name : name + " (" + meaning + ')';
  }
  return name;
}

std::string RowsText(const Model& model) {
  return ModelText(static_cast<int>(model.number)) + " has " + std::to_string(RowCount(model)) + " rows";
}

// The row number from 1 in LorNo, which must be given and exist.
bool NeededRow(MacroCall& call, const Model& model, int& row) {
  const auto number = call.Int("LorNo");
  if (!number) {
    call.Nothing("LorNo is missing");
  } else if (*number < 1 || *number > RowCount(model)) {
    call.Nothing(ModelText(static_cast<int>(model.number)) + " has no row " + std::to_string(*number));
  } else {
    row = *number - 1;
    return true;
  }
  return false;
}

}  // namespace

MacroResult NewModelCommand(MacroCall& call) {
  Model* const model = CreateModel(call.program.params);
  if (!model) return call.Nothing("there are 100 models already");
  const auto x = call.Int("XPos"), y = call.Int("YPos");
  if (x && y) {
    model->window.x = *x;
    model->window.y = *y;
    model->window.width = call.Int("Width").value_or(model->window.width);
    model->window.height = call.Int("Height").value_or(model->window.height);
  }
  if (const auto seen = call.Int("VarDielFuncSeen")) model->window.vdfShown = *seen == 1;
  RefreshModelWindow(call.program.notices, *model);
  return call.Done(ModelText(static_cast<int>(model->number)) + " created");
}

MacroResult SaveModelCommand(MacroCall& call) {
  const int number = call.Int("ModelNo").value_or(1);
  const std::string file = call.Text("File").value_or("");
  Model* const model = ModelOf(call, number);
  if (!model) return NoModel(call, number);
  if (SaveModel(call.program.eval, *model, call.program.fit.TotalChiSq, file) != 0) {
    return call.Nothing("'" + file + "' cannot be written");
  }
  return call.Done(ModelText(number) + " saved to '" + file + "'");
}

MacroResult LoadModelCommand(MacroCall& call) {
  const int number = call.Int("ModelNo").value_or(1);
  const std::string file = call.Text("File").value_or("");
  Model* const model = ModelOf(call, number);
  if (!model) return NoModel(call, number);
  if (LoadModel(*model, file) != 0) return call.Nothing("'" + file + "' cannot be opened or is no model file");
  RefreshModelRows(call.program.notices, *model);
  return call.Done(RowsText(*model) + " from '" + file + "'");
}

MacroResult SetModelParamCommand(MacroCall& call) {
  const auto name = call.Text("ParamName");
  Model* const model = NeededModel(call);
  if (!model) return MacroResult::kNext;
  if (!name) return call.Nothing("ParamName is missing");
  const NamedParam named = FindParamByName(*model, *name, call.Int("LorNo"), "LorNo");
  if (!named.param) return call.Nothing(named.problem);
  SetValueAndFitActive(call, *named.param);
  if (!named.isEpsInf) SetLimits(call, *named.param);
  RedrawDirty(call.program.notices, call.program.params);
  SetCouplingIfGiven(call, *named.param);
  if (call.Int("Update").value_or(1) != 0) RefreshModelWindow(call.program.notices, *model);
  return call.Done(ModelText(static_cast<int>(model->number)) + ' ' +
                   ParamLabel(call, *model, *name, call.Int("LorNo")) + " = " + ParamText(*named.param));
}

MacroResult CopyModelParamCommand(MacroCall& call) {
  for (const char* const needed : {"DestModelNo", "SourceModelNo"}) {
    if (!call.Int(needed)) return call.Nothing(std::string(needed) + " is missing");
  }
  for (const char* const needed : {"DestParamName", "SourceParamName"}) {
    if (!call.Text(needed)) return call.Nothing(std::string(needed) + " is missing");
  }
  const int destNo = *call.Int("DestModelNo"), sourceNo = *call.Int("SourceModelNo");
  Model* const dest = ModelOf(call, destNo);
  Model* const source = ModelOf(call, sourceNo);
  if (!dest) return NoModel(call, destNo);
  if (!source) return NoModel(call, sourceNo);
  const NamedParam to = FindParamByName(*dest, *call.Text("DestParamName"), call.Int("DestLorNo"), "DestLorNo");
  const NamedParam from =
      FindParamByName(*source, *call.Text("SourceParamName"), call.Int("SourceLorNo"), "SourceLorNo");
  if (!to.param) return call.Nothing(to.problem);
  if (!from.param) return call.Nothing(from.problem);
  *to.param = *from.param;
  RefreshModelWindow(call.program.notices, *dest);
  return call.Done(ModelText(destNo) + ' ' + *call.Text("DestParamName") + " = " + ParamText(*to.param));
}

MacroResult FixAllModelParamsCommand(MacroCall& call) {
  const auto slot = call.Int("ModelNo");
  if (!slot) return call.Nothing("ModelNo is missing");
  // Here the number is the place in the table: macros written for this format count on it.
  Model* const model =
      *slot >= 1 && *slot <= kMaxModels ? &call.program.params.models[static_cast<std::size_t>(*slot - 1)] : nullptr;
  if (FixAll(model, true) != 0) return call.Nothing("place " + std::to_string(*slot) + " holds no model");
  RefreshModelWindow(call.program.notices, *model);
  return call.Done("all parameters of " + ModelText(static_cast<int>(model->number)) + " fixed");
}

MacroResult InsertModelRowCommand(MacroCall& call) {
  Model* const model = NeededModel(call);
  if (!model) return MacroResult::kNext;
  const int position = call.Int("LorNo").value_or(RowCount(*model) + 1);
  InsertRow(model, position - 1);
  RefreshModelRows(call.program.notices, *model);
  return call.Done(RowsText(*model));
}

MacroResult RemoveModelRowCommand(MacroCall& call) {
  Model* const model = NeededModel(call);
  int row = 0;
  if (!model || !NeededRow(call, *model, row)) return MacroResult::kNext;
  RemoveRow(model, row);
  RefreshModelRows(call.program.notices, *model);
  return call.Done(RowsText(*model));
}

MacroResult MoveModelRowCommand(MacroCall& call) {
  Model* const model = NeededModel(call);
  int row = 0;
  if (!model || !NeededRow(call, *model, row)) return MacroResult::kNext;
  const bool up = call.Int("Up").value_or(0) != 0;
  if (up && row == 0) return call.Nothing("row 1 is the first");
  if (!up && row + 1 == RowCount(*model)) return call.Nothing("row " + std::to_string(row + 1) + " is the last");
  up ? MoveRowUp(model, row) : MoveRowDown(model, row);
  RefreshModelRows(call.program.notices, *model);
  return call.Done("row " + std::to_string(row + 1) + (up ? " moved up" : " moved down"));
}

MacroResult SortModelRowsCommand(MacroCall& call) {
  Model* const model = NeededModel(call);
  if (!model) return MacroResult::kNext;
  const auto key = call.Int("Key");
  if (!key || *key < 1 || *key > 5) return call.Nothing("Key is missing or not 1 to 5");
  if (SortRows(model, *key) != 0) return call.Nothing("there are no rows");
  RefreshModelRows(call.program.notices, *model);
  return call.Done("rows sorted");
}

MacroResult CloseModelCommand(MacroCall& call) {
  Model* const model = NeededModel(call);
  if (!model) return MacroResult::kNext;
  const std::uint32_t number = model->number;
  CloseModel(call.program, number);
  return call.Done(ModelText(static_cast<int>(number)) + " closed");
}

}  // namespace kalvex
