// Commands on models, their rows and their parameters.
#pragma once

#include "macro/shared_params.h"

namespace kalvex {

struct NewModelParams {
  std::optional<int> XPos, YPos, Width, Height, VarDielFuncSeen;
  static constexpr auto Describe() {
    using P = NewModelParams;
    return std::to_array({Row<&P::XPos>("XPos"), Row<&P::YPos>("YPos"), Row<&P::Width>("Width"),
                          Row<&P::Height>("Height"), Row<&P::VarDielFuncSeen>("VarDielFuncSeen")});
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
    return std::to_array({Row<&P::ModelNo>("ModelNo"), Row<&P::ParamName>("ParamName", 100), Row<&P::LorNo>("LorNo"),
                          Row<&P::Value>("Value"), Row<&P::FitActive>("FitActive"), Row<&P::MinLimit>("MinLimit"),
                          Row<&P::MaxLimit>("MaxLimit"), Row<&P::MinOn>("MinOn"), Row<&P::MaxOn>("MaxOn"),
                          Row<&P::CoupledTo>("CoupledTo"), Row<&P::Update>("Update")});
  }
};
MacroResult SetModelParamCommand(MacroCall& call, const SetModelParamParams& p);

struct CopyModelParamParams {
  std::optional<int> DestModelNo, DestLorNo, SourceModelNo, SourceLorNo;
  std::optional<std::string> DestParamName, SourceParamName;
  static constexpr auto Describe() {
    using P = CopyModelParamParams;
    return std::to_array({Row<&P::DestModelNo>("DestModelNo"), Row<&P::DestParamName>("DestParamName", 100),
                          Row<&P::DestLorNo>("DestLorNo"), Row<&P::SourceModelNo>("SourceModelNo"),
                          Row<&P::SourceParamName>("SourceParamName", 100), Row<&P::SourceLorNo>("SourceLorNo")});
  }
};
MacroResult CopyModelParamCommand(MacroCall& call, const CopyModelParamParams& p);
MacroResult FixAllModelParamsCommand(MacroCall& call, const ModelNoParams& p);

struct ModelRowParams {
  std::optional<int> ModelNo, LorNo;
  static constexpr auto Describe() {
    using P = ModelRowParams;
    return std::to_array({Row<&P::ModelNo>("ModelNo"), Row<&P::LorNo>("LorNo")});
  }
};
MacroResult InsertModelRowCommand(MacroCall& call, const ModelRowParams& p);
MacroResult RemoveModelRowCommand(MacroCall& call, const ModelRowParams& p);

struct MoveModelRowParams {
  std::optional<int> ModelNo, LorNo, Up;
  static constexpr auto Describe() {
    using P = MoveModelRowParams;
    return std::to_array({Row<&P::ModelNo>("ModelNo"), Row<&P::LorNo>("LorNo"), Row<&P::Up>("Up")});
  }
};
MacroResult MoveModelRowCommand(MacroCall& call, const MoveModelRowParams& p);

struct SortModelRowsParams {
  std::optional<int> ModelNo, Key;
  static constexpr auto Describe() {
    using P = SortModelRowsParams;
    return std::to_array({Row<&P::ModelNo>("ModelNo"), Row<&P::Key>("Key")});
  }
};
MacroResult SortModelRowsCommand(MacroCall& call, const SortModelRowsParams& p);
MacroResult CloseModelCommand(MacroCall& call, const ModelNoParams& p);

}  // namespace kalvex
