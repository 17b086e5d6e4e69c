#include "session/session.h"

#include <algorithm>
#include <cmath>

#include "evaluation/eval_model.h"
#include "records/model_table.h"
#include "session/do.h"
#include "types/types.h"

namespace kalvex {
namespace {

std::uint32_t NumberOf(long long number) {
  return number > 0 && number <= 4294967295LL ? static_cast<std::uint32_t>(number) : 0;
}

}  // namespace

FitOptions WithDefaultsOf(FitOptions options, const FitOptions& from) {
  options.Method = from.Method;
  options.RelativeReduction = from.RelativeReduction;
  options.StandardErrors = from.StandardErrors;
  options.WrapAngles = from.WrapAngles;
  options.SkipInvalid = from.SkipInvalid;
  options.NeedsWindow = from.NeedsWindow;
  return options;
}

FitOptions WithDefaults(FitOptions options, Defaults defaults) {
  FitOptions from;
  if (defaults == Defaults::kPresent) {
    from.Method = 2;
    from.RelativeReduction = from.StandardErrors = from.WrapAngles = from.SkipInvalid = true;
    from.NeedsWindow = false;
  }
  return WithDefaultsOf(options, from);
}

Session::Session(Platform& platform, int threads, Defaults defaults) : platform_(&platform), pool_(threads) {
  tables_.fit.options = WithDefaults(tables_.fit.options, defaults);
  SeedNoise(tables_.noise, static_cast<std::uint32_t>(platform.ClockSeconds()));
  tables_.params.ExpParams = DefaultExpParams();
  eval_.params = &tables_.params;
  eval_.datasets = &tables_.datasets;
  eval_.pool = &pool_;
  eval_.termEnvironment.datasets = &tables_.datasets;
  eval_.types = ModelTypeTable;
  eval_.platform = platform_;
}

Session::~Session() = default;

std::size_t Session::BytesKeptForEvaluation() const { return eval_.vdfKernels.Bytes(); }

void Session::UsePlatform(Platform& platform) { platform_ = eval_.platform = &platform; }

void Session::Listen(SessionListener& listener) { listeners_.push_back(&listener); }

void Session::StopListening(SessionListener& listener) { std::erase(listeners_, &listener); }

const Model* Session::FindModel(long long number) const { return GetModelByNumber(tables_.params, NumberOf(number)); }
const Graph* Session::FindGraph(long long number) const { return GetGraphByNumber(tables_.graphs, NumberOf(number)); }

const Dataset* Session::FindDataset(long long slot) const {
  if (slot < 1 || slot > kMaxDatasets) return nullptr;
  const Dataset* const dataset = DatasetInSlot(tables_.datasets, static_cast<int>(slot));
  return dataset->id != 0 ? dataset : nullptr;
}

const ModelParam* Session::FindParam(const ParamRef& param) const {
  const Model* const model = FindModel(param.model);
  switch (param.where) {
    case ParamKind::kExp:
      if (param.expParam < 0 || param.expParam >= kExpParamCount) return nullptr;
      return &tables_.params.ExpParams[static_cast<std::size_t>(param.expParam)];
    case ParamKind::kEpsInf:
      return model ? &model->epsInf : nullptr;
    case ParamKind::kRow:
      if (!model || param.row < 1 || param.row > RowCount(*model)) return nullptr;
      if (param.column < 0 || param.column >= kColumns) return nullptr;
      return &Cell(*model, param.row - 1, param.column);
    case ParamKind::kMesh:
      break;
  }
  return nullptr;
}

const ModelType* Session::TypeOfModel(const Model& model) const { return TypeOf(eval_, model); }

Model* Session::ModelOf(std::uint32_t number) { return GetModelByNumber(tables_.params, number); }
Graph* Session::GraphOf(std::uint32_t number) { return GetGraphByNumber(tables_.graphs, number); }
Dataset* Session::SlotOf(int slot) { return DatasetInSlot(tables_.datasets, slot); }

ParamPlace Session::PlaceOf(const ParamRef& param) const {
  ParamPlace place;
  place.Where = param.where;
  if (param.where == ParamKind::kExp) {
    place.nep = param.expParam;
    return place;
  }
  place.nm = kalvex::SlotOf(tables_.params, *FindModel(param.model));
  if (param.where == ParamKind::kRow) {
    place.nl = param.row - 1;
    place.nc = param.column;
  }
  return place;
}

ModelParam* Session::ParamOf(const ParamRef& param) {
  return FindParam(param) ? &ParamAt(tables_.params, PlaceOf(param)) : nullptr;
}

Status Session::Gate() const {
  if (!tables_.fit.FitRunning) return {};
  return {StatusCode::kBusy, "this is not possible while a fit is running"};
}

void Session::Deliver(const Operation* operation) {
  const std::vector<Change> told = std::exchange(told_, {});
  for (SessionListener* const listener : std::vector(listeners_)) {
    for (const Change& change : told) listener->Changed(change);
    if (operation) listener->Performed(*operation);
  }
}

Status Session::StepBack() {
  if (Status busy = Gate(); !busy.Ok()) return busy;
  if (!history_.Back(tables_)) return {StatusCode::kNothingToDo, "there is no step to undo"};
  AfterStep();
  return {};
}

Status Session::StepForward() {
  if (Status busy = Gate(); !busy.Ok()) return busy;
  if (!history_.Forward(tables_)) return {StatusCode::kNothingToDo, "there is no step to redo"};
  AfterStep();
  return {};
}

// Strokes and caches may belong to the state before the step.
void Session::AfterStep() {
  for (Graph& graph : tables_.graphs.slots) {
    if (graph.number != 0) RebuildGraph(graph);
  }
  Tell(ChangeKind::kEverything);
  Deliver(nullptr);
}

}  // namespace kalvex
