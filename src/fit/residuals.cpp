#include "fit/residuals.h"

#include <algorithm>
#include <array>
#include <vector>

#include "core/text.h"
#include "evaluation/eval_spectrum.h"
#include "fit/fit_lists.h"
#include "records/model_table.h"

namespace kalvex {
namespace {

void AppendLine(std::string& text, const std::array<double, 5>& numbers) {
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (i > 0) text += ' ';
    AppendShortest(text, numbers[i]);
  }
  text += '\n';
}

}  // namespace

Result<std::string> ResidualsOf(const FitState& fit, const ChiSqTerm& term, EvalContext& eval) {
  const Model* const model = GetModelByNumber(*eval.params, term.modelId);
  for (const FitSpectrum& spectrum : fit.spectra) {
    for (const TermPoints& points : spectrum.terms) {
      if (!model || fit.list.terms[static_cast<std::size_t>(points.term)].id != term.id || points.y.empty()) continue;
      std::string text = "x y sigma model residual/sigma\n";
      EvalSpectrum(eval, *model, RequestOf(spectrum), [&](const SpectrumBlock& block) {
        const PointRange range = PointsInBlock(points, block);
        for (std::size_t p = range.first; p < range.end; ++p) {
          const double value = block.Value(points.quantity, points.at[p]);
          AppendLine(text, {spectrum.x[FrequencyOf(points, p)], points.y[p], points.sigma[p], value,
                            points.Residual(value, p)});
        }
      });
      return text;
    }
  }
  return {StatusCode::kNotThere, "no point of this term takes part in the fit"};
}

}  // namespace kalvex
