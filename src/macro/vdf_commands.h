// Commands on the variational dielectric function of a model.
#pragma once

#include "macro/shared_params.h"

namespace kalvex {

MacroResult SaveVarDielFuncCommand(MacroCall& call, const ModelFileParams& p);
MacroResult LoadVarDielFuncCommand(MacroCall& call, const ModelFileParams& p);

struct FreeShapeParams {
  std::optional<int> ModelNo;
  std::optional<std::string> Key;
  static constexpr auto Describe() {
    using P = FreeShapeParams;
    return std::to_array({Row<&P::ModelNo>("ModelNo"), Row<&P::Key>("Key", 100)});
  }
};
MacroResult FreeShapeCommand(MacroCall& call, const FreeShapeParams& p);

struct VarDielFuncParams {
  std::optional<int> ModelNo, KK, On, FitActive;
  std::optional<int> Source1DatasetNo, Source1Every2nd, Source2DatasetNo, Source2Every2nd, Source3DatasetNo,
      Source3Every2nd;
  static constexpr auto Describe() {
    using P = VarDielFuncParams;
    return std::to_array({Row<&P::ModelNo>("ModelNo"), Row<&P::Source1DatasetNo>("Source1DatasetNo"),
                          Row<&P::Source1Every2nd>("Source1Every2nd"), Row<&P::Source2DatasetNo>("Source2DatasetNo"),
                          Row<&P::Source2Every2nd>("Source2Every2nd"), Row<&P::Source3DatasetNo>("Source3DatasetNo"),
                          Row<&P::Source3Every2nd>("Source3Every2nd"), Row<&P::KK>("KK"), Row<&P::On>("On"),
                          Row<&P::FitActive>("FitActive")});
  }
};
MacroResult VarDielFuncCommand(MacroCall& call, const VarDielFuncParams& p);
MacroResult MakeVarDielFuncPositiveCommand(MacroCall& call, const ModelNoParams& p);

}  // namespace kalvex
