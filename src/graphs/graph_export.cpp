#include "graphs/graph_export.h"

#include "core/files.h"
#include "core/text.h"
#include "datasets/quantity.h"
#include "graphs/curve_samples.h"
#include "graphs/painting.h"
#include "records/model_table.h"

namespace kalvex {

int ExportGraph(const Graph& graph, EvalContext& ctx, const std::string& path) {
  WholeFileWriter file(path);
  if (!file.IsOpen()) return -1;
  if (graph.plotWidth < 1) return file.Commit() ? 0 : -1;

  std::string text = "W";
  std::vector<std::vector<double>> columns;
  for (const Curve* const curve : InUsersOrder(graph)) {
    if (curve->kind != CurveKind::kModel) break;
    text += std::string(" ") + kQuantityNames[static_cast<std::size_t>(curve->quantity)].shortName;
    const Model* const model = GetModelByNumber(*ctx.params, curve->modelId);
    const int quantities[] = {curve->quantity};
    columns.push_back(model ? ModelValues(graph, ctx, *model, quantities, graph.columnX).front()
                            : std::vector<double>(graph.columnX.size()));
  }
  text += '\n';
  for (std::size_t i = 0; i < graph.columnX.size(); ++i) {
    AppendG(text, graph.columnX[i]);
    for (const std::vector<double>& column : columns) {
      text += ' ';
      AppendG(text, column[i]);
    }
    text += '\n';
  }
  file.Write(text);
  return file.Commit() ? static_cast<int>(columns.size()) : -1;
}

}  // namespace kalvex
