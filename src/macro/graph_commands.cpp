#include "core/text.h"
#include "datasets/quantity.h"
#include "graphs/curve_samples.h"
#include "graphs/graph_export.h"
#include "graphs/graph_picture.h"
#include "graphs/graph_table.h"
#include "macro/handlers.h"
#include "macro/if_given.h"
#include "macro/named_model.h"
#include "program/program.h"

namespace kalvex {
namespace {

// Null, after saying what is missing, unless GraphNo names a graph.
Graph* NeededGraph(MacroCall& call) {
  const auto number = call.Int("GraphNo");
  if (!number) {
    call.Nothing("GraphNo is missing");
    return nullptr;
  }
  Graph* const graph =
      *number > 0 ? GetGraphByNumber(call.program.graphs, static_cast<std::uint32_t>(*number)) : nullptr;
  if (!graph) call.Nothing("graph " + std::to_string(*number) + " does not exist");
  return graph;
}

// The same for DatasetNo and a loaded dataset.
const Dataset* NeededDataset(MacroCall& call) {
  const auto number = call.Int("DatasetNo");
  if (!number) {
    call.Nothing("DatasetNo is missing");
    return nullptr;
  }
  const Dataset* const dataset = DatasetInSlot(call.program.datasets, *number);
  if (dataset && dataset->id != 0) return dataset;
  call.Nothing("dataset " + std::to_string(*number) + " is not loaded");
  return nullptr;
}

std::optional<int> NeededQuantity(MacroCall& call) {
  const auto name = call.Text("Quantity");
  if (!name) {
    call.Nothing("Quantity is missing");
    return std::nullopt;
  }
  const auto quantity = QuantityOfShortName(*name);
  if (!quantity) call.Nothing("'" + *name + "' is no Quantity");
  return quantity;
}

std::string GraphText(const Graph& graph) { return "graph " + std::to_string(graph.number); }

void SetLook(const MacroCall& call, Curve& curve) {
  SetIfGiven(curve.nColor, call.Int("nColor"));
  SetIfGiven(curve.Scale, call.Real("Scale"));
  SetIfGiven(curve.Shift, call.Real("Shift"));
}

// Ends a command that adds a curve.
MacroResult Add(MacroCall& call, Graph& graph, const Curve& curve) {
  AddCurve(graph, curve);
  const Curve& added = graph.curves.back();
  return call.Done(GraphText(graph) + ": " + CurveText(added, call.program.datasets, call.program.params) + ", " +
                   kCurveColors[static_cast<std::size_t>(added.colorIndex)].name);
}

MacroResult Removed(MacroCall& call, Graph& graph, bool removed) {
  return removed ? call.Done(GraphText(graph) + " has " + std::to_string(graph.curves.size()) + " curves")
                 : call.Nothing(GraphText(graph) + " has no such curve");
}

// A title is a format: %% stands for %. Other marks have nothing to stand for and stay.
std::string TitleOf(const std::string& format) {
  constexpr std::size_t kLongest = 99;
  std::string title;
  for (std::size_t i = 0; i < format.size(); ++i) {
    title += format[i];
    if (format[i] == '%' && i + 1 < format.size() && format[i + 1] == '%') ++i;
  }
  return std::string(CutToBytes(title, kLongest));
}

void SetTitleIfGiven(const MacroCall& call, const char* name, std::string& title) {
  if (const auto format = call.Text(name)) title = TitleOf(*format);
}

std::string RangeText(const Axis& axis) {
  return TextG(axis.min) + " to " + TextG(axis.max) + (axis.log ? " (log)" : "");
}

std::string PlotText(const Graph& graph) {
  return GraphText(graph) + ": plot of " + std::to_string(graph.plotWidth) + " x " + std::to_string(graph.plotHeight) +
         " pixels";
}

}  // namespace

MacroResult NewGraphCommand(MacroCall& call) {
  Graph* const graph = CreateGraph(call.program.graphs);
  if (!graph) return call.Nothing("there are 100 graphs already");
  const auto x = call.Int("XPos"), y = call.Int("YPos");
  if (x && y) {
    graph->XPos = *x;
    graph->YPos = *y;
    SetIfGiven(graph->Width, call.Int("Width"));
    SetIfGiven(graph->Height, call.Int("Height"));
    RebuildGraph(*graph);
  }
  return call.Done(PlotText(*graph));
}

MacroResult GraphPropertiesCommand(MacroCall& call) {
  Graph* const graph = NeededGraph(call);
  if (!graph) return MacroResult::kNext;
  SetIfGiven(graph->X.min, call.Real("Xmin"));
  SetIfGiven(graph->X.max, call.Real("Xmax"));
  SetFlagIfGiven(graph->X.log, call.Int("Xlog"));
  SetTitleIfGiven(call, "XTitle", graph->X.title);
  SetIfGiven(graph->Y.min, call.Real("Ymin"));
  SetIfGiven(graph->Y.max, call.Real("Ymax"));
  SetFlagIfGiven(graph->Y.log, call.Int("Ylog"));
  SetTitleIfGiven(call, "YTitle", graph->Y.title);
  SetFlagIfGiven(graph->ShowFitted, call.Int("ShowFitted"));
  ApplyAxes(*graph);
  return call.Done(PlotText(*graph) + ", X " + RangeText(graph->X) + ", Y " + RangeText(graph->Y));
}

MacroResult AddDataCurveCommand(MacroCall& call) {
  Graph* const graph = NeededGraph(call);
  const Dataset* const dataset = graph ? NeededDataset(call) : nullptr;
  if (!dataset) return MacroResult::kNext;
  Curve curve = DataCurve(*dataset);
  SetLook(call, curve);
  SetFlagIfGiven(curve.ShowLine, call.Int("ShowLine"));
  SetFlagIfGiven(curve.ShowSymbol, call.Int("ShowSymbol"));
  SetFlagIfGiven(curve.ShowError, call.Int("ShowError"));
  SetIfGiven(curve.nSymbolSize, call.Int("nSymbolSize"));
  SetIfGiven(curve.nSymbolShape, call.Int("nSymbolShape"));
  SetFlagIfGiven(curve.SymbolOpen, call.Int("SymbolOpen"));
  Add(call, *graph, curve);
  if (!curve.ShowLine && !curve.ShowSymbol && !curve.ShowError) {
    call.said += "; nothing of it is drawn without ShowLine, ShowSymbol or ShowError";
  }
  return MacroResult::kNext;
}

MacroResult AddModelCurveCommand(MacroCall& call) {
  Graph* const graph = NeededGraph(call);
  const Model* const model = graph ? NeededModel(call) : nullptr;
  const auto quantity = model ? NeededQuantity(call) : std::nullopt;
  if (!quantity) return MacroResult::kNext;
  Curve curve = ModelCurve(*model, *quantity);
  SetLook(call, curve);
  return Add(call, *graph, curve);
}

MacroResult AddChiSqCurveCommand(MacroCall& call) {
  Graph* const graph = NeededGraph(call);
  const Dataset* const dataset = graph ? NeededDataset(call) : nullptr;
  const Model* const model = dataset ? NeededModel(call) : nullptr;
  if (!model) return MacroResult::kNext;
  Curve curve = ChiSqCurve(*dataset, *model);
  SetLook(call, curve);
  return Add(call, *graph, curve);
}

MacroResult AddMultiCurveCommand(MacroCall& call) {
  Graph* const graph = NeededGraph(call);
  const Model* const model = graph ? NeededModel(call) : nullptr;
  const auto quantity = model ? NeededQuantity(call) : std::nullopt;
  if (!quantity) return MacroResult::kNext;
  if (!HasRowContributions(*quantity)) return call.Nothing("rows contribute to E1, E2, S1 and S2 only");
  Curve curve = MultiCurve(*model, *quantity);
  SetLook(call, curve);
  return Add(call, *graph, curve);
}

MacroResult AddFreqCurveCommand(MacroCall& call) {
  Graph* const graph = NeededGraph(call);
  const Model* const model = graph ? NeededModel(call) : nullptr;
  if (!model) return MacroResult::kNext;
  Curve curve = FreqCurve(*model);
  SetIfGiven(curve.nColor, call.Int("nColor"));
  return Add(call, *graph, curve);
}

MacroResult DeleteDataCurveCommand(MacroCall& call) {
  Graph* const graph = NeededGraph(call);
  const Dataset* const dataset = graph ? NeededDataset(call) : nullptr;
  if (!dataset) return MacroResult::kNext;
  return Removed(call, *graph, RemoveCurve(*graph, CurveKind::kData, dataset->id, -1));
}

MacroResult DeleteModelCurveCommand(MacroCall& call) {
  Graph* const graph = NeededGraph(call);
  const Model* const model = graph ? NeededModel(call) : nullptr;
  const auto quantity = model ? NeededQuantity(call) : std::nullopt;
  if (!quantity) return MacroResult::kNext;
  return Removed(call, *graph, RemoveCurve(*graph, CurveKind::kModel, model->number, *quantity));
}

MacroResult ExportGraphCommand(MacroCall& call) {
  const Graph* const graph = NeededGraph(call);
  if (!graph) return MacroResult::kNext;
  const auto file = call.Text("File");
  if (!file) return call.Nothing("File is missing");
  const int curves = ExportGraph(*graph, call.program.eval, *file);
  if (curves < 0) return call.Nothing("'" + *file + "' cannot be written");
  return call.Done(std::to_string(curves) + " curves at " + std::to_string(graph->plotWidth) + " points written to '" +
                   *file + "'");
}

MacroResult DrawGraphCommand(MacroCall& call) {
  const Graph* const graph = NeededGraph(call);
  if (!graph) return MacroResult::kNext;
  const auto file = call.Text("File");
  if (!file) return call.Nothing("File is missing");
  const auto format = PictureFormatOf(*file);
  if (!format) return call.Nothing("the name of a picture ends in .svg, .pdf or .png, not as '" + *file + "'");
  const int width = call.Int("Width").value_or(graph->Width), height = call.Int("Height").value_or(graph->Height);
  if (!IsPictureSize(width, height)) return call.Nothing("a picture has 1 to 16000 pixels along each side");
  if (SaveGraphPicture(*graph, call.program.eval, *format, width, height, *file) != 0) {
    return call.Nothing("'" + *file + "' cannot be written");
  }
  return call.Done(std::to_string(width) + " x " + std::to_string(height) + " pixels drawn to '" + *file + "'");
}

MacroResult CloseGraphCommand(MacroCall& call) {
  Graph* const graph = NeededGraph(call);
  if (!graph) return MacroResult::kNext;
  const std::string closed = GraphText(*graph) + " closed";
  CloseGraph(*graph);
  return call.Done(closed);
}

}  // namespace kalvex
