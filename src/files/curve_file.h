// A model's computed curve as text.
#pragma once

#include <optional>
#include <string>

#include "core/status.h"
#include "evaluation/eval_context.h"

namespace kalvex {

struct CurveExport {
  std::optional<Quantity> quantity;
  double xMin = 0;  // cm-1, below xMax; above 0 for the logarithmic grid
  double xMax = 0;
  int points = 0;            // at least 1
  bool onMesh = false;       // at the points of the model's variational function, whatever the grid
  int grid = 1;              // 1 linear, 2 logarithmic; another one has no points
  bool derivatives = false;  // on the logarithmic grid: dQ/d(Re eps) and dQ/d(Im eps) too
};

// Writes "x value" lines of six digits. The grid is a running sum of steps, so that the number of points and the place
// of the last one depend on rounding. No model or no Quantity gives an empty file. kNotComputed: the file is written,
// but a special model that computes nothing, since a model it names is missing or its rows do not fit, has left values
// from before. With derivatives the parameters take over their slopes.
Status ExportModelCurve(ParamTables& params, EvalContext& ctx, const Model* model, const CurveExport& what,
                        const std::string& path);

}  // namespace kalvex
