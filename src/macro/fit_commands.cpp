#include <algorithm>
#include <chrono>
#include <cstdio>

#include "core/text.h"
#include "fit/fit_dumps.h"
#include "fit/fit_lists.h"
#include "macro/handlers.h"
#include "macro/if_given.h"
#include "macro/param_fields.h"
#include "program/program.h"
#include "records/model_table.h"
#include "windows/fit_window.h"
#include "windows/redraw.h"

namespace kalvex {
namespace {

void MoveIfGiven(const MacroCall& call, int& toX, int& toY) {
  const auto x = call.Int("XPos"), y = call.Int("YPos");
  if (!x || !y) return;
  toX = *x;
  toY = *y;
}

// The first experimental parameter whose name starts with the text.
ModelParam* FindExpParam(Program& program, const std::string& name) {
  for (ModelParam& param : program.params.ExpParams) {
    if (StartsWithIgnoringCase(NameOf(param), name)) return &param;
  }
  return nullptr;
}

// Model, row and column of a fit parameter, as a user names them.
std::string PlaceText(const Program& program, const FitParam& param) {
  constexpr const char* kColumnNames[] = {"Wo", "Wp", "G"};
  const ParamPlace& at = param.place;
  if (at.Where == ParamKind::kExp) return std::string(NameOf(ParamAt(program.params, at)));
  std::string text = "model " + std::to_string(program.params.models[static_cast<std::size_t>(at.nm)].number);
  if (at.Where == ParamKind::kEpsInf) return text + " Einf";
  if (at.Where == ParamKind::kRow) return text + " row " + std::to_string(at.nl + 1) + ' ' + kColumnNames[at.nc];
  return text + " mesh point " + std::to_string(at.nen + 1) + (at.isIm ? " E2" : " E1");
}

std::string Summary(const Program& program, double seconds) {
  const FitState& fit = program.fit;
  // Without a parameter there was no run, and the count is still that of the one before.
  const int iterations = fit.NumFitParams < 1 ? 0 : fit.IterationCount;
  std::string text = std::to_string(iterations) + " iterations, ChiSq " + TextG(fit.report.startChiSq, 8) + " -> " +
                     TextG(fit.TotalChiSq, 8) + ", stopped: " + fit.report.stop + ", " + TextG(seconds, 3) + " s";
  if (fit.report.withoutInfluence.empty()) return text;
  text += "; without influence at their present values:";
  const char* separator = " ";
  for (const int i : fit.report.withoutInfluence) {
    text += separator + PlaceText(program, fit.params[static_cast<std::size_t>(i)]);
    separator = ", ";
  }
  return text;
}

MacroResult Written(MacroCall& call, int status, const char* file, const char* needs) {
  if (status != 0) return call.Nothing(std::string(needs) + ", or '" + file + "' cannot be written");
  return call.Done(std::string("written to '") + file + "'");
}

}  // namespace

MacroResult ExpParamsCommand(MacroCall& call) {
  ExpParamsWindow& window = call.program.expParamsWindow;
  OpenExpParams(WindowDeskOf(call.program));
  MoveIfGiven(call, window.x, window.y);
  RefreshExpParams(call.program.notices, call.program.params);
  return call.Done("open");
}

MacroResult SetExpParamCommand(MacroCall& call) {
  const auto name = call.Text("ParamName");
  if (!name) return call.Nothing("ParamName is missing");
  ModelParam* const param = FindExpParam(call.program, *name);
  if (!param) return call.Nothing("'" + *name + "' begins the name of no experimental parameter");
  SetValueAndFitActive(call, *param);
  SetLimits(call, *param);
  RedrawDirty(call.program.notices, call.program.params);
  SetCouplingIfGiven(call, *param);
  // Whoever listens must hear of it, whether or not the window is open.
  RefreshExpParams(call.program.notices, call.program.params);
  return call.Done(std::string(NameOf(*param)) + " = " + ParamText(*param));
}

MacroResult WindowFitCommand(MacroCall& call) {
  OpenFitWindow(DeskOf(call.program));
  MoveIfGiven(call, call.program.fitWindow.x, call.program.fitWindow.y);
  return call.Done("open, " + std::to_string(call.program.fit.list.terms.size()) + " ChiSq terms");
}

MacroResult AddChiSqTermCommand(MacroCall& call) {
  const auto slot = call.Int("DatasetNo"), number = call.Int("ModelNo");
  if (!slot) return call.Nothing("DatasetNo is missing");
  if (!number) return call.Nothing("ModelNo is missing");
  if (*slot < 1 || *slot > kMaxDatasets) return call.Nothing("DatasetNo should be 1 to 100");
  if (*number < 1 || !AddTerm(DeskOf(call.program), *slot, static_cast<std::uint32_t>(*number), call.Real("Weight"))) {
    return call.Nothing("model " + std::to_string(*number) + " does not exist");
  }
  const bool loaded = DatasetInSlot(call.program.datasets, *slot)->id != 0;
  return call.Done("dataset " + std::to_string(*slot) + (loaded ? "" : ", which is not loaded,") + " against model " +
                   std::to_string(*number) + ": " + std::to_string(CountFitPoints(call.program.fit)) + " points, " +
                   std::to_string(call.program.fit.NumFreeParams) + " free parameters, ChiSq " +
                   TextG(call.program.fit.TotalChiSq));
}

MacroResult DeleteChiSqTermCommand(MacroCall& call) {
  const auto slot = call.Int("DatasetNo"), place = call.Int("ModelNo");
  if (!slot) return call.Nothing("DatasetNo is missing");
  if (!place) return call.Nothing("ModelNo is missing");
  const bool found = DeleteTerm(DeskOf(call.program), *slot, *place);
  if (!found) return call.Nothing("no such term");
  return call.Done("removed, " + std::to_string(call.program.fit.list.terms.size()) + " left");
}

MacroResult FitCommand(MacroCall& call) {
  Program& program = call.program;
  if (!program.fitWindow.open) return call.Nothing("the fit window is not open, WindowFit() opens it");
  RunFollower follower(program);
  if (program.fit.FitRunning) {
    RunMacroFit(DeskOf(program), *program.platform, follower, call.Int("NumIters"));
    return call.Done("the running fit was asked to stop");
  }
  const auto start = std::chrono::steady_clock::now();
  RunMacroFit(DeskOf(program), *program.platform, follower, call.Int("NumIters"));
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  ShowValues(program);
  const std::string summary = Summary(program, took.count());
  if (program.showProgress && !program.macro.verbose) std::fprintf(stderr, "fit: %s\n", summary.c_str());
  return call.Done(summary);
}

MacroResult FitOptionsCommand(MacroCall& call) {
  if (std::none_of(call.block.begin(), call.block.end(), [](const MacroSlot& slot) { return slot.given; })) {
    return call.Nothing("no option is given");
  }
  FitOptions& options = call.program.fit.options;
  SetFlagIfGiven(options.StopOnIterations, call.Int("StopOnIterations"));
  SetIfGiven(options.MaxIterations, call.Int("MaxIterations"));
  SetFlagIfGiven(options.StopOnTime, call.Int("StopOnTime"));
  SetIfGiven(options.MaxSeconds, call.Int("MaxSeconds"));
  SetFlagIfGiven(options.StopOnReduction, call.Int("StopOnReduction"));
  SetIfGiven(options.ReductionIterations, call.Int("ReductionIterations"));
  SetIfGiven(options.ReductionAmount, call.Real("ReductionAmount"));
  SetFlagIfGiven(options.StopOnLambda, call.Int("StopOnLambda"));
  SetIfGiven(options.MaxLambda, call.Real("MaxLambda"));
  SetIfGiven(options.InitialLambda, call.Real("InitialLambda"));
  SetFlagIfGiven(options.CalcConfidence, call.Int("CalcConfidence"));
  SetIfGiven(options.DeltaChiSq, call.Real("DeltaChiSq"));
  SetFlagIfGiven(options.LogFit, call.Int("LogFit"));
  return call.Done("set");
}

MacroResult UndoFitCommand(MacroCall& call) {
  Program& program = call.program;
  if (!program.fitWindow.open || !program.fit.startValuesStored) return call.Nothing("there is no run to undo");
  TakeBackLastRun(DeskOf(program));
  ShowValues(program);
  return call.Done("ChiSq is " + TextG(program.fit.TotalChiSq));
}

MacroResult QuantityErrorBarsCommand(MacroCall& call) {
  Program& program = call.program;
  RunFollower follower(program);
  const auto tellGraphs = [&] { NotifyGraphs(program.notices, GraphEvent::kDatasetChanged, -1); };
  const int status = WriteQuantityErrorBars(program.fit, program.params, program.eval, program.datasets,
                                            *program.platform, follower, tellGraphs);
  return Written(call, status, "QntyErrorBars.dat", "it needs three ChiSq terms, the last with a dataset and a model");
}

MacroResult DumpDerivativesCommand(MacroCall& call) {
  return Written(call, WriteDerivativeDump(call.program.params, call.program.eval), "Jakob.dat",
                 "it needs dataset 1 and models 1 to 4");
}

MacroResult DumpSensitivityCommand(MacroCall& call) {
  return Written(call, WriteSensitivityDump(call.program.params, call.program.eval), "Jakob2.dat",
                 "it needs dataset 1 and models 1 to 3");
}

}  // namespace kalvex
