#include <algorithm>

#include "core/files.h"
#include "core/interrupt.h"
#include "fit/derivative_test.h"
#include "fit/fit_dumps.h"
#include "fit/fit_lists.h"
#include "fit/residuals.h"
#include "fit/run_fit.h"
#include "records/model_table.h"
#include "session/do.h"
#include "session/statement.h"
#include "terms/term_tables.h"

namespace kalvex {
namespace {

Operation OnFit(const char* label, std::string statement) {
  return {label, std::move(statement), {}, kOnFit | kOnModels | kOnExpParams};
}

std::string OptionsStatement(const FitOptions& options, const FitOptions& present) {
  Statement statement("FitOptions");
  statement.Int("StopOnIterations", options.StopOnIterations).Int("MaxIterations", options.MaxIterations);
  statement.Int("StopOnTime", options.StopOnTime).Int("MaxSeconds", options.MaxSeconds);
  statement.Int("StopOnReduction", options.StopOnReduction).Int("ReductionIterations", options.ReductionIterations);
  statement.Real("ReductionAmount", options.ReductionAmount).Int("StopOnLambda", options.StopOnLambda);
  statement.Real("MaxLambda", options.MaxLambda).Real("InitialLambda", options.InitialLambda);
  statement.Int("CalcConfidence", options.CalcConfidence).Real("DeltaChiSq", options.DeltaChiSq);
  statement.RefuseIf(options.StopOnOutOfRange != present.StopOnOutOfRange);
  statement.RefuseIf(options.SingularDet != present.SingularDet);
  statement.RefuseIf(options.ScreenUpdateEvery != present.ScreenUpdateEvery);
  statement.Int("LogFit", options.LogFit).Int("Method", options.Method);
  statement.Int("RelativeReduction", options.RelativeReduction).Int("StandardErrors", options.StandardErrors);
  statement.Int("WrapAngles", options.WrapAngles).Int("SkipInvalid", options.SkipInvalid);
  statement.Int("NeedsWindow", options.NeedsWindow);
  return statement.Done();
}

// A run may change values in every model, through coupling too.
Pieces AllValues(const ParamTables& tables) { return PiecesOfAllModels(tables).ExpParams().Fit(); }

}  // namespace

// Updates models, graphs and listeners after each iteration. Events are processed in between, so that a person can stop
// the run. An interrupt of the process stops it too.
class Session::RunFollower : public FitObserver {
 public:
  explicit RunFollower(Session& session) : session_(session) {}
  void RunStarts() override {
    Tell(0);
    session_.platform_->PumpEvents();
  }
  void IterationEnds() override {
    session_.ShowValues();
    Tell(session_.tables_.fit.IterationCount);
  }
  void Poll() override {
    session_.platform_->PumpEvents();
    if (InterruptWatch::IsInterrupted()) session_.StopFit();
  }

