#include "fit/confidence.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "core/files.h"
#include "core/text.h"
#include "fit/fit_coordinate.h"
#include "fit/fit_log.h"

namespace kalvex {
namespace {

// The inverse of alpha, row by row. If the matrix is singular, rows keep their earlier content.
std::vector<double> CovarianceOf(const SquareMatrix& alpha, BandFactor& factor) {
  std::vector<double> cov(alpha.size * alpha.size), unit(alpha.size), column(alpha.size);
  for (std::size_t c = 0; c < alpha.size; ++c) {
    std::fill(unit.begin(), unit.end(), 0.0);
    unit[c] = 1;
    SolveBanded(alpha, factor, unit, column, c == 0);
    std::copy(column.begin(), column.end(), cov.begin() + static_cast<std::ptrdiff_t>(c * alpha.size));
  }
  return cov;
}

void SetErrors(const FitState& fit, std::span<ModelParam* const> cells, std::span<const FitCoordinate> coordinates,
               const SquareMatrix& cov) {
  for (std::size_t i = 0; i < cov.size; ++i) {
    const double variance = cov(i, i);
    const double error = variance > 0 ? std::sqrt(fit.options.DeltaChiSq * variance) : 0;
    cells[i]->error = coordinates[i].limited ? error * std::fabs(coordinates[i].scale) : error;
  }
  for (std::size_t i = cov.size; i < cells.size(); ++i) {
    cells[i]->error = cells[static_cast<std::size_t>(fit.params[i].master)]->error;
  }
}

struct Correlation {
  std::size_t a;
  std::size_t b;
  double value;
};

std::vector<Correlation> CorrelationsOf(const SquareMatrix& cov) {
  constexpr double kLeastProduct = 1e-50;
  std::vector<Correlation> pairs;
  for (std::size_t i = 0; i < cov.size; ++i) {
    for (std::size_t j = i + 1; j < cov.size; ++j) {
      const double t = cov(i, i) * cov(j, j);
      pairs.push_back({i, j, std::fabs(t) > kLeastProduct ? cov(i, j) / std::sqrt(t) : 0});
    }
  }
  std::stable_sort(pairs.begin(), pairs.end(),
                   [](const Correlation& x, const Correlation& y) { return x.value < y.value; });
  return pairs;
}

std::string ParamsTable(const FitState& fit, std::span<ModelParam* const> cells) {
  std::string text = "np Where nm nl nc nep nen Val Err\n";
  for (std::size_t i = 0; i < static_cast<std::size_t>(fit.NumFreeParams); ++i) {
    const ParamPlace& at = fit.params[i].place;
    text += std::to_string(i + 1) + ' ' + KindText(at.Where);
    for (const int index : {at.nm, at.nl, at.nc, at.nep, at.nen}) text += ' ' + std::to_string(index);
    for (const double value : {cells[i]->value, cells[i]->error}) {
      text += ' ';
      AppendG(text, value);
    }
    text += '\n';
  }
  return text;
}

std::string CorrelationTable(const std::vector<Correlation>& pairs) {
  std::string text = "np1 np2 Corr\n";
  for (const Correlation& pair : pairs) {
    text += std::to_string(pair.a + 1) + ' ' + std::to_string(pair.b + 1) + ' ';
    AppendFixed(text, pair.value, 5, 7);
    text += '\n';
  }
  return text;
}

}  // namespace

void WriteConfidence(FitState& fit, std::span<ModelParam* const> cells, std::span<const FitCoordinate> coordinates,
                     const SquareMatrix& alpha, BandFactor& factor) {
  std::vector<double> covData = CovarianceOf(alpha, factor);
  const SquareMatrix cov{covData.data(), alpha.size};
  SetErrors(fit, cells, coordinates, cov);
  NoteIfNotWritten(WriteWholeFile("Params.dat", ParamsTable(fit, cells)), fit.report);
  NoteIfNotWritten(WriteWholeFile("ParCorrs.dat", CorrelationTable(CorrelationsOf(cov))), fit.report);
}

}  // namespace kalvex
