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
    return std::tuple(Param("ModelNo", &P::ModelNo), Param("Key", &P::Key, 100));
  }
};
MacroResult FreeShapeCommand(MacroCall& call, const FreeShapeParams& p);

struct VarDielFuncParams {
  std::optional<int> ModelNo, KK, On, FitActive;
  std::optional<int> Source1DatasetNo, Source1Every2nd, Source2DatasetNo, Source2Every2nd, Source3DatasetNo,
      Source3Every2nd;
  static constexpr auto Describe() {
    using P = VarDielFuncParams;
    return std::tuple(Param("ModelNo", &P::ModelNo), Param("Source1DatasetNo", &P::Source1DatasetNo),
                      Param("Source1Every2nd", &P::Source1Every2nd), Param("Source2DatasetNo", &P::Source2DatasetNo),
                      Param("Source2Every2nd", &P::Source2Every2nd), Param("Source3DatasetNo", &P::Source3DatasetNo),
                      Param("Source3Every2nd", &P::Source3Every2nd), Param("KK", &P::KK), Param("On", &P::On),
                      Param("FitActive", &P::FitActive));
  }
};
MacroResult VarDielFuncCommand(MacroCall& call, const VarDielFuncParams& p);
MacroResult MakeVarDielFuncPositiveCommand(MacroCall& call, const ModelNoParams& p);

}  // namespace kalvex
