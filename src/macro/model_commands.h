// Commands on models, their rows and their parameters.
#pragma once

#include "macro/shared_params.h"

namespace kalvex {

struct NewModelParams {
  std::optional<int> XPos, YPos, Width, Height, VarDielFuncSeen;
  static constexpr auto Describe() {
    using P = NewModelParams;
    return std::to_array<ParamRow<P>>({{"XPos", &P::XPos},
                                       {"YPos", &P::YPos},
                                       {"Width", &P::Width},
                                       {"Height", &P::Height},
                                       {"VarDielFuncSeen", &P::VarDielFuncSeen}});
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
    return std::to_array<ParamRow<P>>({{"ModelNo", &P::ModelNo},
                                       {"ParamName", &P::ParamName, 100},
                                       {"LorNo", &P::LorNo},
                                       {"Value", &P::Value},
                                       {"FitActive", &P::FitActive},
                                       {"MinLimit", &P::MinLimit},
                                       {"MaxLimit", &P::MaxLimit},
                                       {"MinOn", &P::MinOn},
                                       {"MaxOn", &P::MaxOn},
                                       {"CoupledTo", &P::CoupledTo},
                                       {"Update", &P::Update}});
  }
};
MacroResult SetModelParamCommand(MacroCall& call, const SetModelParamParams& p);

struct CopyModelParamParams {
  std::optional<int> DestModelNo, DestLorNo, SourceModelNo, SourceLorNo;
  std::optional<std::string> DestParamName, SourceParamName;
  static constexpr auto Describe() {
    using P = CopyModelParamParams;
    return std::to_array<ParamRow<P>>({{"DestModelNo", &P::DestModelNo},
                                       {"DestParamName", &P::DestParamName, 100},
                                       {"DestLorNo", &P::DestLorNo},
                                       {"SourceModelNo", &P::SourceModelNo},
                                       {"SourceParamName", &P::SourceParamName, 100},
                                       {"SourceLorNo", &P::SourceLorNo}});
  }
};
MacroResult CopyModelParamCommand(MacroCall& call, const CopyModelParamParams& p);
MacroResult FixAllModelParamsCommand(MacroCall& call, const ModelNoParams& p);

struct ModelRowParams {
  std::optional<int> ModelNo, LorNo;
  static constexpr auto Describe() {
    using P = ModelRowParams;
    return std::to_array<ParamRow<P>>({{"ModelNo", &P::ModelNo}, {"LorNo", &P::LorNo}});
  }
};
MacroResult InsertModelRowCommand(MacroCall& call, const ModelRowParams& p);
MacroResult RemoveModelRowCommand(MacroCall& call, const ModelRowParams& p);

struct MoveModelRowParams {
  std::optional<int> ModelNo, LorNo, Up;
  static constexpr auto Describe() {
    using P = MoveModelRowParams;
    return std::to_array<ParamRow<P>>({{"ModelNo", &P::ModelNo}, {"LorNo", &P::LorNo}, {"Up", &P::Up}});
  }
};
MacroResult MoveModelRowCommand(MacroCall& call, const MoveModelRowParams& p);

struct SortModelRowsParams {
  std::optional<int> ModelNo, Key;
  static constexpr auto Describe() {
    using P = SortModelRowsParams;
    return std::to_array<ParamRow<P>>({{"ModelNo", &P::ModelNo}, {"Key", &P::Key}});
  }
};
MacroResult SortModelRowsCommand(MacroCall& call, const SortModelRowsParams& p);
MacroResult CloseModelCommand(MacroCall& call, const ModelNoParams& p);

}  // namespace kalvex
