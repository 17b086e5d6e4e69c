#include "files/curve_file.h"

#include <cmath>
#include <vector>

#include "core/files.h"
#include "core/text.h"
#include "evaluation/eval_model.h"
#include "evaluation/eval_spectrum.h"

namespace kalvex {
namespace {

constexpr std::size_t kChunk = 4096;

// Visits start, start + step, ... up to end. Rounding may add or lose a point. A step too small to change the sum ends
// the loop.
class GridWalk {
 public:
  GridWalk(const CurveExport& what)
      : logarithmic_(what.grid == kLogarithmicGrid),
        at_(logarithmic_ ? LogOf(what.xMin) : what.xMin),
        end_(logarithmic_ ? LogOf(what.xMax) : what.xMax),
        step_((end_ - at_) / (what.points - 1)) {}

  bool HasPoint() const { return at_ <= end_ && moves_; }
  double Take() {
    const double before = at_;
    at_ += step_;
    moves_ = at_ > before;
    return logarithmic_ ? std::pow(10.0, before) : before;
  }

 private:
  static double LogOf(double x) { return x <= 1e-300 ? -300 : std::log10(x); }
  bool logarithmic_;
  double at_, end_, step_;
  bool moves_ = true;
};

void AppendLine(std::string& text, std::initializer_list<double> numbers) {
  const char* separator = "";
  for (const double number : numbers) {
    text += separator;
    AppendG(text, number);
    separator = " ";
  }
  text += '\n';
}

// Lines of text, and the last nonzero status of an evaluation.
struct Lines {
  std::string text;
  int status = 0;
};

Lines ValuesAt(EvalContext& ctx, const Model& model, Quantity quantity, const std::vector<double>& x) {
  Lines lines;
  const std::vector<QuantitySet> wanted(x.size(), QuantitySet{quantity});
  lines.status = EvalSpectrum(ctx, model, {x, wanted, false, {}}, [&](const SpectrumBlock& block) {
    for (std::size_t i = 0; i < block.count; ++i)
      AppendLine(lines.text, {x[block.first + i], block.Value(quantity, i)});
  });
  return lines;
}

Lines WithSlopesAt(ParamTables& params, EvalContext& ctx, const Model& model, Quantity quantity,
                   const std::vector<double>& x) {
  Lines lines;
  WantOnly(ctx.quantities, QuantitySet{quantity});
  for (const double w : x) {
    if (const int failed = EvalModel(ctx, model, w, true)) lines.status = failed;
    TakeOverSlopes(params, ctx.slopes);
    const QuantityResult& of = ctx.quantities[quantity];
    AppendLine(lines.text, {w, of.value, of.dRe, of.dIm});
  }
  return lines;
}

// Returns the last nonzero status of an evaluation.
int WriteCurve(ParamTables& params, EvalContext& ctx, const Model& model, const CurveExport& what,
               WholeFileWriter& file) {
  std::vector<double> x;
  if (what.onMesh) {
    if (!model.vdf.On) return 0;
    for (const VdfMeshPoint& point : model.vdf.mesh) x.push_back(point.x);
    const Lines lines = ValuesAt(ctx, model, *what.quantity, x);
    file.Write(lines.text);
    return lines.status;
  }
  if (what.grid != kLinearGrid && what.grid != kLogarithmicGrid) return 0;
  const bool slopes = what.derivatives && what.grid == kLogarithmicGrid;
  int status = 0;
  for (GridWalk walk(what); walk.HasPoint();) {
    x.clear();
    while (x.size() < kChunk && walk.HasPoint()) x.push_back(walk.Take());
    const Lines lines =
        slopes ? WithSlopesAt(params, ctx, model, *what.quantity, x) : ValuesAt(ctx, model, *what.quantity, x);
    file.Write(lines.text);
    if (lines.status != 0) status = lines.status;
  }
  return status;
}

}  // namespace

Status ExportModelCurve(ParamTables& params, EvalContext& ctx, const Model* model, const CurveExport& what,
                        const std::string& path) {
  WholeFileWriter file(path);
  if (!file.IsOpen()) return CannotWrite(path);
  const int status = model && what.quantity ? WriteCurve(params, ctx, *model, what, file) : 0;
  if (Status written = file.Commit(); !written.Ok()) return written;
  if (status == 0) return {};
  return {
      StatusCode::kNotComputed,
      "the model could not be evaluated: a model or dataset that it names is missing, or its rows are not valid; the "
      "values are those of an earlier evaluation",
      path};
}

}  // namespace kalvex
