// The rows of a model without codes, at blocks of frequencies: their sum, and how what is made of it changes with them.
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

  // Slope k of a request is to be the one by this parameter of the model, epsInf or an element of a row.
  void Claim(const ParamPlace& place, std::size_t k);

  // epsInf and the rows at the kSpectrumBlock frequencies w (cm-1). For slopes, what these need is kept.
  void Sum(const double* w, bool forSlopes, double* re, double* im);

  // The claimed slopes of a Quantity that has these derivatives by the sum made last, at the same frequencies.
  void FillSlopes(SpectrumBlock& block, Quantity quantity, const double* w, const double* dRe, const double* dIm);

 private:
  static constexpr std::size_t kNobody = static_cast<std::size_t>(-1);
  struct Claims {
    std::size_t k[kColumns] = {kNobody, kNobody, kNobody};
    bool Any() const { return k[Wo] != kNobody || k[Wp] != kNobody || k[G] != kNobody; }
  };
  double epsInf_;
  std::vector<PlainRow> rows_;
  RowBounds bounds_;
  std::size_t claimOfEpsInf_ = kNobody;
  std::vector<Claims> claims_;  // of each row
  std::vector<double> inverses_;
  std::vector<double> nobody_;  // where slopes go that nobody has claimed
};

}  // namespace kalvex
