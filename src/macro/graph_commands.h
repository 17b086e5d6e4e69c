// Commands on graphs and their curves.
#pragma once

#include "macro/shared_params.h"

namespace kalvex {

struct NewGraphParams {
  std::optional<int> XPos, YPos, Width, Height;
  static constexpr auto Describe() {
    using P = NewGraphParams;
    return std::to_array<ParamRow<P>>(
        {{"XPos", &P::XPos}, {"YPos", &P::YPos}, {"Width", &P::Width}, {"Height", &P::Height}});
  }
};
MacroResult NewGraphCommand(MacroCall& call, const NewGraphParams& p);

struct GraphPropertiesParams {
  std::optional<int> GraphNo, Xlog, Ylog, ShowFitted;
  std::optional<double> Xmin, Xmax, Ymin, Ymax;
  std::optional<std::string> XTitle, YTitle;
  static constexpr auto Describe() {
    using P = GraphPropertiesParams;
    return std::to_array<ParamRow<P>>({{"GraphNo", &P::GraphNo},
                                       {"Xmin", &P::Xmin},
                                       {"Xmax", &P::Xmax},
                                       {"Xlog", &P::Xlog},
                                       {"XTitle", &P::XTitle, 100},
                                       {"Ymin", &P::Ymin},
                                       {"Ymax", &P::Ymax},
                                       {"Ylog", &P::Ylog},
                                       {"YTitle", &P::YTitle, 100},
                                       {"ShowFitted", &P::ShowFitted}});
  }
};
MacroResult GraphPropertiesCommand(MacroCall& call, const GraphPropertiesParams& p);

struct AddDataCurveParams {
  std::optional<int> GraphNo, DatasetNo, nColor, ShowLine, ShowSymbol, ShowError, nSymbolSize, nSymbolShape, SymbolOpen;
  std::optional<double> Scale, Shift;
  static constexpr auto Describe() {
    using P = AddDataCurveParams;
    return std::to_array<ParamRow<P>>({{"GraphNo", &P::GraphNo},
                                       {"DatasetNo", &P::DatasetNo},
                                       {"nColor", &P::nColor},
                                       {"ShowLine", &P::ShowLine},
                                       {"ShowSymbol", &P::ShowSymbol},
                                       {"ShowError", &P::ShowError},
                                       {"nSymbolSize", &P::nSymbolSize},
                                       {"nSymbolShape", &P::nSymbolShape},
                                       {"SymbolOpen", &P::SymbolOpen},
                                       {"Scale", &P::Scale},
                                       {"Shift", &P::Shift}});
  }
};
MacroResult AddDataCurveCommand(MacroCall& call, const AddDataCurveParams& p);

struct AddModelCurveParams {
  std::optional<int> GraphNo, ModelNo, nColor;
  std::optional<double> Scale, Shift;
  std::optional<std::string> Quantity;
  static constexpr auto Describe() {
    using P = AddModelCurveParams;
    return std::to_array<ParamRow<P>>({{"GraphNo", &P::GraphNo},
                                       {"ModelNo", &P::ModelNo},
                                       {"Quantity", &P::Quantity, 10},
                                       {"nColor", &P::nColor},
                                       {"Scale", &P::Scale},
                                       {"Shift", &P::Shift}});
  }
};
MacroResult AddModelCurveCommand(MacroCall& call, const AddModelCurveParams& p);
MacroResult AddMultiCurveCommand(MacroCall& call, const AddModelCurveParams& p);

struct AddChiSqCurveParams {
  std::optional<int> GraphNo, DatasetNo, ModelNo, nColor;
  std::optional<double> Scale, Shift;
  static constexpr auto Describe() {
    using P = AddChiSqCurveParams;
    return std::to_array<ParamRow<P>>({{"GraphNo", &P::GraphNo},
                                       {"DatasetNo", &P::DatasetNo},
                                       {"ModelNo", &P::ModelNo},
                                       {"nColor", &P::nColor},
                                       {"Scale", &P::Scale},
                                       {"Shift", &P::Shift}});
  }
};
MacroResult AddChiSqCurveCommand(MacroCall& call, const AddChiSqCurveParams& p);

struct AddFreqCurveParams {
  std::optional<int> GraphNo, ModelNo, nColor;
  static constexpr auto Describe() {
    using P = AddFreqCurveParams;
    return std::to_array<ParamRow<P>>({{"GraphNo", &P::GraphNo}, {"ModelNo", &P::ModelNo}, {"nColor", &P::nColor}});
  }
};
MacroResult AddFreqCurveCommand(MacroCall& call, const AddFreqCurveParams& p);

struct DeleteDataCurveParams {
  std::optional<int> GraphNo, DatasetNo;
  static constexpr auto Describe() {
    using P = DeleteDataCurveParams;
    return std::to_array<ParamRow<P>>({{"GraphNo", &P::GraphNo}, {"DatasetNo", &P::DatasetNo}});
  }
};
MacroResult DeleteDataCurveCommand(MacroCall& call, const DeleteDataCurveParams& p);

struct DeleteModelCurveParams {
  std::optional<int> GraphNo, ModelNo;
  std::optional<std::string> Quantity;
  static constexpr auto Describe() {
    using P = DeleteModelCurveParams;
    return std::to_array<ParamRow<P>>(
        {{"GraphNo", &P::GraphNo}, {"ModelNo", &P::ModelNo}, {"Quantity", &P::Quantity, 10}});
  }
};
MacroResult DeleteModelCurveCommand(MacroCall& call, const DeleteModelCurveParams& p);

struct ExportGraphParams {
  std::optional<int> GraphNo;
  std::optional<std::string> File;
  static constexpr auto Describe() {
    using P = ExportGraphParams;
    return std::to_array<ParamRow<P>>({{"GraphNo", &P::GraphNo}, {"File", &P::File, 200}});
  }
};
MacroResult ExportGraphCommand(MacroCall& call, const ExportGraphParams& p);

struct DrawGraphParams {
  std::optional<int> GraphNo, Width, Height;
  std::optional<std::string> File;
  static constexpr auto Describe() {
    using P = DrawGraphParams;
    return std::to_array<ParamRow<P>>(
        {{"GraphNo", &P::GraphNo}, {"File", &P::File, 200}, {"Width", &P::Width}, {"Height", &P::Height}});
  }
};
MacroResult DrawGraphCommand(MacroCall& call, const DrawGraphParams& p);

struct GraphNoParams {
  std::optional<int> GraphNo;
  static constexpr auto Describe() {
    return std::to_array<ParamRow<GraphNoParams>>({{"GraphNo", &GraphNoParams::GraphNo}});
  }
};
MacroResult CloseGraphCommand(MacroCall& call, const GraphNoParams& p);

}  // namespace kalvex
