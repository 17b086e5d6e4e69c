#include <algorithm>

#include "evaluation/spectrum_team.h"
#include "files/model_file.h"
#include "records/model_rows.h"
#include "records/model_table.h"
#include "session/do.h"
#include "session/statement.h"

namespace kalvex {
namespace {

std::string ModelText(std::uint32_t number) { return "model " + std::to_string(number); }

std::string RowOf(std::uint32_t model, int row) { return "row " + std::to_string(row) + " of " + ModelText(model); }

Statement OnModel(std::string_view command, std::uint32_t number) { return Statement(command).Int("ModelNo", number); }

Status NoSuchRow(std::uint32_t model, int row) {
  return {StatusCode::kNotThere, ModelText(model) + " has no row " + std::to_string(row), RowOf(model, row)};
}

int FirstFreeEntry(const ParamTables& tables) {
  const auto free =
      std::find_if(tables.models.begin(), tables.models.end(), [](const Model& model) { return model.number == 0; });
  return static_cast<int>(free - tables.models.begin());
}

}  // namespace

Result<std::uint32_t> Session::NewModel() {
  const int entry = FirstFreeEntry(tables_.params);
  if (entry == kMaxModels) {
    return {StatusCode::kFull, "the limit of " + std::to_string(kMaxModels) + " models is reached"};
  }
  return Do({"new model", Statement("NewModel").Done(), {}, kOnModels | kOnFit}, Pieces().Model(entry),
            [&]() -> Result<std::uint32_t> {
              Model& model = *CreateModel(tables_.params);
              HearModel(model);
              Tell(ChangeKind::kModelCreated, model.number);
              return model.number;
            });
}

Status Session::CloseModel(std::uint32_t number) {
  Model* const model = ModelOf(number);
  if (!model) return NoSuchModel(number);
  return Do({"close " + ModelText(number), OnModel("CloseModel", number).Done(), {}, kOnModels | kOnFit | kOnGraphs},
            Pieces().Model(kalvex::SlotOf(tables_.params, *model)).Graphs(), [&] {
              CloseModelRecord(*model);
              ForgetModel(eval_, number);
              TellGraphs(GraphEvent::kModelClosed, number);
              DropTermsIf([&](const ChiSqTerm& term) { return term.modelId == number; });
              Tell(ChangeKind::kModelClosed, number);
              return Status();
            });
}

Status Session::InsertRow(std::uint32_t number, int position) {
  return ChangeModel(number,
                     {"insert a row into " + ModelText(number),
                      OnModel("InsertModelRow", number).Int("LorNo", position).Done(),
                      {},
                      kOnModels | kOnFit},
                     Changed::kRows, [&](Model& model) {
                       kalvex::InsertRow(model, position - 1);
                       return Status();
                     });
}

Status Session::RemoveRow(std::uint32_t number, int row) {
  return ChangeModel(number,
                     {"remove " + RowOf(number, row),
                      OnModel("RemoveModelRow", number).Int("LorNo", row).Done(),
                      {},
                      kOnModels | kOnFit},
                     Changed::kRows, [&](Model& model) {
                       if (row < 1 || row > RowCount(model)) return NoSuchRow(number, row);
                       kalvex::RemoveRow(model, row - 1);
                       return Status();
                     });
}

Status Session::MoveRow(std::uint32_t number, int row, bool up) {
  return ChangeModel(number,
                     {"move " + RowOf(number, row),
                      OnModel("MoveModelRow", number).Int("LorNo", row).Int("Up", up).Done(),
                      {},
                      kOnModels | kOnFit},
                     Changed::kRows, [&](Model& model) {
                       if (row < 1 || row > RowCount(model)) return NoSuchRow(number, row);
                       const std::string text = "row " + std::to_string(row);
                       if (up && row == 1) return Status(StatusCode::kNothingToDo, text + " is the first");
                       if (!up && row == RowCount(model))
                         return Status(StatusCode::kNothingToDo, text + " is the last");
                       up ? MoveRowUp(model, row - 1) : MoveRowDown(model, row - 1);
                       return Status();
                     });
}

Status Session::SortRows(std::uint32_t number, int key) {
  return ChangeModel(number,
                     {"sort the rows of " + ModelText(number),
                      OnModel("SortModelRows", number).Int("Key", key).Done(),
                      {},
                      kOnModels | kOnFit},
                     Changed::kRows, [&](Model& model) {
                       if (key < 1 || key > 5) return Status(StatusCode::kBadArgument, "Key should be 1 to 5");
                       if (RowCount(model) == 0) {
                         return Status(StatusCode::kNothingToDo, "there are no rows", ModelText(number));
                       }
                       kalvex::SortRows(model, static_cast<SortKey>(key));
                       return Status();
                     });
}

Status Session::FixAllParams(std::uint32_t number, bool fix) {
  const Model* const model = FindModel(number);
  // The statement takes the place in the table instead of the number, and it can only fix parameters.
  const int place = model ? kalvex::SlotOf(tables_.params, *model) + 1 : 0;
  return ChangeModel(number,
                     {(fix ? "fix all parameters of " : "free all parameters of ") + ModelText(number),
                      fix ? OnModel("FixAllModelParams", static_cast<std::uint32_t>(place)).Done() : "",
                      {},
                      kOnModels | kOnFit},
                     Changed::kValues, [&](Model& changed) {
                       FixAll(changed, fix);
                       return Status();
                     });
}

Status Session::SaveModel(std::uint32_t number, const std::string& file) {
  if (Status busy = Gate(); !busy.Ok()) return busy;
  Model* const model = ModelOf(number);
  if (!model) return NoSuchModel(number);
  return DoOutside({"save " + ModelText(number), OnModel("SaveModel", number).Text("File", file).Done(), {}, kOnFiles},
                   [&] { return kalvex::SaveModel(eval_, *model, tables_.fit.TotalChiSq, file); });
}

Status Session::LoadModel(std::uint32_t number, const std::string& file) {
  return ChangeModel(number,
                     {"load " + ModelText(number),
                      OnModel("LoadModel", number).Text("File", file).Done(),
                      {},
                      kOnModels | kOnFit | kOnFiles},
                     Changed::kRows, [&](Model& model) {
                       Status loaded = kalvex::LoadModel(model, file);
                       if (loaded.Ok()) Tell(ChangeKind::kModelLoaded, number);
                       return loaded;
                     });
}

}  // namespace kalvex
