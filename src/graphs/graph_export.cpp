#include "graphs/graph_export.h"

#include "core/files.h"
#include "core/text.h"
#include "datasets/quantity.h"
#include "graphs/curve_samples.h"
#include "graphs/painting.h"
#include "records/model_table.h"

namespace kalvex {

namespace {

// One line for each column of pixels.
std::string TextOf(const Graph& graph, const std::vector<std::vector<double>>& columns) {
  std::string text;
  for (std::size_t i = 0; i < graph.columnX.size(); ++i) {
    AppendG(text, graph.columnX[i]);
    for (const std::vector<double>& column : columns) {
      text += ' ';
      AppendG(text, column[i]);
    }
    text += '\n';
  }
  return text;
}

}  // namespace

Result<int> ExportGraph(const Graph& graph, EvalContext& ctx, const std::string& path) {
  WholeFileWriter file(path);
  if (!file.IsOpen()) return CannotWrite(path);
  std::vector<std::vector<double>> columns;
  std::string heads = "W";
  for (const Curve* const curve : InUsersOrder(graph)) {
    if (curve->kind != CurveKind::kModel || graph.plotWidth < 1) break;
    heads += std::string(" ") + NamesOf(curve->quantity).shortName;
    const Model* const model = GetModelByNumber(*ctx.params, curve->modelId);
    const Quantity quantities[] = {curve->quantity};
    columns.push_back(model ? ModelValues(graph, ctx, *model, quantities, graph.columnX).front()
                            : std::vector<double>(graph.columnX.size()));
  }
  if (graph.plotWidth >= 1) file.Write(heads + '\n' + TextOf(graph, columns));
  if (Status written = file.Commit(); !written.Ok()) return written;
  return static_cast<int>(columns.size());
}

}  // namespace kalvex
