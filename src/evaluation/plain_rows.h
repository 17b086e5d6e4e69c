// The rows of a model without codes, at blocks of frequencies: their sum and its slopes.
#pragma once

#include <vector>

#include "evaluation/oscillator_block.h"
#include "records/model.h"
#include "records/param_place.h"

namespace kalvex {

class PlainRows {
 public:
  // Whether no row has a code.
  static bool Are(const Model& model);

  explicit PlainRows(const Model& model);

  // Slope k of the request is the one by this parameter of the model: epsInf or an element of a row.
  void Claim(const ParamPlace& place, std::size_t k);

  // Sum of epsInf and the rows at the kSpectrumBlock frequencies w (cm-1). With forSlopes, intermediate results are
  // kept for FillSlopes.
  void Sum(const double* w, bool forSlopes, double* re, double* im);

  // Fills the claimed slopes of a Quantity from its derivatives by the last sum, at the same frequencies.
  void FillSlopes(SpectrumBlock& block, Quantity quantity, const double* w, const double* dRe, const double* dIm);

 private:
  static constexpr std::size_t kNobody = ~std::size_t{0};
  struct Claims {
    std::size_t k[kColumns] = {kNobody, kNobody, kNobody};
    bool Any() const { return k[Wo] != kNobody || k[Wp] != kNobody || k[G] != kNobody; }
  };
  double epsInf_;
  std::vector<PlainRow> rows_;
  RowBounds bounds_;
  std::size_t claimOfEpsInf_ = kNobody;
  std::vector<Claims> claims_;  // one per row
  std::vector<double> inverses_;
  std::vector<double> nobody_;  // target of slopes that are not requested
};

}  // namespace kalvex
