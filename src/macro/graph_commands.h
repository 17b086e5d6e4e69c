// Commands on graphs and their curves.
#pragma once

#include "macro/shared_params.h"

namespace kalvex {

struct NewGraphParams {
  std::optional<int> XPos, YPos, Width, Height;
  static constexpr auto Describe() {
    using P = NewGraphParams;
    return std::tuple(Param("XPos", &P::XPos), Param("YPos", &P::YPos), Param("Width", &P::Width),
                      Param("Height", &P::Height));
  }
};
MacroResult NewGraphCommand(MacroCall& call, const NewGraphParams& p);

struct GraphPropertiesParams {
  std::optional<int> GraphNo, Xlog, Ylog, ShowFitted;
  std::optional<double> Xmin, Xmax, Ymin, Ymax;
  std::optional<std::string> XTitle, YTitle;
  static constexpr auto Describe() {
    using P = GraphPropertiesParams;
    return std::tuple(Param("GraphNo", &P::GraphNo), Param("Xmin", &P::Xmin), Param("Xmax", &P::Xmax),
                      Param("Xlog", &P::Xlog), Param("XTitle", &P::XTitle, 100), Param("Ymin", &P::Ymin),
                      Param("Ymax", &P::Ymax), Param("Ylog", &P::Ylog), Param("YTitle", &P::YTitle, 100),
                      Param("ShowFitted", &P::ShowFitted));
  }
};
MacroResult GraphPropertiesCommand(MacroCall& call, const GraphPropertiesParams& p);

struct AddDataCurveParams {
  std::optional<int> GraphNo, DatasetNo, nColor, ShowLine, ShowSymbol, ShowError, nSymbolSize, nSymbolShape, SymbolOpen;
  std::optional<double> Scale, Shift;
  static constexpr auto Describe() {
    using P = AddDataCurveParams;
    return std::tuple(Param("GraphNo", &P::GraphNo), Param("DatasetNo", &P::DatasetNo), Param("nColor", &P::nColor),
                      Param("ShowLine", &P::ShowLine), Param("ShowSymbol", &P::ShowSymbol),
                      Param("ShowError", &P::ShowError), Param("nSymbolSize", &P::nSymbolSize),
                      Param("nSymbolShape", &P::nSymbolShape), Param("SymbolOpen", &P::SymbolOpen),
                      Param("Scale", &P::Scale), Param("Shift", &P::Shift));
  }
};
MacroResult AddDataCurveCommand(MacroCall& call, const AddDataCurveParams& p);

struct AddModelCurveParams {
  std::optional<int> GraphNo, ModelNo, nColor;
  std::optional<double> Scale, Shift;
  std::optional<std::string> Quantity;
  static constexpr auto Describe() {
    using P = AddModelCurveParams;
    return std::tuple(Param("GraphNo", &P::GraphNo), Param("ModelNo", &P::ModelNo), Param("Quantity", &P::Quantity, 10),
                      Param("nColor", &P::nColor), Param("Scale", &P::Scale), Param("Shift", &P::Shift));
  }
};
MacroResult AddModelCurveCommand(MacroCall& call, const AddModelCurveParams& p);
MacroResult AddMultiCurveCommand(MacroCall& call, const AddModelCurveParams& p);

struct AddChiSqCurveParams {
  std::optional<int> GraphNo, DatasetNo, ModelNo, nColor;
  std::optional<double> Scale, Shift;
  static constexpr auto Describe() {
    using P = AddChiSqCurveParams;
    return std::tuple(Param("GraphNo", &P::GraphNo), Param("DatasetNo", &P::DatasetNo), Param("ModelNo", &P::ModelNo),
                      Param("nColor", &P::nColor), Param("Scale", &P::Scale), Param("Shift", &P::Shift));
  }
};
MacroResult AddChiSqCurveCommand(MacroCall& call, const AddChiSqCurveParams& p);

struct AddFreqCurveParams {
  std::optional<int> GraphNo, ModelNo, nColor;
  static constexpr auto Describe() {
    using P = AddFreqCurveParams;
    return std::tuple(Param("GraphNo", &P::GraphNo), Param("ModelNo", &P::ModelNo), Param("nColor", &P::nColor));
  }
};
MacroResult AddFreqCurveCommand(MacroCall& call, const AddFreqCurveParams& p);

struct DeleteDataCurveParams {
  std::optional<int> GraphNo, DatasetNo;
  static constexpr auto Describe() {
    using P = DeleteDataCurveParams;
    return std::tuple(Param("GraphNo", &P::GraphNo), Param("DatasetNo", &P::DatasetNo));
  }
};
MacroResult DeleteDataCurveCommand(MacroCall& call, const DeleteDataCurveParams& p);

struct DeleteModelCurveParams {
  std::optional<int> GraphNo, ModelNo;
  std::optional<std::string> Quantity;
  static constexpr auto Describe() {
    using P = DeleteModelCurveParams;
    return std::tuple(Param("GraphNo", &P::GraphNo), Param("ModelNo", &P::ModelNo),
                      Param("Quantity", &P::Quantity, 10));
  }
};
MacroResult DeleteModelCurveCommand(MacroCall& call, const DeleteModelCurveParams& p);

struct ExportGraphParams {
  std::optional<int> GraphNo;
  std::optional<std::string> File;
  static constexpr auto Describe() {
    using P = ExportGraphParams;
    return std::tuple(Param("GraphNo", &P::GraphNo), Param("File", &P::File, 200));
  }
};
MacroResult ExportGraphCommand(MacroCall& call, const ExportGraphParams& p);

struct DrawGraphParams {
  std::optional<int> GraphNo, Width, Height;
  std::optional<std::string> File;
  static constexpr auto Describe() {
    using P = DrawGraphParams;
    return std::tuple(Param("GraphNo", &P::GraphNo), Param("File", &P::File, 200), Param("Width", &P::Width),
                      Param("Height", &P::Height));
  }
};
MacroResult DrawGraphCommand(MacroCall& call, const DrawGraphParams& p);

struct GraphNoParams {
  std::optional<int> GraphNo;
  static constexpr auto Describe() { return std::tuple(Param("GraphNo", &GraphNoParams::GraphNo)); }
};
MacroResult CloseGraphCommand(MacroCall& call, const GraphNoParams& p);

}  // namespace kalvex
