#include "evaluation/plain_rows.h"

#include <algorithm>
#include <cmath>

#include "records/row_code.h"

namespace kalvex {

bool PlainRows::Are(const Model& model) {
  for (int row = 0; row < RowCount(model); ++row) {
    if (RowCode(Cell(model, row, Wo)) != kPlainRow) return false;
  }
  return true;
}

PlainRows::PlainRows(const Model& model) : epsInf_(model.epsInf.value), nobody_(kSpectrumBlock) {
  for (int row = 0; row < RowCount(model); ++row) {
    rows_.push_back({Cell(model, row, Wo).value, Cell(model, row, Wp).value, Cell(model, row, G).value});
  }
  bounds_ = BoundsOf(rows_);
  claims_.resize(rows_.size());
}

void PlainRows::Claim(const ParamPlace& place, std::size_t k) {
  if (place.Where == ParamKind::kEpsInf) {
    claimOfEpsInf_ = k;
  } else {
    claims_[static_cast<std::size_t>(place.nl)].k[place.nc] = k;
  }
}

void PlainRows::Sum(const double* w, bool forSlopes, double* re, double* im) {
  std::fill_n(re, kSpectrumBlock, epsInf_);
  std::fill_n(im, kSpectrumBlock, 0.0);
  if (!forSlopes) return AddOscillators(rows_, bounds_, w, re, im);
  inverses_.resize(2 * kSpectrumBlock * rows_.size());
  AddOscillatorsForSlopes(rows_, bounds_, w, re, im, inverses_.data());
}

void PlainRows::FillSlopes(SpectrumBlock& block, Quantity quantity, const double* w, const double* dRe,
                           const double* dIm) {
  if (claimOfEpsInf_ != kNobody) std::copy_n(dRe, kSpectrumBlock, block.Slopes(claimOfEpsInf_, quantity));
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    if (!claims_[row].Any()) continue;
    double* out[kColumns];
    for (int c = 0; c < kColumns; ++c) {
      const std::size_t k = claims_[row].k[c];
      out[c] = k == kNobody ? nobody_.data() : block.Slopes(k, quantity);
    }
    OscillatorSlopesOf(rows_[row], w, inverses_.data() + row * 2 * kSpectrumBlock, dRe, dIm, out[Wo], out[Wp], out[G]);
  }
}

}  // namespace kalvex
