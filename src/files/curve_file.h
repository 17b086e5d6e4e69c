// A model's computed curve as text.
#pragma once

#include <optional>
#include <string>

#include "core/status.h"
#include "evaluation/eval_context.h"

namespace kalvex {

// Numbers in macros: of the grids, and of where the x values come from.
inline constexpr int kLinearGrid = 1, kLogarithmicGrid = 2;
inline constexpr int kXOfGrid = 1, kXOfMesh = 2;

struct CurveExport {
  std::optional<Quantity> quantity;
  double xMin = 0;  // cm-1, below xMax; above 0 for the logarithmic grid
  double xMax = 0;
  int points = 0;            // at least 1
  bool onMesh = false;       // use the mesh points of the model instead of a grid
  int grid = kLinearGrid;    // or kLogarithmicGrid; any other number gives no points
  bool derivatives = false;  // also write dQ/d(Re eps), dQ/d(Im eps); only on the logarithmic grid
};

// Writes lines "x value" with six digits. The grid is a running sum of steps, so the number of points and the last
// point depend on rounding. Without a model or a Quantity the file is empty. kNotComputed: the file is written, but a
// special model could not be evaluated, because a model that it names is missing or its rows are not valid; the values
// are those of an earlier evaluation. With `derivatives` the slopes stored in the parameters are overwritten.
Status ExportModelCurve(ParamTables& params, EvalContext& ctx, const Model* model, const CurveExport& what,
                        const std::string& path);

}  // namespace kalvex
