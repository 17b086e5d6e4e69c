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
    return std::to_array({Row<&P::DatasetNo>("DatasetNo"), Row<&P::Quantity>("Quantity", 10),
                          Row<&P::MasterFile>("MasterFile", 200), Row<&P::XMethod>("XMethod"),
                          Row<&P::XFile>("XFile", 200), Row<&P::XMin>("XMin"), Row<&P::XMax>("XMax"),
                          Row<&P::XPts>("XPts"), Row<&P::XGrid>("XGrid"), Row<&P::YMethod>("YMethod"),
                          Row<&P::YVal>("YVal"), Row<&P::YErrMethod>("YErrMethod"), Row<&P::YErrFile>("YErrFile", 200),
                          Row<&P::YErrVal>("YErrVal"), Row<&P::Match>("Match")});
  }
};
MacroResult LoadDatasetCommand(MacroCall& call, const LoadDatasetParams& p);

struct DatasetNoParams {
  std::optional<int> DatasetNo;
  static constexpr auto Describe() { return std::to_array({Row<&DatasetNoParams::DatasetNo>("DatasetNo")}); }
};
MacroResult UnloadDatasetCommand(MacroCall& call, const DatasetNoParams& p);

struct TransformDatasetParams {
  std::optional<int> DatasetNo;
  std::optional<double> Scale, Shift;
  static constexpr auto Describe() {
    using P = TransformDatasetParams;
    return std::to_array({Row<&P::DatasetNo>("DatasetNo"), Row<&P::Scale>("Scale"), Row<&P::Shift>("Shift")});
  }
};
MacroResult TransformDatasetCommand(MacroCall& call, const TransformDatasetParams& p);

struct ExportDatasetParams {
  std::optional<int> DatasetNo, ExportFitted, ExportErrorBars;
  std::optional<std::string> File;
  static constexpr auto Describe() {
    using P = ExportDatasetParams;
    return std::to_array({Row<&P::DatasetNo>("DatasetNo"), Row<&P::File>("File", 200),
                          Row<&P::ExportFitted>("ExportFitted"), Row<&P::ExportErrorBars>("ExportErrorBars")});
  }
};
MacroResult ExportDatasetCommand(MacroCall& call, const ExportDatasetParams& p);

struct AddNoiseParams {
  std::optional<int> DatasetNo;
  std::optional<double> Sigma;
  static constexpr auto Describe() {
    using P = AddNoiseParams;
    return std::to_array({Row<&P::DatasetNo>("DatasetNo"), Row<&P::Sigma>("Sigma")});
  }
};
MacroResult AddNoiseCommand(MacroCall& call, const AddNoiseParams& p);

struct CutDatasetParams {
  std::optional<int> DatasetNo;
  std::optional<double> XMin, XMax;
  static constexpr auto Describe() {
    using P = CutDatasetParams;
    return std::to_array({Row<&P::DatasetNo>("DatasetNo"), Row<&P::XMin>("XMin"), Row<&P::XMax>("XMax")});
  }
};
MacroResult CutDatasetCommand(MacroCall& call, const CutDatasetParams& p);

struct SetDatasetQuantityParams {
  std::optional<int> DatasetNo;
  std::optional<std::string> Quantity;
  static constexpr auto Describe() {
    using P = SetDatasetQuantityParams;
    return std::to_array({Row<&P::DatasetNo>("DatasetNo"), Row<&P::Quantity>("Quantity", 10)});
  }
};
MacroResult SetDatasetQuantityCommand(MacroCall& call, const SetDatasetQuantityParams& p);

}  // namespace kalvex
