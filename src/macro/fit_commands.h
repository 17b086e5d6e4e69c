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
    return std::to_array<ParamRow<P>>({{"ParamName", &P::ParamName, 100},
                                       {"Value", &P::Value},
                                       {"FitActive", &P::FitActive},
                                       {"MinLimit", &P::MinLimit},
                                       {"MaxLimit", &P::MaxLimit},
                                       {"MinOn", &P::MinOn},
                                       {"MaxOn", &P::MaxOn},
                                       {"CoupledTo", &P::CoupledTo}});
  }
};
MacroResult SetExpParamCommand(MacroCall& call, const SetExpParamParams& p);
MacroResult WindowFitCommand(MacroCall& call, const PositionParams& p);

struct AddChiSqTermParams {
  std::optional<int> DatasetNo, ModelNo;
  std::optional<double> Weight;
  static constexpr auto Describe() {
    using P = AddChiSqTermParams;
    return std::to_array<ParamRow<P>>({{"DatasetNo", &P::DatasetNo}, {"ModelNo", &P::ModelNo}, {"Weight", &P::Weight}});
  }
};
MacroResult AddChiSqTermCommand(MacroCall& call, const AddChiSqTermParams& p);

struct DeleteChiSqTermParams {
  std::optional<int> DatasetNo, ModelNo;
  static constexpr auto Describe() {
    using P = DeleteChiSqTermParams;
    return std::to_array<ParamRow<P>>({{"DatasetNo", &P::DatasetNo}, {"ModelNo", &P::ModelNo}});
  }
};
MacroResult DeleteChiSqTermCommand(MacroCall& call, const DeleteChiSqTermParams& p);

struct FitRunParams {
  std::optional<int> NumIters;
  static constexpr auto Describe() {
    return std::to_array<ParamRow<FitRunParams>>({{"NumIters", &FitRunParams::NumIters}});
  }
};
MacroResult FitCommand(MacroCall& call, const FitRunParams& p);

struct FitOptionsParams {
  std::optional<int> StopOnIterations, MaxIterations, StopOnTime, MaxSeconds, StopOnReduction, ReductionIterations,
      StopOnLambda, CalcConfidence, LogFit;
  std::optional<double> ReductionAmount, MaxLambda, InitialLambda, DeltaChiSq;
  bool operator==(const FitOptionsParams&) const = default;
  static constexpr auto Describe() {
    using P = FitOptionsParams;
    return std::to_array<ParamRow<P>>({{"StopOnIterations", &P::StopOnIterations},
                                       {"MaxIterations", &P::MaxIterations},
                                       {"StopOnTime", &P::StopOnTime},
                                       {"MaxSeconds", &P::MaxSeconds},
                                       {"StopOnReduction", &P::StopOnReduction},
                                       {"ReductionIterations", &P::ReductionIterations},
                                       {"ReductionAmount", &P::ReductionAmount},
                                       {"StopOnLambda", &P::StopOnLambda},
                                       {"MaxLambda", &P::MaxLambda},
                                       {"InitialLambda", &P::InitialLambda},
                                       {"CalcConfidence", &P::CalcConfidence},
                                       {"DeltaChiSq", &P::DeltaChiSq},
                                       {"LogFit", &P::LogFit}});
  }
};
MacroResult FitOptionsCommand(MacroCall& call, const FitOptionsParams& p);
MacroResult UndoFitCommand(MacroCall& call, const NoParams& p);
MacroResult QuantityErrorBarsCommand(MacroCall& call, const NoParams& p);
MacroResult DumpDerivativesCommand(MacroCall& call, const NoParams& p);
MacroResult DumpSensitivityCommand(MacroCall& call, const NoParams& p);

}  // namespace kalvex
