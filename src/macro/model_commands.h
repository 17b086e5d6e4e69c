// Commands on models, their rows and their parameters.
#pragma once

#include "macro/shared_params.h"

namespace kalvex {

struct NewModelParams {
  std::optional<int> XPos, YPos, Width, Height, VarDielFuncSeen;
  static constexpr auto Describe() {
    using P = NewModelParams;
    return std::tuple(Param("XPos", &P::XPos), Param("YPos", &P::YPos), Param("Width", &P::Width),
                      Param("Height", &P::Height), Param("VarDielFuncSeen", &P::VarDielFuncSeen));
  }
};
MacroResult NewModelCommand(MacroCall& call, const NewModelParams& p);
MacroResult SaveModelCommand(MacroCall& call, const ModelFileParams& p);
MacroResult LoadModelCommand(MacroCall& call, const ModelFileParams& p);

struct SetModelParamParams {
  std::optional<int> ModelNo, LorNo, FitActive, MinOn, MaxOn, CoupledTo, Update;
  std::optional<double> Value, MinLimit, MaxLimit;
  std::optional<std::string> ParamName;
  static constexpr auto Describe() {
    using P = SetModelParamParams;
    return std::tuple(Param("ModelNo", &P::ModelNo), Param("ParamName", &P::ParamName, 100), Param("LorNo", &P::LorNo),
                      Param("Value", &P::Value), Param("FitActive", &P::FitActive), Param("MinLimit", &P::MinLimit),
                      Param("MaxLimit", &P::MaxLimit), Param("MinOn", &P::MinOn), Param("MaxOn", &P::MaxOn),
                      Param("CoupledTo", &P::CoupledTo), Param("Update", &P::Update));
  }
};
MacroResult SetModelParamCommand(MacroCall& call, const SetModelParamParams& p);

struct CopyModelParamParams {
  std::optional<int> DestModelNo, DestLorNo, SourceModelNo, SourceLorNo;
  std::optional<std::string> DestParamName, SourceParamName;
  static constexpr auto Describe() {
    using P = CopyModelParamParams;
    return std::tuple(Param("DestModelNo", &P::DestModelNo), Param("DestParamName", &P::DestParamName, 100),
                      Param("DestLorNo", &P::DestLorNo), Param("SourceModelNo", &P::SourceModelNo),
                      Param("SourceParamName", &P::SourceParamName, 100), Param("SourceLorNo", &P::SourceLorNo));
  }
};
MacroResult CopyModelParamCommand(MacroCall& call, const CopyModelParamParams& p);
MacroResult FixAllModelParamsCommand(MacroCall& call, const ModelNoParams& p);

struct ModelRowParams {
  std::optional<int> ModelNo, LorNo;
  static constexpr auto Describe() {
    using P = ModelRowParams;
    return std::tuple(Param("ModelNo", &P::ModelNo), Param("LorNo", &P::LorNo));
  }
};
MacroResult InsertModelRowCommand(MacroCall& call, const ModelRowParams& p);
MacroResult RemoveModelRowCommand(MacroCall& call, const ModelRowParams& p);

struct MoveModelRowParams {
  std::optional<int> ModelNo, LorNo, Up;
  static constexpr auto Describe() {
    using P = MoveModelRowParams;
    return std::tuple(Param("ModelNo", &P::ModelNo), Param("LorNo", &P::LorNo), Param("Up", &P::Up));
  }
};
MacroResult MoveModelRowCommand(MacroCall& call, const MoveModelRowParams& p);

struct SortModelRowsParams {
  std::optional<int> ModelNo, Key;
  static constexpr auto Describe() {
    using P = SortModelRowsParams;
    return std::tuple(Param("ModelNo", &P::ModelNo), Param("Key", &P::Key));
  }
};
MacroResult SortModelRowsCommand(MacroCall& call, const SortModelRowsParams& p);
MacroResult CloseModelCommand(MacroCall& call, const ModelNoParams& p);

}  // namespace kalvex
