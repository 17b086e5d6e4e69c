#include "macro/fit_commands.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <span>

#include "core/text.h"
#include "fit/fit_lists.h"
#include "macro/named_model.h"
#include "macro/param_fields.h"
#include "windows/desk.h"

namespace kalvex {
namespace {

// The first experimental parameter whose name starts with the text.
std::optional<ParamRef> ExpParamNamed(const Session& session, const std::string& name) {
  for (int i = 0; i < kExpParamCount; ++i) {
    const ParamRef param = ParamRef::Exp(i);
    if (StartsWithIgnoringCase(NameOf(*session.FindParam(param)), name)) return param;
  }
  return std::nullopt;
}

// Model, row and column of a fit parameter, in the words of the macro language.
std::string PlaceText(const ParamTables& tables, const FitParam& param) {
  const ParamPlace& at = param.place;
  if (at.Where == ParamKind::kExp) return std::string(NameOf(ParamAt(tables, at)));
  const std::string model = ModelText(param.modelNumber);
  if (at.Where == ParamKind::kEpsInf) return model + " Einf";
  if (at.Where == ParamKind::kRow) {
    return model + " row " + std::to_string(at.nl + 1) + ' ' + kColumnNames[at.nc];
  }
  return model + " mesh point " + std::to_string(at.nen + 1) + (at.isIm ? " E2" : " E1");
}

// "model 1 row 1 Wo, model 1 Einf" of indices of fit parameters.
std::string PlacesText(const Session& session, std::span<const int> params) {
  std::string text;
  for (const int i : params) {
    text += text.empty() ? "" : ", ";
    text += PlaceText(session.Params(), session.Fit().params[static_cast<std::size_t>(i)]);
  }
  return text;
}

std::string DirectionText(const Session& session, const WeakDirection& direction) {
  std::string text;
  for (const WeakDirection::Part& part : direction.parts) {
    text += (text.empty() ? "" : " and ") + PlacesText(session, std::array{part.param}) +
            (part.weight > 0 ? " up" : " down");
  }
  return text;
}

std::optional<std::uint32_t> SeedOf(const FitRunParams& p) {
  return p.Seed ? std::optional(static_cast<std::uint32_t>(*p.Seed)) : std::nullopt;
}

// "200 starts: ChiSq 30.117763 150 times, 122.2 3 times, ...; " or nothing for one start.
std::string StartsText(const FitReport& report) {
  constexpr std::size_t kMostMinima = 10;
  if (report.minima.empty() && report.startsNotConverged == 0) return {};
  int starts = report.startsNotConverged;
  for (const Minimum& minimum : report.minima) starts += minimum.count;
  std::string text = std::to_string(starts) + " starts:";
  for (std::size_t i = 0; i < std::min(kMostMinima, report.minima.size()); ++i) {
    text += (i == 0 ? " ChiSq " : ", ") + TextG(report.minima[i].sum, 8) + ' ' +
            std::to_string(report.minima[i].count) + " times";
  }
  if (report.minima.size() > kMostMinima) {
    text += ", and " + std::to_string(report.minima.size() - kMostMinima) + " other minima";
  }
  if (report.startsNotConverged > 0) text += ", not converged " + std::to_string(report.startsNotConverged) + " times";
  return text + "; ";
}

std::string Summary(const Session& session, double seconds) {
  const FitState& fit = session.Fit();
  // Without a parameter there was no run, and IterationCount is still that of the previous run.
  const int iterations = fit.NumFitParams < 1 ? 0 : fit.IterationCount;
  return StartsText(fit.report) + std::to_string(iterations) + " iterations, ChiSq " + TextG(fit.report.startChiSq, 8) +
         " -> " + TextG(fit.TotalChiSq, 8) + ", stopped: " + fit.report.stop + ", " + TextG(seconds, 3) + " s";
}

// What a person should know of the end of a run.
std::vector<std::string> WarningsOf(const Session& session) {
  const FitState& fit = session.Fit();
  const FitReport& report = fit.report;
  std::vector<std::string> warnings;
  const auto name = [&](const char* what, const std::vector<int>& params) {
    if (!params.empty()) warnings.push_back(what + PlacesText(session, params));
  };
  if (report.interrupted) warnings.emplace_back("interrupted; the parameters have their best values so far");
  if (!std::isfinite(fit.TotalChiSq)) warnings.emplace_back("ChiSq is not finite");
  if (fit.options.Method == 2 && fit.NumFitParams > 0 && !report.converged) {
    warnings.push_back("the fit ended before a minimum: " + report.stop);
  }
  constexpr double kNoteworthyGain = 1e-3;
  if (report.gainLeft > kNoteworthyGain) {
    warnings.push_back("the fit ended away from a minimum, " + report.stop +
                       "; FitOptions(Method=2) goes on from here");
  }
  if (fit.skippedPoints > 0) {
    warnings.push_back(std::to_string(fit.skippedPoints) +
                       " points are left out: they are not finite, or have no positive sigma");
  }
  name("started outside of limits and was moved inside: ", report.movedInside);
  name("on a limit, beyond which ChiSq would fall: ", report.onLimit);
  name("kept on a limit although ChiSq falls inside, which FitOptions(Method=2) finds: ", report.stuckOnLimit);
  name("parameters without influence on ChiSq at their present values: ", report.withoutInfluence);
  for (const WeakDirection& direction : report.determination.undetermined) {
    warnings.push_back("not determined by these data: " + DirectionText(session, direction) + " together");
  }
  return warnings;
}

}  // namespace

MacroResult ExpParamsCommand(MacroCall& call, const PositionParams& p) {
  OpenExpParams(call.desk);
  PlaceIfGiven(p, call.desk.expParams);
  return call.Done("open");
}

MacroResult SetExpParamCommand(MacroCall& call, const SetExpParamParams& p) {
  if (!p.ParamName) return call.Missing("ParamName");
  const auto param = ExpParamNamed(call.session, *p.ParamName);
  if (!param) return call.Nothing("no experimental parameter has a name that begins with '" + *p.ParamName + "'");
  const Status status = call.session.SetParam(*param, EditOf(p));
  const ModelParam& record = *call.session.FindParam(*param);
  if (status.Ok()) WarnIfMoved(call, p.Value, record, std::string(NameOf(record)));
  return call.Told(status, std::string(NameOf(record)) + " = " + ParamText(record));
}

MacroResult WindowFitCommand(MacroCall& call, const PositionParams& p) {
  OpenFitWindow(call.desk);
  PlaceIfGiven(p, call.desk.fitWindow);
  return call.Done("open, " + std::to_string(call.session.Fit().list.terms.size()) + " ChiSq terms");
}

MacroResult AddChiSqTermCommand(MacroCall& call, const AddChiSqTermParams& p) {
  if (!p.DatasetNo) return call.Missing("DatasetNo");
  const Model* const model = NeededModel(call, p.ModelNo);
  if (!model) return MacroResult::kNext;
  const Status status = call.session.AddTerm(*p.DatasetNo, model->number, p.Weight);
  const bool isLoaded = call.session.FindDataset(*p.DatasetNo) != nullptr;
  const FitState& fit = call.session.Fit();
  return call.Told(status, "dataset " + std::to_string(*p.DatasetNo) + (isLoaded ? "" : ", which is not loaded,") +
                               " against " + ModelText(model->number) + ": " + std::to_string(CountFitPoints(fit)) +
                               " points, " + std::to_string(fit.NumFreeParams) + " free parameters, ChiSq " +
                               TextG(fit.TotalChiSq));
}

MacroResult DeleteChiSqTermCommand(MacroCall& call, const DeleteChiSqTermParams& p) {
  if (!p.DatasetNo) return call.Missing("DatasetNo");
  if (!p.ModelNo) return call.Missing("ModelNo");
  const Status status = call.session.DeleteTerm(*p.DatasetNo, *p.ModelNo);
  return call.Told(status, "removed, " + std::to_string(call.session.Fit().list.terms.size()) + " left");
}

MacroResult FitCommand(MacroCall& call, const FitRunParams& p) {
  Session& session = call.session;
  const bool stops = session.Fit().FitRunning;
  const auto start = std::chrono::steady_clock::now();
  const Status ended = session.RunFit({.iterations = p.NumIters, .starts = p.Starts, .seed = SeedOf(p)});
  if (stops) return call.Done("requested the running fit to stop");
  if (ended.Code() == StatusCode::kNothingToDo || ended.Code() == StatusCode::kBadArgument)
    return call.Nothing(ended.Text());
  // The summary contains the reason of every other end.
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  const std::string summary = Summary(session, took.count());
  if (call.desk.macro.progress && !call.desk.macro.verbose) std::fprintf(stderr, "fit: %s\n", summary.c_str());
  call.warnings = WarningsOf(session);
  call.didNothing = session.Fit().NumFitParams < 1;
  return call.Done(summary);
}

MacroResult FitOptionsCommand(MacroCall& call, const FitOptionsParams& p) {
  if (p == FitOptionsParams{}) return call.Nothing("no option is given");
  FitOptions options = call.session.Fit().options;
  SetFlagIfGiven(options.StopOnIterations, p.StopOnIterations);
  SetIfGiven(options.MaxIterations, p.MaxIterations);
  SetFlagIfGiven(options.StopOnTime, p.StopOnTime);
  SetIfGiven(options.MaxSeconds, p.MaxSeconds);
  SetFlagIfGiven(options.StopOnReduction, p.StopOnReduction);
  SetIfGiven(options.ReductionIterations, p.ReductionIterations);
  SetIfGiven(options.ReductionAmount, p.ReductionAmount);
  SetFlagIfGiven(options.StopOnLambda, p.StopOnLambda);
  SetIfGiven(options.MaxLambda, p.MaxLambda);
  SetIfGiven(options.InitialLambda, p.InitialLambda);
  SetFlagIfGiven(options.CalcConfidence, p.CalcConfidence);
  SetIfGiven(options.DeltaChiSq, p.DeltaChiSq);
  SetFlagIfGiven(options.LogFit, p.LogFit);
  SetIfGiven(options.Method, p.Method);
  SetFlagIfGiven(options.RelativeReduction, p.RelativeReduction);
  SetFlagIfGiven(options.StandardErrors, p.StandardErrors);
  SetFlagIfGiven(options.WrapAngles, p.WrapAngles);
  SetFlagIfGiven(options.SkipInvalid, p.SkipInvalid);
  SetFlagIfGiven(options.NeedsWindow, p.NeedsWindow);
  return call.Told(call.session.SetFitOptions(options), "set");
}

MacroResult UndoFitCommand(MacroCall& call, const NoParams&) {
  const Status status = call.session.UndoFit();
  return call.Told(status, "ChiSq is " + TextG(call.session.Fit().TotalChiSq));
}

MacroResult ExportResidualsCommand(MacroCall& call, const ExportResidualsParams& p) {
  if (!p.File) return call.Missing("File");
  if (!p.DatasetNo) return call.Missing("DatasetNo");
  const Model* const model = NeededModel(call, p.ModelNo);
  if (!model) return MacroResult::kNext;
  return call.Told(call.session.ExportResiduals(*p.DatasetNo, model->number, *p.File),
                   "residuals of dataset " + std::to_string(*p.DatasetNo) + " against " + ModelText(model->number) +
                       " written to '" + *p.File + "'");
}

MacroResult QuantityErrorBarsCommand(MacroCall& call, const NoParams&) {
  return call.Told(call.session.WriteQuantityErrorBars(), "written to 'QntyErrorBars.dat'");
}

MacroResult DumpDerivativesCommand(MacroCall& call, const NoParams&) {
  return call.Told(call.session.DumpDerivatives(), "written to 'Jakob.dat'");
}

MacroResult DumpSensitivityCommand(MacroCall& call, const NoParams&) {
  return call.Told(call.session.DumpSensitivity(), "written to 'Jakob2.dat'");
}

}  // namespace kalvex
