// Commands on datasets.
#pragma once

#include "macro/shared_params.h"

namespace kalvex {

MacroResult DatasetManagerCommand(MacroCall& call, const PositionParams& p);

struct LoadDatasetParams {
  std::optional<int> DatasetNo, XMethod, XPts, XGrid, YMethod, YErrMethod, Match;
  std::optional<double> XMin, XMax, YVal, YErrVal;
  std::optional<std::string> Quantity, MasterFile, XFile, YErrFile;
  static constexpr auto Describe() {
    using P = LoadDatasetParams;
    return std::to_array<ParamRow<P>>({{"DatasetNo", &P::DatasetNo},
                                       {"Quantity", &P::Quantity, 10},
                                       {"MasterFile", &P::MasterFile, 200},
                                       {"XMethod", &P::XMethod},
                                       {"XFile", &P::XFile, 200},
                                       {"XMin", &P::XMin},
                                       {"XMax", &P::XMax},
                                       {"XPts", &P::XPts},
                                       {"XGrid", &P::XGrid},
                                       {"YMethod", &P::YMethod},
                                       {"YVal", &P::YVal},
                                       {"YErrMethod", &P::YErrMethod},
                                       {"YErrFile", &P::YErrFile, 200},
                                       {"YErrVal", &P::YErrVal},
                                       {"Match", &P::Match}});
  }
};
MacroResult LoadDatasetCommand(MacroCall& call, const LoadDatasetParams& p);

struct DatasetNoParams {
  std::optional<int> DatasetNo;
  static constexpr auto Describe() {
    return std::to_array<ParamRow<DatasetNoParams>>({{"DatasetNo", &DatasetNoParams::DatasetNo}});
  }
};
MacroResult UnloadDatasetCommand(MacroCall& call, const DatasetNoParams& p);

struct TransformDatasetParams {
  std::optional<int> DatasetNo;
  std::optional<double> Scale, Shift;
  static constexpr auto Describe() {
    using P = TransformDatasetParams;
    return std::to_array<ParamRow<P>>({{"DatasetNo", &P::DatasetNo}, {"Scale", &P::Scale}, {"Shift", &P::Shift}});
  }
};
MacroResult TransformDatasetCommand(MacroCall& call, const TransformDatasetParams& p);

struct ExportDatasetParams {
  std::optional<int> DatasetNo, ExportFitted, ExportErrorBars;
  std::optional<std::string> File;
  static constexpr auto Describe() {
    using P = ExportDatasetParams;
    return std::to_array<ParamRow<P>>({{"DatasetNo", &P::DatasetNo},
                                       {"File", &P::File, 200},
                                       {"ExportFitted", &P::ExportFitted},
                                       {"ExportErrorBars", &P::ExportErrorBars}});
  }
};
MacroResult ExportDatasetCommand(MacroCall& call, const ExportDatasetParams& p);

struct AddNoiseParams {
  std::optional<int> DatasetNo;
  std::optional<double> Sigma;
  static constexpr auto Describe() {
    using P = AddNoiseParams;
    return std::to_array<ParamRow<P>>({{"DatasetNo", &P::DatasetNo}, {"Sigma", &P::Sigma}});
  }
};
MacroResult AddNoiseCommand(MacroCall& call, const AddNoiseParams& p);

struct CutDatasetParams {
  std::optional<int> DatasetNo;
  std::optional<double> XMin, XMax;
  static constexpr auto Describe() {
    using P = CutDatasetParams;
    return std::to_array<ParamRow<P>>({{"DatasetNo", &P::DatasetNo}, {"XMin", &P::XMin}, {"XMax", &P::XMax}});
  }
};
MacroResult CutDatasetCommand(MacroCall& call, const CutDatasetParams& p);

struct SetDatasetQuantityParams {
  std::optional<int> DatasetNo;
  std::optional<std::string> Quantity;
  static constexpr auto Describe() {
    using P = SetDatasetQuantityParams;
    return std::to_array<ParamRow<P>>({{"DatasetNo", &P::DatasetNo}, {"Quantity", &P::Quantity, 10}});
  }
};
MacroResult SetDatasetQuantityCommand(MacroCall& call, const SetDatasetQuantityParams& p);

}  // namespace kalvex
