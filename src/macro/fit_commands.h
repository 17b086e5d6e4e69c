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
    return std::to_array({Row<&P::ParamName>("ParamName", 100), Row<&P::Value>("Value"),
                          Row<&P::FitActive>("FitActive"), Row<&P::MinLimit>("MinLimit"), Row<&P::MaxLimit>("MaxLimit"),
                          Row<&P::MinOn>("MinOn"), Row<&P::MaxOn>("MaxOn"), Row<&P::CoupledTo>("CoupledTo")});
  }
};
MacroResult SetExpParamCommand(MacroCall& call, const SetExpParamParams& p);
MacroResult WindowFitCommand(MacroCall& call, const PositionParams& p);

struct AddChiSqTermParams {
  std::optional<int> DatasetNo, ModelNo;
  std::optional<double> Weight;
  static constexpr auto Describe() {
    using P = AddChiSqTermParams;
    return std::to_array({Row<&P::DatasetNo>("DatasetNo"), Row<&P::ModelNo>("ModelNo"), Row<&P::Weight>("Weight")});
  }
};
MacroResult AddChiSqTermCommand(MacroCall& call, const AddChiSqTermParams& p);

struct DeleteChiSqTermParams {
  std::optional<int> DatasetNo, ModelNo;
  static constexpr auto Describe() {
    using P = DeleteChiSqTermParams;
    return std::to_array({Row<&P::DatasetNo>("DatasetNo"), Row<&P::ModelNo>("ModelNo")});
  }
};
MacroResult DeleteChiSqTermCommand(MacroCall& call, const DeleteChiSqTermParams& p);

struct FitRunParams {
  std::optional<int> NumIters;
  static constexpr auto Describe() { return std::to_array({Row<&FitRunParams::NumIters>("NumIters")}); }
};
MacroResult FitCommand(MacroCall& call, const FitRunParams& p);

struct FitOptionsParams {
  std::optional<int> StopOnIterations, MaxIterations, StopOnTime, MaxSeconds, StopOnReduction, ReductionIterations,
      StopOnLambda, CalcConfidence, LogFit;
  std::optional<double> ReductionAmount, MaxLambda, InitialLambda, DeltaChiSq;
  bool operator==(const FitOptionsParams&) const = default;
  static constexpr auto Describe() {
    using P = FitOptionsParams;
    return std::to_array(
        {Row<&P::StopOnIterations>("StopOnIterations"), Row<&P::MaxIterations>("MaxIterations"),
         Row<&P::StopOnTime>("StopOnTime"), Row<&P::MaxSeconds>("MaxSeconds"),
         Row<&P::StopOnReduction>("StopOnReduction"), Row<&P::ReductionIterations>("ReductionIterations"),
         Row<&P::ReductionAmount>("ReductionAmount"), Row<&P::StopOnLambda>("StopOnLambda"),
         Row<&P::MaxLambda>("MaxLambda"), Row<&P::InitialLambda>("InitialLambda"),
         Row<&P::CalcConfidence>("CalcConfidence"), Row<&P::DeltaChiSq>("DeltaChiSq"), Row<&P::LogFit>("LogFit")});
  }
};
MacroResult FitOptionsCommand(MacroCall& call, const FitOptionsParams& p);
MacroResult UndoFitCommand(MacroCall& call, const NoParams& p);
MacroResult QuantityErrorBarsCommand(MacroCall& call, const NoParams& p);
MacroResult DumpDerivativesCommand(MacroCall& call, const NoParams& p);
MacroResult DumpSensitivityCommand(MacroCall& call, const NoParams& p);

}  // namespace kalvex
