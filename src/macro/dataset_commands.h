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
    return std::tuple(Param("DatasetNo", &P::DatasetNo), Param("Quantity", &P::Quantity, 10),
                      Param("MasterFile", &P::MasterFile, 200), Param("XMethod", &P::XMethod),
                      Param("XFile", &P::XFile, 200), Param("XMin", &P::XMin), Param("XMax", &P::XMax),
                      Param("XPts", &P::XPts), Param("XGrid", &P::XGrid), Param("YMethod", &P::YMethod),
                      Param("YVal", &P::YVal), Param("YErrMethod", &P::YErrMethod),
                      Param("YErrFile", &P::YErrFile, 200), Param("YErrVal", &P::YErrVal), Param("Match", &P::Match));
  }
};
MacroResult LoadDatasetCommand(MacroCall& call, const LoadDatasetParams& p);

struct DatasetNoParams {
  std::optional<int> DatasetNo;
  static constexpr auto Describe() { return std::tuple(Param("DatasetNo", &DatasetNoParams::DatasetNo)); }
};
MacroResult UnloadDatasetCommand(MacroCall& call, const DatasetNoParams& p);

struct TransformDatasetParams {
  std::optional<int> DatasetNo;
  std::optional<double> Scale, Shift;
  static constexpr auto Describe() {
    using P = TransformDatasetParams;
    return std::tuple(Param("DatasetNo", &P::DatasetNo), Param("Scale", &P::Scale), Param("Shift", &P::Shift));
  }
};
MacroResult TransformDatasetCommand(MacroCall& call, const TransformDatasetParams& p);

struct ExportDatasetParams {
  std::optional<int> DatasetNo, ExportFitted, ExportErrorBars;
  std::optional<std::string> File;
  static constexpr auto Describe() {
    using P = ExportDatasetParams;
    return std::tuple(Param("DatasetNo", &P::DatasetNo), Param("File", &P::File, 200),
                      Param("ExportFitted", &P::ExportFitted), Param("ExportErrorBars", &P::ExportErrorBars));
  }
};
MacroResult ExportDatasetCommand(MacroCall& call, const ExportDatasetParams& p);

struct AddNoiseParams {
  std::optional<int> DatasetNo;
  std::optional<double> Sigma;
  static constexpr auto Describe() {
    using P = AddNoiseParams;
    return std::tuple(Param("DatasetNo", &P::DatasetNo), Param("Sigma", &P::Sigma));
  }
};
MacroResult AddNoiseCommand(MacroCall& call, const AddNoiseParams& p);

struct CutDatasetParams {
  std::optional<int> DatasetNo;
  std::optional<double> XMin, XMax;
  static constexpr auto Describe() {
    using P = CutDatasetParams;
    return std::tuple(Param("DatasetNo", &P::DatasetNo), Param("XMin", &P::XMin), Param("XMax", &P::XMax));
  }
};
MacroResult CutDatasetCommand(MacroCall& call, const CutDatasetParams& p);

struct SetDatasetQuantityParams {
  std::optional<int> DatasetNo, Update;
  std::optional<std::string> Quantity;
  static constexpr auto Describe() {
    using P = SetDatasetQuantityParams;
    return std::tuple(Param("DatasetNo", &P::DatasetNo), Param("Quantity", &P::Quantity, 10),
                      Param("Update", &P::Update));
  }
};
MacroResult SetDatasetQuantityCommand(MacroCall& call, const SetDatasetQuantityParams& p);

}  // namespace kalvex