 private:
  void Tell(int iteration) {
    session_.Tell(ChangeKind::kFitRun, static_cast<std::uint32_t>(iteration));
    session_.Deliver(nullptr);
  }
  Session& session_;
  InterruptWatch watch_;
};

// Updates the graphs after a run has set values. The fit is not notified, because it has set the values itself.
void Session::ShowValues() {
  HearExpParams(false);
  for (Model& model : tables_.params.models) {
    if (model.number != 0) HearModel(model, false);
  }
}

// ---- updates of the fit

void Session::TellGraphs(GraphEvent event, std::int64_t id) {
  AnswerGraphEvent(tables_.graphs, event, id, tables_.autoScreenUpdate);
}

void Session::RebuildTerms() {
  RebuildFitLists(tables_.fit, tables_.params, eval_);
  Tell(ChangeKind::kFitTerms);
}

void Session::TellFitOfDataset() {
  if (!tables_.fitFollows) return;
  RebuildFitParams(tables_.fit, tables_.params, eval_);
  RebuildFitPoints(tables_.fit, eval_);
  ComputeChiSq(tables_.fit, eval_);
  Tell(ChangeKind::kFitValues);
}

void Session::RebuildParams(bool compute) {
  if (!tables_.fitFollows) return;
  RebuildFitParams(tables_.fit, tables_.params, eval_);
  if (compute) ComputeChiSq(tables_.fit, eval_);
  Tell(ChangeKind::kFitValues);
}

void Session::TellFitOfParams() { RebuildParams(tables_.autoScreenUpdate); }

void Session::DropTermsIf(const std::function<bool(const ChiSqTerm&)>& isGone) {
  if (!tables_.fitFollows) return;
  std::erase_if(tables_.fit.list.terms, isGone);
  RebuildTerms();
}

// ---- the list of terms

Status Session::OpenFit() {
  if (tables_.fitFollows) return {};
  if (tables_.fit.FitRunning) {  // the lists must not change during a run
    tables_.fitFollows = true;
    return {};
  }
  return Do({"open the fit", Statement("WindowFit").Done(), {}, kOnFit}, Pieces().Fit(), [&] {
    tables_.fitFollows = true;
    RebuildFitLists(tables_.fit, tables_.params, eval_);
    Tell(ChangeKind::kFitValues);
    Tell(ChangeKind::kSettings);
    return Status();
  });
}

Status Session::CloseFit() {
  const auto close = [&] {
    tables_.fitFollows = false;
    Tell(ChangeKind::kSettings);
    return Status();
  };
  if (!tables_.fit.FitRunning) return Do({"close the fit", {}, {}, kOnFit}, Pieces().Fit(), close);
  StopFit();
  return DoOutside({"close the fit", {}, {}, kOnFit}, close);
}

Status Session::AddTerm(int slot, std::uint32_t model, std::optional<double> weight) {
  const Dataset* const dataset = SlotOf(slot);
  if (!dataset) return {StatusCode::kBadArgument, "DatasetNo should be 1 to " + std::to_string(kMaxDatasets)};
  if (!FindModel(model)) return NoSuchModel(model);
  const auto statement = Statement("AddChiSqTerm").Int("DatasetNo", slot).Int("ModelNo", model).Real("Weight", weight);
  return Do({"add a term", statement.Done(), {}, kOnFit}, Pieces().Fit(), [&] {
    ChiSqTerm& term = InsertChiSqTerm(tables_.fit, tables_.fit.list, static_cast<int>(tables_.fit.list.terms.size()));
    term.datasetId = dataset->id;
    term.modelId = model;
    term.weight = weight.value_or(1.0);
    RebuildTerms();
    return Status();
  });
}

Status Session::AddTerms(std::span<const TermPair> pairs) {
  return Do({"add terms", {}, {}, kOnFit}, Pieces().Fit(), [&] {
    auto& terms = tables_.fit.list.terms;
    for (const TermPair& pair : pairs) {
      const bool present = std::any_of(terms.begin(), terms.end(), [&](const ChiSqTerm& term) {
        return term.datasetId == pair.datasetId && term.modelId == pair.model;
      });
      if (present) continue;
      ChiSqTerm& term = InsertChiSqTerm(tables_.fit, tables_.fit.list, static_cast<int>(terms.size()));
      term.datasetId = pair.datasetId;
      term.modelId = pair.model;
    }
    RebuildTerms();
    return Status();
  });
}

Status Session::DeleteTerm(int slot, int modelSlot) {
  auto statement = Statement("DeleteChiSqTerm").Int("DatasetNo", slot).Int("ModelNo", modelSlot);
  return Do({"remove a term", statement.Done(), {}, kOnFit}, Pieces().Fit(), [&] {
    const Dataset* const dataset = SlotOf(slot);
    const bool both = dataset && modelSlot >= 1 && modelSlot <= kMaxModels;
    const std::uint32_t number = both ? tables_.params.models[static_cast<std::size_t>(modelSlot - 1)].number : 0;
    auto& terms = tables_.fit.list.terms;
    const auto match = std::find_if(terms.begin(), terms.end(), [&](const ChiSqTerm& term) {
      return both && term.datasetId == dataset->id && term.modelId == number;
    });
    const bool found = match != terms.end();
    if (found) terms.erase(match);
    RebuildTerms();
    return found ? Status() : Status(StatusCode::kNothingToDo, "there is no such ChiSq term");
  });
}

Status Session::RemoveTerms(std::span<const int> ids) {
  return Do({"remove terms", {}, {}, kOnFit}, Pieces().Fit(), [&] {
    std::erase_if(tables_.fit.list.terms,
                  [&](const ChiSqTerm& term) { return std::find(ids.begin(), ids.end(), term.id) != ids.end(); });
    RebuildTerms();
    return Status();
  });
}

Status Session::WeighTerms(std::span<const int> ids, double weight) {
  return Do({"set weights of terms", {}, {}, kOnFit}, Pieces().Fit(), [&] {
    for (ChiSqTerm& term : tables_.fit.list.terms) {
      if (std::find(ids.begin(), ids.end(), term.id) != ids.end()) term.weight = weight;
    }
    RebuildFitLists(tables_.fit, tables_.params, eval_);
    Tell(ChangeKind::kFitValues);
    return Status();
  });
}

Status Session::SetFitOptions(const FitOptions& options) {
  if (options.Method != 1 && options.Method != 2) {
    return {StatusCode::kBadArgument, "Method should be 1, the damped loop, or 2, the bounded fit"};
  }
  return Do({"set options of the fit", OptionsStatement(options, tables_.fit.options), {}, kOnFit}, Pieces().Fit(),
            [&] {
              TakeFitOptions(options);
              return Status();
            });
}

void Session::TakeFitOptions(const FitOptions& options) {
  FitOptions& present = tables_.fit.options;
  const bool samePoints = options.WrapAngles == present.WrapAngles && options.SkipInvalid == present.SkipInvalid;
  present = options;
  if (!samePoints) {
    RebuildFitPoints(tables_.fit, eval_);
    ComputeChiSq(tables_.fit, eval_);
  }
  Tell(ChangeKind::kFitOptions);
}

Status Session::SetDefaults(Defaults defaults) {
  const auto statement = Statement("Defaults").Int("Level", static_cast<int>(defaults));
  return Do({"set defaults", statement.Done(), {}, kOnFit}, Pieces().Fit(), [&] {
    TakeFitOptions(WithDefaults(tables_.fit.options, defaults));
    return Status();
  });
}

// ---- runs

Status Session::RunFit(const FitRequest& request) {
  if (tables_.fit.FitRunning) return StopFit(), Status();
  if (!tables_.fitFollows && tables_.fit.options.NeedsWindow) {
    return {StatusCode::kNothingToDo, "the fit window is not open; WindowFit() opens it"};
  }
  constexpr int kMostStarts = 1000000;
  if (request.starts.value_or(1) < 1 || request.starts.value_or(1) > kMostStarts) {
    return {StatusCode::kBadArgument, "Starts should be 1 to " + std::to_string(kMostStarts)};
  }
  if (request.starts.value_or(1) > 1 && tables_.fit.options.Method != 2) {
    return {StatusCode::kBadArgument, "many starts need the bounded fit, FitOptions(Method=2)"};
  }
  Statement statement("Fit");
  statement.Int("NumIters", request.iterations).Int("Starts", request.starts);
  if (request.seed) statement.Int("Seed", static_cast<int>(*request.seed));
  return Do(OnFit("fit", statement.Done()), AllValues(tables_.params), [&] {
    FitState& fit = tables_.fit;
    if (!tables_.fitFollows) RebuildFitLists(fit, tables_.params, eval_);
    const FitOptions before = fit.options;
    if (request.iterations) {
      fit.options.MaxIterations = *request.iterations;
      fit.options.StopOnIterations = true;
    }
    fit.StopRequested = false;
    StoreStartValues(fit, tables_.params, eval_);
    RunFollower follower(*this);
    Status status = kalvex::RunFit(fit, tables_.params, eval_, *platform_, follower,
                                   {request.starts.value_or(1), request.seed.value_or(1)});
    fit.report.interrupted = InterruptWatch::IsInterrupted();
    if (request.iterations) {
      fit.options.MaxIterations = before.MaxIterations;
      fit.options.StopOnIterations = before.StopOnIterations;
    }
    if (request.byHand) fit.UndoAvailable = true;
    ShowValues();
    Tell(ChangeKind::kFitRun);
    return status;
  });
}

void Session::StopFit() {
  if (tables_.fit.FitRunning) tables_.fit.StopRequested = true;
}

Status Session::UndoFit() {
  if (!tables_.fit.startValuesStored) return {StatusCode::kNothingToDo, "there is no fit run to undo"};
  return Do(OnFit("undo the fit", Statement("UndoFit").Done()), AllValues(tables_.params), [&] {
    kalvex::UndoFit(tables_.fit, tables_.params, eval_);
    ShowValues();
    Tell(ChangeKind::kFitValues);
    return Status();
  });
}

Status Session::Recompute() {
  return Do({"update", {}, {}, kOnFit | kOnGraphs}, Pieces().Fit(), [&] {
    TellGraphs(GraphEvent::kForcedUpdate, -1);
    RebuildParams(true);
    Tell(ChangeKind::kFitValues);
    return Status();
  });
}

// ---- files about a fit

Status Session::ExportResiduals(int slot, std::uint32_t model, const std::string& file) {
  if (Status busy = Gate(); !busy.Ok()) return busy;
  const Dataset* const dataset = SlotOf(slot);
  const auto& terms = tables_.fit.list.terms;
  const auto term = std::find_if(terms.begin(), terms.end(), [&](const ChiSqTerm& each) {
    return dataset && each.datasetId == dataset->id && each.modelId == model;
  });
  if (term == terms.end()) return {StatusCode::kNothingToDo, "there is no such ChiSq term"};
  const auto statement = Statement("ExportResiduals").Text("File", file).Int("DatasetNo", slot).Int("ModelNo", model);
  return DoOutside({"export residuals", statement.Done(), {}, kOnFiles}, [&] {
    if (!tables_.fitFollows) RebuildFitPoints(tables_.fit, eval_);
    const Result<std::string> table = ResidualsOf(tables_.fit, *term, eval_);
    return table.Ok() ? WriteWholeFile(file, *table) : table.GetStatus();
  });
}

Status Session::WriteQuantityErrorBars() {
  Pieces touched = AllValues(tables_.params);
  const auto& terms = tables_.fit.list.terms;
  const int slot = terms.empty() ? 0 : SlotOfDataset(tables_.datasets, terms.back().datasetId);
  if (slot != 0) touched.Dataset(slot - 1);
  return Do(OnFit("error bars of a Quantity", Statement("QuantityErrorBars").Done()), touched, [&] {
    RunFollower follower(*this);
    const auto datasetChanged = [&] { TellGraphs(GraphEvent::kDatasetChanged, -1); };
    Status status = kalvex::WriteQuantityErrorBars(tables_.fit, tables_.params, eval_, tables_.datasets, *platform_,
                                                   follower, datasetChanged);
    Tell(ChangeKind::kFitValues);
    return status;
  });
}

Status Session::DumpDerivatives() {
  if (Status busy = Gate(); !busy.Ok()) return busy;
  return DoOutside({"write derivatives", Statement("DumpDerivatives").Done(), {}, kOnFiles},
                   [&] { return WriteDerivativeDump(tables_.params, eval_); });
}

Status Session::DumpSensitivity() {
  if (Status busy = Gate(); !busy.Ok()) return busy;
  return DoOutside({"write sensitivity", Statement("DumpSensitivity").Done(), {}, kOnFiles},
                   [&] { return WriteSensitivityDump(tables_.params, eval_); });
}

Status Session::TestDerivatives() {
  return Do(OnFit("test derivatives", Statement("TestDerivatives").Done()), AllValues(tables_.params), [&] {
    Status status = kalvex::TestDerivatives(tables_.fit, tables_.params, eval_);
    Tell(ChangeKind::kFitValues);
    return status;
  });
}

Status Session::TestQuantityDerivatives() {
  return Do(OnFit("test derivatives of Quantities", Statement("TestQuantityDerivatives").Done()),
            AllValues(tables_.params),
            [&] { return kalvex::TestQuantityDerivatives(tables_.fit, tables_.params, eval_); });
}

Status Session::WriteGapTable() {
  return DoOutside({"write table of gaps", Statement("WriteGapTable").Done(), {}, kOnFiles},
                   [&] { return kalvex::WriteGapTable(GapTableOf(eval_.termEnvironment)); });
}

}  // namespace kalvex
