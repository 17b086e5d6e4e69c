// Commands on the fit and on the experimental parameters.
#pragma once

#include "macro/shared_params.h"

namespace kalvex {

MacroResult ExpParamsCommand(MacroCall& call, const PositionParams& p);

struct SetExpParamParams {
  std::optional<int> FitActive, MinOn, MaxOn, CoupledTo;
  std::optional<double> Value, MinLimit, MaxLimit;
  std::optional<std::string> ParamName;
  static constexpr auto Describe() {
    using P = SetExpParamParams;
    return std::tuple(Param("ParamName", &P::ParamName, 100), Param("Value", &P::Value),
                      Param("FitActive", &P::FitActive), Param("MinLimit", &P::MinLimit),
                      Param("MaxLimit", &P::MaxLimit), Param("MinOn", &P::MinOn), Param("MaxOn", &P::MaxOn),
                      Param("CoupledTo", &P::CoupledTo));
  }
};
MacroResult SetExpParamCommand(MacroCall& call, const SetExpParamParams& p);
MacroResult WindowFitCommand(MacroCall& call, const PositionParams& p);

struct AddChiSqTermParams {
  std::optional<int> DatasetNo, ModelNo;
  std::optional<double> Weight;
  static constexpr auto Describe() {
    using P = AddChiSqTermParams;
    return std::tuple(Param("DatasetNo", &P::DatasetNo), Param("ModelNo", &P::ModelNo), Param("Weight", &P::Weight));
  }
};
MacroResult AddChiSqTermCommand(MacroCall& call, const AddChiSqTermParams& p);

struct DeleteChiSqTermParams {
  std::optional<int> DatasetNo, ModelNo;
  static constexpr auto Describe() {
    using P = DeleteChiSqTermParams;
    return std::tuple(Param("DatasetNo", &P::DatasetNo), Param("ModelNo", &P::ModelNo));
  }
};
MacroResult DeleteChiSqTermCommand(MacroCall& call, const DeleteChiSqTermParams& p);

struct FitRunParams {
  std::optional<int> NumIters, Starts, Seed;
  static constexpr auto Describe() {
    using P = FitRunParams;
    return std::tuple(Param("NumIters", &P::NumIters), Param("Starts", &P::Starts), Param("Seed", &P::Seed));
  }
};
MacroResult FitCommand(MacroCall& call, const FitRunParams& p);

struct FitOptionsParams {
  std::optional<int> StopOnIterations, MaxIterations, StopOnTime, MaxSeconds, StopOnReduction, ReductionIterations,
      StopOnLambda, CalcConfidence, LogFit, Method, RelativeReduction, StandardErrors, WrapAngles, SkipInvalid,
      NeedsWindow;
  std::optional<double> ReductionAmount, MaxLambda, InitialLambda, DeltaChiSq;
  bool operator==(const FitOptionsParams&) const = default;
  static constexpr auto Describe() {
    using P = FitOptionsParams;
    return std::tuple(
        Param("StopOnIterations", &P::StopOnIterations), Param("MaxIterations", &P::MaxIterations),
        Param("StopOnTime", &P::StopOnTime), Param("MaxSeconds", &P::MaxSeconds),
        Param("StopOnReduction", &P::StopOnReduction), Param("ReductionIterations", &P::ReductionIterations),
        Param("ReductionAmount", &P::ReductionAmount), Param("StopOnLambda", &P::StopOnLambda),
        Param("MaxLambda", &P::MaxLambda), Param("InitialLambda", &P::InitialLambda),
        Param("CalcConfidence", &P::CalcConfidence), Param("DeltaChiSq", &P::DeltaChiSq), Param("LogFit", &P::LogFit),
        Param("Method", &P::Method), Param("RelativeReduction", &P::RelativeReduction),
        Param("StandardErrors", &P::StandardErrors), Param("WrapAngles", &P::WrapAngles),
        Param("SkipInvalid", &P::SkipInvalid), Param("NeedsWindow", &P::NeedsWindow));
  }
};
MacroResult FitOptionsCommand(MacroCall& call, const FitOptionsParams& p);
MacroResult UndoFitCommand(MacroCall& call, const NoParams& p);

struct ExportResidualsParams {
  std::optional<std::string> File;
  std::optional<int> DatasetNo, ModelNo;
  static constexpr auto Describe() {
    using P = ExportResidualsParams;
    return std::tuple(Param("File", &P::File, 200), Param("DatasetNo", &P::DatasetNo), Param("ModelNo", &P::ModelNo));
  }
};
MacroResult ExportResidualsCommand(MacroCall& call, const ExportResidualsParams& p);
MacroResult QuantityErrorBarsCommand(MacroCall& call, const NoParams& p);
MacroResult DumpDerivativesCommand(MacroCall& call, const NoParams& p);
MacroResult DumpSensitivityCommand(MacroCall& call, const NoParams& p);

}  // namespace kalvex
