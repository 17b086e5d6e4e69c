#include "core/text.h"
#include "files/curve_file.h"
#include "graphs/curve_samples.h"
#include "graphs/graph_export.h"
#include "graphs/graph_table.h"
#include "graphs/painting.h"
#include "records/model_table.h"
#include "session/do.h"
#include "session/statement.h"

namespace kalvex {
namespace {

std::string GraphText(std::uint32_t number) { return "graph " + std::to_string(number); }

Operation OnGraph(const char* what, std::uint32_t number, std::string statement) {
  return {std::string(what) + ' ' + GraphText(number), std::move(statement), {}, kOnGraphs};
}

void EditAxis(const AxisEdit& edit, Axis& axis) {
  if (edit.min) axis.min = *edit.min;
  if (edit.max) axis.max = *edit.max;
  if (edit.log) axis.log = *edit.log;
  if (edit.title) axis.title = CutToBytes(*edit.title, kLongestTitle);
  if (edit.titleShown) axis.titleShown = *edit.titleShown;
}

// In a statement a title is a format, so that % is written as %%.
void AddAxis(Statement& statement, const char* letter, const AxisEdit& edit, const Axis& present) {
  const std::string name = letter;
  statement.Real(name + "min", edit.min).Real(name + "max", edit.max).Flag(name + "log", edit.log);
  statement.RefuseIf(edit.titleShown && *edit.titleShown != present.titleShown);
  if (!edit.title) return;
  std::string format;
  for (const char c : CutToBytes(*edit.title, kLongestTitle)) {
    if (c == '%') format += '%';
    format += c;
  }
  statement.Text(name + "Title", format, kLongestTitle + 1);
}

const char* QuantityNameOf(Quantity quantity) { return NamesOf(quantity).shortName; }

bool HasDataset(CurveKind kind) { return kind == CurveKind::kData || kind == CurveKind::kChiSq; }

// The curve that the statement of a curve makes, as far as dataset and model exist.
std::optional<Curve> CurveOfStatement(const Curve& curve, const DatasetTable& datasets, const ParamTables& params) {
  const Dataset* const dataset = curve.datasetId != 0 ? GetDatasetById(datasets, curve.datasetId) : nullptr;
  const Model* const model = GetModelByNumber(params, curve.modelId);
  if ((HasDataset(curve.kind) && !dataset) || (curve.kind != CurveKind::kData && !model)) return std::nullopt;
  Curve made;
  switch (curve.kind) {
    case CurveKind::kData:
      made = DataCurve(*dataset);
      made.ShowLine = curve.ShowLine;
      made.ShowSymbol = curve.ShowSymbol;
      made.ShowError = curve.ShowError;
      made.nSymbolSize = curve.nSymbolSize;
      made.nSymbolShape = curve.nSymbolShape;
      made.SymbolOpen = curve.SymbolOpen;
      break;
    case CurveKind::kModel:
      made = ModelCurve(*model, curve.quantity);
      break;
    case CurveKind::kChiSq:
      made = ChiSqCurve(*dataset, *model);
      break;
    case CurveKind::kMulti:
      made = MultiCurve(*model, curve.quantity);
      break;
    case CurveKind::kFreq:
      made = FreqCurve(*model);
      break;
    case CurveKind::kReader:
      return std::nullopt;
  }
  made.nColor = curve.nColor;
  made.colorIndex = curve.colorIndex;  // the graph sets it
  if (curve.kind == CurveKind::kFreq) return made;
  made.Scale = curve.Scale;
  made.Shift = curve.Shift;
  return made;
}

std::string CurveStatement(std::uint32_t graph, const Curve& curve, const DatasetTable& datasets,
                           const ParamTables& params) {
  const std::optional<Curve> made = CurveOfStatement(curve, datasets, params);
  if (!made || !LooksTheSame(*made, curve)) return {};
  static constexpr auto kCommands = FullTable<CurveKind, const char*>(
      {"AddDataCurve", "AddModelCurve", "AddChiSqCurve", "AddMultiCurve", "AddFreqCurve"});
  Statement statement(kCommands[curve.kind]);
  statement.Int("GraphNo", graph);
  if (HasDataset(curve.kind)) statement.Int("DatasetNo", SlotOfDataset(datasets, curve.datasetId));
  if (curve.kind != CurveKind::kData) statement.Int("ModelNo", curve.modelId);
  if (curve.kind == CurveKind::kModel || curve.kind == CurveKind::kMulti) {
    statement.Text("Quantity", QuantityNameOf(curve.quantity));
  }
  statement.Int("nColor", curve.nColor);
  if (curve.kind == CurveKind::kFreq) return statement.Done();
  if (curve.kind == CurveKind::kData) {
    statement.Int("ShowLine", curve.ShowLine).Int("ShowSymbol", curve.ShowSymbol).Int("ShowError", curve.ShowError);
    statement.Int("nSymbolSize", curve.nSymbolSize).Int("nSymbolShape", curve.nSymbolShape);
    statement.Int("SymbolOpen", curve.SymbolOpen);
  }
  return statement.Real("Scale", curve.Scale).Real("Shift", curve.Shift).Done();
}

}  // namespace

Result<std::uint32_t> Session::NewGraph(std::optional<int> width, std::optional<int> height) {
  Statement statement("NewGraph");
  if (width || height) statement.Int("XPos", 0).Int("YPos", 0).Int("Width", width).Int("Height", height);
  return Do({"new graph", statement.Done(), {}, kOnGraphs}, Pieces().Graphs(), [&]() -> Result<std::uint32_t> {
    Graph* const graph = CreateGraph(tables_.graphs);
    if (!graph) return {StatusCode::kFull, "the limit of " + std::to_string(kMaxGraphs) + " graphs is reached"};
    if (width || height) {
      graph->Width = width.value_or(graph->Width);
      graph->Height = height.value_or(graph->Height);
      RebuildGraph(*graph);
    }
    Tell(ChangeKind::kGraphCreated, graph->number);
    return graph->number;
  });
}

template <class Act>
Status Session::ChangeGraph(std::uint32_t number, Operation operation, Act change) {
  Graph* const graph = GraphOf(number);
  if (!graph) return NoSuchGraph(number);
  return Do(std::move(operation), Pieces().Graphs(), [&] {
    Status status = change(*graph);
    if (status.Ok()) Tell(ChangeKind::kGraphChanged, number);
    return status;
  });
}

Status Session::CloseGraph(std::uint32_t number) {
  return ChangeGraph(number, OnGraph("close", number, Statement("CloseGraph").Int("GraphNo", number).Done()),
                     [&](Graph& graph) {
                       kalvex::CloseGraph(graph);
                       Tell(ChangeKind::kGraphClosed, number);
                       return Status();
                     });
}

Status Session::ResizeGraph(std::uint32_t number, std::optional<int> width, std::optional<int> height) {
  Operation operation = OnGraph("resize", number, {});
  operation.merge = operation.label;
  return ChangeGraph(number, std::move(operation), [&](Graph& graph) {
    const int w = width.value_or(graph.Width), h = height.value_or(graph.Height);
    graph.Width = w;
    graph.Height = h;
    RebuildGraph(graph);
    return Status();
  });
}

Status Session::EditGraph(std::uint32_t number, const GraphEdit& edit) {
  const Graph* const present = FindGraph(number);
  if (!present) return NoSuchGraph(number);
  Statement statement("GraphProperties");
  statement.Int("GraphNo", number);
  AddAxis(statement, "X", edit.x, present->X);
  AddAxis(statement, "Y", edit.y, present->Y);
  statement.Flag("ShowFitted", edit.showFitted);
  return ChangeGraph(number, OnGraph("axes of", number, statement.Done()), [&](Graph& graph) {
    EditAxis(edit.x, graph.X);
    EditAxis(edit.y, graph.Y);
    if (edit.showFitted) graph.ShowFitted = *edit.showFitted;
    ApplyAxes(graph);
    return Status();
  });
}

Status Session::AddCurve(std::uint32_t number, const Curve& curve) {
  if (curve.kind == CurveKind::kReader) return {StatusCode::kBadArgument, "the crosshair is not a curve of a graph"};
  if (curve.kind == CurveKind::kMulti && !HasRowContributions(curve.quantity)) {
    return {StatusCode::kBadArgument, "a MULTI curve can show E1, E2, S1 and S2 only"};
  }
  return ChangeGraph(number,
                     OnGraph("curve in", number, CurveStatement(number, curve, tables_.datasets, tables_.params)),
                     [&](Graph& graph) { return kalvex::AddCurve(graph, curve), Status(); });
}

Status Session::RemoveCurve(std::uint32_t number, CurveKind kind, std::uint32_t of, std::optional<Quantity> quantity) {
  const bool data = kind == CurveKind::kData;
  Statement statement(data ? "DeleteDataCurve" : "DeleteModelCurve");
  statement.Int("GraphNo", number);
  if (data) {
    const int slot = of != 0 ? SlotOfDataset(tables_.datasets, of) : 0;
    statement.Int("DatasetNo", slot).RefuseIf(slot == 0 || quantity);
  } else {
    statement.Int("ModelNo", of).RefuseIf(kind != CurveKind::kModel || !quantity);
    if (quantity) statement.Text("Quantity", QuantityNameOf(*quantity));
  }
  return ChangeGraph(number, OnGraph("remove a curve from", number, statement.Done()), [&](Graph& graph) {
    if (kalvex::RemoveCurve(graph, kind, of, quantity)) return Status();
    return Status(StatusCode::kNothingToDo, GraphText(number) + " has no such curve");
  });
}

Status Session::SetCurves(std::uint32_t number, std::vector<Curve> curves) {
  return ChangeGraph(number, OnGraph("curves of", number, {}), [&](Graph& graph) {
    graph.curves = std::move(curves);
    RebuildGraph(graph);
    return Status();
  });
}

Status Session::SetAutoScreenUpdate(bool on) {
  return Do({on ? "auto update on" : "auto update off", {}, {}, kOnSettings}, {}, [&] {
    tables_.autoScreenUpdate = on;
    Tell(ChangeKind::kSettings);
    return Status();
  });
}

Status Session::SetGraphReader(bool on) {
  return Do({on ? "reader on" : "reader off", {}, {}, kOnSettings}, {}, [&] {
    tables_.graphReader = on;
    TellGraphs(GraphEvent::kReaderToggled, -1);
    Tell(ChangeKind::kSettings);
    return Status();
  });
}

Result<int> Session::ExportGraph(std::uint32_t number, const std::string& file) {
  const Graph* const graph = GraphOf(number);
  if (!graph) return NoSuchGraph(number);
  Operation operation =
      OnGraph("export", number, Statement("ExportGraph").Int("GraphNo", number).Text("File", file).Done());
  return DoOutside(std::move(operation), [&] { return kalvex::ExportGraph(*graph, eval_, file); });
}

Status Session::DrawGraph(std::uint32_t number, PictureFormat format, int width, int height, const std::string& file) {
  const Graph* const graph = GraphOf(number);
  if (!graph) return NoSuchGraph(number);
  if (!IsPictureSize(width, height)) {
    return {StatusCode::kBadArgument, "a picture has 1 to 16000 pixels along each side"};
  }
  auto statement = Statement("DrawGraph").Int("GraphNo", number).Text("File", file);
  statement.Int("Width", width).Int("Height", height).RefuseIf(PictureFormatOf(file) != format);
  return DoOutside(OnGraph("draw", number, statement.Done()),
                   [&] { return SaveGraphPicture(*graph, eval_, format, width, height, file); });
}

Status Session::ExportModelCurve(std::optional<std::uint32_t> number, const CurveExport& what,
                                 const std::string& file) {
  if (what.points < 1) return {StatusCode::kBadArgument, "XPts should be at least 1"};
  if (!(what.xMin < what.xMax)) return {StatusCode::kBadArgument, "XMin should be below XMax"};
  if (what.grid == kLogarithmicGrid && !(what.xMin > 0)) {
    return {StatusCode::kBadArgument, "a logarithmic grid needs XMin above 0"};
  }
  Statement statement("ExportModelCurve");
  statement.Text("File", file).Int("ModelNo", number.value_or(0));
  statement.Text("Quantity", what.quantity ? QuantityNameOf(*what.quantity) : "");
  statement.Real("XMin", what.xMin).Real("XMax", what.xMax).Int("XPts", what.points);
  statement.Int("XMethod", what.onMesh ? kXOfMesh : kXOfGrid).Int("XGrid", what.grid).Int("Deriv", what.derivatives);
  return DoOutside({"export a curve", statement.Done(), {}, kOnFiles}, [&] {
    return kalvex::ExportModelCurve(tables_.params, eval_, number ? ModelOf(*number) : nullptr, what, file);
  });
}

// ---- painting

void Session::PaintGraph(std::uint32_t number, Canvas& canvas) {
  if (Graph* const graph = GraphOf(number)) kalvex::PaintGraph(*graph, eval_, canvas);
}

void Session::RepaintGraph(std::uint32_t number, Canvas& canvas) {
  if (Graph* const graph = GraphOf(number)) kalvex::RepaintGraph(*graph, eval_, canvas);
}

void Session::ForgetPicture(std::uint32_t number) {
  if (Graph* const graph = GraphOf(number)) graph->repaint = Repaint::kEverything;
}

void Session::MoveGraphReader(std::uint32_t number, int x, int y) {
  Graph* const graph = GraphOf(number);
  if (!graph) return;
  if (tables_.graphReader && IsInFrame(*graph, x, y)) {
    MoveReader(*graph, x, y);
  } else {
    HideReader(*graph);
  }
}

void Session::HideGraphReader(std::uint32_t number) {
  if (Graph* const graph = GraphOf(number)) HideReader(*graph);
}

}  // namespace kalvex
