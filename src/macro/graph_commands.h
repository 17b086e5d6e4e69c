// Commands on graphs and their curves.
#pragma once

#include "macro/shared_params.h"

namespace kalvex {

struct NewGraphParams {
  std::optional<int> XPos, YPos, Width, Height;
  static constexpr auto Describe() {
    using P = NewGraphParams;
    return std::to_array<ParamRow<P>>(
        {Row<&P::XPos>("XPos"), Row<&P::YPos>("YPos"), Row<&P::Width>("Width"), Row<&P::Height>("Height")});
  }
};
MacroResult NewGraphCommand(MacroCall& call, const NewGraphParams& p);

struct GraphPropertiesParams {
  std::optional<int> GraphNo, Xlog, Ylog, ShowFitted;
  std::optional<double> Xmin, Xmax, Ymin, Ymax;
  std::optional<std::string> XTitle, YTitle;
  static constexpr auto Describe() {
    using P = GraphPropertiesParams;
    return std::to_array({Row<&P::GraphNo>("GraphNo"), Row<&P::Xmin>("Xmin"), Row<&P::Xmax>("Xmax"),
                          Row<&P::Xlog>("Xlog"), Row<&P::XTitle>("XTitle", 100), Row<&P::Ymin>("Ymin"),
                          Row<&P::Ymax>("Ymax"), Row<&P::Ylog>("Ylog"), Row<&P::YTitle>("YTitle", 100),
                          Row<&P::ShowFitted>("ShowFitted")});
  }
};
MacroResult GraphPropertiesCommand(MacroCall& call, const GraphPropertiesParams& p);

struct AddDataCurveParams {
  std::optional<int> GraphNo, DatasetNo, nColor, ShowLine, ShowSymbol, ShowError, nSymbolSize, nSymbolShape, SymbolOpen;
  std::optional<double> Scale, Shift;
  static constexpr auto Describe() {
    using P = AddDataCurveParams;
    return std::to_array({Row<&P::GraphNo>("GraphNo"), Row<&P::DatasetNo>("DatasetNo"), Row<&P::nColor>("nColor"),
                          Row<&P::ShowLine>("ShowLine"), Row<&P::ShowSymbol>("ShowSymbol"),
                          Row<&P::ShowError>("ShowError"), Row<&P::nSymbolSize>("nSymbolSize"),
                          Row<&P::nSymbolShape>("nSymbolShape"), Row<&P::SymbolOpen>("SymbolOpen"),
                          Row<&P::Scale>("Scale"), Row<&P::Shift>("Shift")});
  }
};
MacroResult AddDataCurveCommand(MacroCall& call, const AddDataCurveParams& p);

struct AddModelCurveParams {
  std::optional<int> GraphNo, ModelNo, nColor;
  std::optional<double> Scale, Shift;
  std::optional<std::string> Quantity;
  static constexpr auto Describe() {
    using P = AddModelCurveParams;
    return std::to_array({Row<&P::GraphNo>("GraphNo"), Row<&P::ModelNo>("ModelNo"), Row<&P::Quantity>("Quantity", 10),
                          Row<&P::nColor>("nColor"), Row<&P::Scale>("Scale"), Row<&P::Shift>("Shift")});
  }
};
MacroResult AddModelCurveCommand(MacroCall& call, const AddModelCurveParams& p);
MacroResult AddMultiCurveCommand(MacroCall& call, const AddModelCurveParams& p);

struct AddChiSqCurveParams {
  std::optional<int> GraphNo, DatasetNo, ModelNo, nColor;
  std::optional<double> Scale, Shift;
  static constexpr auto Describe() {
    using P = AddChiSqCurveParams;
    return std::to_array({Row<&P::GraphNo>("GraphNo"), Row<&P::DatasetNo>("DatasetNo"), Row<&P::ModelNo>("ModelNo"),
                          Row<&P::nColor>("nColor"), Row<&P::Scale>("Scale"), Row<&P::Shift>("Shift")});
  }
};
MacroResult AddChiSqCurveCommand(MacroCall& call, const AddChiSqCurveParams& p);

struct AddFreqCurveParams {
  std::optional<int> GraphNo, ModelNo, nColor;
  static constexpr auto Describe() {
    using P = AddFreqCurveParams;
    return std::to_array({Row<&P::GraphNo>("GraphNo"), Row<&P::ModelNo>("ModelNo"), Row<&P::nColor>("nColor")});
  }
};
MacroResult AddFreqCurveCommand(MacroCall& call, const AddFreqCurveParams& p);

struct DeleteDataCurveParams {
  std::optional<int> GraphNo, DatasetNo;
  static constexpr auto Describe() {
    using P = DeleteDataCurveParams;
    return std::to_array({Row<&P::GraphNo>("GraphNo"), Row<&P::DatasetNo>("DatasetNo")});
  }
};
MacroResult DeleteDataCurveCommand(MacroCall& call, const DeleteDataCurveParams& p);

struct DeleteModelCurveParams {
  std::optional<int> GraphNo, ModelNo;
  std::optional<std::string> Quantity;
  static constexpr auto Describe() {
    using P = DeleteModelCurveParams;
    return std::to_array<ParamRow<P>>(
        {Row<&P::GraphNo>("GraphNo"), Row<&P::ModelNo>("ModelNo"), Row<&P::Quantity>("Quantity", 10)});
  }
};
MacroResult DeleteModelCurveCommand(MacroCall& call, const DeleteModelCurveParams& p);

struct ExportGraphParams {
  std::optional<int> GraphNo;
  std::optional<std::string> File;
  static constexpr auto Describe() {
    using P = ExportGraphParams;
    return std::to_array({Row<&P::GraphNo>("GraphNo"), Row<&P::File>("File", 200)});
  }
};
MacroResult ExportGraphCommand(MacroCall& call, const ExportGraphParams& p);

struct DrawGraphParams {
  std::optional<int> GraphNo, Width, Height;
  std::optional<std::string> File;
  static constexpr auto Describe() {
    using P = DrawGraphParams;
    return std::to_array<ParamRow<P>>(
        {Row<&P::GraphNo>("GraphNo"), Row<&P::File>("File", 200), Row<&P::Width>("Width"), Row<&P::Height>("Height")});
  }
};
MacroResult DrawGraphCommand(MacroCall& call, const DrawGraphParams& p);

struct GraphNoParams {
  std::optional<int> GraphNo;
  static constexpr auto Describe() { return std::to_array({Row<&GraphNoParams::GraphNo>("GraphNo")}); }
};
MacroResult CloseGraphCommand(MacroCall& call, const GraphNoParams& p);

}  // namespace kalvex
