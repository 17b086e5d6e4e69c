#include "macro/graph_commands.h"

#include "core/text.h"
#include "datasets/quantity.h"
#include "graphs/graph_picture.h"
#include "graphs/graph_table.h"
#include "macro/named_model.h"
#include "windows/desk.h"

namespace kalvex {
namespace {

// The graph with the number GraphNo. If GraphNo is missing or the graph does not exist, sets the verbose text and
// returns null.
const Graph* NeededGraph(MacroCall& call, std::optional<int> graphNo) {
  if (!graphNo) {
    call.Missing("GraphNo");
    return nullptr;
  }
  const Graph* const graph = call.session.FindGraph(*graphNo);
  if (!graph) call.Nothing(NoSuchGraph(*graphNo).Text());
  return graph;
}

// The same for DatasetNo and a loaded dataset.
const Dataset* NeededDataset(MacroCall& call, std::optional<int> datasetNo) {
  if (!datasetNo) {
    call.Missing("DatasetNo");
    return nullptr;
  }
  const Dataset* const dataset = call.session.FindDataset(*datasetNo);
  if (!dataset) call.Nothing(NotLoaded(*datasetNo).Text());
  return dataset;
}

std::optional<Quantity> NeededQuantity(MacroCall& call, const std::optional<std::string>& name) {
  if (!name) {
    call.Missing("Quantity");
    return std::nullopt;
  }
  const auto quantity = QuantityOfShortName(*name);
  if (!quantity) call.Nothing("'" + *name + "' is not a Quantity");
  return quantity;
}

std::string GraphText(const Graph& graph) { return "graph " + std::to_string(graph.number); }

template <class P>
void SetLook(const P& p, Curve& curve) {
  SetIfGiven(curve.nColor, p.nColor);
  SetIfGiven(curve.Scale, p.Scale);
  SetIfGiven(curve.Shift, p.Shift);
}

// The end of each command that adds a curve.
MacroResult Add(MacroCall& call, const Graph& graph, const Curve& curve) {
  const Session& session = call.session;
  if (const Status status = call.session.AddCurve(graph.number, curve); !status.Ok()) {
    return call.Nothing(status.Text());
  }
  const Curve& added = graph.curves.back();
  return call.Done(GraphText(graph) + ": " + CurveText(added, session.Datasets(), session.Params()) + ", " +
                   ColorOf(added).name);
}

MacroResult AddCurveOf(MacroCall& call, const AddModelCurveParams& p, Curve (*make)(const Model&, Quantity)) {
  const Graph* const graph = NeededGraph(call, p.GraphNo);
  const Model* const model = graph ? NeededModel(call, p.ModelNo) : nullptr;
  const auto quantity = model ? NeededQuantity(call, p.Quantity) : std::nullopt;
  if (!quantity) return MacroResult::kNext;
  Curve curve = make(*model, *quantity);
  SetLook(p, curve);
  return Add(call, *graph, curve);
}

MacroResult Remove(MacroCall& call, const Graph& graph, CurveKind kind, std::uint32_t of,
                   std::optional<Quantity> quantity) {
  const Status status = call.session.RemoveCurve(graph.number, kind, of, quantity);
  return call.Told(status, GraphText(graph) + " has " + std::to_string(graph.curves.size()) + " curves");
}

// A title is a format: %% becomes %. All other text stays as it is.
std::optional<std::string> TitleOf(const std::optional<std::string>& format) {
  if (!format) return std::nullopt;
  std::string title;
  for (std::size_t i = 0; i < format->size(); ++i) {
    title += (*format)[i];
    if (format->compare(i, 2, "%%") == 0) ++i;
  }
  return title;
}

std::string RangeText(const Axis& axis) {
  return TextG(axis.min) + " to " + TextG(axis.max) + (axis.log ? " (log)" : "");
}

std::string PlotText(const Graph& graph) {
  return GraphText(graph) + ": plot of " + std::to_string(graph.plotWidth) + " x " + std::to_string(graph.plotHeight) +
         " pixels";
}

}  // namespace

MacroResult NewGraphCommand(MacroCall& call, const NewGraphParams& p) {
  // A size is used only together with a position, as for every window.
  const bool placed = p.XPos && p.YPos;
  const auto number = placed ? call.session.NewGraph(p.Width, p.Height) : call.session.NewGraph();
  if (!number.Ok()) return call.Nothing(number.Text());
  PlaceIfGiven(p, call.desk.graphs[*number]);
  return call.Done(PlotText(*call.session.FindGraph(*number)));
}

MacroResult GraphPropertiesCommand(MacroCall& call, const GraphPropertiesParams& p) {
  const Graph* const graph = NeededGraph(call, p.GraphNo);
  if (!graph) return MacroResult::kNext;
  GraphEdit edit;
  edit.x = {.min = p.Xmin, .max = p.Xmax, .log = FlagOf(p.Xlog), .titleShown = {}, .title = TitleOf(p.XTitle)};
  edit.y = {.min = p.Ymin, .max = p.Ymax, .log = FlagOf(p.Ylog), .titleShown = {}, .title = TitleOf(p.YTitle)};
  edit.showFitted = FlagOf(p.ShowFitted);
  const Status status = call.session.EditGraph(graph->number, edit);
  return call.Told(status, PlotText(*graph) + ", X " + RangeText(graph->X) + ", Y " + RangeText(graph->Y));
}

MacroResult AddDataCurveCommand(MacroCall& call, const AddDataCurveParams& p) {
  const Graph* const graph = NeededGraph(call, p.GraphNo);
  const Dataset* const dataset = graph ? NeededDataset(call, p.DatasetNo) : nullptr;
  if (!dataset) return MacroResult::kNext;
  Curve curve = DataCurve(*dataset);
  SetLook(p, curve);
  SetFlagIfGiven(curve.ShowLine, p.ShowLine);
  SetFlagIfGiven(curve.ShowSymbol, p.ShowSymbol);
  SetFlagIfGiven(curve.ShowError, p.ShowError);
  SetIfGiven(curve.nSymbolSize, p.nSymbolSize);
  SetIfGiven(curve.nSymbolShape, p.nSymbolShape);
  SetFlagIfGiven(curve.SymbolOpen, p.SymbolOpen);
  Add(call, *graph, curve);
  if (!curve.ShowLine && !curve.ShowSymbol && !curve.ShowError) {
    call.said += "; the curve is invisible without ShowLine, ShowSymbol or ShowError";
  }
  return MacroResult::kNext;
}

MacroResult AddModelCurveCommand(MacroCall& call, const AddModelCurveParams& p) {
  return AddCurveOf(call, p, ModelCurve);
}

MacroResult AddMultiCurveCommand(MacroCall& call, const AddModelCurveParams& p) {
  return AddCurveOf(call, p, MultiCurve);
}

MacroResult AddChiSqCurveCommand(MacroCall& call, const AddChiSqCurveParams& p) {
  const Graph* const graph = NeededGraph(call, p.GraphNo);
  const Dataset* const dataset = graph ? NeededDataset(call, p.DatasetNo) : nullptr;
  const Model* const model = dataset ? NeededModel(call, p.ModelNo) : nullptr;
  if (!model) return MacroResult::kNext;
  Curve curve = ChiSqCurve(*dataset, *model);
  SetLook(p, curve);
  return Add(call, *graph, curve);
}

MacroResult AddFreqCurveCommand(MacroCall& call, const AddFreqCurveParams& p) {
  const Graph* const graph = NeededGraph(call, p.GraphNo);
  const Model* const model = graph ? NeededModel(call, p.ModelNo) : nullptr;
  if (!model) return MacroResult::kNext;
  Curve curve = FreqCurve(*model);
  SetIfGiven(curve.nColor, p.nColor);
  return Add(call, *graph, curve);
}

MacroResult DeleteDataCurveCommand(MacroCall& call, const DeleteDataCurveParams& p) {
  const Graph* const graph = NeededGraph(call, p.GraphNo);
  const Dataset* const dataset = graph ? NeededDataset(call, p.DatasetNo) : nullptr;
  if (!dataset) return MacroResult::kNext;
  return Remove(call, *graph, CurveKind::kData, dataset->id, {});
}

MacroResult DeleteModelCurveCommand(MacroCall& call, const DeleteModelCurveParams& p) {
  const Graph* const graph = NeededGraph(call, p.GraphNo);
  const Model* const model = graph ? NeededModel(call, p.ModelNo) : nullptr;
  const auto quantity = model ? NeededQuantity(call, p.Quantity) : std::nullopt;
  if (!quantity) return MacroResult::kNext;
  return Remove(call, *graph, CurveKind::kModel, model->number, *quantity);
}

MacroResult ExportGraphCommand(MacroCall& call, const ExportGraphParams& p) {
  const Graph* const graph = NeededGraph(call, p.GraphNo);
  if (!graph) return MacroResult::kNext;
  if (!p.File) return call.Missing("File");
  const auto curves = call.session.ExportGraph(graph->number, *p.File);
  if (!curves.Ok()) return call.Nothing(curves.Text());
  return call.Done(std::to_string(*curves) + " curves at " + std::to_string(graph->plotWidth) + " points written to '" +
                   *p.File + "'");
}

MacroResult DrawGraphCommand(MacroCall& call, const DrawGraphParams& p) {
  const Graph* const graph = NeededGraph(call, p.GraphNo);
  if (!graph) return MacroResult::kNext;
  if (!p.File) return call.Missing("File");
  const auto format = PictureFormatOf(*p.File);
  if (!format) return call.Nothing("'" + *p.File + "' does not end in .svg, .pdf or .png");
  const int width = p.Width.value_or(graph->Width), height = p.Height.value_or(graph->Height);
  return call.Told(call.session.DrawGraph(graph->number, *format, width, height, *p.File),
                   std::to_string(width) + " x " + std::to_string(height) + " pixels drawn to '" + *p.File + "'");
}

MacroResult CloseGraphCommand(MacroCall& call, const GraphNoParams& p) {
  const Graph* const graph = NeededGraph(call, p.GraphNo);
  if (!graph) return MacroResult::kNext;
  const std::string closed = GraphText(*graph) + " closed";
  return call.Told(call.session.CloseGraph(graph->number), closed);
}

}  // namespace kalvex
